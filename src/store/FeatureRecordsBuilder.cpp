#include "store/FeatureRecordsBuilder.h"

#include "store/OwnerSets.h"

#include <QCborArray>
#include <QCborValue>

#include <algorithm>
#include <cstring>

namespace ProductEditor {

namespace {

const int kKeyUnits = 16; // code units an IdKey holds
const size_t kEntryBatch = 32;

quint64 Mix(quint64 h)
{
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    return h;
}

// The id's UTF-16 code units, eight bytes at a time.
quint64 HashOf(const QString &id)
{
    const char *bytes = reinterpret_cast<const char *>(id.constData());
    size_t left = size_t(id.size()) * 2;
    quint64 h = 0x9e3779b97f4a7c15ULL ^ left;
    for (; left >= 8; bytes += 8, left -= 8) {
        quint64 word;
        std::memcpy(&word, bytes, 8);
        h = Mix(h ^ word) * 0xc4ceb9fe1a85ec53ULL;
    }
    if (left) {
        quint64 word = 0;
        std::memcpy(&word, bytes, left);
        h = Mix(h ^ word) * 0xc4ceb9fe1a85ec53ULL;
    }
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

FeatureRecordsBuilder::IdKey FeatureRecordsBuilder::KeyOf(const QString &id)
{
    IdKey key{{0, 0, 0, 0}, quint32(id.size()), 0};
    const QChar *units = id.constData();
    const int length = int(std::min<qsizetype>(id.size(), kKeyUnits));
    for (int i = 0; i < length; ++i)
        key.prefix[i / 4] |= quint64(units[i].unicode()) << (48 - 16 * (i % 4));
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
        size_t i = HashOf(idOf(slot.feature - 1)) & mask;
        while (m_slots[i].feature)
            i = (i + 1) & mask;
        m_slots[i] = slot;
    }
}

// The table and the keys are small and flat: a lookup reads a slot and a key, and
// the id's characters only when it is longer than a key holds.
quint32 FeatureRecordsBuilder::featureFor(const QString &id, quint64 hash)
{
    grow(m_keys.size() + 1);
    const quint32 check = quint32(hash >> 32);
    const IdKey key = KeyOf(id);
    const bool isLong = key.length > quint32(kKeyUnits);
    const size_t mask = m_slots.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        Slot &slot = m_slots[i];
        if (!slot.feature) {
            m_longIds.push_back(isLong ? id : QString());
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

void FeatureRecordsBuilder::addEntry(QString id, VantixFeatureData &&data)
{
    const quint64 hash = HashOf(id);
    Prefetch(&m_slots[hash & (m_slots.size() - 1)]);
    m_pending.push_back(Pending{std::move(id), hash, std::move(data)});
    if (m_pending.size() == kEntryBatch)
        flushEntries();
}

// Entries wait in small batches, so their slots are asked for before they are needed.
void FeatureRecordsBuilder::flushEntries()
{
    for (Pending &entry : m_pending)
        m_records[featureFor(entry.id, entry.hash)] = std::move(entry.data);
    m_pending.clear();
}

void FeatureRecordsBuilder::addProductMembers(const QCborArray &featureIds, int owner)
{
    addMembers(featureIds, owner, m_productMembers);
}

void FeatureRecordsBuilder::addLayoutMembers(const QCborArray &featureIds, int owner)
{
    addMembers(featureIds, owner, m_layoutMembers);
}

// One owner's list at a time: every name's slot is asked for first and each
// candidate's key next, so the lookups wait for memory together instead of in turn.
void FeatureRecordsBuilder::addMembers(const QCborArray &featureIds, int owner, std::vector<Member> &into)
{
    flushEntries();
    m_names.clear();
    m_hashes.clear();
    for (const QCborValue &featureId : featureIds) {
        m_names.push_back(featureId.toString());
        m_hashes.push_back(HashOf(m_names.back()));
    }
    grow(m_keys.size() + m_names.size());
    const size_t mask = m_slots.size() - 1;
    for (const quint64 hash : m_hashes)
        Prefetch(&m_slots[hash & mask]);
    for (const quint64 hash : m_hashes) {
        const Slot &slot = m_slots[hash & mask];
        if (slot.feature)
            Prefetch(&m_keys[slot.feature - 1]);
    }
    for (size_t i = 0; i < m_names.size(); ++i)
        into.push_back(Member{featureFor(m_names[i], m_hashes[i]), quint32(owner)});
}

std::vector<quint32> FeatureRecordsBuilder::idOrder() const
{
    std::vector<IdKey> keys = m_keys;
    for (size_t i = 0; i < keys.size(); ++i)
        keys[i].feature = quint32(i);
    // Keys that agree in every unit they hold differ in length, or else in the rest
    // of two long ids.
    std::sort(keys.begin(), keys.end(), [this](const IdKey &a, const IdKey &b) {
        for (int i = 0; i < 4; ++i) {
            if (a.prefix[i] != b.prefix[i])
                return a.prefix[i] < b.prefix[i];
        }
        if (a.length > quint32(kKeyUnits) && b.length > quint32(kKeyUnits))
            return m_longIds[a.feature] < m_longIds[b.feature];
        return a.length < b.length;
    });
    std::vector<quint32> order;
    order.reserve(keys.size());
    for (const IdKey &key : keys)
        order.push_back(key.feature);
    return order;
}

namespace {

// Owners grouped by the rank of their feature: the owners of rank r are
// owners[start[r]] up to owners[start[r + 1]], ascending and once each.
struct Grouped
{
    std::vector<quint32> start;
    std::vector<quint32> owners;
};

template<typename Member>
Grouped GroupByRank(const std::vector<Member> &members, const std::vector<quint32> &rankOf)
{
    Grouped grouped;
    grouped.start.assign(rankOf.size() + 1, 0);
    for (const Member &member : members)
        ++grouped.start[rankOf[member.feature] + 1];
    for (size_t r = 1; r < grouped.start.size(); ++r)
        grouped.start[r] += grouped.start[r - 1];
    std::vector<quint32> next(grouped.start.begin(), grouped.start.end() - 1);
    grouped.owners.resize(members.size());
    for (const Member &member : members)
        grouped.owners[next[rankOf[member.feature]]++] = member.owner;
    // A list may name a feature twice, and two products may share an id.
    quint32 kept = 0;
    for (size_t r = 0; r + 1 < grouped.start.size(); ++r) {
        const auto first = grouped.owners.begin() + grouped.start[r];
        const auto last = grouped.owners.begin() + grouped.start[r + 1];
        std::sort(first, last);
        grouped.start[r] = kept;
        kept = quint32(std::unique_copy(first, last, grouped.owners.begin() + kept) - grouped.owners.begin());
    }
    grouped.start.back() = kept;
    grouped.owners.resize(kept);
    return grouped;
}

} // namespace

void FeatureRecordsBuilder::build(QMap<QString, VantixFeatureData> &features, const QVector<QString> &productNames,
                                  const QVector<QString> &layoutNames)
{
    flushEntries();
    const std::vector<quint32> order = idOrder();
    std::vector<quint32> rankOf(order.size());
    for (size_t r = 0; r < order.size(); ++r)
        rankOf[order[r]] = quint32(r);
    const Grouped products = GroupByRank(m_productMembers, rankOf);
    const Grouped layouts = GroupByRank(m_layoutMembers, rankOf);
    m_productMembers = {};
    m_layoutMembers = {};
    m_slots = {};

    OwnerSets productSets(productNames, order.size());
    OwnerSets layoutSets(layoutNames, order.size());
    // In ascending order every node goes in at the end, where the hint puts it.
    for (size_t r = 0; r < order.size(); ++r) {
        // The records were made in document order; ask for them a little ahead.
        if (r + 8 < order.size()) {
            Prefetch(&m_records[order[r + 8]]);
            Prefetch(&m_keys[order[r + 8]]);
        }
        const quint32 feature = order[r];
        VantixFeatureData &record = features.insert(features.cend(), idOf(feature), VantixFeatureData()).value();
        record = std::move(m_records[feature]);
        record.productIds = productSets.setOf(products.owners.data() + products.start[r],
                                              products.start[r + 1] - products.start[r]);
        record.layoutNames = layoutSets.setOf(layouts.owners.data() + layouts.start[r],
                                              layouts.start[r + 1] - layouts.start[r]);
    }
    m_longIds = {};
    m_keys = {};
    m_records = {};
}

} // namespace ProductEditor
