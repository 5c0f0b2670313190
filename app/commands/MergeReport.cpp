#include "commands/MergeReport.h"

#include "output/Console.h"

#include <QFile>

using namespace ProductEditor;

bool ReadMergeInput(const QString &path, QByteArray *bytes, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: cannot read: %2").arg(path, file.errorString());
        return false;
    }
    *bytes = file.readAll();
    return true;
}

QString MergeInputError(const DefinitionMergeError &error, const QStringList &files)
{
    const QString file = files.value(int(error.input) - int(DefinitionMergeError::Base));
    return QStringLiteral("%1:%2:%3: %4").arg(file).arg(error.line).arg(error.column).arg(error.problem);
}

void PrintConflicts(const QString &file, const QVector<JsonMergeConflict> &conflicts)
{
    Err() << file << ": " << conflicts.size() << (conflicts.size() == 1 ? " conflict\n" : " conflicts\n");
    for (const JsonMergeConflict &conflict : conflicts)
        Err() << "  " << conflict.path << "\n";
}
