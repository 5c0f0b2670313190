#pragma once

// Shorthands the suites share: JSON from text and back, sets as text, files on disk and
// runs of a program.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QStringList>

inline QJsonObject Obj(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

// Any value as compact JSON text (inside a one-element array, so that scalars print).
inline QString Compact(const QJsonValue &value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
}

// Creates the folders on the way; false when the file cannot be written whole.
inline bool Write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
inline bool Write(const QString &path, const QString &text) { return Write(path, text.toUtf8()); }
inline bool Write(const QString &path, const char *text) { return Write(path, QByteArray(text)); }

inline QByteArray Read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Set order is free: sorted and joined with ",".
inline QString Sorted(const QSet<QString> &set)
{
    QStringList list(set.cbegin(), set.cend());
    list.sort();
    return list.join(',');
}

struct Run
{
    int status = -1; // -1: the program crashed or did not finish
    QString out;
    QString err;
    QString all() const { return out + err; }
};

inline Run Start(const QString &program, const QStringList &args, const QString &folder = QString())
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, args);
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

#ifdef PE_PROGRAM
inline Run Program(const QStringList &args) { return Start(PE_PROGRAM, args); }
#endif
