#include "editor/EditSteps.h"

namespace ProductEditor {

EditSteps::Step EditSteps::Current() const
{
    return m_current;
}

EditSteps::Step EditSteps::Grow()
{
    m_nodes.append({m_current, m_nodes[m_current].depth + 1});
    m_current = m_nodes.size() - 1;
    return m_current;
}

void EditSteps::MoveTo(Step step)
{
    if (step >= 0 && step < m_nodes.size())
        m_current = step;
}

// Both climb to their common step; the path is the edits undone plus those made.
int EditSteps::Distance(Step from, Step to) const
{
    if (from < 0 || to < 0 || from >= m_nodes.size() || to >= m_nodes.size())
        return -1;
    int edits = 0;
    while (from != to) {
        Step &deeper = m_nodes[from].depth >= m_nodes[to].depth ? from : to;
        deeper = m_nodes[deeper].parent;
        ++edits;
    }
    return edits;
}

} // namespace ProductEditor
