#include "store/EntryChanges.h"

#include "store/ChangeJson.h"
#include "store/ChangeSubjects.h"
#include "store/FollowingChanges.h"

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
