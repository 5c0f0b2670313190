#include "store/FeatureRecordsBuilder.h"

#include "store/RankedSets.h"
#include "store/SecondCore.h"

#include <QCborArray>
#include <QCborValue>
#include <QtEndian>

#include <algorithm>

namespace ProductEditor {

namespace {

const int kKeyUnits = 16; // code units an IdKey holds
const size_t kEntryBatch = 32;
// From this many features the sorting, grouping and sets are shared with a second core.
const size_t kSetsAside = 4096;

quint64 Mix(quint64 h)
{
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    return h;
}

// Up to four of the id's code units from the i-th on, the first in the lowest bits.
quint64 WordAt(const QString &id, int i, int count)
{
    const QChar *units = id.constData() + i;
    quint64 word = 0;
    for (int k = 0; k < count; ++k)
        word |= quint64(units[k].unicode()) << (16 * k);
    return word;
}

// Latin1 bytes widen to code units four at a time.
quint64 WordAt(QLatin1String id, int i, int count)
{
    const uchar *bytes = reinterpret_cast<const uchar *>(id.data()) + i;
    quint64 word = 0;
    if (count == 4) {
        word = qFromLittleEndian<quint32>(bytes);
    } else {
        for (int k = 0; k < count; ++k)
            word |= quint64(bytes[k]) << (8 * k);
    }
    word = (word | (word << 16)) & 0x0000FFFF0000FFFFULL;
    return (word | (word << 8)) & 0x00FF00FF00FF00FFULL;
}

// The units a key holds, for ids no longer than that.
struct KeyUnits
{
    const quint64 *prefix;
    quint32 length;
    int size() const { return int(length); }
};
quint64 WordAt(const KeyUnits &id, int i, int count)
{
    quint64 word = 0;
    for (int k = 0; k < count; ++k)
        word |= ((id.prefix[(i + k) / 4] >> (48 - 16 * ((i + k) % 4))) & 0xFFFF) << (16 * k);
    return word;
}

// The same four units with the first in the highest bits, as a key holds them.
quint64 FirstHighest(quint64 word)
{
    word = ((word & 0x0000FFFF0000FFFFULL) << 16) | ((word >> 16) & 0x0000FFFF0000FFFFULL);
    return (word << 32) | (word >> 32);
}

// The id's UTF-16 code units, four to a word, however the id came: an id from the
// text and the same id as a string hash alike.
template<typename Id>
quint64 HashOf(const Id &id)
{
    const int size = int(id.size());
    quint64 h = 0x9e3779b97f4a7c15ULL ^ quint64(size * 2);
    for (int i = 0; i < size; i += 4)
        h = Mix(h ^ WordAt(id, i, std::min(4, size - i))) * 0xc4ceb9fe1a85ec53ULL;
    return Mix(h);
}

void Prefetch(const void *address)
{
#if defined(__GNUC__)
    __builtin_prefetch(address);
#else
    Q_UNUSED(address);
#endif
}

} // namespace

FeatureRecordsBuilder::FeatureRecordsBuilder(int expectedFeatures)
{
    const size_t expected = size_t(std::max(expectedFeatures, 0));
    m_slots.resize(64);
    grow(expected);
    m_longIds.reserve(expected);
    m_keys.reserve(expected);
    m_records.reserve(expected);
}

template<typename Id>
FeatureRecordsBuilder::IdKey FeatureRecordsBuilder::KeyOf(const Id &id)
{
    IdKey key{{0, 0, 0, 0}, quint32(id.size()), 0};
    const int length = std::min(int(id.size()), kKeyUnits);
    for (int i = 0; i < length; i += 4)
        key.prefix[i / 4] = FirstHighest(WordAt(id, i, std::min(4, length - i)));
    return key;
}

// Short ids live in their keys only, so that no pass after the lookups reads the
// strings they came in, which lie wherever the document order put them.
QString FeatureRecordsBuilder::idOf(quint32 feature) const
{
    const IdKey &key = m_keys[feature];
    if (key.length > quint32(kKeyUnits))
        return m_longIds[feature];
    QString id(int(key.length), Qt::Uninitialized);
    QChar *units = id.data();
    for (int i = 0; i < int(key.length); ++i)
        units[i] = QChar(ushort(key.prefix[i / 4] >> (48 - 16 * (i % 4))));
    return id;
}

void FeatureRecordsBuilder::grow(size_t features)
{
    size_t capacity = m_slots.size();
    while (features * 2 > capacity)
        capacity *= 2;
    if (capacity == m_slots.size())
        return;
    std::vector<Slot> old(capacity);
    old.swap(m_slots);
    const size_t mask = m_slots.size() - 1;
    for (const Slot &slot : old) {
        if (!slot.feature)
            continue;
        const IdKey &key = m_keys[slot.feature - 1];
        const quint64 hash = key.length > quint32(kKeyUnits) ? HashOf(m_longIds[slot.feature - 1])
                                                             : HashOf(KeyUnits{key.prefix, key.length});
        size_t i = hash & mask;
        while (m_slots[i].feature)
            i = (i + 1) & mask;
        m_slots[i] = slot;
    }
}

// The table and the keys are small and flat: a lookup reads a slot and a key, and
// the id's characters only when it is longer than a key holds.
template<typename Id>
quint32 FeatureRecordsBuilder::featureFor(const IdKey &key, quint64 hash, const Id &id)
{
    grow(m_keys.size() + 1);
    const quint32 check = quint32(hash >> 32);
    const bool isLong = key.length > quint32(kKeyUnits);
    const size_t mask = m_slots.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        Slot &slot = m_slots[i];
        if (!slot.feature) {
            m_longIds.push_back(isLong ? QString(id) : QString());
            m_keys.push_back(key);
            m_records.emplace_back();
            slot = Slot{check, quint32(m_keys.size())};
            return slot.feature - 1;
        }
        if (slot.check != check)
            continue;
        const IdKey &known = m_keys[slot.feature - 1];
        if (known.length == key.length && std::equal(key.prefix, key.prefix + 4, known.prefix)
            && (!isLong || m_longIds[slot.feature - 1] == id))
            return slot.feature - 1;
    }
}

template<typename Id>
void FeatureRecordsBuilder::addPending(const Id &id, VantixFeatureData &&data)
{
    const quint64 hash = HashOf(id);
    Prefetch(&m_slots[hash & (m_slots.size() - 1)]);
    const IdKey key = KeyOf(id);
    m_pending.push_back(Pending{key, hash, key.length > quint32(kKeyUnits) ? QString(id) : QString(), std::move(data)});
    if (m_pending.size() == kEntryBatch)
        flushEntries();
}

void FeatureRecordsBuilder::addEntry(const QString &id, VantixFeatureData &&data) { addPending(id, std::move(data)); }

void FeatureRecordsBuilder::addEntry(QLatin1String id, VantixFeatureData &&data) { addPending(id, std::move(data)); }

// Entries wait in small batches, so their slots are asked for before they are needed.
void FeatureRecordsBuilder::flushEntries()
{
    for (Pending &entry : m_pending)
        m_records[featureFor(entry.key, entry.hash, entry.longId)] = std::move(entry.data);
    m_pending.clear();
}

void FeatureRecordsBuilder::addProductMembers(const QCborArray &featureIds, int owner)
{
    addMembers(featureIds, owner, m_productMembers);
}

void FeatureRecordsBuilder::addMembers(const QCborArray &featureIds, int owner, std::vector<Member> &into)
{
    m_names.clear();
    for (const QCborValue &featureId : featureIds)
        m_names.push_back(featureId.toString());
    lookUpNames(m_names, owner, into);
}

void FeatureRecordsBuilder::addProductMembers(std::vector<QLatin1String> &featureIds, int owner)
{
    lookUpNames(featureIds, owner, m_productMembers);
    featureIds.clear();
}

FeatureRecordsBuilder::PreparedIds FeatureRecordsBuilder::Prepare(std::vector<QString> &&ids)
{
    PreparedIds prepared;
    prepared.hashes.reserve(ids.size());
    prepared.keys.reserve(ids.size());
    for (const QString &id : ids) {
        prepared.hashes.push_back(HashOf(id));
        prepared.keys.push_back(KeyOf(id));
    }
    prepared.ids = std::move(ids);
    return prepared;
}

void FeatureRecordsBuilder::addLayoutMembers(const PreparedIds &featureIds, int owner)
{
    flushEntries();
    lookUpPrepared(featureIds.ids, featureIds.hashes, featureIds.keys, owner, m_layoutMembers);
}

template<typename Id>
void FeatureRecordsBuilder::lookUpNames(const std::vector<Id> &names, int owner, std::vector<Member> &into)
{
    flushEntries();
    m_hashes.clear();
    m_nameKeys.clear();
    for (const Id &name : names) {
        m_hashes.push_back(HashOf(name));
        m_nameKeys.push_back(KeyOf(name));
    }
    lookUpPrepared(names, m_hashes, m_nameKeys, owner, into);
}

// One owner's list at a time: every name's slot is asked for first and each
// candidate's key next, so the lookups wait for memory together instead of in turn.
template<typename Id>
void FeatureRecordsBuilder::lookUpPrepared(const std::vector<Id> &names, const std::vector<quint64> &hashes,
                                           const std::vector<IdKey> &keys, int owner, std::vector<Member> &into)
{
    grow(m_keys.size() + names.size());
    const size_t mask = m_slots.size() - 1;
    for (const quint64 hash : hashes)
        Prefetch(&m_slots[hash & mask]);
    for (const quint64 hash : hashes) {
        const Slot &slot = m_slots[hash & mask];
        if (slot.feature)
            Prefetch(&m_keys[slot.feature - 1]);
    }
    for (size_t i = 0; i < names.size(); ++i)
        into.push_back(Member{featureFor(keys[i], hashes[i], names[i]), quint32(owner)});
}

std::vector<quint32> FeatureRecordsBuilder::idOrder() const
{
    std::vector<IdKey> keys = m_keys;
    for (size_t i = 0; i < keys.size(); ++i)
        keys[i].feature = quint32(i);
    // Keys that agree in every unit they hold differ in length, or else in the rest
    // of two long ids.
    const auto less = [this](const IdKey &a, const IdKey &b) {
        for (int i = 0; i < 4; ++i) {
            if (a.prefix[i] != b.prefix[i])
                return a.prefix[i] < b.prefix[i];
        }
        if (a.length > quint32(kKeyUnits) && b.length > quint32(kKeyUnits))
            return m_longIds[a.feature] < m_longIds[b.feature];
        return a.length < b.length;
    };
    // Each core sorts a half, and the halves are merged.
    const auto half = keys.begin() + std::ptrdiff_t(keys.size() / 2);
    std::future<void> upper = RunAside([&] { std::sort(half, keys.end(), less); }, keys.size() >= kSetsAside);
    std::sort(keys.begin(), half, less);
    upper.get();
    std::inplace_merge(keys.begin(), half, keys.end(), less);
    std::vector<quint32> order;
    order.reserve(keys.size());
    for (const IdKey &key : keys)
        order.push_back(key.feature);
    return order;
}


void FeatureRecordsBuilder::build(QMap<QString, VantixFeatureData> &features, const QVector<QString> &productNames,
                                  const QVector<QString> &layoutNames)
{
    flushEntries();
    const std::vector<quint32> order = idOrder();
    std::vector<quint32> rankOf(order.size());
    for (size_t r = 0; r < order.size(); ++r)
        rankOf[order[r]] = quint32(r);
    RankedSets::Groups layouts;
    std::future<void> layoutsGrouped =
        RunAside([&] { layouts = RankedSets::Group(m_layoutMembers, rankOf); }, order.size() >= kSetsAside);
    const RankedSets::Groups products = RankedSets::Group(m_productMembers, rankOf);
    layoutsGrouped.get();
    m_productMembers = {};
    m_layoutMembers = {};
    m_slots = {};

    // The sets are made beside the records, by rank, and given to them at the end.
    RankedSets sets(products, layouts, productNames, layoutNames);
    std::future<void> aside = RunAside([&sets] { sets.fill(); }, order.size() >= kSetsAside);
    // In ascending order every node goes in at the end, where the hint puts it.
    for (size_t r = 0; r < order.size(); ++r) {
        // The records were made in document order; ask for them a little ahead.
        if (r + 8 < order.size()) {
            Prefetch(&m_records[order[r + 8]]);
            Prefetch(&m_keys[order[r + 8]]);
        }
        const quint32 feature = order[r];
        features.insert(features.cend(), idOf(feature), VantixFeatureData()).value() = std::move(m_records[feature]);
    }
    sets.fill();
    aside.get();
    size_t rank = 0;
    for (auto it = features.begin(); it != features.end(); ++it, ++rank) {
        it->productIds = std::move(sets.products[rank]);
        it->layoutNames = std::move(sets.layouts[rank]);
    }
    m_longIds = {};
    m_keys = {};
    m_records = {};
}

} // namespace ProductEditor
