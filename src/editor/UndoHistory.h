#pragma once

#include "editor/ChangesPage.h"
#include "editor/EditSteps.h"
#include "store/RecordsSnapshot.h"

#include <QObject>
#include <QVector>

class QAbstractItemModel;
class QAbstractItemView;
class QUndoStack;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class Model;

// Turns every change of the store's records into one step on the undo stack.
// Changes are noticed through the models' notifications and recorded once the
// event that caused them is done, so an action that touches several models
// (a rename, a duplicate, "Apply changes") is still one step.
class UndoHistory : public QObject
{
public:
    UndoHistory(Ui::VantixJSONEditorClass &ui, Model &model, ChangesPage &changes, QUndoStack &stack,
                EditSteps &steps);

    // Records a change that is still waiting for the end of its event.
    void Flush();
    // Also takes in what was typed into a field that still has focus, so that
    // the next undo takes back the typing rather than the step before it.
    void FlushTyping();
    // After a load: the records as they are now are the clean state, with nothing to undo,
    // one step past the last.
    void Clear();
    // A view that moves through the stack itself: a click on it first records
    // what the click committed elsewhere (a field that loses focus).
    void Watch(QAbstractItemView *view);
    // Puts `snapshot` and the Changes page of that step back and refreshes every
    // view, keeping the current feature, product and extension where they still exist.
    void Restore(const RecordsSnapshot &snapshot, const ChangesPage::State &changes);
    ChangesPage::State CaptureChanges() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _Schedule();
    void _Reselect(QAbstractItemView *view, int column, const QString &id);
    void _ReselectFeature(const QString &id);

    Ui::VantixJSONEditorClass &m_ui;
    Model &m_model;
    ChangesPage &m_changes;
    QUndoStack &m_stack;
    EditSteps &m_steps;
    QVector<QAbstractItemModel *> m_sources; // the models that read the records directly
    RecordsSnapshot m_current;               // the records after the last recorded step
    QString m_nextName;                      // of the step being made, when its action names it
    bool m_pending = false;
    bool m_restoring = false;
};

} // namespace ProductEditor
