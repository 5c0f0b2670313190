#pragma once

#include "store/FolderTransaction.h"
#include "store/VantixJsonData.h"

#include <QStringList>

#include <memory>

// File-backed reader and writer callbacks for the store. The writer never
// leaves a partial file: it writes a temporary file beside the target and
// renames it over the target; between BeginSave and FinishSave it renames all
// of one save's files together, or none. Failures are collected so the caller
// can report them, since the store ignores the writer's result.
class FileAccess
{
public:
    enum class Mode { Write, CompareOnly };

    explicit FileAccess(Mode mode = Mode::Write);

    ProductEditor::Reader reader();
    ProductEditor::Writer writer();

    // The writer's files go to one all-or-nothing save of the definition folder `folder`.
    void BeginSave(const QString &folder);
    // Puts the files written since BeginSave in place, or, when any failed, none of them.
    bool FinishSave();

    // Paths whose written content differs from what is on disk (CompareOnly).
    const QStringList &changedFiles() const { return m_changed; }
    // "path: reason" for every write that failed.
    const QStringList &errors() const { return m_errors; }

    static QByteArray ReadFile(const QString &path);
    static bool WriteFileAtomically(const QString &path, const QByteArray &bytes, QString *error);

private:
    Mode m_mode;
    QStringList m_changed;
    QStringList m_errors;
    std::unique_ptr<ProductEditor::FolderTransaction> m_save;
    bool m_saveFailed = false;
};
