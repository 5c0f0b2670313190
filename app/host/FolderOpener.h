#pragma once

#include "store/FolderTransaction.h"
#include "store/LoadReport.h"
#include "store/VantixJsonData.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

// Opens a definition folder, for every command and for the window. The store reads and
// parses each file once and records why it refused the folder or skipped a layout file;
// the license catalogue is made from the loaded store (or read from the --licenses file)
// right after the load, by Catalogue, which the window calls as its catalogue factory.
class FolderOpener
{
public:
    FolderOpener(ProductEditor::Reader reader, QString catalogueFile);

    // The --licenses file's catalogue, or every license the definitions use. Keeps the
    // store's load report; a refused folder gets an empty catalogue.
    QMap<QString, QString> Catalogue(ProductEditor::VantixJsonData &store);

    // Finishes or undoes a save of `path` that was interrupted, before anything reads it;
    // false when it can do neither (the folder is then refused).
    bool Recover(const QString &path);

    // A store over `path`, recovered, with its catalogue installed; null when the folder or
    // the catalogue file was refused.
    std::unique_ptr<ProductEditor::VantixJsonData> Open(const QString &path, const ProductEditor::Writer &writer);

    bool Opened() const;
    // One line per file the recovery touched and per skipped layout file, then the refusal.
    QStringList Messages() const;

private:
    ProductEditor::Reader m_reader;
    QString m_catalogueFile;
    bool m_loaded = false; // Catalogue has run
    ProductEditor::LoadReport m_report;
    std::optional<ProductEditor::LoadProblem> m_catalogueProblem;
    ProductEditor::FolderRecovery m_recovery;
};
