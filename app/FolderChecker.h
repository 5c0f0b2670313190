#pragma once

#include "Diagnostic.h"

#include "store/VantixJsonData.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>

// What `check` finds in a definition folder.
struct CheckResult
{
    std::unique_ptr<ProductEditor::VantixJsonData> store; // null when the folder was refused
    Diagnostics diagnostics; // by file in reading order, then by position
    QStringList messages;    // why the folder could not be opened, for stderr
};

// Loads a folder as every command does and tells what loading and saving quietly do
// to it. Each file is read once: the checks scan the bytes the loader was given.
class FolderChecker
{
public:
    FolderChecker(ProductEditor::Reader reader, QString catalogueFile);

    CheckResult Check(const QString &folder);

private:
    ProductEditor::Reader RecordingReader();
    Diagnostic CatalogueRefusal(const QStringList &messages) const;
    Diagnostics CheckDocuments(ProductEditor::VantixJsonData &store, int folderReads) const;
    Diagnostics CheckCanonical(ProductEditor::VantixJsonData &store);
    void Sort(Diagnostics &diagnostics) const;

    ProductEditor::Reader m_reader;
    QString m_catalogueFile;
    QStringList m_reads;               // paths as the loader named them, in reading order
    QHash<QString, QByteArray> m_bytes; // by those paths
    ProductEditor::Writer m_write;     // where the store's writer sends a save
};
