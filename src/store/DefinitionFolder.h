#pragma once

#include "ProductEditorExport.h"

#include <QDir>
#include <QFileInfoList>
#include <QString>

namespace ProductEditor {

// Where the documents of a definition folder live: the products document in the
// "products" sub-folder, one or more layout files in the "layouts" sub-folder. Paths are
// joined, never reached with cd, so an entry that is not a folder makes a read or a write
// fail instead of going elsewhere. Everyone who spells a path of the folder asks here.
class PRODUCT_EDITOR_EXPORT DefinitionFolder
{
public:
    explicit DefinitionFolder(const QString &path);

    const QString &Path() const;
    QString ProductsFolder() const;
    QString LayoutsFolder() const;
    // <folder>/products/products.json, where a save writes the products document.
    QString ProductsFile() const;
    // The products document a load reads: in the "products" sub-folder, or in the folder
    // itself when there is no such sub-folder.
    QString LoadedProductsFile() const;
    // The file of the "layouts" sub-folder named `fileName` (only its last part counts).
    QString LayoutFile(const QString &fileName) const;
    // The files of the "layouts" sub-folder, hidden ones too, in listing order.
    QFileInfoList LayoutFiles() const;
    // Both sub-folders exist, so a save creates no folder.
    bool HasSubFolders() const;

    // The definition folder of a document file a store reads or writes:
    // FOLDER/products/products.json, FOLDER/layouts/x.json, or FOLDER/products.json.
    static QString Containing(const QString &file);
    // `path` names the products document in its sub-folder or a file of a layouts folder.
    static bool IsDocumentPath(const QString &path);

    // The same places relative to the folder, with "/" as a repository names them.
    static QString ProductsFolderName();
    static QString LayoutsFolderName();
    static QString ProductsFileName();
    static QString ProductsRelativePath();
    static QString LayoutRelativePath(const QString &fileName);

private:
    QString m_path;
};

} // namespace ProductEditor
