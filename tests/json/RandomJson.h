#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QRandomGenerator>
#include <QStringList>

#include <algorithm>

// Seeded random JSON documents built to stress the array matching: small key and id
// alphabets (so ids repeat), ids of every JSON type, missing ids, scalars with repeats.
class RandomJson
{
public:
    explicit RandomJson(quint32 seed)
        : m_random(seed)
    {
    }

    int Pick(int count) { return int(m_random.bounded(quint32(count))); }
    bool Chance(int percent) { return Pick(100) < percent; }

    QJsonValue Scalar()
    {
        switch (Pick(9)) {
        case 0: return QJsonValue();
        case 1: return Chance(50);
        case 2: return Pick(3);
        case 3: return 1.0;
        case 4: return 2.5;
        case 5: return QStringLiteral("");
        default: return QString(QChar('a' + Pick(4)));
        }
    }

    QJsonValue Id()
    {
        switch (Pick(12)) {
        case 0: return QJsonValue();
        case 1: return 1;
        case 2: return QStringLiteral("1");
        case 3: return true;
        case 4: return QJsonObject{{QStringLiteral("k"), 1}};
        case 5: return QJsonArray{1};
        case 6: return QStringLiteral("");
        default: return QString(QChar('x' + Pick(3)));
        }
    }

    QJsonObject Object(int depth)
    {
        QJsonObject object;
        if (Chance(70))
            object.insert(QStringLiteral("id"), Id());
        for (const QString &key : m_keys) {
            if (Chance(45))
                object.insert(key, Value(depth - 1));
        }
        return object;
    }

    QJsonArray Array(int depth)
    {
        QJsonArray array;
        const int size = Pick(7);
        const int kind = Pick(3);
        for (int i = 0; i < size; ++i) {
            if (kind == 0 || (kind == 2 && Chance(50)))
                array.append(Object(depth - 1));
            else if (kind == 2 && Chance(20))
                array.append(Array(depth - 1));
            else
                array.append(Scalar());
        }
        return array;
    }

    QJsonValue Value(int depth)
    {
        if (depth <= 0 || Chance(40))
            return Scalar();
        return Chance(50) ? QJsonValue(Object(depth)) : QJsonValue(Array(depth));
    }

    // A near copy, so that most elements find partners and differ only a little.
    QJsonValue Mutate(const QJsonValue &value, int depth)
    {
        if (Chance(10))
            return Value(depth);
        if (value.isObject()) {
            QJsonObject object = value.toObject();
            const QStringList keys = object.keys();
            for (const QString &key : keys) {
                if (Chance(12))
                    object.remove(key);
                else if (Chance(35))
                    object.insert(key, Mutate(object.value(key), depth - 1));
            }
            if (Chance(15))
                object.insert(QString(QChar('a' + Pick(5))), Value(depth - 1));
            return object;
        }
        if (value.isArray()) {
            QJsonArray array = value.toArray();
            QVector<QJsonValue> elements(array.begin(), array.end());
            for (QJsonValue &element : elements) {
                if (Chance(30))
                    element = Mutate(element, depth - 1);
            }
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
        return Chance(40) ? Scalar() : value;
    }

    // Arrays whose objects carry unique non-empty string ids and whose scalars are strings
    // of their own alphabet: the documents for which an all-left patch must be the identity.
    QJsonObject WellFormedObject(int depth, bool withId)
    {
        QJsonObject object;
        if (withId)
            object.insert(QStringLiteral("id"), QStringLiteral("i%1").arg(m_nextId++));
        for (const QString &key : m_keys) {
            if (Chance(50))
                object.insert(key, WellFormedValue(depth - 1));
        }
        return object;
    }

    QJsonValue WellFormedValue(int depth)
    {
        if (depth <= 0 || Chance(35))
            return Scalar();
        if (Chance(50))
            return WellFormedObject(depth, false);
        QJsonArray array;
        const int size = Pick(6);
        const bool objects = Chance(60);
        for (int i = 0; i < size; ++i) {
            if (objects)
                array.append(WellFormedObject(depth - 1, true));
            else
                array.append(QStringLiteral("s%1").arg(Pick(5)));
        }
        return array;
    }

private:
    const QStringList m_keys = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")};
    QRandomGenerator m_random;
    int m_nextId = 0;
};
