#pragma once

#include "output/Console.h"

#include "store/VantixJsonData.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

// --help and --version, which every parser accepts; single-dash words read as long options.
void AddStandardOptions(QCommandLineParser &parser);

// --licenses FILE: the license catalogue of the window and of every command but query.
void AddCatalogueOption(QCommandLineParser &parser);
QString CatalogueFile(const QCommandLineParser &parser);

// Parses `args`, the arguments after the program's (and the command's) name. Returns
// the exit status when the run ends here: 0 after printing the usage or the version,
// 2 after a usage error; nothing when the arguments hold from `minPositional` to
// `maxPositional` positional ones. `command` prefixes the messages when not empty.
std::optional<int> ParseArguments(QCommandLineParser &parser, const QString &command, const QStringList &args,
                                  int minPositional, int maxPositional);

// Prints "product-editor: MESSAGE" and the usage on stderr; returns ExitError.
int UsageError(const QString &message);

// Opens `path` for a command (see FolderOpener) and prints its warnings and refusal on
// stderr; null when the folder or the catalogue file was refused.
std::unique_ptr<ProductEditor::VantixJsonData> OpenFolder(const QString &path, const QString &catalogueFile,
                                                          const ProductEditor::Reader &reader,
                                                          const ProductEditor::Writer &writer);
