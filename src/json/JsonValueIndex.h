#pragma once

#include <QHash>
#include <QJsonValue>
#include <QVector>

namespace ProductEditor {

// A hash consistent with QJsonValue equality: equal values (including 1 and 1.0,
// 0 and -0) hash alike; unequal values may collide.
uint JsonValueHash(const QJsonValue &value);

// Numbers the classes of equal JSON values in the order they are first inserted.
class JsonValueIndex
{
public:
    void reserve(int size);
    int size() const { return m_values.size(); }

    // The class of `value`, or -1 when no inserted value equals it.
    int find(const QJsonValue &value) const;
    // The class of `value`, a new one when no inserted value equals it.
    int insert(const QJsonValue &value);

private:
    int _Find(const QJsonValue &value, uint hash) const;

    QHash<uint, int> m_heads; // hash -> latest class with that hash
    QVector<QJsonValue> m_values; // class -> its first value
    QVector<int> m_nextWithHash; // class -> earlier class with the same hash, or -1
};

} // namespace ProductEditor
