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
    view->setSortingEnabled(sorting);
    if (viewSortColumn >= 0)
        view->sortByColumn(viewSortColumn, Qt::AscendingOrder);
    if (modelSortColumn >= 0)
        view->model()->sort(modelSortColumn, Qt::AscendingOrder);
    // Enabling sorting shows the indicator again.
    if (!sortIndicator)
        columns->setSortIndicatorShown(false);
    if (!stretchAll)
        view->resizeColumnsToContents();
    for (auto it = resizeModes.constBegin(); it != resizeModes.constEnd(); ++it)
        columns->setSectionResizeMode(it.key(), it.value());
    columns->setStretchLastSection(stretchLast);
}

} // namespace ProductEditor
