#include "json/QJsonDiffTreeItem.h"

namespace ProductEditor {

QJsonDiffTreeItem::QJsonDiffTreeItem(QJsonTreeItem *parent)
    : QJsonTreeItem(parent)
{
}

QJsonDiffTreeItem::~QJsonDiffTreeItem() = default;

void QJsonDiffTreeItem::setLeftValue(const QJsonValue &value)
{
    m_values.left = value;
}

void QJsonDiffTreeItem::setRightValue(const QJsonValue &value)
{
    m_values.right = value;
}

const Difference &QJsonDiffTreeItem::values() const
{
    return m_values;
}

Difference &QJsonDiffTreeItem::values()
{
    return m_values;
}

void QJsonDiffTreeItem::setDiffType(int diffType)
{
    m_diffType = diffType;
}

int QJsonDiffTreeItem::diffType() const
{
    return m_diffType;
}

void QJsonDiffTreeItem::setDiffAction(DiffAction action)
{
    m_action = action;
}

DiffAction QJsonDiffTreeItem::action() const
{
    return m_action;
}

} // namespace ProductEditor
