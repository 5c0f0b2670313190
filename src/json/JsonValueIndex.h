#pragma once

#include <QJsonValue>
#include <QString>
#include <QVector>

namespace ProductEditor {

// A hash consistent with QJsonValue equality: equal values (including 1 and 1.0,
// 0 and -0) hash alike; unequal values may collide.
uint JsonValueHash(const QJsonValue &value);

// Numbers the classes of equal JSON values in the order they are first inserted.
// Strings, the common case, are looked up by their text. Open addressing in flat
// vectors: building one per compared array must not cost an allocation per element.
class JsonValueIndex
{
public:
    explicit JsonValueIndex(int expected = 0);

    // Empties the index for about `expected` values, keeping the buffers.
    void reset(int expected);
    int size() const { return m_hashes.size(); }

    // The class of the value, or -1 when no inserted value equals it.
    int find(const QJsonValue &value) const;
    int findString(const QString &text) const;
    // The class of the value, a new one when no inserted value equals it.
    int insert(const QJsonValue &value);
    int insertString(const QString &text);

private:
    int _Slot(uint hash, const QString *text, const QJsonValue *value) const;
    int _Insert(uint hash, const QString *text, const QJsonValue *value);
    void _Grow();

    QVector<int> m_slots; // class + 1, or 0 for a free slot; the size is a power of two
    QVector<uint> m_hashes; // class -> hash
    QVector<QString> m_texts; // class -> text, for string classes
    QVector<QJsonValue> m_values; // class -> first value, Undefined for string classes
};

} // namespace ProductEditor
