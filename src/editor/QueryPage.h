#pragma once

#include <QObject>

class QModelIndex;
class QWidget;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class FeaturesPage;
class Model;
class QueryFilterFeatureModel;

// The "Query" page: features filtered by id, title, product, layout and licence.
class QueryPage : public QObject
{
public:
    QueryPage(Ui::VantixJSONEditorClass &ui, Model &model, QWidget *window, FeaturesPage &features);

    // Puts the selected cells on the clipboard: tabs between the cells of a
    // row, newlines between rows, in row and column order.
    void CopySelection() const;

private:
    void _ApplyQuery();

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
    QueryFilterFeatureModel *m_query = nullptr; // owned by the window
};

} // namespace ProductEditor
