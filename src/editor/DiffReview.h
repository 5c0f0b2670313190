#pragma once

#include <QMetaObject>
#include <QObject>
#include <QString>

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
    DiffReview(Ui::VantixJSONEditorClass &ui, QTabBar *tabBar);

    // After the tabs were rebuilt; `applicable` tells whether "Apply changes" can take them.
    void Recount(bool applicable);
    // After the tree shows another model.
    void Follow(VantixFeaturesDiffModel *model);
    // Moves to the next (+1) or previous (-1) difference, wrapping around.
    void Step(int direction);
    // Ticks `column` (1 left, 2 right) of every row of the shown document that offers a choice.
    void TakeAll(int column);

private:
    void _ShowDetails(const QModelIndex &current);

    Ui::VantixJSONEditorClass &m_ui;
    QTabBar *m_tabBar; // not owned
    QLabel *m_summary;
    QPlainTextEdit *m_details;
    bool m_applicable = true;
    QMetaObject::Connection m_current;
    QMetaObject::Connection m_ticks;
};

} // namespace ProductEditor
