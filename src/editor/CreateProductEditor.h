#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <functional>

class QMainWindow;
class QWidget;

namespace ProductEditor {

// Creates the editor window over the definition folder at `path`, hidden. Every
// file is read through `reader` and written through `writer`; `map` is the
// license catalogue (license key to display text). With a parent, Qt's parent
// chain deletes the window; without one the caller owns it.
PRODUCT_EDITOR_EXPORT QMainWindow *
CreateProductEditor(const QString &path, const std::function<QByteArray(const QString &)> &reader,
                    const std::function<bool(const QString &, const QByteArray &)> &writer,
                    const QMap<QString, QString> &map, QWidget *parent = nullptr);

// The same window, with the license catalogue made by `catalogue` from the store right
// after it loaded (or failed to load) the folder, before any model reads it. A host
// that derives its catalogue from the definitions thus reads each file once.
PRODUCT_EDITOR_EXPORT QMainWindow *
CreateProductEditorWithCatalogue(const QString &path, const std::function<QByteArray(const QString &)> &reader,
                                 const std::function<bool(const QString &, const QByteArray &)> &writer,
                                 const LicenseCatalogueFactory &catalogue, QWidget *parent = nullptr);

} // namespace ProductEditor
