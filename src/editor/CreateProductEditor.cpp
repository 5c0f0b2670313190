#include "editor/CreateProductEditor.h"

#include "editor/VantixJSONEditor.h"

namespace ProductEditor {

QMainWindow *CreateProductEditor(const QString &path,
                                 const std::function<QByteArray(const QString &)> &reader,
                                 const std::function<bool(const QString &, const QByteArray &)> &writer,
                                 const QMap<QString, QString> &map, QWidget *parent)
{
    return new VantixJSONEditor(path, reader, writer, map, parent);
}

QMainWindow *CreateProductEditorWithCatalogue(const QString &path,
                                              const std::function<QByteArray(const QString &)> &reader,
                                              const std::function<bool(const QString &, const QByteArray &)> &writer,
                                              const LicenseCatalogueFactory &catalogue, QWidget *parent)
{
    return new VantixJSONEditor(path, reader, writer, catalogue, parent);
}

} // namespace ProductEditor
