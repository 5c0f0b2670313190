#pragma once

#include "diff/JsonValueIndex.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringView>
#include <QVector>

namespace ProductEditor {

// One array's elements as the matching reads them, converted once: the kind of each,
// the objects (empty for other elements), the text of string elements and string ids
// (kept end to end in one buffer), and, once asked for, the indexes of ids (null when
// absent or not an object) and of non-object elements. Elements sharing an id are
// chained in array order, so that matching an element walks only the elements with its id.
struct JsonArraySide
{
    enum Kind : quint8 { StringIdObject, OtherIdObject, String, Other };

    void Reset(const QJsonArray &elements)
    {
        array = elements;
        objectCount = 0;
        kinds.clear();
        objects.clear();
        arena.resize(0);
        textStarts.clear();
        first.clear();
        last.clear();
        firstDifferent.clear();
        next.clear();
        const int size = array.size();
        kinds.reserve(size);
        objects.reserve(size);
        textStarts.reserve(size + 1);
        for (const QJsonValue value : array) {
            textStarts.append(arena.size());
            if (value.isObject()) {
                ++objectCount;
                const QJsonObject object = value.toObject();
                const QJsonValue id = object.value(QStringLiteral("id"));
                objects.append(object);
                const bool stringId = id.isString();
                kinds.append(stringId ? StringIdObject : OtherIdObject);
                if (stringId)
                    arena.append(id.toString());
            } else {
                objects.append(QJsonObject());
                const bool string = value.isString();
                kinds.append(string ? String : Other);
                if (string)
                    arena.append(value.toString());
            }
        }
        textStarts.append(arena.size());
    }

    int size() const { return kinds.size(); }
    // String elements' text, objects' string id (the node key), else empty.
    QStringView text(int position) const
    {
        const int start = textStarts.at(position);
        return QStringView(arena).mid(start, textStarts.at(position + 1) - start);
    }
    bool isObject(int position) const { return kinds.at(position) <= OtherIdObject; }
    QJsonValue value(int position) const { return array.at(position); }

    // The id as the matching compares it; only asked for ids that are not strings.
    QJsonValue otherId(int position) const
    {
        if (kinds.at(position) != OtherIdObject)
            return QJsonValue();
        const QJsonValue id = objects.at(position).value(QStringLiteral("id"));
        return id.isUndefined() ? QJsonValue() : id;
    }

    void IndexIds(bool chain)
    {
        ids.reset(objectCount + 1);
        if (chain)
            next.fill(-1, size());
        for (int position = 0; position < size(); ++position) {
            const int idClass = kinds.at(position) == StringIdObject ? ids.insertString(text(position))
                                                                     : ids.insert(otherId(position));
            if (!chain)
                continue;
            if (idClass == first.size()) {
                first.append(position);
                last.append(position);
                firstDifferent.append(Unknown);
            } else {
                next[last.at(idClass)] = position;
                last[idClass] = position;
            }
        }
    }

    void IndexScalars()
    {
        scalars.reset(size() - objectCount);
        for (int position = 0; position < size(); ++position) {
            if (kinds.at(position) == String)
                scalars.insertString(text(position));
            else if (kinds.at(position) == Other)
                scalars.insert(value(position));
        }
    }

    // The id class here of the element at `position` of `other`, or -1.
    int findId(const JsonArraySide &other, int position) const
    {
        return other.kinds.at(position) == StringIdObject ? ids.findString(other.text(position))
                                                          : ids.find(other.otherId(position));
    }

    // Whether the non-object element at `position` of `other` occurs here.
    bool containsScalar(const JsonArraySide &other, int position) const
    {
        const int found = other.kinds.at(position) == String ? scalars.findString(other.text(position))
                                                             : scalars.find(other.value(position));
        return found >= 0;
    }

    // The position of the first element of an id class whose object differs from the
    // first one's, or None.
    int firstDifferentOf(int idClass)
    {
        int &different = firstDifferent[idClass];
        if (different == Unknown) {
            different = None;
            const int head = first.at(idClass);
            for (int p = next.at(head); p >= 0; p = next.at(p)) {
                if (objects.at(p) != objects.at(head)) {
                    different = p;
                    break;
                }
            }
        }
        return different;
    }

    enum { None = -1, Unknown = -2 };

    QJsonArray array;
    int objectCount = 0;
    QVector<Kind> kinds;
    QVector<QJsonObject> objects;
    QString arena; // the texts, end to end
    QVector<int> textStarts; // position -> start of its text in the arena; one more for the end
    JsonValueIndex ids;
    JsonValueIndex scalars;
    QVector<int> first; // id class -> first position
    QVector<int> last; // id class -> last position
    QVector<int> firstDifferent; // id class -> see firstDifferentOf
    QVector<int> next; // position -> next position with the same id, or -1
};

} // namespace ProductEditor
