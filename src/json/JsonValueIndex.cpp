#include "json/JsonValueIndex.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ProductEditor {

uint JsonValueHash(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return 0x6a09e667u;
    case QJsonValue::Bool:
        return value.toBool() ? 0xbb67ae85u : 0x3c6ef372u;
    case QJsonValue::Double: {
        const double number = value.toDouble();
        return qHash(number == 0.0 ? 0.0 : number);
    }
    case QJsonValue::String:
        return qHash(value.toString(), 0xa54ff53au);
    case QJsonValue::Array: {
        uint hash = 0x510e527fu;
        for (const QJsonValue element : value.toArray())
            hash = hash * 31u + JsonValueHash(element);
        return hash;
    }
    case QJsonValue::Object: {
        uint hash = 0x9b05688cu;
        const QJsonObject object = value.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it)
            hash = hash * 31u + (qHash(it.key()) ^ JsonValueHash(it.value()));
        return hash;
    }
    case QJsonValue::Undefined:
        break;
    }
    return 0x1f83d9abu;
}

void JsonValueIndex::reserve(int size)
{
    m_heads.reserve(size);
    m_values.reserve(size);
    m_nextWithHash.reserve(size);
}

int JsonValueIndex::_Find(const QJsonValue &value, uint hash) const
{
    const auto head = m_heads.constFind(hash);
    if (head == m_heads.constEnd())
        return -1;
    for (int i = head.value(); i >= 0; i = m_nextWithHash.at(i)) {
        if (m_values.at(i) == value)
            return i;
    }
    return -1;
}

int JsonValueIndex::find(const QJsonValue &value) const
{
    return _Find(value, JsonValueHash(value));
}

int JsonValueIndex::insert(const QJsonValue &value)
{
    const uint hash = JsonValueHash(value);
    const int known = _Find(value, hash);
    if (known >= 0)
        return known;
    const int added = m_values.size();
    m_values.append(value);
    m_nextWithHash.append(m_heads.value(hash, -1));
    m_heads.insert(hash, added);
    return added;
}

} // namespace ProductEditor
