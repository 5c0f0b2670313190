#pragma once

#include <QMap>
#include <QString>

class QPlainTextEdit;
class QTabWidget;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class VantixJsonData;

// The pending edits in product terms, below the diff tree of the Changes page: the
// records the loaded documents hold against the records as edited, refreshed by Update.
class ChangeSummary
{
public:
    explicit ChangeSummary(Ui::VantixJSONEditorClass &ui);

    // The store holds a folder as loaded: its license catalogue is the loaded one.
    void Loaded(VantixJsonData &data);
    void Refresh(VantixJsonData &data);
    QPlainTextEdit *View() const { return m_view; }

private:
    QTabWidget *m_tabs;     // owned by the Changes page widget
    QPlainTextEdit *m_view; // owned by m_tabs
    QMap<QString, QString> m_loadedLicenses;
};

} // namespace ProductEditor
