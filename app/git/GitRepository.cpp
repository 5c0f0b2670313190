#include "git/GitRepository.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace {

GitRepository::Output RunGit(const QString &workingFolder, const QStringList &args)
{
    QProcess process;
    process.setWorkingDirectory(workingFolder);
    // Paths are passed as they are, never as patterns.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("GIT_LITERAL_PATHSPECS"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("git"), args);
    GitRepository::Output output;
    if (!process.waitForStarted(-1) || !process.waitForFinished(-1)) {
        output.error = QStringLiteral("cannot run git: %1").arg(process.errorString());
        return output;
    }
    output.out = process.readAllStandardOutput();
    output.error = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    output.ok = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!output.ok && output.error.isEmpty())
        output.error = QStringLiteral("git %1 failed").arg(args.value(0));
    return output;
}

QStringList NulSeparated(const QByteArray &bytes)
{
    QStringList items;
    for (const QByteArray &item : bytes.split('\0'))
        if (!item.isEmpty())
            items << QString::fromUtf8(item);
    return items;
}

} // namespace

GitRepository::GitRepository(QString top)
    : m_top(std::move(top))
{
}

std::optional<GitRepository> GitRepository::Open(const QString &folder, QString *error)
{
    const QFileInfo info(folder);
    if (!info.isDir()) {
        *error = QStringLiteral("%1: not a folder").arg(folder);
        return std::nullopt;
    }
    const Output output =
        RunGit(info.absoluteFilePath(), {QStringLiteral("rev-parse"), QStringLiteral("--show-toplevel")});
    if (!output.ok) {
        *error = QStringLiteral("%1: %2").arg(folder, output.error);
        return std::nullopt;
    }
    return GitRepository(QString::fromUtf8(output.out).trimmed());
}

QString GitRepository::RelativePath(const QString &path) const
{
    const QFileInfo info(path);
    const QString absolute = info.exists() ? info.canonicalFilePath() : QDir::cleanPath(info.absoluteFilePath());
    const QString relative = QDir(m_top).relativeFilePath(absolute);
    return relative == QLatin1String(".") ? QString() : relative;
}

GitRepository::Output GitRepository::Run(const QStringList &args) const
{
    return RunGit(m_top, args);
}

std::optional<QByteArray> GitRepository::Blob(const QString &object, QString *error) const
{
    const Output output = Run({QStringLiteral("cat-file"), QStringLiteral("blob"), object});
    if (!output.ok) {
        *error = output.error;
        return std::nullopt;
    }
    return output.out;
}

std::optional<QList<GitRepository::Unmerged>> GitRepository::UnmergedFiles(const QStringList &paths,
                                                                           QString *error) const
{
    const Output output = Run(QStringList{QStringLiteral("ls-files"), QStringLiteral("-u"), QStringLiteral("-z"),
                                          QStringLiteral("--")}
                              + paths);
    if (!output.ok) {
        *error = output.error;
        return std::nullopt;
    }
    // "mode blob stage<TAB>path" per entry, the stages of one path next to each other.
    QList<Unmerged> files;
    for (const QString &entry : NulSeparated(output.out)) {
        const QString path = entry.section(QLatin1Char('\t'), 1);
        const QStringList fields = entry.section(QLatin1Char('\t'), 0, 0).split(QLatin1Char(' '));
        if (fields.size() != 3 || path.isEmpty())
            continue;
        if (files.isEmpty() || files.last().path != path)
            files.append({path, {}});
        files.last().stages.insert(fields.at(2).toInt(), fields.at(1));
    }
    return files;
}

std::optional<QStringList> GitRepository::Files(QString *error) const
{
    const Output output = Run({QStringLiteral("ls-files"), QStringLiteral("-z"), QStringLiteral("--cached"),
                               QStringLiteral("--others"), QStringLiteral("--exclude-standard")});
    if (!output.ok) {
        *error = output.error;
        return std::nullopt;
    }
    QStringList files = NulSeparated(output.out);
    files.removeDuplicates();
    return files;
}

std::optional<QMap<QString, QString>> GitRepository::FilesAt(const QString &revision, const QString &folder,
                                                              QString *error) const
{
    const QString commit = revision + QStringLiteral("^{commit}");
    const Output check =
        Run({QStringLiteral("rev-parse"), QStringLiteral("--verify"), QStringLiteral("--quiet"), commit});
    if (!check.ok) {
        *error = QStringLiteral("%1: not a revision").arg(revision);
        return std::nullopt;
    }
    QStringList args{QStringLiteral("ls-tree"), QStringLiteral("-z"), commit};
    if (!folder.isEmpty())
        args << QStringLiteral("--") << folder + QLatin1Char('/');
    const Output output = Run(args);
    if (!output.ok) {
        *error = output.error;
        return std::nullopt;
    }
    // "mode type object<TAB>path"; only regular files count, as a folder load reads them.
    QMap<QString, QString> files;
    for (const QString &entry : NulSeparated(output.out)) {
        const QStringList fields = entry.section(QLatin1Char('\t'), 0, 0).split(QLatin1Char(' '));
        if (fields.size() == 3 && fields.at(1) == QLatin1String("blob") && fields.at(0) != QLatin1String("120000"))
            files.insert(QFileInfo(entry.section(QLatin1Char('\t'), 1)).fileName(), fields.at(2));
    }
    return files;
}
