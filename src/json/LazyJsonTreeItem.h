#pragma once

#include "json/QJsonTreeItem.h"

#include <QJsonValue>

namespace ProductEditor {

// A JSON tree node that builds its children the first time they are asked for, so a
// view over a large document creates only the nodes of the levels it has shown. Once
// built, the subtree is the one QJsonTreeItem::load makes.
class LazyJsonTreeItem : public QJsonTreeItem
{
public:
    LazyJsonTreeItem(const QJsonValue &value, QJsonTreeItem *parent);

    // Builds the children of this node, once.
    void materialize();
    // Builds the whole subtree.
    void materializeAll();

private:
    QJsonValue m_pending; // the object or array whose children are not built yet
    bool m_built = false;
};

} // namespace ProductEditor
