#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QByteArray>
#include <QMainWindow>
#include <QMap>
#include <QString>

#include <functional>
#include <memory>

class QAction;
class QKeyEvent;

namespace ProductEditor {

struct EditorPrivate;

// The editor's main window: File, Edit and View menus, six pages over one definition store,
// and the docks of the undo history and of the problems the checks find.
class PRODUCT_EDITOR_EXPORT VantixJSONEditor : public QMainWindow
{
    Q_OBJECT

public:
    VantixJSONEditor(const QString &path, const std::function<QByteArray(const QString &)> &reader,
                     const std::function<bool(const QString &, const QByteArray &)> &writer,
                     const QMap<QString, QString> &map, QWidget *parent = nullptr);
    // The same window, with a license catalogue made from the loaded definitions.
    VantixJSONEditor(const QString &path, const std::function<QByteArray(const QString &)> &reader,
                     const std::function<bool(const QString &, const QByteArray &)> &writer,
                     const LicenseCatalogueFactory &catalogue, QWidget *parent = nullptr);
    ~VantixJSONEditor() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _Build();
    void _InitMenu();
    void _InitFeatureTab();
    void _InitProductsTab();
    void _InitDiffTab();
    void _InitResultTab();
    void _InitQueryTab();
    void _InitExtensionTab();
    void _InitEditMenu();
    QAction *_CreateHistoryDock();
    void _InitViewMenu();
    QAction *_CreateProblemsDock();

    void _TabBarChanged(int index);
    void keyPressEvent(QKeyEvent *event) override;

    // File menu
    void _Reload();
    void _Load();
    void _Save();
    void _SaveAs();
    void _Saved();
    void _Loaded(const QString &path);
    void _ShowFolder(const QString &path);
    bool _LoadWith(const std::function<bool()> &load);
    void _Compare();
    void _CompareProducts();
    QString _AskFolder(const QString &caption);

    std::unique_ptr<EditorPrivate> d; // owned
};

} // namespace ProductEditor
