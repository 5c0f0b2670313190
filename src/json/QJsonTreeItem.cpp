#include "json/QJsonTreeItem.h"

#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ProductEditor {

QJsonTreeItem::QJsonTreeItem(QJsonTreeItem *parent)
    : m_parent(parent)
{
}

QJsonTreeItem::~QJsonTreeItem()
{
    qDeleteAll(m_children);
}

void QJsonTreeItem::appendChild(QJsonTreeItem *item)
{
    if (item)
        item->m_row = m_children.size();
    m_children.append(item);
}

QJsonTreeItem *QJsonTreeItem::child(int row) const
{
    return row >= 0 && row < m_children.size() ? m_children.at(row) : nullptr;
}

QJsonTreeItem *QJsonTreeItem::parent() const
{
    return m_parent;
}

int QJsonTreeItem::childCount() const
{
    return m_children.size();
}

int QJsonTreeItem::row() const
{
    if (!m_parent)
        return 0;
    // Views ask for rows all the time; the hint keeps that constant-time on wide nodes.
    if (m_parent->child(m_row) == this)
        return m_row;
    return m_parent->m_children.indexOf(const_cast<QJsonTreeItem *>(this));
}

void QJsonTreeItem::setKey(const QString &key)
{
    m_key = key;
}

QString QJsonTreeItem::key() const
{
    return m_key;
}

void QJsonTreeItem::setValue(const QString &value)
{
    m_value = value;
}

QString QJsonTreeItem::value() const
{
    return m_value;
}

void QJsonTreeItem::setType(QJsonValue::Type type)
{
    m_type = type;
}

QJsonValue::Type QJsonTreeItem::type() const
{
    return m_type;
}

QJsonTreeItem *QJsonTreeItem::load(const QJsonValue &value, QJsonTreeItem *parent)
{
    auto *node = new QJsonTreeItem(parent);
    node->setKey(QStringLiteral("root"));
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            const QJsonValue member = it.value();
            QJsonTreeItem *child = load(member, node);
            child->setKey(it.key());
            child->setType(member.type());
            node->appendChild(child);
        }
    } else if (value.isArray()) {
        const QJsonArray array = value.toArray();
        for (int i = 0; i < array.size(); ++i) {
            const QJsonValue element = array.at(i);
            QJsonTreeItem *child = load(element, node);
            child->setKey(QString::number(i));
            child->setType(element.type());
            node->appendChild(child);
        }
    } else {
        node->setValue(JsonValueText(value));
        node->setType(value.type());
    }
    return node;
}

} // namespace ProductEditor
