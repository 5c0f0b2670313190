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
