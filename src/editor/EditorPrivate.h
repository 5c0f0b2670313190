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

    VantixJsonData data;
    Ui::VantixJSONEditorClass ui;
    Model model;
    QTabBar *diffTabBar = nullptr; // owned by the Changes page
};

} // namespace ProductEditor
