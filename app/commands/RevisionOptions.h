#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

class RevisionFolders;

// --from REV and --to REV: a definition folder compared between two git revisions, as
// diff and changes take them.
void AddRevisionOptions(QCommandLineParser &parser);

// With --from, DIR at the two revisions takes the place of the two folders in
// `folders`, and `sides` names them ("DIR at REV"). Returns the exit status when the
// run ends here; `command` prefixes the usage errors.
std::optional<int> UseRevisions(const QString &command, const QCommandLineParser &parser, RevisionFolders &revisions,
                                QStringList *folders, QStringList *sides);
