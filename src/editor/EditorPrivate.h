#pragma once

#include "models/Model.h"
#include "store/VantixJsonData.h"
#include "ui_VantixJSONEditor.h"

#include <QMap>
#include <QString>

class QTabBar;

namespace ProductEditor {

// The window's state. Members are destroyed in reverse order, so the models
// die before the store they read, and both before the window's widgets.
struct EditorPrivate
{
    EditorPrivate(const QString &path, const Reader &reader, const Writer &writer,
                  const QMap<QString, QString> &map)
        : data(path, reader, writer, map)
        , model(data)
    {
    }

    // The catalogue is made from the loaded store before any model reads it.
    EditorPrivate(const QString &path, const Reader &reader, const Writer &writer,
                  const LicenseCatalogueFactory &catalogue)
        : data(path, reader, writer, {})
        , model(WithCatalogue(data, catalogue))
    {
    }

    static VantixJsonData &WithCatalogue(VantixJsonData &data, const LicenseCatalogueFactory &catalogue)
    {
        if (catalogue)
            data.GetLicenses() = catalogue(data);
        return data;
    }

    VantixJsonData data;
    Ui::VantixJSONEditorClass ui;
    Model model;
    QTabBar *diffTabBar = nullptr; // owned by the Changes page
};

} // namespace ProductEditor
