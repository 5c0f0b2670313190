#pragma once

#include "store/VantixJsonData.h"

#include <QStringList>

// File-backed reader and writer callbacks for the store. The writer never
// leaves a partial file: it writes a temporary file beside the target and
// renames it over the target. Failures are collected so the caller can report
// them, since the store ignores the writer's result.
class FileAccess
{
public:
    enum class Mode { Write, CompareOnly };

    explicit FileAccess(Mode mode = Mode::Write);

    ProductEditor::Reader reader();
    ProductEditor::Writer writer();

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
};
