#pragma once

#include "ProductEditorExport.h"
#include "store/RecordsSnapshot.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace ProductEditor {

// A table of records against the products (and layouts) that use them, as a price
// page or a format list shows it: features by products, or extensions by products
// and layouts. Rows are in id order, product columns in document order (the first
// product of each id), layout columns in name order.
struct PRODUCT_EDITOR_EXPORT RecordMatrix
{
    enum class Of { Features, Extensions };

    struct Column
    {
        QString id;
        bool layout = false; // a layout, else a product
    };

    struct Cell
    {
        bool has = false;
        // Features: the product's specific licenses for a feature it has, sorted. Extensions:
        // the roles the product or layout has the extension in, in role order.
        QStringList values;
    };

    struct Row
    {
        QString id;
        QString title;
        QString ext; // extensions only: the file name pattern
        QVector<Cell> cells; // one per column
    };

    static RecordMatrix Build(const RecordsSnapshot &records, Of of);
    // "features" or "extensions", as the command line and the JSON name them.
    static QString OfName(Of of);

    Of of = Of::Features;
    QVector<Column> columns;
    QVector<Row> rows;
};

} // namespace ProductEditor
