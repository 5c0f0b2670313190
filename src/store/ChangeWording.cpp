#include "store/ChangeWording.h"

#include "store/DefinitionKeys.h"

#include <QSet>
#include <QStringList>

#include <algorithm>


namespace ProductEditor {

namespace {

using Record = RecordChange::Record;
using Kind = RecordChange::Kind;

// The words of a field that is switched on and off, or gains and loses names:
// [0] on or gained, [1] off or lost. %1 is the record ("feature open"), %2 the name,
// %3 the licensing entry.
struct Words
{
    const char *field;
    const char *statement[2];
    const char *command[2];
};

const Words kFlagWords[] = {
    {"visual", {"%1: now shown", "%1: now hidden"}, {"Show %1", "Hide %1"}},
    {"emergency",
     {"%1: now an emergency feature", "%1: no longer an emergency feature"},
     {"Mark %1 as emergency", "Unmark %1 as emergency"}},
    {"slices_support",
     {"%1: now supports slices", "%1: no longer supports slices"},
     {"Turn on slices support of %1", "Turn off slices support of %1"}},
    {"cad_support",
     {"%1: now a CAD format", "%1: no longer a CAD format"},
     {"Mark %1 as a CAD format", "Unmark %1 as a CAD format"}},
    {"load_as_part",
     {"%1: now loaded as a part", "%1: no longer loaded as a part"},
     {"Load %1 as a part", "Stop loading %1 as a part"}},
    {"multiple_parts_support",
     {"%1: now holds several parts", "%1: no longer holds several parts"},
     {"Allow several parts in %1", "Allow one part only in %1"}},
};

const Words kFeatureNameWords[] = {
    {"products",
     {"%1 added to product %2", "%1 removed from product %2"},
     {"Mark %1 for product %2", "Unmark %1 for product %2"}},
    {"layouts",
     {"%1 added to layout %2", "%1 removed from layout %2"},
     {"Mark %1 for layout %2", "Unmark %1 for layout %2"}},
};

const Words kProductNameWords[] = {
    {"modes", {"%1: layout %2 added", "%1: layout %2 removed"},
     {"Mark layout %2 for %1", "Unmark layout %2 for %1"}},
    {"specific",
     {"%1: license %2 granted for %3", "%1: license %2 no longer granted for %3"},
     {"Grant license %2 for %3 in %1", "Revoke license %2 for %3 in %1"}},
};

// The extension roles of products and layouts.
const Words kRoleWords[] = {
    {"open", {"%1: now opens %2", "%1: no longer opens %2"}, {"Allow %1 to open %2", "Forbid %1 to open %2"}},
    {"import", {"%1: now imports %2", "%1: no longer imports %2"},
     {"Allow %1 to import %2", "Forbid %1 to import %2"}},
    {"import_as_project",
     {"%1: now imports %2 as a project", "%1: no longer imports %2 as a project"},
     {"Allow %1 to import %2 as a project", "Forbid %1 to import %2 as a project"}},
    {"export", {"%1: now exports %2", "%1: no longer exports %2"},
     {"Allow %1 to export %2", "Forbid %1 to export %2"}},
    {"export_as_project",
     {"%1: now exports %2 as a project", "%1: no longer exports %2 as a project"},
     {"Allow %1 to export %2 as a project", "Forbid %1 to export %2 as a project"}},
    {"export_as_scene",
     {"%1: now exports %2 as a scene", "%1: no longer exports %2 as a scene"},
     {"Allow %1 to export %2 as a scene", "Forbid %1 to export %2 as a scene"}},
};

const Words kExtensionNameWords[] = {
    {"import", {"%1: import license %2 added", "%1: import license %2 removed"},
     {"Add import license %2 to %1", "Remove import license %2 from %1"}},
    {"export", {"%1: export license %2 added", "%1: export license %2 removed"},
     {"Add export license %2 to %1", "Remove export license %2 from %1"}},
};

template <size_t N>
const Words *Find(const Words (&table)[N], const QString &field)
{
    for (const Words &words : table) {
        if (field == QLatin1String(words.field))
            return &words;
    }
    return nullptr;
}

const Words *NameWords(const RecordChange &change)
{
    switch (change.record) {
    case Record::Feature: return Find(kFeatureNameWords, change.field);
    case Record::Product: {
        const Words *words = Find(kProductNameWords, change.field);
        return words ? words : Find(kRoleWords, change.field);
    }
    case Record::Layout: return Find(kRoleWords, change.field);
    case Record::Extension: return Find(kExtensionNameWords, change.field);
    case Record::License: break;
    }
    return nullptr;
}

QString Noun(Record record, int count = 1)
{
    static const char *const nouns[][2] = {{"feature", "features"}, {"product", "products"},
                                           {"layout", "layouts"},   {"license", "licenses"},
                                           {"extension", "extensions"}};
    return QLatin1String(nouns[int(record)][count == 1 ? 0 : 1]);
}

QString Subject(const RecordChange &change)
{
    return Noun(change.record) + QLatin1Char(' ') + change.id;
}

QString FieldLabel(const QString &field)
{
    static const char *const labels[][2] = {{"tooltip", "tool tip"},
                                            {"statustip", "status tip"},
                                            {"base", "base license"},
                                            {"profile_suffix", "profile suffix"},
                                            {"ext", "file name pattern"},
                                            {"visual", "visibility"},
                                            {"slices_support", "slices support"},
                                            {"cad_support", "CAD format"},
                                            {"load_as_part", "loading as a part"},
                                            {"multiple_parts_support", "several parts"},
                                            {"modes", "layouts"},
                                            {"specific", "licensing"},
                                            {"import_as_project", "import as a project"},
                                            {"export_as_project", "export as a project"},
                                            {"export_as_scene", "export as a scene"}};
    for (const auto &label : labels) {
        if (field == QLatin1String(label[0]))
            return QLatin1String(label[1]);
    }
    return field;
}

QString Quoted(QString value)
{
    constexpr int limit = 60;
    if (value.size() > limit)
        value = value.left(limit) + QStringLiteral("...");
    value.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    return QLatin1Char('"') + value + QLatin1Char('"');
}

QString WordRecordChange(const RecordChange &change, bool command)
{
    const QString subject = Subject(change);
    if (change.kind == Kind::Renamed)
        return command ? QStringLiteral("Rename %1 to %2").arg(subject, change.after)
                       : QStringLiteral("%1 renamed %2 -> %3").arg(Noun(change.record), change.id, change.after);
    if (command && change.kind == Kind::Removed)
        return QStringLiteral("Remove %1").arg(subject);
    if (command)
        return change.before.isEmpty()
                   ? QStringLiteral("Add %1").arg(subject)
                   : QStringLiteral("Duplicate %1 %2 as %3").arg(Noun(change.record), change.before, change.id);
    const QString titled = change.title.isEmpty() ? subject : subject + QLatin1Char(' ') + Quoted(change.title);
    if (change.kind == Kind::Removed)
        return QStringLiteral("%1 removed").arg(titled);
    return change.before.isEmpty() ? QStringLiteral("%1 added").arg(titled)
                                   : QStringLiteral("%1 added (duplicate of %2)").arg(titled, change.before);
}

QString WordValueChange(const RecordChange &change, bool command)
{
    const QString subject = Subject(change);
    if (const Words *words = Find(kFlagWords, change.field)) {
        const int index = change.after == QLatin1String("true") ? 0 : 1;
        return QString::fromLatin1(command ? words->command[index] : words->statement[index]).arg(subject);
    }
    const QString label = FieldLabel(change.field);
    // The Edit menu names the field, not the text typed into it.
    return command ? QStringLiteral("Set %1 of %2").arg(label, subject)
                   : QStringLiteral("%1: %2 %3 -> %4").arg(subject, label, Quoted(change.before), Quoted(change.after));
}

QString WordNameChange(const RecordChange &change, bool command)
{
    const int lost = change.kind == Kind::Lost ? 1 : 0;
    const QString name = lost ? change.before : change.after;
    if (const Words *words = NameWords(change)) {
        const QString text = QString::fromLatin1(command ? words->command[lost] : words->statement[lost]);
        // Each argument replaces one marker, so names holding a '%' stay as they are.
        const QString said = text.contains(QLatin1String("%3")) ? text.arg(Subject(change), name, change.entry)
                                                                 : text.arg(Subject(change), name);
        if (command || change.licenses.isEmpty())
            return said;
        return QStringLiteral("%1 (%2 %3)")
            .arg(said, change.licenses.size() == 1 ? QStringLiteral("license") : QStringLiteral("licenses"),
                 change.licenses.join(QStringLiteral(", ")));
    }
    return QStringLiteral("%1: %2 %3 %4")
        .arg(Subject(change), change.field, name, lost ? QStringLiteral("removed") : QStringLiteral("added"));
}

// The added, removed or renamed record that every other change follows from, if any.
const RecordChange *MainChange(const RecordChanges &changes)
{
    const RecordChange *main = nullptr;
    for (const RecordChange &change : changes) {
        if (change.kind != Kind::Added && change.kind != Kind::Removed && change.kind != Kind::Renamed)
            continue;
        if (main)
            return nullptr;
        main = &change;
    }
    if (!main)
        return nullptr;
    for (const RecordChange &change : changes) {
        const bool sameRecord = change.record == main->record
                                && (change.id == main->id || (main->kind == Kind::Renamed && change.id == main->after));
        const QString &name = change.kind == Kind::Gained ? change.after : change.before;
        const bool namesIt = (change.kind == Kind::Gained || change.kind == Kind::Lost)
                             && (name == main->id || (main->kind == Kind::Renamed && name == main->after));
        if (!sameRecord && !namesIt)
            return nullptr;
    }
    return main;
}

// "a", "a and b", "a, b and c".
QString Listed(const QStringList &parts)
{
    QStringList rest = parts;
    const QString last = rest.takeLast();
    return rest.isEmpty() ? last : rest.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

// What changed of one record, for an edit that changed several things of it: the labels
// of its fields in order, so that two edits of different fields read differently.
QString ChangedFields(const RecordChanges &changes)
{
    QStringList labels;
    for (const RecordChange &change : changes) {
        QString label = FieldLabel(change.field);
        // An extension's "import" and "export" lists hold the licenses that cover it.
        if (change.record == Record::Extension && change.kind != Kind::Changed)
            label += QStringLiteral(" licenses");
        if (!labels.contains(label))
            labels.append(label);
    }
    return Listed(labels);
}

} // namespace

QString CountChangedRecords(const RecordChanges &changes)
{
    QStringList parts;
    for (Record record : {Record::Feature, Record::Product, Record::Layout, Record::License, Record::Extension}) {
        // A renamed record's changes under its new id are still that record's.
        QSet<QString> ids, newIds;
        for (const RecordChange &change : changes) {
            if (change.record != record)
                continue;
            if (!newIds.contains(change.id))
                ids.insert(change.id);
            if (change.kind == Kind::Renamed)
                newIds.insert(change.after);
        }
        if (!ids.isEmpty())
            parts.append(QStringLiteral("%1 %2").arg(ids.size()).arg(Noun(record, ids.size())));
    }
    if (parts.isEmpty())
        return QString();
    return Listed(parts);
}

QString WordChange(const RecordChange &change, ChangeWording wording)
{
    const bool command = wording == ChangeWording::Command;
    switch (change.kind) {
    case Kind::Added:
    case Kind::Removed:
    case Kind::Renamed: return WordRecordChange(change, command);
    case Kind::Changed: return WordValueChange(change, command);
    case Kind::Gained:
    case Kind::Lost: return WordNameChange(change, command);
    }
    return QString();
}

QString NameEdit(const RecordChanges &changes)
{
    if (changes.isEmpty())
        return QStringLiteral("Edit");
    if (changes.size() == 1)
        return WordChange(changes.first(), ChangeWording::Command);
    if (const RecordChange *main = MainChange(changes))
        return WordChange(*main, ChangeWording::Command);
    const RecordChange &first = changes.first();
    const bool oneRecord = std::all_of(changes.cbegin(), changes.cend(), [&first](const RecordChange &change) {
        return change.record == first.record && change.id == first.id;
    });
    if (oneRecord)
        return QStringLiteral("Edit %1 of %2").arg(ChangedFields(changes), Subject(first));
    return QStringLiteral("Edit %1 (%2 changes)").arg(CountChangedRecords(changes)).arg(changes.size());
}

QString NameApply(int differences)
{
    if (differences <= 0)
        return QStringLiteral("Apply changes");
    return differences == 1 ? QStringLiteral("Apply 1 change") : QStringLiteral("Apply %1 changes").arg(differences);
}

} // namespace ProductEditor
