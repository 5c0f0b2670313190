#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QString>
#include <QVector>

#include <optional>

namespace ProductEditor {

// One file of a folder save, by paths relative to the folder.
struct SaveJournalEntry
{
    QString target;
    QString staged;     // the complete new file beside the target; empty when the save removes the target
    QByteArray sha256;  // of the new content, hex
};

// The intent record of a folder save: written, synced and put in place under its name
// before the first target is replaced, removed after the last. Its presence says that
// every staged file it names is complete on the disk.
class PRODUCT_EDITOR_EXPORT SaveJournal
{
public:
    static QString FileName();
    // A temporary file name beside `target` (a file name, not a path); unique per call.
    static QString StagedName(const QString &target);
    static bool IsStagedName(const QString &name);
    static QByteArray Hash(const QByteArray &bytes);

    static QByteArray ToJson(const QVector<SaveJournalEntry> &entries);
    // Empty, with `error` set, when the document is not a journal this program wrote.
    static std::optional<QVector<SaveJournalEntry>> FromJson(const QJsonDocument &document, QString *error);
};

} // namespace ProductEditor
