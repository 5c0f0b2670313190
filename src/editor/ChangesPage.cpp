#include "editor/ChangesPage.h"

#include "editor/DiffReview.h"
#include "json/VantixFeaturesDiffModel.h"
#include "models/Model.h"
#include "store/VantixJsonData.h"
#include "ui_VantixJSONEditor.h"

#include <QFutureWatcher>
#include <QProgressBar>
#include <QProgressDialog>
#include <QTabBar>
#include <QtConcurrent/QtConcurrentRun>

namespace ProductEditor {

namespace {

const QString ProductsTab = QStringLiteral("Products");
const int DiffColumnCount = 3;
const int FirstTab = 0;
// The tab bar goes between the Update button and the tree.
const int TabBarPosition = 1;

VantixFeaturesDiffModel *DiffModelOf(const QTabBar *tabBar, int index)
{
    return qobject_cast<VantixFeaturesDiffModel *>(tabBar->tabData(index).value<QObject *>());
}

// setModel keeps the old selection model alive; diff models come and go, so
// the old one is dropped here.
void ShowModel(QAbstractItemView *view, QAbstractItemModel *model)
{
    QItemSelectionModel *old = view->selectionModel();
    view->setModel(model);
    if (old && view->selectionModel() != old)
        old->deleteLater();
}

// Builds the diff on the global pool while a modal busy dialog keeps the GUI
// thread in its event loop. Null when the documents give no diff.
VantixFeaturesDiffModel *BuildDiffModel(const ComparedDocument &document, QWidget *parent)
{
    QProgressDialog dialog(parent);
    dialog.setWindowFlags(dialog.windowFlags() & ~Qt::WindowContextHelpButtonHint & ~Qt::WindowCloseButtonHint);
    dialog.setModal(true);
    dialog.setLabelText(QStringLiteral("Building %1 diff ...").arg(document.name, 0, QLatin1Char(' ')));
    dialog.setCancelButton(nullptr);
    auto *bar = new QProgressBar(&dialog);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    dialog.setBar(bar);
    dialog.setFixedSize(dialog.size() + QSize(20, 5));

    QFutureWatcher<void> watcher;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &dialog, &QProgressDialog::reset);
    QObject::connect(&watcher, &QFutureWatcher<void>::progressRangeChanged, &dialog, &QProgressDialog::setRange);
    QObject::connect(&watcher, &QFutureWatcher<void>::progressValueChanged, &dialog, &QProgressDialog::setValue);
    QObject::connect(&dialog, &QProgressDialog::canceled, &watcher, &QFutureWatcher<void>::cancel);

    auto *model = new VantixFeaturesDiffModel(parent);
    // The task sees only its own copies and the new model, which nothing else uses yet.
    bool changed = false;
    watcher.setFuture(QtConcurrent::run([model, left = document.left, right = document.right, &changed] {
        changed = model->Regenerate(left, right);
    }));
    dialog.exec();
    watcher.waitForFinished();

    if (changed)
        return model;
    delete model;
    return nullptr;
}

} // namespace

ChangesPage::ChangesPage(Ui::VantixJSONEditorClass &ui, Model &model)
    : m_ui(ui)
    , m_model(model)
    , m_tabBar(new QTabBar(ui.mp_tab_diff))
{
    ui.verticalLayout_4->insertWidget(TabBarPosition, m_tabBar);
    m_review = std::make_unique<DiffReview>(ui, m_tabBar);
    connect(ui.mp_btn_update, &QPushButton::clicked, this, &ChangesPage::_Update);
    connect(ui.mp_btn_apply_patch, &QPushButton::clicked, this, &ChangesPage::_ApplyChanges);
}

ChangesPage::~ChangesPage() = default;

QTabBar *ChangesPage::TabBar() const
{
    return m_tabBar;
}

void ChangesPage::ShowDiff(int index)
{
    QTreeView *tree = m_ui.mp_tree_diff;
    _Show(DiffModelOf(m_tabBar, index));
    tree->expandAll();
    for (int column = 0; column < DiffColumnCount; ++column)
        tree->resizeColumnToContents(column);
}

void ChangesPage::CompareDocuments()
{
    _Rebuild(UpdateComparedDocuments(m_model.GetData()), Refresh::AtEnd);
    m_ui.mp_btn_apply_patch->show();
    m_review->Recount(true);
}

void ChangesPage::CompareProducts(const QString &leftId, const QString &rightId)
{
    VantixJsonData &data = m_model.GetData();
    data.UpdateResultJsons();
    _Rebuild({ProductsToCompare(data.GetProductsResultJson(), leftId, rightId)}, Refresh::AtEnd,
             [&leftId, &rightId](VantixFeaturesDiffModel &model) {
                 model.setHeaders({QStringLiteral("Key"), leftId, rightId});
                 model.setEditableMode(false);
             });
    m_ui.mp_btn_apply_patch->hide();
    m_review->Recount(false);
}

void ChangesPage::_Update()
{
    m_model.GetData().UpdateResultJsons();
    _Rebuild(UpdateComparedDocuments(m_model.GetData()), Refresh::PerLayout);
    m_review->Recount(true);
}

void ChangesPage::_Show(VantixFeaturesDiffModel *model)
{
    ShowModel(m_ui.mp_tree_diff, model);
    m_review->Follow(model);
}

void ChangesPage::_Rebuild(const QVector<ComparedDocument> &documents, Refresh refresh, const Prepare &prepare)
{
    _Show(nullptr);
    _ClearTabs();
    for (int i = 0; i < documents.size(); ++i) {
        if (VantixFeaturesDiffModel *model = BuildDiffModel(documents[i], m_tabBar)) {
            if (prepare)
                prepare(*model);
            m_tabBar->setTabData(m_tabBar->addTab(documents[i].name), QVariant::fromValue(model));
        }
        // Update refreshes after each layout, not after the products alone, so a
        // folder without layouts leaves the tree empty and the button as it was.
        // Nothing changes the tree between two layouts, so it is measured once.
        const bool layout = i > 0;
        if (refresh == Refresh::PerLayout && layout && m_tabBar->count() > 0) {
            if (m_ui.mp_tree_diff->model() != DiffModelOf(m_tabBar, FirstTab))
                ShowDiff(FirstTab);
            m_ui.mp_btn_apply_patch->show();
        }
    }
    if (refresh == Refresh::AtEnd && m_tabBar->count() > 0)
        ShowDiff(FirstTab);
}

void ChangesPage::_ClearTabs()
{
    while (m_tabBar->count() > 0) {
        delete DiffModelOf(m_tabBar, FirstTab);
        m_tabBar->removeTab(FirstTab);
    }
}

void ChangesPage::_ApplyChanges()
{
    VantixJsonData &data = m_model.GetData();
    for (int index = 0; index < m_tabBar->count(); ++index) {
        VantixFeaturesDiffModel *model = DiffModelOf(m_tabBar, index);
        if (!model)
            continue;
        const QString name = m_tabBar->tabText(index);
        if (name == ProductsTab)
            model->ApplyPatch(data.GetProductsOriginalJson());
        else
            model->ApplyPatch(data.GetLayoutsOriginalJsons()[name]);
    }
    data.UpdateData();
}

} // namespace ProductEditor
