#include "editor/ProblemsPanel.h"

#include "models/ProblemsModel.h"
#include "ui_ProblemsPanel.h"

#include <QAction>
#include <QHeaderView>
#include <QSortFilterProxyModel>

namespace ProductEditor {

namespace {

const QString kTitle = QStringLiteral("Problems");

} // namespace

ProblemsPanel::ProblemsPanel(ProblemsModel *model, QWidget *parent)
    : QDockWidget(kTitle, parent)
    , m_ui(std::make_unique<Ui::ProblemsPanel>())
    , m_model(model)
    , m_sorted(new QSortFilterProxyModel(this))
{
    setObjectName(QStringLiteral("mp_dock_problems"));
    auto *form = new QWidget(this);
    m_ui->setupUi(form);
    setWidget(form);
    m_sorted->setSourceModel(model);
    m_sorted->setSortRole(ProblemsModel::SortRole);
    m_sorted->setFilterKeyColumn(-1);
    m_sorted->setFilterCaseSensitivity(Qt::CaseInsensitive);
    connect(m_ui->mp_edt_problems_filter, &QLineEdit::textChanged, m_sorted,
            &QSortFilterProxyModel::setFilterFixedString);
    QTableView *table = m_ui->mp_tbl_problems;
    table->setModel(m_sorted);
    // In the order of the checks until a header is clicked.
    table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table->setSortingEnabled(true);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    connect(table, &QAbstractItemView::activated, this, [this](const QModelIndex &index) {
        const QModelIndex source = m_sorted->mapToSource(index);
        if (source.isValid())
            emit OpenRecord(m_model->GetDiagnostics().at(source.row()));
    });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model, signal, this, &ProblemsPanel::_UpdateSummary);
    connect(model, &QAbstractItemModel::modelReset, this, &ProblemsPanel::_UpdateSummary);
    toggleViewAction()->setObjectName(QStringLiteral("mp_run_problems"));
    SetBusy(false);
    _UpdateSummary();
}

ProblemsPanel::~ProblemsPanel() = default;

void ProblemsPanel::SetBusy(bool busy)
{
    m_ui->mp_widget_problems_busy->setVisible(busy);
}

// "Problems (3)"; a title change renames the toggle too, so it is named back.
void ProblemsPanel::_UpdateSummary()
{
    m_ui->mp_lbl_problems_summary->setText(m_model->Summary());
    const int count = m_model->rowCount();
    setWindowTitle(count == 0 ? kTitle : QStringLiteral("%1 (%2)").arg(kTitle).arg(count));
    toggleViewAction()->setText(kTitle);
}

} // namespace ProductEditor
