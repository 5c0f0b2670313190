#include "editor/DiagnosticsPanel.h"

#include "models/DiagnosticsModel.h"
#include "ui_DiagnosticsPanel.h"

#include <QHeaderView>

namespace ProductEditor {

DiagnosticsPanel::DiagnosticsPanel(DiagnosticsModel *model, QWidget *parent)
    : QDockWidget(QStringLiteral("Findings"), parent)
    , m_ui(std::make_unique<Ui::DiagnosticsPanel>())
    , m_model(model)
{
    setObjectName(QStringLiteral("mp_dock_diagnostics"));
    auto *form = new QWidget(this);
    m_ui->setupUi(form);
    setWidget(form);
    QTableView *table = m_ui->mp_tbl_diagnostics;
    table->setModel(model);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    connect(table, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex &index) {
        if (index.isValid())
            emit OpenRecord(m_model->GetDiagnostics().at(index.row()));
    });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model, signal, this, &DiagnosticsPanel::_UpdateSummary);
    connect(model, &QAbstractItemModel::modelReset, this, &DiagnosticsPanel::_UpdateSummary);
    _UpdateSummary();
}

DiagnosticsPanel::~DiagnosticsPanel() = default;

void DiagnosticsPanel::_UpdateSummary()
{
    m_ui->mp_lbl_diagnostics_summary->setText(m_model->Summary());
}

} // namespace ProductEditor
