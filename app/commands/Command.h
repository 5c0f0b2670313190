#pragma once

#include "store/VantixJsonData.h"

#include <QString>
#include <QStringList>

// One command of the command-line mode. Its file defines it as
// `extern const Command NameCommand{name, synopsis, run};` and CommandList.h names it.
struct Command
{
    QString name;
    QString synopsis; // its lines of the usage text, each ending in a newline
    // Takes the arguments that follow the command's name and the reader every file is
    // read through; returns the exit status.
    int (*run)(const QStringList &args, const ProductEditor::Reader &reader);
};
