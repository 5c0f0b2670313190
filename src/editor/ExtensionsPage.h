#pragma once

#include <QObject>

class QModelIndex;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class Model;

// The "Extensions" page: the extension list, the current extension's fields
// and flags, and the products, layouts and licences that cover it.
class ExtensionsPage : public QObject
{
public:
    ExtensionsPage(Ui::VantixJSONEditorClass &ui, Model &model);

private:
    void _SetUpTables();
    void _Connect();
    void _ExtensionChanged(const QModelIndex &current);

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
};

} // namespace ProductEditor
