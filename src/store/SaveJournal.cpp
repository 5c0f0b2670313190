#include "store/SaveJournal.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QRegularExpression>

namespace ProductEditor {

namespace {

const QString kStagedMark = QStringLiteral(".pe-save-");
const QString kFormat = QStringLiteral("product-editor folder save");

bool IsRelativePath(const QString &path)
{
    return !path.isEmpty() && !path.startsWith(QLatin1Char('/')) && !path.contains(QLatin1Char('\\'))
           && !path.contains(QLatin1Char(':'));
}

} // namespace

QString SaveJournal::FileName()
{
    return QStringLiteral(".product-editor-save");
}

QString SaveJournal::StagedName(const QString &target)
{
    static const char letters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    QString suffix;
    for (int i = 0; i < 6; ++i)
        suffix += QLatin1Char(letters[QRandomGenerator::global()->bounded(int(sizeof(letters) - 1))]);
    return QLatin1Char('.') + target + kStagedMark + suffix;
}

bool SaveJournal::IsStagedName(const QString &name)
{
    static const QRegularExpression pattern(
        QStringLiteral("^\\..+%1[A-Za-z0-9]{6}$").arg(QRegularExpression::escape(kStagedMark)));
    return pattern.match(name).hasMatch();
}

QByteArray SaveJournal::Hash(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

QByteArray SaveJournal::ToJson(const QVector<SaveJournalEntry> &entries)
{
    QJsonArray files;
    for (const SaveJournalEntry &entry : entries) {
        QJsonObject file{{QStringLiteral("target"), entry.target}};
        if (!entry.staged.isEmpty()) {
            file.insert(QStringLiteral("staged"), entry.staged);
            file.insert(QStringLiteral("sha256"), QString::fromLatin1(entry.sha256));
        }
        files.append(file);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("format"), kFormat}, {QStringLiteral("files"), files}})
        .toJson();
}

std::optional<QVector<SaveJournalEntry>> SaveJournal::FromJson(const QJsonDocument &document, QString *error)
{
    const QJsonObject root = document.object();
    if (root.value(QStringLiteral("format")).toString() != kFormat || !root.value(QStringLiteral("files")).isArray()) {
        *error = QStringLiteral("not a save journal of this program");
        return std::nullopt;
    }
    QVector<SaveJournalEntry> entries;
    for (const QJsonValue &value : root.value(QStringLiteral("files")).toArray()) {
        const QJsonObject file = value.toObject();
        SaveJournalEntry entry{file.value(QStringLiteral("target")).toString(),
                               file.value(QStringLiteral("staged")).toString(),
                               file.value(QStringLiteral("sha256")).toString().toLatin1()};
        const bool removal = entry.staged.isEmpty() && entry.sha256.isEmpty();
        if (!IsRelativePath(entry.target) || (!removal && (!IsRelativePath(entry.staged) || entry.sha256.size() != 64))) {
            *error = QStringLiteral("entry %1 names no target, staged file and checksum").arg(entries.size() + 1);
            return std::nullopt;
        }
        entries << entry;
    }
    return entries;
}

} // namespace ProductEditor
