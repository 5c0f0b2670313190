#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace ProductEditor {

// The canonical form of one definition document: what normalize writes for it.
// A layout file is an object whose only key is "layouts"; any other non-empty
// object is a products document.
struct PRODUCT_EDITOR_EXPORT CanonicalDocument
{
    enum Kind { None, Products, Layouts };

    QJsonObject object;
    QByteArray bytes;
    QString error; // empty on success; a parse error comes with its line and column
    int line = 0;
    int column = 0;

    bool ok() const { return error.isEmpty(); }

    static Kind KindOf(const QJsonObject &document);
    // The object a store that holds only `document` regenerates; empty for None.
    static QJsonObject CanonicalObject(const QJsonObject &document);
    // The same, always through the store, even for a document that is already canonical.
    static QJsonObject RegeneratedObject(const QJsonObject &document);
    // The bytes a save writes for a regenerated object.
    static QByteArray Bytes(const QJsonObject &document);
};

PRODUCT_EDITOR_EXPORT CanonicalDocument CanonicalizeDefinitionDocument(const QByteArray &bytes);

} // namespace ProductEditor
