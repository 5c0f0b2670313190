#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>

namespace ProductEditor {

// File operations that are on the disk when they return, for the folder saves. Each
// failure fills `error` with the system's reason.

// Creates `path`, which must not exist, with `bytes` and `permissions` (none: the
// defaults of a new file), and syncs it. A partial file is removed.
bool WriteDurably(const QString &path, const QByteArray &bytes, QFileDevice::Permissions permissions,
                  QString *error);

// Syncs a folder, so that the names created, renamed or removed in it are on the disk.
bool SyncFolder(const QString &folder, QString *error);

// Renames `from` over `to` in one step, replacing `to` when it exists.
bool ReplaceFile(const QString &from, const QString &to, QString *error);

// Removes `path`; a file that is already gone is not an error.
bool RemoveFile(const QString &path, QString *error);

} // namespace ProductEditor
