#pragma once

#include "store/VantixJsonData.h"

#include <QString>
#include <QStringList>

#include <memory>

class QMainWindow;

// The bundled example beside the program: installed under ../share/product-editor, or in
// the checkout two levels above the build tree's bin folder.
QString BundledExample(const QString &programDir);

// The editor window over `folder`, its catalogue made by FolderOpener; null (the window
// deleted) when the folder or the catalogue file was refused. `messages` gets the
// warnings and the refusal.
std::unique_ptr<QMainWindow> OpenEditorWindow(const QString &folder, const QString &catalogueFile,
                                              const ProductEditor::Reader &reader,
                                              const ProductEditor::Writer &writer, QStringList *messages);

// The desktop program: opens the window, or renders it to a file with --screenshot.
int RunEditor(const QStringList &args, int &argc, char **argv);
