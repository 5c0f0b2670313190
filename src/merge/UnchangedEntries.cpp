#include "merge/UnchangedEntries.h"

#include "merge/KeyedArrays.h"
#include "store/DefinitionKeys.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <utility>

namespace ProductEditor {

using namespace KeyedArrays;

namespace {

// All three versions, as the bits 1 << side.
const int kEverywhere = (1 << UnchangedEntries::Base) | (1 << UnchangedEntries::Ours) | (1 << UnchangedEntries::Theirs);

// One version's walk along an id-ordered array. An entry's id is read only when its
// entry differs from the other versions'; the order is checked for every entry.
class OrderedCursor
{
public:
    explicit OrderedCursor(const QJsonArray &entries)
        : m_entries(entries)
    {
    }

    bool AtEnd() const { return m_at >= m_entries.size(); }
    int At() const { return m_at; }
    QJsonValue Entry() const { return m_entries.at(m_at); }

    // False when the id is not a string.
    bool Id(QString &id)
    {
        if (!m_known) {
            const QJsonValue value = Entry().toObject().value(Keys::kId);
            if (!value.isString())
                return false;
            m_id = value.toString();
            m_known = true;
        }
        id = m_id;
        return true;
    }

    // Past the entry whose id is `id`; false when that id is not above the one before.
    bool Next(const QString &id)
    {
        if (m_at > 0 && !(m_last < id))
            return false;
        m_last = id;
        m_known = false;
        ++m_at;
        return true;
    }

private:
    const QJsonArray &m_entries;
    int m_at = 0;
    QString m_id;
    bool m_known = false;
    QString m_last;
};

// Position of each product id, or empty when an id is not a string or comes twice.
QHash<QString, int> ProductPositions(const QJsonArray &entries)
{
    QHash<QString, int> positions;
    for (int i = 0; i < entries.size(); ++i) {
        const QJsonValue id = entries.at(i).toObject().value(Keys::kId);
        if (!id.isString() || positions.contains(id.toString()))
            return {};
        positions.insert(id.toString(), i);
    }
    return positions;
}

// Position of each id, -1 for an id used more than once; false when an id is not a string.
bool IdPositions(const QJsonArray &entries, QHash<QString, int> &positions)
{
    positions.reserve(entries.size());
    for (int i = 0; i < entries.size(); ++i) {
        const QJsonValue id = entries.at(i).toObject().value(Keys::kId);
        if (!id.isString())
            return false;
        auto slot = positions.find(id.toString());
        if (slot == positions.end())
            positions.insert(id.toString(), i);
        else
            slot.value() = -1;
    }
    return true;
}

// Whether the three versions hold the same entry where they stand.
bool Alike(OrderedCursor *cursors)
{
    using Side = UnchangedEntries::Side;
    const OrderedCursor &base = cursors[Side::Base];
    const OrderedCursor &ours = cursors[Side::Ours];
    const OrderedCursor &theirs = cursors[Side::Theirs];
    return !base.AtEnd() && !ours.AtEnd() && !theirs.AtEnd() && ours.Entry() == base.Entry()
        && ours.Entry() == theirs.Entry();
}

// The least id where the versions stand, and which of them stand at it (bit 1 << side);
// false when an id is not a string.
bool LeastId(OrderedCursor *cursors, QString &least, int &holders)
{
    QString ids[3];
    int present = 0;
    for (int side = 0; side < 3; ++side) {
        if (cursors[side].AtEnd())
            continue;
        if (!cursors[side].Id(ids[side]))
            return false;
        if (present++ == 0 || ids[side] < least)
            least = ids[side];
    }
    holders = 0;
    for (int side = 0; side < 3; ++side)
        holders |= !cursors[side].AtEnd() && ids[side] == least ? 1 << side : 0;
    return true;
}

} // namespace

bool UnchangedEntries::Find(const QJsonObject &base, const QJsonObject &ours, const QJsonObject &theirs)
{
    m_arrays.clear();
    m_sharedExtensions.clear();
    m_removedFeatures.clear();
    for (const QStringList &path : Paths()) {
        QJsonArray entries[3];
        bool arrays = true;
        for (int side = Base; side <= Theirs; ++side) {
            const QJsonValue value = ValueAt(side == Base ? base : side == Ours ? ours : theirs, path);
            arrays = arrays && value.isArray();
            entries[side] = value.toArray();
        }
        if (!arrays)
            continue;
        Array array;
        array.path = path;
        for (int side = Base; side <= Theirs; ++side)
            array.unchanged[side].fill(false, entries[side].size());
        if (!IsIdOrdered(path))
            _FindProducts(array, entries);
        else if (!_FindOrdered(array, entries) && !_FindUnordered(array, entries))
            return false;
        m_arrays.append(array);
    }
    return true;
}

// Walks the three id-ordered arrays side by side, as a merge of sorted lists.
bool UnchangedEntries::_FindOrdered(Array &array, const QJsonArray *entries)
{
    OrderedCursor cursors[3] = {OrderedCursor(entries[Base]), OrderedCursor(entries[Ours]),
                                OrderedCursor(entries[Theirs])};
    // A version out of order shows only where its cursor moves, which one that lags far
    // behind may not do for long; so many differences are no longer worth walking.
    int differences = qMax(64, entries[Ours].size() / 8);
    while (!cursors[Base].AtEnd() || !cursors[Ours].AtEnd() || !cursors[Theirs].AtEnd()) {
        QString id;
        if (Alike(cursors)) {
            if (!cursors[Ours].Id(id))
                return false;
            _NoteHolders(array, id, kEverywhere);
            if (_Usable(array, cursors[Ours].Entry())) {
                const int at[3] = {cursors[Base].At(), cursors[Ours].At(), cursors[Theirs].At()};
                array.ids.append(id);
                _Keep(array, entries, at);
            }
            for (OrderedCursor &cursor : cursors) {
                if (!cursor.Next(id))
                    return false;
            }
            continue;
        }
        int holders = 0;
        if (--differences < 0 || !LeastId(cursors, id, holders))
            return false;
        _NoteHolders(array, id, holders);
        for (OrderedCursor &cursor : cursors) {
            QString here;
            if (!cursor.AtEnd() && cursor.Id(here) && here == id && !cursor.Next(id))
                return false;
        }
    }
    return true;
}

void UnchangedEntries::_FindProducts(Array &array, const QJsonArray *entries)
{
    QHash<QString, int> positions[3];
    for (int side = Base; side <= Theirs; ++side) {
        positions[side] = ProductPositions(entries[side]);
        if (positions[side].size() != entries[side].size())
            return; // repeated ids: every product takes part in the merge
    }
    _FindProductsLead(entries);
    for (auto it = positions[Ours].cbegin(); it != positions[Ours].cend(); ++it) {
        const int at[3] = {positions[Base].value(it.key(), -1), it.value(), positions[Theirs].value(it.key(), -1)};
        const QJsonValue kept = entries[Ours].at(at[Ours]);
        if (at[Base] >= 0 && at[Theirs] >= 0 && kept == entries[Base].at(at[Base])
            && kept == entries[Theirs].at(at[Theirs]) && _Usable(array, kept))
            array.unchanged[Base][at[Base]] = array.unchanged[Ours][at[Ours]] = array.unchanged[Theirs][at[Theirs]] =
                true;
    }
    // The unchanged products go back in ours' order.
    for (int i = 0; i < entries[Ours].size(); ++i) {
        if (array.unchanged[Ours].at(i)) {
            array.ids.append(IdOf(entries[Ours].at(i)));
            array.entries.append(entries[Ours].at(i));
        }
    }
}

// The same where a version keeps the array out of order, as a hand edit may leave it:
// entries are matched by id through a hash, and the unchanged ones are put in id order,
// which is where they go back. False when an id is not a string.
bool UnchangedEntries::_FindUnordered(Array &array, const QJsonArray *entries)
{
    // What the side by side walk noted before it stopped.
    array.ids.clear();
    array.entries = QJsonArray();
    for (int side = Base; side <= Theirs; ++side)
        array.unchanged[side].fill(false);
    (IsFeatures(array.path) ? m_removedFeatures : m_sharedExtensions).clear();

    QHash<QString, int> positions[3];
    for (int side = Base; side <= Theirs; ++side) {
        if (!IdPositions(entries[side], positions[side]))
            return false;
    }
    // What is noted of ids is about those of the base: removed features, shared extensions.
    for (auto it = positions[Base].cbegin(); it != positions[Base].cend(); ++it) {
        const int holders = (1 << Base) | (positions[Ours].contains(it.key()) ? 1 << Ours : 0)
            | (positions[Theirs].contains(it.key()) ? 1 << Theirs : 0);
        _NoteHolders(array, it.key(), holders);
    }
    QVector<std::pair<QString, std::array<int, 3>>> kept;
    for (auto it = positions[Ours].cbegin(); it != positions[Ours].cend(); ++it) {
        const std::array<int, 3> at{positions[Base].value(it.key(), -1), it.value(),
                                    positions[Theirs].value(it.key(), -1)};
        if (at[Base] < 0 || at[Ours] < 0 || at[Theirs] < 0)
            continue;
        const QJsonValue entry = entries[Ours].at(at[Ours]);
        if (entry == entries[Base].at(at[Base]) && entry == entries[Theirs].at(at[Theirs]) && _Usable(array, entry))
            kept.append({it.key(), at});
    }
    std::sort(kept.begin(), kept.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    for (const auto &entry : kept) {
        array.ids.append(entry.first);
        _Keep(array, entries, entry.second.data());
    }
    return true;
}

// The merge takes a whole array from one side when the other left it as the base has it,
// and otherwise keeps ours' order with theirs' new products after; the order of the
// result follows the same version.
void UnchangedEntries::_FindProductsLead(const QJsonArray *entries)
{
    const bool theirs = entries[Ours] != entries[Theirs] && entries[Base] == entries[Ours];
    m_productsLead = theirs ? Theirs : Ours;
    m_leadProducts = entries[m_productsLead];
}

// An entry that names a record some version lacks can only be set aside when
// regenerating that version, which would give it a stand-in for the record, changes
// nothing the merge weighs. A feature's stand-in holds only its id, which the merge weighs
// as no feature at all, except where a side removed the feature and the other changed
// it. An extension's stand-in holds default values, which the merge always weighs, so
// coverage is set aside only for extensions that all three versions hold.
void UnchangedEntries::_NoteHolders(const Array &array, const QString &id, int holders)
{
    if (IsExtensions(array.path) && holders == kEverywhere)
        m_sharedExtensions.insert(id);
    if (IsFeatures(array.path) && (holders & (1 << Base)) && holders != kEverywhere)
        m_removedFeatures.insert(id);
}

bool UnchangedEntries::_Usable(const Array &array, const QJsonValue &entry) const
{
    if (IsCoverage(array.path))
        return m_sharedExtensions.contains(IdOf(entry));
    if (IsIdOrdered(array.path) || m_removedFeatures.isEmpty())
        return true;
    const QJsonArray named = entry.toObject().value(Keys::kFeatures).toArray();
    return std::none_of(named.begin(), named.end(),
                        [this](const QJsonValue &id) { return m_removedFeatures.contains(id.toString()); });
}

void UnchangedEntries::_Keep(Array &array, const QJsonArray *entries, const int *at)
{
    for (int side = Base; side <= Theirs; ++side)
        array.unchanged[side][at[side]] = true;
    array.entries.append(entries[Ours].at(at[Ours]));
}

QJsonObject UnchangedEntries::Without(Side side, const QJsonObject &document) const
{
    QJsonObject reduced = document;
    for (const Array &array : m_arrays) {
        const QJsonArray entries = ValueAt(document, array.path).toArray();
        QJsonArray rest;
        for (int i = 0; i < entries.size(); ++i) {
            if (!array.unchanged[side].at(i))
                rest.append(entries.at(i));
        }
        reduced = WithValueAt(reduced, array.path, rest);
    }
    return reduced;
}

QJsonObject UnchangedEntries::With(const QJsonObject &merged) const
{
    QJsonObject whole = merged;
    for (const Array &array : m_arrays) {
        if (array.entries.isEmpty())
            continue;
        const QJsonArray mergedEntries = ValueAt(merged, array.path).toArray();
        QJsonArray entries;
        if (IsIdOrdered(array.path))
            entries = _WithOrdered(array, mergedEntries);
        else if (!_WithProducts(array, mergedEntries, entries))
            return QJsonObject();
        whole = WithValueAt(whole, array.path, entries);
    }
    return whole;
}

// Both lists are in id order. A merged entry under an unchanged id is a stand-in that
// regenerating a reduced version made for a name it could not find; the entry wins.
QJsonArray UnchangedEntries::_WithOrdered(const Array &array, const QJsonArray &merged) const
{
    QJsonArray whole;
    int next = 0;
    for (const QJsonValue entry : merged) {
        const QString id = IdOf(entry);
        const int at = int(std::lower_bound(array.ids.begin(), array.ids.end(), id) - array.ids.begin());
        for (; next < at; ++next)
            whole.append(array.entries.at(next));
        if (at < array.ids.size() && array.ids.at(at) == id)
            continue;
        whole.append(entry);
    }
    for (; next < array.entries.size(); ++next)
        whole.append(array.entries.at(next));
    return whole;
}

// The leading version's products keep its order, unchanged or merged; the other's new
// ones follow. False when the merged products cannot be told apart by id.
bool UnchangedEntries::_WithProducts(const Array &array, const QJsonArray &merged, QJsonArray &whole) const
{
    const QHash<QString, int> positions = ProductPositions(merged);
    if (positions.size() != merged.size())
        return false;
    QVector<bool> placed(merged.size(), false);
    const QJsonArray &lead = m_leadProducts;
    for (int i = 0; i < lead.size(); ++i) {
        if (array.unchanged[m_productsLead].at(i)) {
            whole.append(lead.at(i));
            continue;
        }
        const int at = positions.value(IdOf(lead.at(i)), -1);
        if (at >= 0 && !placed.at(at)) {
            whole.append(merged.at(at));
            placed[at] = true;
        }
    }
    for (int i = 0; i < merged.size(); ++i) {
        if (!placed.at(i))
            whole.append(merged.at(i));
    }
    return true;
}

} // namespace ProductEditor
