#pragma once

#include "store/VantixJsonData.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

#include <memory>

// How many records of each kind a synthetic folder of `features` features has.
struct SyntheticSizes
{
    int features = 0;
    int products = 0;
    int layouts = 0;
    int layoutFiles = 0;
    int extensions = 0;
    int licenses = 0;
};

SyntheticSizes SyntheticSizesFor(int features);

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
// The callbacks refer to this object, which must outlive every store using them.
class MemoryDefinitionFolder
{
public:
    explicit MemoryDefinitionFolder(const SyntheticFolder &folder);

    QString root() const;
    ProductEditor::Reader reader() const;
    ProductEditor::Writer writer();

    QHash<QString, QByteArray> written; // cleaned path -> bytes the writer received

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QHash<QString, QByteArray> m_files; // cleaned path -> bytes served by the reader
};
