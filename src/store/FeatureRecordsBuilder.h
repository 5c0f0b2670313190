#pragma once

#include "store/VantixJsonData.h"

#include <QCborArray>
#include <QLatin1String>
#include <QString>
#include <QVector>

#include <vector>

namespace ProductEditor {

// Builds the feature map from the feature entries and the owners' membership lists in
// a few passes over flat arrays. Ids go into an open-addressing table of their hashes,
// memberships are kept as (feature, owner) pairs, the features are put in id order
// once, and then the map's nodes go in in that order while the membership sets are
// made beside them. A tree search or a node-based hash per name would instead touch
// memory at random for every one of the several names per feature.
class FeatureRecordsBuilder
{
public:
    // The first sixteen code units, four to a word with the first unit highest, so that
    // comparing the words compares the ids as QString's operator< does up to there.
    struct IdKey
    {
        quint64 prefix[4];
        quint32 length;
        quint32 feature;
    };
    // One owner's list of feature ids with their hashes and keys worked out, so that
    // only the lookups are left; making it needs no builder.
    struct PreparedIds
    {
        std::vector<QString> ids;
        std::vector<quint64> hashes;
        std::vector<IdKey> keys;
    };
    static PreparedIds Prepare(std::vector<QString> &&ids);

    explicit FeatureRecordsBuilder(int expectedFeatures);

    // A feature entry; a later entry with the same id replaces the earlier one. The
    // Latin1 forms take ids straight from a document's text, without a string each.
    void addEntry(const QString &id, VantixFeatureData &&data);
    void addEntry(QLatin1String id, VantixFeatureData &&data);
    // `owner` indexes the names later handed to build(); an id that no entry has
    // becomes a feature of its own, as looking it up in the map would make it.
    void addProductMembers(const QCborArray &featureIds, int owner);
    // The same for lists already read; `featureIds` is left empty for reuse.
    void addProductMembers(std::vector<QLatin1String> &featureIds, int owner);
    void addLayoutMembers(const PreparedIds &featureIds, int owner);

    // Fills `features`, which must be empty, and leaves the builder empty.
    void build(QMap<QString, VantixFeatureData> &features, const QVector<QString> &productNames,
               const QVector<QString> &layoutNames);

private:
    struct Slot
    {
        quint32 check = 0;   // the upper half of the id's hash
        quint32 feature = 0; // index + 1; 0 marks a free slot
    };
    struct Member
    {
        quint32 feature;
        quint32 owner;
    };
    struct Pending
    {
        IdKey key;
        quint64 hash;
        QString longId; // the id, when the key does not hold all of it
        VantixFeatureData data;
    };

    template<typename Id>
    static IdKey KeyOf(const Id &id);
    QString idOf(quint32 feature) const;
    // `id` is read only when the key does not hold all of it.
    template<typename Id>
    quint32 featureFor(const IdKey &key, quint64 hash, const Id &id);
    template<typename Id>
    void addPending(const Id &id, VantixFeatureData &&data);
    void flushEntries();
    void addMembers(const QCborArray &featureIds, int owner, std::vector<Member> &into);
    template<typename Id>
    void lookUpNames(const std::vector<Id> &names, int owner, std::vector<Member> &into);
    template<typename Id>
    void lookUpPrepared(const std::vector<Id> &names, const std::vector<quint64> &hashes,
                        const std::vector<IdKey> &keys, int owner, std::vector<Member> &into);
    void grow(size_t features);
    std::vector<quint32> idOrder() const;

    std::vector<Slot> m_slots; // size is a power of two, at most half full
    std::vector<IdKey> m_keys; // by feature index
    std::vector<QString> m_longIds; // by feature index; empty where the key holds the id
    std::vector<VantixFeatureData> m_records;
    std::vector<Pending> m_pending;
    std::vector<Member> m_productMembers;
    std::vector<Member> m_layoutMembers;
    std::vector<QString> m_names; // one owner's list, while it is looked up
    std::vector<IdKey> m_nameKeys;
    std::vector<quint64> m_hashes;
};

} // namespace ProductEditor
