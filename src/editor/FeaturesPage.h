#pragma once

#include <QObject>

class QDataWidgetMapper;
class QModelIndex;
class QWidget;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class Model;

// The "Features" page: the searchable feature list, the current feature's
// fields, and its products, layouts and licences.
class FeaturesPage : public QObject
{
public:
    FeaturesPage(Ui::VantixJSONEditorClass &ui, Model &model, QWidget *window);

    // Switches to this page and makes the feature at `source` (a row of the
    // unfiltered features model) current.
    void OpenFeature(const QModelIndex &source);
    // Makes the first row of the current feature's products current.
    void SelectFirstProduct();

private:
    void _SetUpTables();
    void _Connect(QDataWidgetMapper *visibleMapper, QDataWidgetMapper *baseLicenseMapper);
    void _FeatureChanged(const QModelIndex &current);
    void _FollowInsertedFeature(int first);
    void _AddFeature();
    void _DuplicateFeature();
    void _RemoveFeature();

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
    QWidget *m_window; // not owned; parent of the page's dialogs
};

} // namespace ProductEditor
