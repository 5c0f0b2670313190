#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QVector>

#include <algorithm>

// Seeded random JSON documents built to stress the array matching: small key and id
// alphabets (so ids repeat), ids of every JSON type, missing ids, scalars with repeats.
class RandomJson
{
public:
    explicit RandomJson(quint32 seed) : m_random(seed) {}

    int Pick(int count) { return int(m_random.bounded(quint32(count))); }
    bool Chance(int percent) { return Pick(100) < percent; }

    QJsonValue Scalar()
    {
        const QJsonValue fixed[] = {QJsonValue(), true, false, 0, 1, 2, 1.0, 2.5, QStringLiteral("")};
        return Chance(40) ? QJsonValue(QString(QChar('a' + Pick(4)))) : fixed[Pick(9)];
    }

    QJsonValue Id()
    {
        const QJsonValue fixed[] = {QJsonValue(), 1, QStringLiteral("1"), true, QJsonObject{{QStringLiteral("k"), 1}},
                                    QJsonArray{1}, QStringLiteral("")};
        return Chance(40) ? QJsonValue(QString(QChar('x' + Pick(3)))) : fixed[Pick(7)];
    }

    QJsonObject Object(int depth)
    {
        QJsonObject object;
        if (Chance(70))
            object.insert(QStringLiteral("id"), Id());
        for (const QChar key : QStringLiteral("abcd")) {
            if (Chance(45))
                object.insert(QString(key), Value(depth - 1));
        }
        return object;
    }

    // An array holds objects, scalars, or a mix of both with nested values.
    QJsonValue Value(int depth)
    {
        if (depth <= 0 || Chance(40))
            return Scalar();
        if (Chance(50))
            return Object(depth);
        QJsonArray array;
        const int kind = Pick(3);
        for (int i = Pick(7); i > 0; --i)
            array.append(kind == 0 || (kind == 2 && Chance(50)) ? QJsonValue(Object(depth - 1))
                                                                : kind == 2 && Chance(20) ? Value(depth - 1) : Scalar());
        return array;
    }

    // A near copy, so that most elements find partners and differ only a little.
    QJsonValue Mutate(const QJsonValue &value, int depth)
    {
        if (Chance(10))
            return Value(depth);
        if (value.isObject()) {
            QJsonObject object = value.toObject();
            for (const QString &key : object.keys()) {
                if (Chance(12))
                    object.remove(key);
                else if (Chance(35))
                    object.insert(key, Mutate(object.value(key), depth - 1));
            }
            if (Chance(15))
                object.insert(QString(QChar('a' + Pick(5))), Value(depth - 1));
            return object;
        }
        if (!value.isArray())
            return Chance(40) ? Scalar() : value;
        // Elements changed, dropped, repeated, added and shuffled.
        QVector<QJsonValue> elements;
        for (const QJsonValue element : value.toArray())
            elements.append(Chance(30) ? Mutate(element, depth - 1) : element);
        if (!elements.isEmpty() && Chance(20))
            elements.remove(Pick(elements.size()));
        if (!elements.isEmpty() && Chance(20))
            elements.insert(Pick(elements.size() + 1), elements.at(Pick(elements.size())));
        if (Chance(15))
            elements.insert(Pick(elements.size() + 1), Chance(50) ? QJsonValue(Object(depth - 1)) : Scalar());
        if (Chance(25))
            std::shuffle(elements.begin(), elements.end(), m_random);
        QJsonArray result;
        for (const QJsonValue &element : elements)
            result.append(element);
        return result;
    }

private:
    QRandomGenerator m_random;
};
