#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringView>
#include <QVector>

namespace ProductEditor {

// A hash consistent with QJsonValue equality: equal values (including 1 and 1.0,
// 0 and -0) hash alike; unequal values may collide.
uint JsonValueHash(const QJsonValue &value);

// Numbers the classes of equal JSON values in the order they are first inserted.
// Strings, the common case, are looked up by their text; insertString keeps only a
// view, so the caller keeps the text alive while the index is in use. Open addressing
// in flat vectors: building one per compared array must not cost an allocation per element.
class JsonValueIndex
{
public:
    explicit JsonValueIndex(int expected = 0);

    // Empties the index for about `expected` values, keeping the buffers.
    void reset(int expected);
    int size() const { return m_hashes.size(); }

    // The class of the value, or -1 when no inserted value equals it.
    int find(const QJsonValue &value) const;
    int findString(QStringView text) const;
    // The class of the value, a new one when no inserted value equals it.
    int insert(const QJsonValue &value);
    int insertString(QStringView text);

private:
    int _Slot(uint hash, const QStringView *text, const QJsonValue *value) const;
    int _Insert(uint hash, const QStringView *text, const QJsonValue *value);
    void _Grow();

    QVector<int> m_slots; // class + 1, or 0 for a free slot; the size is a power of two
    QVector<uint> m_hashes; // class -> hash
    QVector<QStringView> m_texts; // class -> text, for string classes
    QVector<QJsonValue> m_values; // class -> first value, Undefined for string classes
    QVector<QString> m_ownedTexts; // strings inserted as JSON values, which the views point into
};

} // namespace ProductEditor
