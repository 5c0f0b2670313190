#pragma once

#include <QHeaderView>
#include <QMap>
#include <QVector>

class QTableView;

namespace ProductEditor {

// How one of the window's tables looks and sorts. Every table gets whole-row
// selection and rows 20 pixels high; the rest is per table.
struct TableLook
{
    bool singleSelection = false;
    bool verticalHeader = false;
    bool horizontalHeader = true;
    bool sortIndicator = true;
    bool highlightSections = true;
    QVector<int> hiddenColumns;
    bool sorting = false;
    // Sorting through the view moves its indicator; sorting only the model
    // leaves the indicator where enabling sorting put it.
    int viewSortColumn = -1;
    int modelSortColumn = -1;
    QMap<int, QHeaderView::ResizeMode> resizeModes;
    bool stretchAll = false;
    bool stretchLast = false;

    void ApplyTo(QTableView *view) const;
};

} // namespace ProductEditor
