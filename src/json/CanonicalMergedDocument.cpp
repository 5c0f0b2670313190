#include "json/CanonicalMergedDocument.h"

#include "store/CanonicalDocument.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <QStringList>

namespace ProductEditor {

namespace {

const QString kId = QStringLiteral("id");

// The arrays whose entries regenerate one by one; all but the products are in id order.
const QVector<QStringList> &KeyedArrays()
{
    static const QVector<QStringList> paths{
        {QStringLiteral("features"), QStringLiteral("feature")},
        {QStringLiteral("extensions"), QStringLiteral("extension")},
        {QStringLiteral("extensions"), QStringLiteral("lic_coveradge"), QStringLiteral("export")},
        {QStringLiteral("extensions"), QStringLiteral("lic_coveradge"), QStringLiteral("import")},
        {QStringLiteral("products"), QStringLiteral("product")}};
    return paths;
}

bool IsProducts(const QStringList &path)
{
    return path.last() == QLatin1String("product");
}

QJsonValue At(const QJsonObject &document, const QStringList &path)
{
    QJsonValue value(document);
    for (const QString &key : path)
        value = value.toObject().value(key);
    return value;
}

QJsonObject WithAt(const QJsonObject &object, const QStringList &path, int depth, const QJsonValue &value)
{
    QJsonObject copy = object;
    const QString &key = path.at(depth);
    copy.insert(key, depth + 1 == path.size() ? value : WithAt(object.value(key).toObject(), path, depth + 1, value));
    return copy;
}

QString IdOf(const QJsonValue &entry)
{
    return entry.toObject().value(kId).toString();
}

// One keyed array of the merge: which entries are as ours has them.
struct KeyedArray
{
    QJsonArray merged;
    QVector<bool> unchanged; // per merged entry
    QSet<QString> mergedIds;
    QSet<QString> changedIds;

    KeyedArray(const QJsonArray &mergedEntries, const QJsonArray &oursEntries)
        : merged(mergedEntries)
    {
        QHash<QString, int> ours;
        for (int i = 0; i < oursEntries.size(); ++i) {
            const QJsonValue id = oursEntries.at(i).toObject().value(kId);
            // A repeated or non-string id is never taken as unchanged.
            if (id.isString())
                ours.insert(id.toString(), ours.contains(id.toString()) ? -1 : i);
        }
        QHash<QString, int> seen;
        unchanged.reserve(merged.size());
        for (const QJsonValue entry : merged) {
            const QJsonValue id = entry.toObject().value(kId);
            const int position = id.isString() ? ours.value(id.toString(), -1) : -1;
            const bool same = position >= 0 && ++seen[id.toString()] == 1 && oursEntries.at(position) == entry;
            unchanged.append(same);
            mergedIds.insert(IdOf(entry));
            if (!same)
                changedIds.insert(IdOf(entry));
        }
    }

    QJsonArray Changed() const
    {
        QJsonArray changed;
        for (int i = 0; i < merged.size(); ++i) {
            if (!unchanged.at(i))
                changed.append(merged.at(i));
        }
        return changed;
    }

    // Products keep the merged order; a regenerated product answers its changed one.
    QJsonArray SplicedProducts(const QJsonArray &regenerated) const
    {
        QJsonArray spliced;
        int next = 0;
        for (int i = 0; i < merged.size(); ++i) {
            if (unchanged.at(i))
                spliced.append(merged.at(i));
            else if (next < regenerated.size())
                spliced.append(regenerated.at(next++));
        }
        return spliced;
    }

    // The unchanged entries and the regenerated ones that belong, both in id order.
    QJsonArray SplicedById(const QJsonArray &regenerated) const
    {
        QJsonArray fresh;
        for (const QJsonValue entry : regenerated) {
            const QString id = IdOf(entry);
            if (changedIds.contains(id) || !mergedIds.contains(id))
                fresh.append(entry);
        }
        QJsonArray spliced;
        int f = 0;
        for (int i = 0; i < merged.size(); ++i) {
            if (!unchanged.at(i))
                continue;
            const QString id = IdOf(merged.at(i));
            for (; f < fresh.size() && IdOf(fresh.at(f)) < id; ++f)
                spliced.append(fresh.at(f));
            spliced.append(merged.at(i));
        }
        for (; f < fresh.size(); ++f)
            spliced.append(fresh.at(f));
        return spliced;
    }
};

} // namespace

QJsonObject CanonicalMergedDocument(const QJsonObject &merged, const QJsonObject &ours)
{
    if (CanonicalDocument::KindOf(merged) != CanonicalDocument::Products)
        return CanonicalDocument::CanonicalObject(merged);
    QVector<KeyedArray> arrays;
    QJsonObject reduced = merged;
    for (const QStringList &path : KeyedArrays()) {
        arrays.append(KeyedArray(At(merged, path).toArray(), At(ours, path).toArray()));
        reduced = WithAt(reduced, path, 0, arrays.last().Changed());
    }
    QJsonObject canonical = CanonicalDocument::CanonicalObject(reduced);
    for (int i = 0; i < arrays.size(); ++i) {
        const QStringList &path = KeyedArrays().at(i);
        const QJsonArray regenerated = At(canonical, path).toArray();
        canonical = WithAt(canonical, path, 0,
                           IsProducts(path) ? arrays.at(i).SplicedProducts(regenerated)
                                            : arrays.at(i).SplicedById(regenerated));
    }
    return canonical;
}

} // namespace ProductEditor
