#include "merge/CanonicalMergedDocument.h"

#include "merge/KeyedArrays.h"
#include "store/CanonicalDocument.h"
#include "store/CanonicalProductsCheck.h"
#include "store/DefinitionKeys.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <QStringList>

namespace ProductEditor {

namespace {

using namespace KeyedArrays;

// One keyed array of the merge: which entries are as ours has them. Each entry's id
// is read once; the few changed entries are the only ones looked at again.
struct KeyedArray
{
    QJsonArray merged;
    QVector<QString> ids;    // per merged entry
    QVector<bool> unchanged; // per merged entry
    QHash<QString, int> ours; // id -> position in ours, -1 for a repeated id
    QVector<bool> claimed;   // per ours entry: a merged entry with its id was seen
    QVector<bool> kept;      // per ours entry: the first such merged entry is unchanged
    QSet<QString> changedIds;

    KeyedArray(const QJsonArray &mergedEntries, const QJsonArray &oursEntries)
        : merged(mergedEntries)
        , claimed(oursEntries.size(), false)
        , kept(oursEntries.size(), false)
    {
        ours.reserve(oursEntries.size());
        for (int i = 0; i < oursEntries.size(); ++i) {
            const QJsonValue id = oursEntries.at(i).toObject().value(Keys::kId);
            // A repeated or non-string id is never taken as unchanged.
            if (id.isString()) {
                auto slot = ours.find(id.toString());
                if (slot == ours.end())
                    ours.insert(id.toString(), i);
                else
                    slot.value() = -1;
            }
        }
        ids.reserve(merged.size());
        unchanged.reserve(merged.size());
        for (const QJsonValue entry : merged) {
            const QJsonValue id = entry.toObject().value(Keys::kId);
            ids.append(id.toString());
            const int position = id.isString() ? ours.value(ids.last(), -1) : -1;
            // Only the first merged entry with an id may stand for ours' entry.
            const bool first = position >= 0 && !claimed.at(position);
            const bool same = first && oursEntries.at(position) == entry;
            if (first)
                claimed[position] = true;
            unchanged.append(same);
            if (same)
                kept[position] = true;
            else
                changedIds.insert(ids.last());
        }
    }

    // Whether an unchanged merged entry has the id.
    bool KeptId(const QString &id) const
    {
        const int position = ours.value(id, -1);
        return position >= 0 && kept.at(position);
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
            if (changedIds.contains(id) || !KeptId(id))
                fresh.append(entry);
        }
        QJsonArray spliced;
        int f = 0;
        for (int i = 0; i < merged.size(); ++i) {
            if (!unchanged.at(i))
                continue;
            for (; f < fresh.size() && IdOf(fresh.at(f)) < ids.at(i); ++f)
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
    for (const QStringList &path : Paths()) {
        arrays.append(KeyedArray(ValueAt(merged, path).toArray(), ValueAt(ours, path).toArray()));
        reduced = WithValueAt(reduced, path, arrays.last().Changed());
    }
    QJsonObject canonical = CanonicalDocument::CanonicalObject(reduced);
    for (int i = 0; i < arrays.size(); ++i) {
        const QStringList &path = Paths().at(i);
        const QJsonArray regenerated = ValueAt(canonical, path).toArray();
        canonical = WithValueAt(canonical, path,
                                IsIdOrdered(path) ? arrays.at(i).SplicedById(regenerated)
                                                  : arrays.at(i).SplicedProducts(regenerated));
    }
    // An entry kept as ours has it can stop fitting what the merge did around it: a
    // product still naming a feature the merge removed, or sharing its id with a changed
    // one. Then only regenerating the whole document is right.
    return IsCanonicalProductsDocument(canonical) ? canonical : CanonicalDocument::RegeneratedObject(merged);
}

} // namespace ProductEditor
