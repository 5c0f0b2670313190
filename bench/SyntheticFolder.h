#pragma once

#include "store/VantixJsonData.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

#include <memory>

// A deterministic synthetic definition folder: `features` features with
// proportionate products, layouts and extensions, written in non-canonical
// form (unsorted arrays, extra keys) so regeneration has work to do.
struct SyntheticFolder
{
    QByteArray productsJson;
    QMap<QString, QByteArray> layoutFiles; // file name -> bytes
};

SyntheticFolder GenerateSyntheticFolder(int features, quint32 seed = 1);

// Writes products/products.json and layouts/<name> under `dir`.
bool WriteSyntheticFolder(const SyntheticFolder &folder, const QString &dir);

// The same folder served from memory: placeholders on disk for listing, the
// bytes in a hash for the reader; the writer keeps what it is given.
class MemoryDefinitionFolder
{
public:
    explicit MemoryDefinitionFolder(const SyntheticFolder &folder);

    QString root() const;
    ProductEditor::Reader reader() const;
    ProductEditor::Writer writer();

    QHash<QString, QByteArray> written;

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QHash<QString, QByteArray> m_files;
};
