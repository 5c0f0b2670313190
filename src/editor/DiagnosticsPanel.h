#pragma once

#include "check/Diagnostic.h"

#include <QDockWidget>

#include <memory>

namespace Ui {
class DiagnosticsPanel;
}

namespace ProductEditor {

class DiagnosticsModel;

// The findings of the window's folder in a dock: a summary and one row per finding.
// Double-clicking a row asks to open the record it is about.
class DiagnosticsPanel : public QDockWidget
{
    Q_OBJECT

public:
    DiagnosticsPanel(DiagnosticsModel *model, QWidget *parent);
    ~DiagnosticsPanel() override;

signals:
    void OpenRecord(const ProductEditor::Diagnostic &diagnostic);

private:
    void _UpdateSummary();

    std::unique_ptr<Ui::DiagnosticsPanel> m_ui;
    DiagnosticsModel *m_model = nullptr; // not owned
};

} // namespace ProductEditor
