#include "store/RecordComparison.h"

#include "store/BlankRecord.h"
#include "store/DefinitionKeys.h"
#include "store/FollowingChanges.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace ProductEditor {

namespace {

using Record = RecordChange::Record;
using Kind = RecordChange::Kind;

// Record comparisons spent looking for renames and duplicates, per kind of record:
// enough to scan a hundred thousand features for the source of a few copies.
constexpr int kCopySearchBudget = 400000;

QStringList SortedMinus(const QSet<QString> &set, const QSet<QString> &other)
{
    QStringList names;
    for (const QString &name : set) {
        if (!other.contains(name))
            names.append(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Whether two implicitly shared containers hold the very same data. Comparing their
// own bytes (the pointers to that data) reads nothing behind them, which keeps the
// walk over records an edit did not touch out of the cache misses a comparison of
// the contents would take.
template <typename Container>
bool SameData(const Container &a, const Container &b)
{
    return std::memcmp(static_cast<const void *>(&a), static_cast<const void *>(&b), sizeof(Container)) == 0;
}

// The changes of one record, field by field; without a list it only tells whether
// the two records differ.
class RecordDiff
{
public:
    RecordDiff(RecordChanges *out, Record record, const QString &id)
        : m_out(out)
        , m_record(record)
        , m_id(id)
    {
    }

    bool differs() const { return m_differs; }

    void Value(const QString &field, const QString &before, const QString &after)
    {
        if (!SameData(before, after) && before != after)
            Add(Kind::Changed, field, before, after);
    }

    void Flag(const QString &field, bool before, bool after)
    {
        if (before != after)
            Add(Kind::Changed, field, BoolText(before), BoolText(after));
    }

    void Names(const QString &field, const QSet<QString> &before, const QSet<QString> &after,
               const QString &entry = QString())
    {
        if (SameData(before, after) || before == after)
            return;
        m_differs = true;
        if (!m_out)
            return;
        for (const QString &name : SortedMinus(after, before))
            Add(Kind::Gained, field, QString(), name, entry);
        for (const QString &name : SortedMinus(before, after))
            Add(Kind::Lost, field, name, QString(), entry);
    }

private:
    static QString BoolText(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

    void Add(Kind kind, const QString &field, const QString &before, const QString &after,
             const QString &entry = QString())
    {
        m_differs = true;
        if (!m_out)
            return;
        RecordChange change(m_record, kind, m_id);
        change.field = field;
        change.entry = entry;
        change.before = before;
        change.after = after;
        m_out->append(change);
    }

    RecordChanges *m_out; // not owned; null when only asked whether the records differ
    Record m_record;
    const QString &m_id;
    bool m_differs = false;
};

// A feature keeps its identity through a new id when its texts and flags stay: what
// it is offered in may change in the same step. A feature with no title says too
// little to be recognised that way.
void DiffFeatureIdentity(RecordDiff &diff, const VantixFeatureData &a, const VantixFeatureData &b)
{
    diff.Value(Keys::kTitle, a.title, b.title);
    diff.Value(Keys::kTooltip, a.tooltip, b.tooltip);
    diff.Value(Keys::kStatustip, a.statustip, b.statustip);
    diff.Flag(Keys::kVisual, a.visual, b.visual);
    diff.Flag(Keys::kEmergency, a.emergency, b.emergency);
}

void DiffFeature(RecordDiff &diff, const VantixFeatureData &a, const VantixFeatureData &b)
{
    DiffFeatureIdentity(diff, a, b);
    diff.Names(Keys::kProducts, a.productIds, b.productIds);
    diff.Names(Keys::kLayouts, a.layoutNames, b.layoutNames);
}

void DiffAccess(RecordDiff &diff, const ExtensionAccess &a, const ExtensionAccess &b)
{
    diff.Names(Keys::kOpen, a.open, b.open);
    diff.Names(Keys::kImport, a.import, b.import);
    diff.Names(Keys::kImportAsProject, a.import_as_project, b.import_as_project);
    diff.Names(Keys::kExport, a.export_, b.export_);
    diff.Names(Keys::kExportAsProject, a.export_as_project, b.export_as_project);
    diff.Names(Keys::kExportAsScene, a.export_as_scene, b.export_as_scene);
}

void DiffLayout(RecordDiff &diff, const LayoutData &a, const LayoutData &b)
{
    DiffAccess(diff, a, b);
}

void DiffProduct(RecordDiff &diff, const ProductData &a, const ProductData &b)
{
    diff.Value(Keys::kBase, a.base, b.base);
    diff.Value(Keys::kProfileSuffix, a.profile_suffix, b.profile_suffix);
    diff.Names(Keys::kModes, a.modes, b.modes);
    DiffAccess(diff, a.extensions, b.extensions);
    if (a.specificLicenses == b.specificLicenses)
        return;
    QStringList entries = a.specificLicenses.keys() + b.specificLicenses.keys();
    std::sort(entries.begin(), entries.end());
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    for (const QString &entry : entries)
        diff.Names(Keys::kSpecific, a.specificLicenses.value(entry), b.specificLicenses.value(entry), entry);
}

void DiffLicense(RecordDiff &diff, const QString &a, const QString &b)
{
    diff.Value(QStringLiteral("text"), a, b);
}

void DiffExtension(RecordDiff &diff, const ExtensionInfo &a, const ExtensionInfo &b)
{
    diff.Value(Keys::kTitle, a.title, b.title);
    diff.Value(Keys::kExt, a.ext, b.ext);
    diff.Flag(Keys::kSlicesSupport, a.slices_support, b.slices_support);
    diff.Flag(Keys::kCadSupport, a.cad_support, b.cad_support);
    diff.Flag(Keys::kLoadAsPart, a.load_as_part, b.load_as_part);
    diff.Flag(Keys::kMultiplePartsSupport, a.multiple_parts_support, b.multiple_parts_support);
    diff.Names(Keys::kImport, a.importLicenses, b.importLicenses);
    diff.Names(Keys::kExport, a.exportLicenses, b.exportLicenses);
}

// The records of one kind on both sides, and how two of them compare.
template <typename Value>
class KindComparison
{
public:
    using Diff = void (*)(RecordDiff &, const Value &, const Value &);

    // `identity`, when given, compares what must stay for a record under a new id to
    // be the old one renamed, once records equal in everything are paired.
    KindComparison(Record record, const QMap<QString, Value> &before, const QMap<QString, Value> &after, Diff diff,
                   Diff identity)
        : m_record(record)
        , m_before(before)
        , m_after(after)
        , m_diff(diff)
        , m_identity(identity)
    {
    }

    RecordChanges Run()
    {
        RecordChanges changes;
        if (m_before.isSharedWith(m_after))
            return changes;
        auto left = m_before.cbegin(), right = m_after.cbegin();
        while (left != m_before.cend() || right != m_after.cend()) {
            const int order = left == m_before.cend()  ? 1
                              : right == m_after.cend() ? -1
                              : SameData(left.key(), right.key()) ? 0
                                                                  : QString::compare(left.key(), right.key());
            if (order < 0) {
                changes.append(RecordChange(m_record, Kind::Removed, left.key()));
                ++left;
            } else if (order > 0) {
                changes.append(RecordChange(m_record, Kind::Added, right.key()));
                ++right;
            } else {
                RecordDiff diff(&changes, m_record, left.key());
                m_diff(diff, left.value(), right.value());
                ++left;
                ++right;
            }
        }
        MatchCopies(changes);
        return WithContent(changes);
    }

private:
    bool Same(const Value &a, const Value &b, Diff diff)
    {
        --m_budget;
        RecordDiff probe(nullptr, m_record, m_probeId);
        diff(probe, a, b);
        return !probe.differs();
    }

    // Pairs removed and added records as renames: first those equal in everything,
    // then those equal in their identity. Then names the record each remaining
    // addition copies.
    void MatchCopies(RecordChanges &changes)
    {
        QVector<int> added, removed;
        for (int i = 0; i < changes.size(); ++i) {
            if (changes.at(i).kind == Kind::Added)
                added.append(i);
            else if (changes.at(i).kind == Kind::Removed)
                removed.append(i);
        }
        if (added.isEmpty())
            return;
        m_dropped = QVector<bool>(changes.size(), false);
        PairRenames(changes, added, removed, m_diff);
        if (m_identity)
            PairRenames(changes, added, removed, m_identity);
        for (int a : added) {
            if (!m_dropped.at(a))
                changes[a].before = SourceOf(changes.at(a).id, *m_after.constFind(changes.at(a).id));
        }
    }

    void PairRenames(RecordChanges &changes, const QVector<int> &added, const QVector<int> &removed, Diff diff)
    {
        for (int a : added) {
            if (m_dropped.at(a))
                continue;
            const Value &record = *m_after.constFind(changes.at(a).id);
            if (diff == m_identity && TitleOf(record).isEmpty())
                continue;
            for (int r : removed) {
                if (m_budget <= 0)
                    return;
                RecordChange &old = changes[r];
                if (old.kind != Kind::Removed || !Same(*m_before.constFind(old.id), record, diff))
                    continue;
                old.kind = Kind::Renamed;
                old.after = changes.at(a).id;
                m_dropped[a] = true;
                break;
            }
        }
    }

    // The list without the additions that became renames, each removed record with its
    // title, each added one with its title and content, each renamed one with what
    // else changed.
    RecordChanges WithContent(const RecordChanges &changes) const
    {
        RecordChanges out;
        out.reserve(changes.size());
        for (int i = 0; i < changes.size(); ++i) {
            if (i < m_dropped.size() && m_dropped.at(i))
                continue;
            RecordChange change = changes.at(i);
            if (change.kind == Kind::Removed) {
                change.title = TitleOf(*m_before.constFind(change.id));
                out.append(change);
            } else if (change.kind == Kind::Added) {
                const Value &record = *m_after.constFind(change.id);
                change.title = TitleOf(record);
                out.append(change);
                RecordDiff diff(&out, m_record, change.id);
                m_diff(diff, BlankWithTitle<Value>(change.title), record);
            } else if (change.kind == Kind::Renamed) {
                out.append(change);
                RecordDiff diff(&out, m_record, change.after);
                m_diff(diff, *m_before.constFind(change.id), *m_after.constFind(change.after));
            } else {
                out.append(change);
            }
        }
        return out;
    }

    QString SourceOf(const QString &id, const Value &record)
    {
        // Two catalogue entries may share a text without one copying the other, and a
        // new blank record copies nothing.
        if (m_record == Record::License || Same(record, Value(), m_diff))
            return QString();
        for (auto it = m_after.cbegin(); it != m_after.cend() && m_budget > 0; ++it) {
            if (it.key() != id && m_before.contains(it.key()) && Same(it.value(), record, m_diff))
                return it.key();
        }
        return QString();
    }

    Record m_record;
    const QMap<QString, Value> &m_before;
    const QMap<QString, Value> &m_after;
    Diff m_diff;
    Diff m_identity;
    int m_budget = kCopySearchBudget;
    QVector<bool> m_dropped; // additions paired with a removal as its new id
    const QString m_probeId;
};

template <typename Value>
RecordChanges CompareKind(Record record, const QMap<QString, Value> &before, const QMap<QString, Value> &after,
                          typename KindComparison<Value>::Diff diff,
                          typename KindComparison<Value>::Diff identity = nullptr)
{
    return KindComparison<Value>(record, before, after, diff, identity).Run();
}

QMap<QString, ProductData> ProductsById(const VantixProducts &products)
{
    QMap<QString, ProductData> byId;
    for (const ProductData &product : products.products) {
        if (!byId.contains(product.id))
            byId.insert(product.id, product);
    }
    return byId;
}

} // namespace

RecordChanges CompareRecords(const RecordsSnapshot &before, const RecordsSnapshot &after)
{
    RecordChanges features =
        CompareKind(Record::Feature, before.features, after.features, &DiffFeature, &DiffFeatureIdentity);
    RecordChanges products;
    if (!before.products.products.isSharedWith(after.products.products))
        products = CompareKind(Record::Product, ProductsById(before.products), ProductsById(after.products),
                               &DiffProduct);
    RecordChanges layouts = CompareKind(Record::Layout, before.layouts, after.layouts, &DiffLayout);
    NameCoveringLicenses(products, before.extensions, after.extensions);
    NameCoveringLicenses(layouts, before.extensions, after.extensions);

    RecordChanges all = features + products + layouts;
    all += CompareKind(Record::License, before.licenses, after.licenses, &DiffLicense);
    all += CompareKind(Record::Extension, before.extensions, after.extensions, &DiffExtension);
    return all;
}

} // namespace ProductEditor
