#pragma once

#include <QObject>

class QWidget;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class FeaturesPage;
class Model;

// The "Add Product/Layout" page: products, layouts and the licence catalogue.
class ProductsPage : public QObject
{
public:
    ProductsPage(Ui::VantixJSONEditorClass &ui, Model &model, QWidget *window, FeaturesPage &features);

private:
    void _SetUpTables();
    void _DuplicateProduct();
    void _RemoveProduct();
    void _AddLicense();
    void _RemoveLicense();

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
    QWidget *m_window; // not owned; parent of the page's dialogs
    FeaturesPage &m_features;
};

} // namespace ProductEditor
