#pragma once

#include "git/EntryLog.h"

#include <QJsonObject>
#include <QTextStream>

// One commit of `log` as git's own log prints one: hash, author, date and subject,
// then the entry's changes, one sentence per line.
void PrintLogEntryText(QTextStream &out, const EntryLog::Entry &entry);

// One commit of `log` as an element of the JSON output's "commits".
QJsonObject LogEntryJson(const EntryLog::Entry &entry);
