#include "output/LogPrinter.h"

#include "store/ChangeWording.h"

#include <QJsonArray>

using namespace ProductEditor;

namespace {

QString KindWord(RecordChange::Kind kind)
{
    static const char *const words[] = {"added", "removed", "renamed", "changed", "gained", "lost"};
    return QLatin1String(words[int(kind)]);
}

} // namespace

void PrintLogEntryText(QTextStream &out, const EntryLog::Entry &entry)
{
    const FolderHistory::Commit &commit = entry.commit;
    out << "commit " << commit.id << '\n';
    if (commit.parents.size() > 1)
        out << "Merge: " << commit.parents.join(QLatin1Char(' ')) << '\n';
    out << "Author: " << commit.author << " <" << commit.email << ">\n";
    out << "Date:   " << commit.date << "\n\n";
    out << "    " << commit.subject << "\n\n";
    for (const RecordChange &change : entry.changes)
        out << "    " << WordChange(change, ChangeWording::Statement) << '\n';
    out << '\n';
}

QJsonObject RecordChangeJson(const RecordChange &change)
{
    QJsonObject object{{QStringLiteral("record"), EntryChanges::KindName(change.record)},
                       {QStringLiteral("change"), KindWord(change.kind)},
                       {QStringLiteral("id"), change.id},
                       {QStringLiteral("text"), WordChange(change, ChangeWording::Statement)}};
    const auto set = [&object](const char *key, const QString &value) {
        if (!value.isEmpty())
            object.insert(QLatin1String(key), value);
    };
    set("field", change.field);
    set("entry", change.entry);
    set("before", change.before);
    set("after", change.after);
    return object;
}

QJsonObject LogEntryJson(const EntryLog::Entry &entry)
{
    const FolderHistory::Commit &commit = entry.commit;
    QJsonArray changes;
    for (const RecordChange &change : entry.changes)
        changes.append(RecordChangeJson(change));
    return {{QStringLiteral("commit"), commit.id},
            {QStringLiteral("parents"), QJsonArray::fromStringList(commit.parents)},
            {QStringLiteral("author"), commit.author},
            {QStringLiteral("email"), commit.email},
            {QStringLiteral("date"), commit.date},
            {QStringLiteral("subject"), commit.subject},
            {QStringLiteral("id"), entry.id},
            {QStringLiteral("changes"), changes}};
}
