#pragma once

#include "FileAccess.h"
#include "store/VantixJsonData.h"

#include <QCommandLineParser>
#include <QMap>
#include <QString>
#include <QTextStream>

#include <memory>

QTextStream &Out();
QTextStream &Err();

// Exit statuses shared by every command.
enum ExitStatus { ExitOk = 0, ExitDifferent = 1, ExitError = 2 };

// Adds the options every command accepts (--licenses, --help) to a parser.
void AddCommonOptions(QCommandLineParser &parser);

// Parses the command's arguments; on failure prints the message and usage to
// stderr and returns false. `positional` is the accepted count range.
bool ParseCommand(QCommandLineParser &parser, const QString &command, const QStringList &args,
                  int minPositional, int maxPositional);

// Why the store would refuse the folder, or an empty string when it accepts it.
QString DiagnoseFolder(const QString &path);

// Layout files the store skips, each with the reason, for warnings on stderr.
QStringList SkippedLayoutFiles(const QString &path);

// Reads a license catalogue (a JSON object of key -> display text).
bool ReadLicenseCatalogue(const QString &file, QMap<QString, QString> *catalogue, QString *error);

// Every license name the loaded definitions use (base, specific, coverage),
// each shown as itself.
QMap<QString, QString> DefaultLicenseCatalogue(ProductEditor::VantixJsonData &store);

// Loads the folder for a command: checks it with a clear message, warns about
// skipped layout files, and installs the license catalogue (from --licenses
// when given). Returns null after printing the reason when it cannot.
std::unique_ptr<ProductEditor::VantixJsonData> OpenFolder(const QString &path,
                                                          const QCommandLineParser &parser,
                                                          FileAccess &access);
