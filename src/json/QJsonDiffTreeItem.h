#pragma once

#include "json/QJsonTreeItem.h"

#include <QJsonValue>

namespace ProductEditor {

// Which side a difference takes in the patch.
enum DiffAction : qint32 {
    UseLeft = 1,
    UseRight = 2,
};

struct Difference
{
    QJsonValue left;
    QJsonValue right;
};

// A diff tree node: the compared values of both sides, what differs (bit flags) and the chosen side.
class PRODUCT_EDITOR_EXPORT QJsonDiffTreeItem : public QJsonTreeItem
{
public:
    enum DiffFlag : qint32 {
        Changed = 1,
        IdMatched = 2,
        LeftOnly = 4,
        RightOnly = 8,
        ValueChanged = 16,
        Choosable = LeftOnly | RightOnly | ValueChanged,
    };

    explicit QJsonDiffTreeItem(QJsonTreeItem *parent = nullptr);
    QJsonDiffTreeItem(const QJsonDiffTreeItem &other) = default;
    QJsonDiffTreeItem(QJsonDiffTreeItem &&other) = default;
    QJsonDiffTreeItem &operator=(const QJsonDiffTreeItem &other) = default;
    QJsonDiffTreeItem &operator=(QJsonDiffTreeItem &&other) = default;
    ~QJsonDiffTreeItem() override;

    void setLeftValue(const QJsonValue &value);
    void setRightValue(const QJsonValue &value);
    const Difference &values() const;
    Difference &values();
    void setDiffType(int diffType);
    int diffType() const;
    void setDiffAction(DiffAction action);
    DiffAction action() const;

private:
    Difference m_values;
    qint32 m_diffType = 0;
    DiffAction m_action = UseLeft;
};

} // namespace ProductEditor
