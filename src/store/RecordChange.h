#pragma once

#include "ProductEditorExport.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace ProductEditor {

// One difference between two sets of records, in the terms a maintainer uses:
// which record, what happened to it, and the values before and after.
struct PRODUCT_EDITOR_EXPORT RecordChange
{
    enum class Record { Feature, Product, Layout, License, Extension };
    enum class Kind {
        Added,   // `before` names the record it duplicates, when it is a copy of one; the
                 // changes after it under the same id give the rest of its content
        Removed,
        Renamed, // `id` is the old id, `after` the new one; the changes after it under
                 // the new id give what else differs
        Changed, // `field` went from `before` to `after` ("true"/"false" for flags)
        Gained,  // the name list `field` gained `after`
        Lost,    // the name list `field` lost `before`
    };

    RecordChange() = default;
    RecordChange(Record record, Kind kind, const QString &id)
        : record(record)
        , kind(kind)
        , id(id)
    {
    }

    Record record = Record::Feature;
    Kind kind = Kind::Changed;
    QString id;
    QString field; // the document key: "title", "products", "open", "specific", ...
    QString entry; // the licensing entry a "specific" license belongs to
    QString before;
    QString after;
    QString title;        // of an added or removed feature or extension; a license's text
    QStringList licenses; // an extension a product or layout gained or lost in a role: the
                          // licenses covering the extension in that role
};

using RecordChanges = QVector<RecordChange>;

} // namespace ProductEditor
