#include "editor/ChangesPage.h"

#include "diff/VantixFeaturesDiffModel.h"
#include "editor/ChangeSummary.h"
#include "editor/DiffReview.h"
#include "models/Model.h"
#include "store/VantixJsonData.h"
#include "ui_VantixJSONEditor.h"

#include <QFutureWatcher>
#include <QLabel>
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

QString Names(const QVector<ComparedDocument> &documents)
{
    QStringList names;
    for (const ComparedDocument &document : documents)
        names << document.name;
    return names.join(QStringLiteral(", "));
}

} // namespace

ChangesPage::ChangesPage(Ui::VantixJSONEditorClass &ui, Model &model, const EditSteps &steps)
    : m_ui(ui)
    , m_model(model)
    , m_steps(steps)
    , m_tabBar(new QTabBar(ui.mp_tab_diff))
    , m_notice(new QLabel(ui.mp_tab_diff))
{
    ui.verticalLayout_4->insertWidget(TabBarPosition, m_tabBar);
    // Right above "Apply changes", where it is read before applying.
    m_notice->setObjectName(QStringLiteral("mp_lbl_diff_notice"));
    m_notice->setWordWrap(true);
    ui.verticalLayout_4->insertWidget(ui.verticalLayout_4->indexOf(ui.mp_tree_diff) + 1, m_notice);
    m_review = std::make_unique<DiffReview>(ui, m_tabBar);
    m_review->SetDocuments([this](int tab) { return tab >= 0 && tab < m_shown.size() ? m_shown[tab].document : ComparedDocument(); });
    m_summary = std::make_unique<ChangeSummary>(ui);
    m_summary->Loaded(model.GetData());
    Recheck();
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

// The store's documents come from the last Update, product comparison or save, or from the load.
void ChangesPage::CompareDocuments()
{
    const QVector<ComparedDocument> documents = UpdateComparedDocuments(m_model.GetData());
    _Rebuild(documents, Refresh::AtEnd);
    m_ui.mp_btn_apply_patch->show();
    m_review->Recount(true);
    _Compared(QStringLiteral("the files as loaded with the documents last regenerated: %1").arg(Names(documents)),
              m_regeneratedRecords, m_regeneratedStep);
}

void ChangesPage::CompareProducts(const QString &leftId, const QString &rightId)
{
    VantixJsonData &data = m_model.GetData();
    data.UpdateResultJsons();
    Regenerated();
    _Rebuild({ProductsToCompare(data.GetProductsResultJson(), leftId, rightId)}, Refresh::AtEnd,
             {QStringLiteral("Key"), leftId, rightId}, false);
    m_ui.mp_btn_apply_patch->hide();
    m_review->Recount(false);
    _Compared(QStringLiteral("product %1 with product %2").arg(leftId, rightId), m_regeneratedRecords,
              m_regeneratedStep);
}

void ChangesPage::_Update()
{
    m_model.GetData().UpdateResultJsons();
    Regenerated();
    const QVector<ComparedDocument> documents = UpdateComparedDocuments(m_model.GetData());
    _Rebuild(documents, Refresh::PerLayout);
    m_review->Recount(true);
    _Compared(QStringLiteral("the files as loaded with the documents regenerated from the definitions: %1")
                  .arg(Names(documents)),
              m_regeneratedRecords, m_regeneratedStep);
    m_summary->Refresh(m_model.GetData());
}

void ChangesPage::Regenerated()
{
    m_regeneratedRecords = RecordsSnapshot::Take(m_model.GetData());
    m_regeneratedStep = m_steps.Current();
}

void ChangesPage::Loaded()
{
    // The store's documents are the loaded ones now, not regenerated from anything.
    m_regeneratedRecords.reset();
    m_regeneratedStep = m_steps.Current();
    m_summary->Loaded(m_model.GetData());
    m_applied.reset();
    Recheck();
}

void ChangesPage::_Compared(const QString &what, std::optional<RecordsSnapshot> records, EditSteps::Step step)
{
    m_applied.reset();
    m_compared = what;
    m_comparedRecords = std::move(records);
    m_comparedStep = step;
    Recheck();
}

// Records edited back to what was compared make the comparison current again. Documents
// as loaded, not regenerated from records, are current until the first edit.
void ChangesPage::Recheck()
{
    if (m_compared.isEmpty()) {
        m_notice->clear();
        m_notice->hide();
        m_review->SetStanding(DiffReview::NotCompared);
        return;
    }
    m_notice->setText(QStringLiteral("Compared %1; only documents with differences have a tab.").arg(m_compared));
    m_notice->show();
    if (m_applied && m_applied->records == RecordsSnapshot::Take(m_model.GetData())) {
        m_review->SetApplied(m_applied->taken, m_applied->total);
        return;
    }
    const int edits = m_steps.Distance(m_comparedStep, m_steps.Current());
    const bool current = m_comparedRecords ? *m_comparedRecords == RecordsSnapshot::Take(m_model.GetData())
                                           : edits == 0;
    m_review->SetStanding(current ? DiffReview::Current : DiffReview::OutOfDate, qMax(edits, 1));
}

int ChangesPage::DifferenceCount() const
{
    return m_review->DifferenceCount();
}

ChangesPage::State ChangesPage::Capture() const
{
    VantixJsonData &data = m_model.GetData();
    State state;
    state.build = m_build;
    state.shown = m_shown;
    state.ticks = m_review->Ticks();
    state.currentTab = m_tabBar->currentIndex();
    state.treeShown = m_ui.mp_tree_diff->model() != nullptr;
    state.applyShown = !m_ui.mp_btn_apply_patch->isHidden();
    state.applicable = m_review->Applicable();
    state.compared = m_compared;
    state.comparedRecords = m_comparedRecords;
    state.regeneratedRecords = m_regeneratedRecords;
    state.comparedStep = m_comparedStep;
    state.regeneratedStep = m_regeneratedStep;
    state.productsResult = data.GetProductsResultJson();
    state.layoutsResult = data.GetLayoutsResultJsons();
    return state;
}

void ChangesPage::Restore(const State &state)
{
    VantixJsonData &data = m_model.GetData();
    data.GetProductsResultJson() = state.productsResult;
    data.GetLayoutsResultJsons() = state.layoutsResult;
    m_regeneratedRecords = state.regeneratedRecords;
    m_regeneratedStep = state.regeneratedStep;
    // The same documents give the same tree, so a step back past an Update builds it again.
    if (state.build != m_build) {
        _Show(nullptr);
        _ClearTabs();
        for (const Shown &shown : state.shown) {
            auto *model = new VantixFeaturesDiffModel(m_tabBar);
            model->Regenerate(shown.document.left, shown.document.right);
            _AddTab(shown, model);
        }
        m_build = state.build;
    }
    m_review->SetTicks(state.ticks);
    m_tabBar->setCurrentIndex(state.currentTab);
    if (!state.treeShown)
        _Show(nullptr);
    else if (m_ui.mp_tree_diff->model() != DiffModelOf(m_tabBar, m_tabBar->currentIndex()))
        ShowDiff(m_tabBar->currentIndex());
    m_ui.mp_btn_apply_patch->setVisible(state.applyShown);
    m_review->Recount(state.applicable);
    m_compared = state.compared;
    m_comparedRecords = state.comparedRecords;
    m_comparedStep = state.comparedStep;
    Recheck();
}

void ChangesPage::_Show(VantixFeaturesDiffModel *model)
{
    ShowModel(m_ui.mp_tree_diff, model);
    m_review->Follow(model);
}

void ChangesPage::_Rebuild(const QVector<ComparedDocument> &documents, Refresh refresh, const QStringList &headers,
                           bool editable)
{
    _Show(nullptr);
    _ClearTabs();
    ++m_build;
    for (int i = 0; i < documents.size(); ++i) {
        if (VantixFeaturesDiffModel *model = BuildDiffModel(documents[i], m_tabBar))
            _AddTab({documents[i], headers, editable}, model);
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

void ChangesPage::_AddTab(const Shown &shown, VantixFeaturesDiffModel *model)
{
    if (!shown.headers.isEmpty())
        model->setHeaders(shown.headers);
    if (!shown.editable)
        model->setEditableMode(false);
    m_tabBar->setTabData(m_tabBar->addTab(shown.document.name), QVariant::fromValue(model));
    m_shown.append(shown);
}

void ChangesPage::_ClearTabs()
{
    m_shown.clear();
    while (m_tabBar->count() > 0) {
        delete DiffModelOf(m_tabBar, FirstTab);
        m_tabBar->removeTab(FirstTab);
    }
}

void ChangesPage::_ApplyChanges()
{
    VantixJsonData &data = m_model.GetData();
    int taken = 0;
    for (const QVector<int> &rows : m_review->Ticks())
        taken += rows.size();
    const int total = m_review->DifferenceCount();
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
    m_applied = Applied{RecordsSnapshot::Take(data), taken, total};
    Recheck();
}

} // namespace ProductEditor
