#pragma once

#include "check/Diagnostic.h"

#include <QDockWidget>

#include <memory>

class QSortFilterProxyModel;

namespace Ui {
class ProblemsPanel;
}

namespace ProductEditor {

class ProblemsModel;

// The problems of the window's folder in a dock titled with their count: a summary,
// a filter line and one row per problem, sortable by any column. Activating a row
// (double-click or Enter) asks to open what the problem is about. The menu's toggle
// keeps the plain title.
class ProblemsPanel : public QDockWidget
{
    Q_OBJECT

public:
    ProblemsPanel(ProblemsModel *model, QWidget *parent);
    ~ProblemsPanel() override;

    // Shown while a check runs.
    void SetBusy(bool busy);

signals:
    void OpenRecord(const ProductEditor::Diagnostic &diagnostic);

private:
    void _UpdateSummary();

    std::unique_ptr<Ui::ProblemsPanel> m_ui;
    ProblemsModel *m_model = nullptr;           // not owned
    QSortFilterProxyModel *m_sorted = nullptr; // a child
};

} // namespace ProductEditor
