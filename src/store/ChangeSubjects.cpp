#include "store/ChangeSubjects.h"

#include "store/DefinitionKeys.h"

namespace ProductEditor {

namespace {

using Record = RecordChange::Record;
using Kind = RecordChange::Kind;

// The kind of record that the names of a list field are; false for a field of values.
bool NamedRecord(const RecordChange &change, Record *named)
{
    const QString &field = change.field;
    switch (change.record) {
    case Record::Feature:
        if (field == Keys::kProducts || field == Keys::kLayouts) {
            *named = field == Keys::kProducts ? Record::Product : Record::Layout;
            return true;
        }
        return false;
    case Record::Product:
        *named = field == Keys::kModes      ? Record::Layout
                 : field == Keys::kSpecific ? Record::License
                                            : Record::Extension;
        return field != Keys::kBase && field != Keys::kProfileSuffix;
    case Record::Layout: *named = Record::Extension; return true;
    case Record::Extension: *named = Record::License; return true;
    case Record::License: break;
    }
    return false;
}

} // namespace

bool ChangeConcerns(const RecordChange &change, Record record, const QString &id)
{
    if (change.record == record && (change.id == id || (change.kind == Kind::Renamed && change.after == id)))
        return true;
    if (change.record == Record::Product && change.field == Keys::kSpecific && record == Record::Feature)
        return change.entry == id;
    if (change.record == Record::Product && change.field == Keys::kBase && record == Record::License)
        return change.before == id || change.after == id;
    Record named;
    if ((change.kind != Kind::Gained && change.kind != Kind::Lost) || !NamedRecord(change, &named) || named != record)
        return false;
    return (change.kind == Kind::Gained ? change.after : change.before) == id;
}

} // namespace ProductEditor
