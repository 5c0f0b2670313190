#include "diff/JsonValueIndex.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>

namespace ProductEditor {

namespace {

const uint StringSeed = 0xa54ff53au;

uint StringHash(QStringView text)
{
    return qHash(text, StringSeed);
}

// Spreads similar hashes over the low bits that pick the slot.
uint Mix(uint hash)
{
    hash ^= hash >> 16;
    hash *= 0x85ebca6bu;
    hash ^= hash >> 13;
    hash *= 0xc2b2ae35u;
    hash ^= hash >> 16;
    return hash;
}

} // namespace

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
        return StringHash(value.toString());
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

JsonValueIndex::JsonValueIndex(int expected)
{
    reset(expected);
}

void JsonValueIndex::reset(int expected)
{
    int capacity = 16;
    while (capacity < 2 * expected)
        capacity *= 2;
    m_slots.fill(0, capacity);
    m_hashes.clear();
    m_texts.clear();
    m_values.clear();
    m_ownedTexts.clear();
    m_hashes.reserve(expected);
    m_texts.reserve(expected);
    m_values.reserve(expected);
}

// The slot holding the class equal to the text (or to the value), or the free slot
// where it would go.
int JsonValueIndex::_Slot(uint hash, const QStringView *text, const QJsonValue *value) const
{
    const int mask = m_slots.size() - 1;
    for (int slot = int(Mix(hash) & uint(mask));; slot = (slot + 1) & mask) {
        const int entry = m_slots.at(slot) - 1;
        if (entry < 0)
            return slot;
        if (m_hashes.at(entry) != hash)
            continue;
        // String classes hold Undefined as their value; no JSON element is Undefined.
        const bool stringClass = m_values.at(entry).isUndefined();
        if (text ? stringClass && m_texts.at(entry) == *text : !stringClass && m_values.at(entry) == *value)
            return slot;
    }
}

int JsonValueIndex::_Insert(uint hash, const QStringView *text, const QJsonValue *value)
{
    if (2 * (m_hashes.size() + 1) > m_slots.size())
        _Grow();
    const int slot = _Slot(hash, text, value);
    if (m_slots.at(slot) > 0)
        return m_slots.at(slot) - 1;
    m_hashes.append(hash);
    m_texts.append(text ? *text : QStringView());
    m_values.append(text ? QJsonValue(QJsonValue::Undefined) : *value);
    m_slots[slot] = m_hashes.size();
    return m_hashes.size() - 1;
}

void JsonValueIndex::_Grow()
{
    const int capacity = m_slots.size() * 2;
    m_slots.fill(0, capacity);
    const int mask = capacity - 1;
    for (int entry = 0; entry < m_hashes.size(); ++entry) {
        int slot = int(Mix(m_hashes.at(entry)) & uint(mask));
        while (m_slots.at(slot) != 0)
            slot = (slot + 1) & mask;
        m_slots[slot] = entry + 1;
    }
}

int JsonValueIndex::findString(QStringView text) const
{
    return m_slots.at(_Slot(StringHash(text), &text, nullptr)) - 1;
}

int JsonValueIndex::insertString(QStringView text)
{
    return _Insert(StringHash(text), &text, nullptr);
}

int JsonValueIndex::find(const QJsonValue &value) const
{
    if (value.isString())
        return findString(value.toString());
    return m_slots.at(_Slot(JsonValueHash(value), nullptr, &value)) - 1;
}

int JsonValueIndex::insert(const QJsonValue &value)
{
    if (value.isString()) {
        const QString text = value.toString();
        const int known = findString(text);
        if (known >= 0)
            return known;
        m_ownedTexts.append(text);
        return insertString(m_ownedTexts.last());
    }
    return _Insert(JsonValueHash(value), nullptr, &value);
}

} // namespace ProductEditor
