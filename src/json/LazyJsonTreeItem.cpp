#include "json/LazyJsonTreeItem.h"

#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ProductEditor {

LazyJsonTreeItem::LazyJsonTreeItem(const QJsonValue &value, QJsonTreeItem *parent)
    : QJsonTreeItem(parent)
{
    setKey(QStringLiteral("root"));
    setType(value.type());
    if (value.isObject() || value.isArray())
        m_pending = value;
    else
        setValue(JsonValueText(value));
    m_built = !value.isObject() && !value.isArray();
}

void LazyJsonTreeItem::materialize()
{
    if (m_built)
        return;
    m_built = true;
    const QJsonValue value = m_pending;
    m_pending = QJsonValue();
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            auto *child = new LazyJsonTreeItem(it.value(), this);
            child->setKey(it.key());
            appendChild(child);
        }
        return;
    }
    const QJsonArray array = value.toArray();
    for (int i = 0; i < array.size(); ++i) {
        auto *child = new LazyJsonTreeItem(array.at(i), this);
        child->setKey(QString::number(i));
        appendChild(child);
    }
}

void LazyJsonTreeItem::materializeAll()
{
    materialize();
    for (int i = 0; i < childCount(); ++i)
        static_cast<LazyJsonTreeItem *>(child(i))->materializeAll();
}

} // namespace ProductEditor
