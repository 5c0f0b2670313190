#pragma once

#include "check/RecordedFiles.h"
#include "editor/ChangesPage.h"
#include "editor/EditSteps.h"
#include "editor/ExtensionsPage.h"
#include "editor/FeaturesPage.h"
#include "editor/LiveProblems.h"
#include "editor/ProblemOpener.h"
#include "editor/ProductsPage.h"
#include "editor/QueryPage.h"
#include "editor/ResultPage.h"
#include "editor/UndoHistory.h"
#include "models/Model.h"
#include "store/VantixJsonData.h"
#include "ui_VantixJSONEditor.h"

#include <QMap>
#include <QString>
#include <QUndoStack>

#include <memory>

class QTabBar;
class QUndoView;

namespace ProductEditor {

// The window's state. Members are destroyed in reverse order: the pages go
// first, taking their connections with them, then the models die before the
// store they read, and all of them before the window's widgets.
struct EditorPrivate
{
    EditorPrivate(const QString &path, const Reader &reader, const Writer &writer,
                  const QMap<QString, QString> &map)
        : data(path, files.Wrap(reader), files.Wrap(writer), map)
        , model(data)
    {
    }

    // The catalogue is made from the loaded store before any model reads it.
    EditorPrivate(const QString &path, const Reader &reader, const Writer &writer,
                  const LicenseCatalogueFactory &catalogue)
        : data(path, files.Wrap(reader), files.Wrap(writer), {})
        , model(WithCatalogue(data, catalogue))
    {
    }

    static VantixJsonData &WithCatalogue(VantixJsonData &data, const LicenseCatalogueFactory &catalogue)
    {
        if (catalogue)
            data.GetLicenses() = catalogue(data);
        return data;
    }

    // The bytes the store reads and writes, for the findings panel; it passes every
    // call on to the host's callbacks unchanged.
    RecordedFiles files;
    VantixJsonData data;
    Ui::VantixJSONEditorClass ui;
    Model model;
    QTabBar *diffTabBar = nullptr; // owned by the Changes page
    EditSteps steps; // outlives the Changes page and the undo history, which follow it

    std::unique_ptr<FeaturesPage> features;
    std::unique_ptr<ProductsPage> products;
    std::unique_ptr<ChangesPage> changes;
    std::unique_ptr<ResultPage> result;
    std::unique_ptr<QueryPage> query;
    std::unique_ptr<ExtensionsPage> extensions;

    QUndoStack undoStack;
    QUndoView *historyView = nullptr; // owned by the History dock
    std::unique_ptr<UndoHistory> history; // goes first: it watches the models
    std::unique_ptr<LiveProblems> problems; // waits for its running check
    std::unique_ptr<ProblemOpener> problemOpener;
};

} // namespace ProductEditor
