#include "editor/VantixJSONEditor.h"

#include "editor/ProblemOpener.h"
#include "editor/ProblemsPanel.h"
#include "editor/EditorPrivate.h"
#include "editor/PageTools.h"
#include "editor/TabIndex.h"
#include "models/ModelReset.h"

#include <QCoreApplication>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QTabBar>
#include <QUndoView>

namespace ProductEditor {

VantixJSONEditor::VantixJSONEditor(const QString &path,
                                   const std::function<QByteArray(const QString &)> &reader,
                                   const std::function<bool(const QString &, const QByteArray &)> &writer,
                                   const QMap<QString, QString> &map, QWidget *parent)
    : QMainWindow(parent)
    , d(std::make_unique<EditorPrivate>(path, reader, writer, map))
{
    _Build();
}

VantixJSONEditor::VantixJSONEditor(const QString &path,
                                   const std::function<QByteArray(const QString &)> &reader,
                                   const std::function<bool(const QString &, const QByteArray &)> &writer,
                                   const LicenseCatalogueFactory &catalogue, QWidget *parent)
    : QMainWindow(parent)
    , d(std::make_unique<EditorPrivate>(path, reader, writer, catalogue))
{
    _Build();
}

void VantixJSONEditor::_Build()
{
    d->ui.setupUi(this);
    _InitMenu();
    _InitFeatureTab();
    _InitProductsTab();
    _InitDiffTab();
    _InitResultTab();
    _InitQueryTab();
    _InitExtensionTab();
    _InitEditMenu();
    _InitViewMenu();
    _ShowFolder(d->model.GetData().GetFolder().path());
}

// The History's first entry is the folder as it was opened.
void VantixJSONEditor::_ShowFolder(const QString &path)
{
    setWindowFilePath(path);
    d->historyView->setEmptyLabel(QStringLiteral("Opened %1").arg(QDir(path).dirName()));
}

VantixJSONEditor::~VantixJSONEditor()
{
    // The widgets outlive the private record; none of them may reach the
    // window's handlers once it is gone.
    for (QObject *object : findChildren<QObject *>())
        object->disconnect(this);
}

bool VantixJSONEditor::eventFilter(QObject *watched, QEvent *event)
{
    // The table copies only its current cell on Ctrl+C; the window copies the
    // whole selection instead.
    if (watched == d->ui.mp_tbl_query_result && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_C && (key->modifiers() & Qt::ControlModifier)) {
            keyPressEvent(key);
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

// The store does not learn whether its writes succeeded; a host that marks the window
// unsaved after a save says they did not, so no step is the saved one any more.
void VantixJSONEditor::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ModifiedChange && isWindowModified() && d && d->undoStack.isClean())
        d->undoStack.resetClean();
    QMainWindow::changeEvent(event);
}

void VantixJSONEditor::_InitMenu()
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    connect(ui.mp_run_reload, &QAction::triggered, this, &VantixJSONEditor::_Reload);
    connect(ui.mp_run_save, &QAction::triggered, this, &VantixJSONEditor::_Save);
    connect(ui.mp_run_load, &QAction::triggered, this, &VantixJSONEditor::_Load);
    connect(ui.mp_run_save_as, &QAction::triggered, this, &VantixJSONEditor::_SaveAs);
    connect(ui.mp_run_compare, &QAction::triggered, this, &VantixJSONEditor::_Compare);
    connect(ui.mp_run_compare_product, &QAction::triggered, this, &VantixJSONEditor::_CompareProducts);
    ui.mp_run_save->setShortcut(QKeySequence::Save);
    ui.mp_run_save_as->setShortcut(QKeySequence::SaveAs);
    ui.mp_run_load->setShortcut(QKeySequence::Open);
    ui.mp_run_reload->setShortcut(QKeySequence::Refresh);
}

void VantixJSONEditor::_InitEditMenu()
{
    QUndoStack &stack = d->undoStack;
    d->history = std::make_unique<UndoHistory>(d->ui, d->model, *d->changes, stack, d->steps);

    auto *menu = new QMenu(QStringLiteral("Edit"), d->ui.menuBar);
    menu->setObjectName(QStringLiteral("menuEdit"));
    d->ui.menuBar->addMenu(menu);
    QAction *undo = menu->addAction(QStringLiteral("Undo"));
    undo->setObjectName(QStringLiteral("mp_run_undo"));
    undo->setShortcut(QKeySequence::Undo);
    undo->setEnabled(false);
    QAction *redo = menu->addAction(QStringLiteral("Redo"));
    redo->setObjectName(QStringLiteral("mp_run_redo"));
    redo->setShortcut(QKeySequence::Redo);
    redo->setEnabled(false);

    connect(undo, &QAction::triggered, this, [this] {
        d->history->FlushTyping();
        d->undoStack.undo();
    });
    connect(redo, &QAction::triggered, this, [this] {
        d->history->FlushTyping();
        d->undoStack.redo();
    });
    connect(&stack, &QUndoStack::indexChanged, d->changes.get(), &ChangesPage::Recheck);
    connect(&stack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(&stack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    // "Undo Hide feature open": the step's name, with its '&' kept from becoming a mnemonic.
    const auto naming = [](QAction *action, const QString &verb) {
        return [action, verb](const QString &name) {
            action->setText(name.isEmpty() ? verb : verb + QLatin1Char(' ') + QString(name).replace('&', "&&"));
        };
    };
    connect(&stack, &QUndoStack::undoTextChanged, undo, naming(undo, QStringLiteral("Undo")));
    connect(&stack, &QUndoStack::redoTextChanged, redo, naming(redo, QStringLiteral("Redo")));
    connect(&stack, &QUndoStack::cleanChanged, this, [this](bool clean) {
        // The form's title has no "[*]" to mark; a host that gives it one sees the mark.
        if (windowTitle().contains(QLatin1String("[*]"))) {
            setWindowModified(!clean);
            return;
        }
        setAttribute(Qt::WA_WindowModified, !clean);
        QEvent changed(QEvent::ModifiedChange);
        QCoreApplication::sendEvent(this, &changed);
    });
}

// View > History: the steps of the undo stack; clicking one goes back or forward to it.
QAction *VantixJSONEditor::_CreateHistoryDock()
{
    auto *dock = new QDockWidget(QStringLiteral("History"), this);
    dock->setObjectName(QStringLiteral("mp_dock_history"));
    auto *view = new QUndoView(&d->undoStack, dock);
    d->historyView = view;
    view->setObjectName(QStringLiteral("mp_lst_history"));
    view->setCleanIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    // Steps are named in sentences; room for the usual ones.
    view->setMinimumWidth(360);
    d->history->Watch(view);
    dock->setWidget(view);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->hide();
    QAction *toggle = dock->toggleViewAction();
    toggle->setObjectName(QStringLiteral("mp_run_history"));
    return toggle;
}

// View, after Edit: the docks. Problems is created hidden; a host shows it.
void VantixJSONEditor::_InitViewMenu()
{
    auto *menu = new QMenu(QStringLiteral("View"), d->ui.menuBar);
    menu->setObjectName(QStringLiteral("menuView"));
    d->ui.menuBar->addMenu(menu);
    menu->addAction(_CreateProblemsDock());
    menu->addAction(_CreateHistoryDock());
}

// The problems the checks find, kept up to date with the files and the records.
QAction *VantixJSONEditor::_CreateProblemsDock()
{
    d->problems = std::make_unique<LiveProblems>(d->model.GetData(), d->files);
    LiveProblems *live = d->problems.get();
    auto *dock = new ProblemsPanel(live->GetModel(), this);
    d->problemOpener = std::make_unique<ProblemOpener>(d->ui, d->model, *d->features);
    connect(dock, &ProblemsPanel::OpenRecord, this,
            [this](const Diagnostic &diagnostic) { d->problemOpener->Open(diagnostic); });
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    resizeDocks({dock}, {fontMetrics().height() * 10}, Qt::Vertical);
    // Connected after the menu's own handlers, so these run once the files are read or written.
    for (QAction *action : {d->ui.mp_run_load, d->ui.mp_run_reload, d->ui.mp_run_save, d->ui.mp_run_save_as})
        connect(action, &QAction::triggered, live, &LiveProblems::FilesChanged);
    connect(&d->undoStack, &QUndoStack::indexChanged, live, &LiveProblems::RecordsChanged);
    connect(live, &LiveProblems::Busy, dock, &ProblemsPanel::SetBusy);
    live->FilesChanged();
    dock->hide();
    return dock->toggleViewAction();
}

QString VantixJSONEditor::_AskFolder(const QString &caption)
{
    return QDir::toNativeSeparators(QFileDialog::getExistingDirectory(
        this, caption, QString(), QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks));
}

void VantixJSONEditor::_Reload()
{
    if (PageTools::Confirm(this, QStringLiteral("Reload"),
                           QStringLiteral("You will lost all your changes, are you sure?"))
        && _LoadWith([this] { return d->model.GetData().Reload(); })) {
        d->problems->ForgetSaveLosses();
        d->history->Clear();
        d->changes->Loaded();
    }
}

void VantixJSONEditor::_Load()
{
    const QString path = _AskFolder(QStringLiteral("Open"));
    if (!path.isEmpty() && _LoadWith([this, &path] { return d->model.GetData().Load(path); }))
        _Loaded(path);
}

// The store announces a load to the models of features, products, layouts and licenses;
// the extension models follow no store signal, and a load can bring in extensions, so
// they are reset around it.
bool VantixJSONEditor::_LoadWith(const std::function<bool()> &load)
{
    bool loaded = false;
    ResetAround(SourceModels({d->model.GetExtensionsModel(), d->model.GetExtensionsProductModel(),
                              d->model.GetExtensionsLayoutModel(), d->model.GetExtensionsLicenseModel()}),
                [&] { loaded = load(); });
    return loaded;
}

void VantixJSONEditor::_Loaded(const QString &path)
{
    d->problems->ForgetSaveLosses();
    d->history->Clear();
    d->changes->Loaded();
    _ShowFolder(path);
}

void VantixJSONEditor::_Save()
{
    d->history->Flush();
    if (d->model.GetData().Save()) {
        d->problems->KeepSaveLosses();
        _Saved();
    }
}

void VantixJSONEditor::_SaveAs()
{
    const QString path = _AskFolder(QStringLiteral("Save as"));
    d->history->Flush();
    if (!path.isEmpty() && d->model.GetData().SaveAs(path))
        _Saved();
}

// A save regenerates the documents it writes from the records.
void VantixJSONEditor::_Saved()
{
    d->undoStack.setClean();
    d->changes->Regenerated();
}

void VantixJSONEditor::_Compare()
{
    // The products page, not the Changes page; the switch is kept as users know it.
    d->ui.mp_widget_tab->setCurrentIndex(TabIndex::Products);
    // The two folders only confirm the comparison; nothing reads them.
    if (_AskFolder(QStringLiteral("Open left")).isEmpty())
        return;
    if (_AskFolder(QStringLiteral("Open right")).isEmpty())
        return;
    d->changes->CompareDocuments();
}

void VantixJSONEditor::_CompareProducts()
{
    QStringList ids;
    for (const ProductData &product : d->model.GetData().GetProducts().products)
        ids << product.id;

    bool ok = false;
    const QString left = QInputDialog::getItem(this, QStringLiteral("Select Product"),
                                               QStringLiteral("Please, select Left Product: "), ids, 0, false, &ok);
    if (!ok)
        return;
    ids.removeOne(left);
    // Cancelling the second choice compares with the first remaining product.
    const QString right = QInputDialog::getItem(this, QStringLiteral("Select Product"),
                                                QStringLiteral("Please, select Right Product: "), ids, 0, false);
    d->changes->CompareProducts(left, right);
    d->ui.mp_widget_tab->setCurrentIndex(TabIndex::Products);
}

void VantixJSONEditor::_InitFeatureTab()
{
    d->features = std::make_unique<FeaturesPage>(d->ui, d->model, this);
}

void VantixJSONEditor::_InitProductsTab()
{
    d->products = std::make_unique<ProductsPage>(d->ui, d->model, this, *d->features);
}

void VantixJSONEditor::_InitDiffTab()
{
    d->changes = std::make_unique<ChangesPage>(d->ui, d->model, d->steps);
    d->diffTabBar = d->changes->TabBar();
    connect(d->diffTabBar, &QTabBar::currentChanged, this, &VantixJSONEditor::_TabBarChanged);
}

void VantixJSONEditor::_InitResultTab()
{
    d->result = std::make_unique<ResultPage>(d->ui, d->model);
}

void VantixJSONEditor::_InitQueryTab()
{
    d->query = std::make_unique<QueryPage>(d->ui, d->model, this, *d->features);
    d->ui.mp_tbl_query_result->installEventFilter(this);
}

void VantixJSONEditor::_InitExtensionTab()
{
    d->extensions = std::make_unique<ExtensionsPage>(d->ui, d->model);
}

void VantixJSONEditor::_TabBarChanged(int index)
{
    d->changes->ShowDiff(index);
}

void VantixJSONEditor::keyPressEvent(QKeyEvent *event)
{
    if (d->ui.mp_widget_tab->currentIndex() != TabIndex::Query || event->key() != Qt::Key_C
        || !(event->modifiers() & Qt::ControlModifier))
        return;
    if (focusWidget() != d->ui.mp_tbl_query_result) {
        QWidget::keyPressEvent(event);
        return;
    }
    d->query->CopySelection();
}

} // namespace ProductEditor
