#include "merge/JsonMerge.h"

#include "diff/JsonValueIndex.h"
#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

#include <algorithm>

namespace ProductEditor {

namespace {

const QString kId = QStringLiteral("id");

bool IsNameArrayKey(const QString &key)
{
    static const QSet<QString> names{
        QStringLiteral("features"), QStringLiteral("modes"), QStringLiteral("import"),
        QStringLiteral("import_as_project"), QStringLiteral("export"), QStringLiteral("export_as_project"),
        QStringLiteral("export_as_scene"), QStringLiteral("open"), QStringLiteral("lic"),
        QStringLiteral("licenses")};
    return names.contains(key);
}

bool HasObject(const QJsonArray &array)
{
    return std::any_of(array.begin(), array.end(), [](const QJsonValue &value) { return value.isObject(); });
}

enum Side { Base, Ours, Theirs, SideCount };

// The identity classes of the elements of the three arrays: objects by "id", the rest
// by value; a class holds how many elements of each side share it and the first one.
class ArrayClasses
{
public:
    explicit ArrayClasses(const QJsonArray *arrays)
        : m_arrays(arrays)
    {
        int total = 0;
        for (int side = 0; side < SideCount; ++side)
            total += arrays[side].size();
        m_objectIds.reset(total);
        m_values.reset(total);
        for (int side = 0; side < SideCount; ++side) {
            QVector<int> &classes = m_classOf[side];
            classes.reserve(arrays[side].size());
            for (const QJsonValue element : arrays[side])
                classes.append(_Insert(element));
        }
        const int count = 2 * std::max(m_objectIds.size(), m_values.size());
        for (int side = 0; side < SideCount; ++side) {
            m_count[side].fill(0, count);
            m_first[side].fill(-1, count);
            m_next[side].fill(-1, m_classOf[side].size());
            QVector<int> last(count, -1);
            for (int position = 0; position < m_classOf[side].size(); ++position) {
                const int c = m_classOf[side].at(position);
                if (m_count[side][c]++ == 0)
                    m_first[side][c] = position;
                else
                    m_next[side][last.at(c)] = position;
                last[c] = position;
            }
        }
    }

    int classOf(int side, int position) const { return m_classOf[side].at(position); }
    int count(int side, int c) const { return m_count[side].at(c); }
    bool isFirst(int side, int position) const { return m_first[side].at(classOf(side, position)) == position; }
    bool duplicated(int c) const { return count(Base, c) > 1 || count(Ours, c) > 1 || count(Theirs, c) > 1; }

    QJsonValue element(int side, int c) const
    {
        const int position = m_first[side].at(c);
        return position < 0 ? QJsonValue(QJsonValue::Undefined) : m_arrays[side].at(position);
    }

    QJsonArray elements(int side, int c) const
    {
        QJsonArray all;
        for (int position = m_first[side].at(c); position >= 0; position = m_next[side].at(position))
            all.append(m_arrays[side].at(position));
        return all;
    }

    static QJsonValue Identity(const QJsonValue &element)
    {
        if (!element.isObject())
            return element;
        const QJsonValue id = element.toObject().value(kId);
        return id.isUndefined() ? QJsonValue() : id;
    }

private:
    int _Insert(const QJsonValue &element)
    {
        return element.isObject() ? 2 * m_objectIds.insert(Identity(element))
                                  : 2 * m_values.insert(element) + 1;
    }

    const QJsonArray *m_arrays; // not owned; the three sides
    JsonValueIndex m_objectIds;
    JsonValueIndex m_values;
    QVector<int> m_classOf[SideCount];
    QVector<int> m_count[SideCount];
    QVector<int> m_first[SideCount];
    QVector<int> m_next[SideCount]; // position -> the next position of its class, or -1
};

class Merger
{
public:
    QJsonValue Merge(const QJsonValue &base, const QJsonValue &ours, const QJsonValue &theirs)
    {
        if (ours == theirs)
            return ours;
        if (base == ours)
            return theirs;
        if (base == theirs)
            return ours;
        if (ours.isObject() && theirs.isObject() && (base.isObject() || base.isUndefined()))
            return _MergeObjects(base.toObject(), ours.toObject(), theirs.toObject());
        if (ours.isArray() && theirs.isArray() && (base.isArray() || base.isUndefined()))
            return _MergeArrays({base.toArray(), ours.toArray(), theirs.toArray()});
        return _Conflict(base, ours, theirs, false);
    }

    QVector<JsonMergeConflict> conflicts;

private:
    QJsonValue _Conflict(const QJsonValue &base, const QJsonValue &ours, const QJsonValue &theirs, bool elements)
    {
        conflicts.append({m_steps, JsonMergePathText(m_steps), base, ours, theirs, elements});
        return ours;
    }

    QJsonObject _MergeObjects(const QJsonObject &base, const QJsonObject &ours, const QJsonObject &theirs)
    {
        QStringList keys = ours.keys() + theirs.keys() + base.keys();
        std::sort(keys.begin(), keys.end());
        keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
        QJsonObject merged;
        for (const QString &key : keys) {
            m_steps.append({JsonMergeStep::Member, key, QJsonValue()});
            const QJsonValue value = Merge(base.value(key), ours.value(key), theirs.value(key));
            m_steps.removeLast();
            if (!value.isUndefined())
                merged.insert(key, value);
        }
        return merged;
    }

    QJsonArray _MergeArrays(const QJsonArray (&sides)[SideCount])
    {
        const bool named = !m_steps.isEmpty() && m_steps.last().kind == JsonMergeStep::Member
            && IsNameArrayKey(m_steps.last().key) && !HasObject(sides[Base]) && !HasObject(sides[Ours])
            && !HasObject(sides[Theirs]);
        const ArrayClasses classes(sides);
        QJsonArray merged;
        // Ours' order first, then what only theirs has, in theirs' order.
        for (int side : {Ours, Theirs}) {
            for (int position = 0; position < sides[side].size(); ++position) {
                const int c = classes.classOf(side, position);
                if (!classes.isFirst(side, position) || (side == Theirs && classes.count(Ours, c) > 0))
                    continue;
                if (named)
                    _MergeName(classes, c, merged);
                else
                    _MergeElement(classes, c, merged);
            }
        }
        return merged;
    }

    // Added on either side is in, removed on either side is out.
    static void _MergeName(const ArrayClasses &classes, int c, QJsonArray &merged)
    {
        const bool ours = classes.count(Ours, c) > 0;
        const bool theirs = classes.count(Theirs, c) > 0;
        if (classes.count(Base, c) > 0 ? ours && theirs : ours || theirs)
            merged.append(classes.element(ours ? Ours : Theirs, c));
    }

    void _MergeElement(const ArrayClasses &classes, int c, QJsonArray &merged)
    {
        const QJsonValue any = classes.element(classes.count(Ours, c) > 0 ? Ours : Theirs, c);
        m_steps.append({any.isObject() ? JsonMergeStep::ObjectElement : JsonMergeStep::ValueElement, QString(),
                        ArrayClasses::Identity(any)});
        if (classes.duplicated(c)) {
            const QJsonArray base = classes.elements(Base, c);
            const QJsonArray ours = classes.elements(Ours, c);
            const QJsonArray theirs = classes.elements(Theirs, c);
            if (base != ours || ours != theirs)
                _Conflict(base, ours, theirs, true);
            for (const QJsonValue element : ours)
                merged.append(element);
        } else {
            const QJsonValue value = Merge(classes.element(Base, c), classes.element(Ours, c),
                                           classes.element(Theirs, c));
            if (!value.isUndefined())
                merged.append(value);
        }
        m_steps.removeLast();
    }

    QVector<JsonMergeStep> m_steps;
};

QString Compact(const QJsonValue &value)
{
    const QByteArray text = JsonText(QJsonDocument(QJsonArray{value}), QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2));
}

} // namespace

JsonMergeResult MergeJson(const QJsonValue &base, const QJsonValue &ours, const QJsonValue &theirs)
{
    Merger merger;
    JsonMergeResult result;
    result.merged = merger.Merge(base, ours, theirs);
    result.conflicts = std::move(merger.conflicts);
    return result;
}

QString JsonMergePathText(const QVector<JsonMergeStep> &steps)
{
    QString text;
    for (const JsonMergeStep &step : steps) {
        switch (step.kind) {
        case JsonMergeStep::Member:
            text += (text.isEmpty() ? QString() : QStringLiteral("/")) + step.key;
            break;
        case JsonMergeStep::ObjectElement:
            text += QStringLiteral("[id=%1]")
                        .arg(step.identity.isString() ? step.identity.toString() : Compact(step.identity));
            break;
        case JsonMergeStep::ValueElement:
            text += QStringLiteral("[%1]").arg(Compact(step.identity));
            break;
        }
    }
    return text;
}

QString JsonMergeSideText(const QJsonValue &value)
{
    return value.isUndefined() ? QStringLiteral("absent") : Compact(value);
}

} // namespace ProductEditor
