#pragma once

#include <QVector>

namespace ProductEditor {

// The window's edits as a tree of steps. A new step grows from the step the records
// are at, so an undo followed by another edit starts a branch, and a load grows one
// step past everything before it. Tells how many edits lie between two steps, which is
// what the Changes page counts since its comparison.
class EditSteps
{
public:
    using Step = int;

    Step Current() const;
    // A new step after the current one; it becomes current.
    Step Grow();
    // Undo and redo move between steps already grown; an unknown step is ignored.
    void MoveTo(Step step);
    // The edits undone and made on the way from `from` to `to`; -1 for an unknown step.
    int Distance(Step from, Step to) const;

private:
    struct Node
    {
        Step parent;
        int depth;
    };

    QVector<Node> m_nodes{{-1, 0}};
    Step m_current = 0;
};

} // namespace ProductEditor
