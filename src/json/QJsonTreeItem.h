#pragma once

#include "ProductEditorExport.h"

#include <QJsonValue>
#include <QList>
#include <QString>

namespace ProductEditor {

// A node of a JSON tree. Copies share the child pointers of the original;
// only one of them may be destroyed with children attached.
class PRODUCT_EDITOR_EXPORT QJsonTreeItem
{
public:
    explicit QJsonTreeItem(QJsonTreeItem *parent = nullptr);
    QJsonTreeItem(const QJsonTreeItem &other) = default;
    QJsonTreeItem &operator=(const QJsonTreeItem &other) = default;
    virtual ~QJsonTreeItem();

    void appendChild(QJsonTreeItem *item);
    QJsonTreeItem *child(int row) const;
    QJsonTreeItem *parent() const;
    int childCount() const;
    int row() const;

    void setKey(const QString &key);
    QString key() const;
    void setValue(const QString &value);
    QString value() const;
    void setType(QJsonValue::Type type);
    QJsonValue::Type type() const;

    // Builds the subtree of `value`; the caller sets the type of an object or array root.
    static QJsonTreeItem *load(const QJsonValue &value, QJsonTreeItem *parent = nullptr);

private:
    QString m_key;
    QString m_value;
    QJsonValue::Type m_type = QJsonValue::Null;
    QList<QJsonTreeItem *> m_children; // owned
    QJsonTreeItem *m_parent = nullptr; // not owned
    int m_row = -1; // position hint set by appendChild, checked before use
};

} // namespace ProductEditor
