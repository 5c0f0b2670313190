#pragma once

#include "ProductEditorExport.h"

#include <QJsonValue>
#include <QString>
#include <QVector>

namespace ProductEditor {

// One step into a document: a member by its key, or an array element by its identity
// (an object's "id", null when it has none; any other element's own value).
struct JsonMergeStep
{
    enum Kind { Member, ObjectElement, ValueElement };

    Kind kind = Member;
    QString key;         // Member only
    QJsonValue identity; // elements only
};

// A place where the two sides changed the base differently. A side that lacks the
// value holds Undefined ("absent"). When `elements` is set the place is a duplicated
// identity, and each side holds the array of its elements with that identity.
struct JsonMergeConflict
{
    QVector<JsonMergeStep> steps;
    QString path; // e.g. features/feature[id=open]/title
    QJsonValue base;
    QJsonValue ours;
    QJsonValue theirs;
    bool elements = false;
};

// The merged value holds ours' side wherever there is a conflict.
struct JsonMergeResult
{
    QJsonValue merged;
    QVector<JsonMergeConflict> conflicts;

    bool clean() const { return conflicts.isEmpty(); }
};

// Three-way merge. Objects merge member by member; array elements are matched as the
// diff engine matches them, so order is never a change. Arrays of names ("features",
// "modes", the six access lists, "lic", "licenses") are sets and never conflict; the
// other arrays keep ours' order and append theirs' new elements in theirs' order.
PRODUCT_EDITOR_EXPORT JsonMergeResult MergeJson(const QJsonValue &base, const QJsonValue &ours,
                                                const QJsonValue &theirs);

PRODUCT_EDITOR_EXPORT QString JsonMergePathText(const QVector<JsonMergeStep> &steps);
// "absent" for Undefined, otherwise the compact JSON text.
PRODUCT_EDITOR_EXPORT QString JsonMergeSideText(const QJsonValue &value);

} // namespace ProductEditor
