#pragma once

#include "store/VantixJsonData.h"

#include <QString>
#include <QStringList>

#include <memory>

class QMainWindow;

// The bundled example beside the program, under ../share/<program>/examples: installed
// there, and linked there from the sources in every build folder.
QString BundledExample(const QString &programDir);

// The editor window over `folder`, its catalogue made by FolderOpener; null (the window
// deleted) when the folder or the catalogue file was refused. `messages` gets the
// warnings and the refusal.
std::unique_ptr<QMainWindow> OpenEditorWindow(const QString &folder, const QString &catalogueFile,
                                              const ProductEditor::Reader &reader,
                                              const ProductEditor::Writer &writer, QStringList *messages);

// The window as the desktop program shows it, over files on disk: titled after its folder,
// asking before unsaved changes are dropped, telling in its status bar what Save and Load
// did, and leaving files whose content would not change untouched. Null as above.
std::unique_ptr<QMainWindow> OpenHostWindow(const QString &folder, const QString &catalogueFile,
                                            QStringList *messages);

// The desktop program: opens the window, or renders it to a file with --screenshot.
int RunEditor(const QStringList &args, int &argc, char **argv);
