#include "editor/ChangeSummary.h"

#include "store/ChangeText.h"
#include "store/ChangeWording.h"
#include "store/DocumentRecords.h"
#include "store/FollowingChanges.h"
#include "store/RecordComparison.h"
#include "ui_VantixJSONEditor.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QTabWidget>

namespace ProductEditor {

namespace {

// Enough lines to read a short summary without taking the diff tree's room.
constexpr int kShownLines = 10;

} // namespace

ChangeSummary::ChangeSummary(Ui::VantixJSONEditorClass &ui)
    : m_tabs(new QTabWidget(ui.mp_tab_diff))
    , m_view(new QPlainTextEdit(m_tabs))
{
    m_tabs->setObjectName(QStringLiteral("mp_tab_change_summary"));
    m_view->setObjectName(QStringLiteral("mp_tree_change_summary"));
    m_view->setReadOnly(true);
    m_view->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_view->setPlaceholderText(QStringLiteral("Press Update to list the pending edits in product terms."));
    m_tabs->addTab(m_view, QStringLiteral("In product terms"));
    m_tabs->setMaximumHeight(m_view->fontMetrics().lineSpacing() * kShownLines + m_tabs->tabBar()->sizeHint().height());
    // Right after the diff tree, above the notice and "Apply changes".
    ui.verticalLayout_4->insertWidget(ui.verticalLayout_4->indexOf(ui.mp_tree_diff) + 1, m_tabs);
}

void ChangeSummary::Loaded(VantixJsonData &data)
{
    m_loadedLicenses = data.GetLicenses();
    m_view->clear();
}

void ChangeSummary::Refresh(VantixJsonData &data)
{
    const RecordsSnapshot loaded =
        DecodeRecords(data.GetProductsOriginalJson(), data.GetLayoutsOriginalJsons(), m_loadedLicenses);
    const RecordChanges changes = FoldFollowingChanges(CompareRecords(loaded, RecordsSnapshot::Take(data)));
    if (changes.isEmpty()) {
        m_view->setPlainText(QStringLiteral("No pending edits: the definitions are as loaded."));
        return;
    }
    m_view->setPlainText(QStringLiteral("%1 %2 to %3\n\n")
                             .arg(changes.size())
                             .arg(changes.size() == 1 ? QStringLiteral("change") : QStringLiteral("changes"),
                                  CountChangedRecords(changes))
                         + ChangesText(changes));
}

} // namespace ProductEditor
