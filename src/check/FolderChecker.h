#pragma once

#include "ProductEditorExport.h"
#include "check/Diagnostic.h"
#include "store/FolderTransaction.h"
#include "store/LoadReport.h"
#include "store/RecordsSnapshot.h"
#include "store/VantixJsonData.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace ProductEditor {

// What `check` finds in a definition folder.
struct CheckResult
{
    std::unique_ptr<VantixJsonData> store; // null when the folder or the catalogue was refused
    Diagnostics diagnostics;               // by file in reading order, then by position
    LoadReport report;                     // the load's, also of a refused folder
    std::optional<LoadProblem> catalogueProblem; // why the catalogue file was refused
    FolderRecovery recovery;               // what the open did about an interrupted save
};

// Loads a folder as every command does and tells what loading and saving quietly do
// to it. Each file is read once: the checks scan the bytes the loader was given.
class PRODUCT_EDITOR_EXPORT FolderChecker
{
public:
    FolderChecker(Reader reader, QString catalogueFile);

    CheckResult Check(const QString &folder);
    // Checks license names against `catalogue` instead of a catalogue file (PE008).
    void UseCatalogue(const QMap<QString, QString> &catalogue);
    // Check then leaves an interrupted save alone instead of finishing or undoing it, as a
    // check must whose reader serves bytes already read while a window may be saving.
    void LeaveInterruptedSaves();
    // Where a save of `records` over the folder would rewrite its files (PE014). Nothing,
    // and `asLoaded` set, when a save of them writes what a save of the folder as it
    // loads would: the folder's own findings then hold for them.
    Diagnostics CheckSave(const QString &folder, const RecordsSnapshot &records, bool *asLoaded);
    // Whether a save of `records` writes what a save of `loaded` would; the catalogue is not written.
    static bool WritesAsLoaded(const RecordsSnapshot &records, VantixJsonData &loaded);
    // By file in the order the last check read them, then by position.
    void Sort(Diagnostics &diagnostics) const;

private:
    Reader RecordingReader();
    Diagnostic CatalogueRefusal(const LoadProblem &problem) const;
    Diagnostics CheckDocuments(VantixJsonData &store, int folderReads) const;
    Diagnostics CheckCanonical(VantixJsonData &store);

    Reader m_reader;
    QString m_catalogueFile;
    std::optional<QMap<QString, QString>> m_catalogue; // given instead of the file
    bool m_recover = true;
    QStringList m_reads;               // paths as the loader named them, in reading order
    QHash<QString, QByteArray> m_bytes; // by those paths
    Writer m_write;     // where the store's writer sends a save
};

} // namespace ProductEditor
