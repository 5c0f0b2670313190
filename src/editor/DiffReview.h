#pragma once

#include "store/ComparedDocument.h"

#include <QMetaObject>
#include <QObject>
#include <QString>
#include <QVector>

#include <functional>

class QAbstractItemModel;
class QLabel;
class QModelIndex;
class QPlainTextEdit;
class QTabBar;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class VantixFeaturesDiffModel;

// The review aids below the diff tree: how many differences there are, the
// selected one in full, stepping from difference to difference across the
// documents, and taking one side for a whole document.
class DiffReview : public QObject
{
public:
    // Whether the shown differences describe the records as they are.
    enum Standing { NotCompared, Current, OutOfDate, Applied };

    DiffReview(Ui::VantixJSONEditorClass &ui, QTabBar *tabBar);

    // After the tabs were rebuilt; `applicable` tells whether "Apply changes" can take them.
    void Recount(bool applicable);
    bool Applicable() const;
    // `edits` counts the edits since the comparison, for one out of date.
    void SetStanding(Standing standing, int edits = 0);
    // Right after "Apply changes", which took `taken` of the `total` differences from the right side.
    void SetApplied(int taken, int total);
    // The differences of every tab.
    int DifferenceCount() const;
    // After the tree shows another model.
    void Follow(VantixFeaturesDiffModel *model);
    // Moves to the next (+1) or previous (-1) difference, wrapping around.
    void Step(int direction);
    // Ticks `column` (1 left, 2 right) of every row of the shown document that offers a choice.
    void TakeAll(int column);
    // Per tab, the rows (counted in the tree's order) that take the right side.
    QVector<QVector<int>> Ticks() const;
    void SetTicks(const QVector<QVector<int>> &ticks);
    // Where the details find the two compared documents of a tab.
    void SetDocuments(std::function<ComparedDocument(int tab)> documentOf);

private:
    void _ShowDetails(const QModelIndex &current);
    void _ShowSummary();

    Ui::VantixJSONEditorClass &m_ui;
    QTabBar *m_tabBar; // not owned
    QLabel *m_summary;
    QPlainTextEdit *m_details;
    bool m_applicable = true;
    QString m_counted;
    int m_total = 0;
    Standing m_standing = NotCompared;
    int m_edits = 0;
    int m_taken = 0; // Applied: of m_appliedOf
    int m_appliedOf = 0;
    QMetaObject::Connection m_current;
    QMetaObject::Connection m_ticks;
    std::function<ComparedDocument(int tab)> m_documentOf;
};

} // namespace ProductEditor
