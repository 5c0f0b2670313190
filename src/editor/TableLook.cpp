#include "editor/TableLook.h"

#include <QTableView>

namespace ProductEditor {

void TableLook::ApplyTo(QTableView *view) const
{
    QHeaderView *columns = view->horizontalHeader();
    QHeaderView *rows = view->verticalHeader();
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    if (singleSelection)
        view->setSelectionMode(QAbstractItemView::SingleSelection);
    rows->setVisible(verticalHeader);
    columns->setVisible(horizontalHeader);
    rows->setDefaultSectionSize(20);
    for (int column : hiddenColumns)
        view->hideColumn(column);
    if (!highlightSections)
        columns->setHighlightSections(false);
    if (stretchAll)
        columns->setSectionResizeMode(QHeaderView::Stretch);
    // Enabling sorting shows the sort indicator, which widens every header
    // size hint, hidden header or not: tables sorted only in their model are
    // measured with it, tables sorted by the view without it.
    if (sorting && viewSortColumn < 0)
        view->setSortingEnabled(true);
    if (modelSortColumn >= 0)
        view->model()->sort(modelSortColumn, Qt::AscendingOrder);
    if (!stretchAll)
        view->resizeColumnsToContents();
    if (sorting && viewSortColumn >= 0) {
        view->setSortingEnabled(true);
        view->sortByColumn(viewSortColumn, Qt::AscendingOrder);
    }
    if (!sortIndicator)
        columns->setSortIndicatorShown(false);
    for (auto it = resizeModes.constBegin(); it != resizeModes.constEnd(); ++it)
        columns->setSectionResizeMode(it.key(), it.value());
    columns->setStretchLastSection(stretchLast);
}

} // namespace ProductEditor
