#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

// The desktop program's arguments: [DIR] [--licenses FILE] [--screenshot FILE [--tab N]].
struct EditorOptions
{
    QString folder; // empty: the bundled example
    QString licenses;
    QString screenshot;
    int tab = -1;
};

// The desktop program's options with values, so that a first parse can tell their
// values from a command's name.
void AddEditorOptions(QCommandLineParser &parser);

// Parses the arguments after the program's name; works before any application object
// exists. Returns the exit status when the run ends here (help, version, usage error).
std::optional<int> ParseEditorArguments(const QStringList &args, EditorOptions *options);
