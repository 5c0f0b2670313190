#pragma once

#include "ProductEditorExport.h"
#include "check/ScannedDocument.h"

#include <QLatin1String>
#include <QPair>
#include <QVector>

namespace ProductEditor {

// What a definition document may hold, as loading reads it and a save writes it back:
// the type of each value, what a value of another type reads as, and which objects a
// save rebuilds from the records (dropping the keys it does not know).
struct PRODUCT_EDITOR_EXPORT DocumentShape
{
    enum class Type { Any, String, Bool, Array, Object };

    Type type = Type::Any;
    const char *readsAs = "";
    bool dropsUnknownKeys = false;
    QVector<QPair<QLatin1String, const DocumentShape *>> members;
    // Arrays: the shape of every element. Objects without listed members: of every member.
    const DocumentShape *element = nullptr;

    static const DocumentShape &ProductsDocument();
    static const DocumentShape &LayoutDocument();

    // Warns about every value of the wrong type (PE010) and every key a save drops
    // (PE009) under `node`.
    void Check(const ScannedDocument &document, int node, Diagnostics &out) const;

private:
    void CheckMembers(const ScannedDocument &document, int node, Diagnostics &out) const;
    const DocumentShape *MemberShape(const JsonPositionScanner &json, int node) const;
};

} // namespace ProductEditor
