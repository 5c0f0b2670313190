#include "store/EntryChanges.h"

#include "store/DefinitionKeys.h"

#include <optional>

namespace ProductEditor {

namespace {

using Record = RecordChange::Record;
using Kind = RecordChange::Kind;

// The kind of record that the names a name-list change gains or loses are ids of.
std::optional<Record> NamedRecord(const RecordChange &change)
{
    const QString &field = change.field;
    if (change.kind == Kind::Changed)
        return change.record == Record::Product && field == Keys::kBase ? std::optional<Record>(Record::License)
                                                                         : std::nullopt;
    if (change.kind != Kind::Gained && change.kind != Kind::Lost)
        return std::nullopt;
    switch (change.record) {
    case Record::Feature:
        if (field == Keys::kProducts)
            return Record::Product;
        return field == Keys::kLayouts ? std::optional<Record>(Record::Layout) : std::nullopt;
    case Record::Product:
        if (field == Keys::kModes)
            return Record::Layout;
        if (field == Keys::kSpecific)
            return Record::License;
        return field == Keys::kFeatures ? Record::Feature : Record::Extension;
    case Record::Layout: return field == Keys::kFeatures ? Record::Feature : Record::Extension;
    case Record::Extension: return Record::License;
    case Record::License: break;
    }
    return std::nullopt;
}

} // namespace

RecordChanges EntryChanges::Of(const RecordChanges &changes) const
{
    RecordChanges found;
    for (const RecordChange &change : changes) {
        const bool own = change.record == record
                         && (change.id == id || (change.kind == Kind::Renamed && change.after == id));
        const bool named = NamedRecord(change) == record && (change.before == id || change.after == id);
        // A product's specific licenses are kept per feature.
        const bool grantedFor = record == Record::Feature && change.record == Record::Product
                                && change.field == Keys::kSpecific && change.entry == id;
        if (own || named || grantedFor)
            found.append(change);
    }
    return found;
}

QString EntryChanges::IdBefore(const RecordChanges &changes) const
{
    for (const RecordChange &change : changes) {
        if (change.record == record && change.kind == Kind::Renamed && change.after == id)
            return change.id;
    }
    return id;
}

QString EntryChanges::KindName(Record record)
{
    static const char *const names[] = {"feature", "product", "layout", "license", "extension"};
    return QLatin1String(names[int(record)]);
}

bool EntryChanges::ParseKind(const QString &word, Record *record)
{
    for (Record candidate : {Record::Feature, Record::Product, Record::Layout, Record::License, Record::Extension}) {
        if (word == KindName(candidate)) {
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
