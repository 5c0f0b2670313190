#include "store/EntryChanges.h"

#include "store/ChangeJson.h"
#include "store/ChangeSubjects.h"
#include "store/FollowingChanges.h"
#include "store/RecordComparison.h"

namespace ProductEditor {

RecordChanges EntryChanges::Of(const RecordChanges &changes) const
{
    RecordChanges found;
    for (const RecordChange &change : FoldFollowingChanges(changes)) {
        if (ChangeConcerns(change, record, id))
            found.append(change);
    }
    return found;
}

RecordChanges EntryChanges::Between(const RecordsSnapshot &before, const RecordsSnapshot &after) const
{
    if (record != RecordChange::Record::Feature)
        return Of(CompareRecords(before, after));
    RecordsSnapshot older = before, newer = after;
    newer.features.clear();
    older.features.clear();
    const auto kept = after.features.constFind(id);
    if (kept != after.features.cend())
        newer.features.insert(id, *kept);
    const auto was = before.features.constFind(id);
    if (was != before.features.cend()) {
        older.features.insert(id, *was);
    } else if (kept != after.features.cend()) {
        for (auto it = before.features.cbegin(); it != before.features.cend(); ++it) {
            if (!after.features.contains(it.key()))
                older.features.insert(it.key(), it.value());
        }
    }
    return Of(CompareRecords(older, newer));
}

QString EntryChanges::IdBefore(const RecordChanges &changes) const
{
    for (const RecordChange &change : changes) {
        if (change.record == record && change.kind == RecordChange::Kind::Renamed && change.after == id)
            return change.id;
    }
    return id;
}

bool EntryChanges::ParseKind(const QString &word, RecordChange::Record *record)
{
    using Record = RecordChange::Record;
    for (Record candidate : {Record::Feature, Record::Product, Record::Layout, Record::License, Record::Extension}) {
        if (word == RecordName(candidate)) {
            *record = candidate;
            return true;
        }
    }
    if (word != QLatin1String("licence"))
        return false;
    *record = Record::License;
    return true;
}

} // namespace ProductEditor
