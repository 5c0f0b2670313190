#include "output/LogPrinter.h"

#include "store/ChangeJson.h"
#include "store/ChangeWording.h"

#include <QJsonArray>

using namespace ProductEditor;

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

QJsonObject LogEntryJson(const EntryLog::Entry &entry)
{
    const FolderHistory::Commit &commit = entry.commit;
    return {{QStringLiteral("commit"), commit.id},
            {QStringLiteral("parents"), QJsonArray::fromStringList(commit.parents)},
            {QStringLiteral("author"), commit.author},
            {QStringLiteral("email"), commit.email},
            {QStringLiteral("date"), commit.date},
            {QStringLiteral("subject"), commit.subject},
            {QStringLiteral("id"), entry.id},
            {QStringLiteral("changes"), ChangesToJson(entry.changes)}};
}
