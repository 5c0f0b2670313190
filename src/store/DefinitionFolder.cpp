#include "store/DefinitionFolder.h"

#include <QFileInfo>

namespace ProductEditor {

DefinitionFolder::DefinitionFolder(const QString &path)
    : m_path(path)
{
}

const QString &DefinitionFolder::Path() const
{
    return m_path;
}

QString DefinitionFolder::ProductsFolder() const
{
    return QDir(m_path).filePath(ProductsFolderName());
}

QString DefinitionFolder::LayoutsFolder() const
{
    return QDir(m_path).filePath(LayoutsFolderName());
}

QString DefinitionFolder::ProductsFile() const
{
    return QDir(ProductsFolder()).filePath(ProductsFileName());
}

QString DefinitionFolder::LoadedProductsFile() const
{
    const QDir productsDir(ProductsFolder());
    return (productsDir.exists() ? productsDir : QDir(m_path)).filePath(ProductsFileName());
}

QString DefinitionFolder::LayoutFile(const QString &fileName) const
{
    return QDir(LayoutsFolder()).filePath(QFileInfo(fileName).fileName());
}

QFileInfoList DefinitionFolder::LayoutFiles() const
{
    const QDir layoutsDir(LayoutsFolder());
    return layoutsDir.exists() ? layoutsDir.entryInfoList(QDir::Files | QDir::Hidden, QDir::Unsorted)
                               : QFileInfoList();
}

bool DefinitionFolder::HasSubFolders() const
{
    return QFileInfo(ProductsFolder()).isDir() && QFileInfo(LayoutsFolder()).isDir();
}

QString DefinitionFolder::Containing(const QString &file)
{
    const QDir dir = QFileInfo(file).absoluteDir();
    const QString name = dir.dirName();
    if (name == ProductsFolderName() || name == LayoutsFolderName())
        return QFileInfo(dir.absolutePath()).absolutePath();
    return dir.absolutePath();
}

bool DefinitionFolder::IsDocumentPath(const QString &path)
{
    const QFileInfo info(path);
    const QString folder = QFileInfo(info.path()).fileName();
    return folder == LayoutsFolderName()
        || (folder == ProductsFolderName() && info.fileName() == ProductsFileName());
}

QString DefinitionFolder::ProductsFolderName()
{
    return QStringLiteral("products");
}

QString DefinitionFolder::LayoutsFolderName()
{
    return QStringLiteral("layouts");
}

QString DefinitionFolder::ProductsFileName()
{
    return QStringLiteral("products.json");
}

QString DefinitionFolder::ProductsRelativePath()
{
    return ProductsFolderName() + QLatin1Char('/') + ProductsFileName();
}

QString DefinitionFolder::LayoutRelativePath(const QString &fileName)
{
    return LayoutsFolderName() + QLatin1Char('/') + fileName;
}

} // namespace ProductEditor
