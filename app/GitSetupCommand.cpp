#include "CommandLine.h"
#include "Commands.h"
#include "FileAccess.h"
#include "GitRepository.h"
#include "MergeReport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

using namespace ProductEditor;

namespace {

const QString kDriver = QStringLiteral("product-definitions");

// Git runs the driver through the shell.
QString ShellQuoted(const QString &text)
{
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

// A pattern with blanks or quotes is written in C-style quotes, which git reads.
QString AttributePattern(const QString &pattern)
{
    if (!pattern.contains(QRegularExpression(QStringLiteral("[\\s\"\\\\]"))))
        return pattern;
    QString quoted = pattern;
    quoted.replace(QLatin1Char('\\'), QStringLiteral("\\\\")).replace(QLatin1Char('"'), QStringLiteral("\\\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

// Each definition folder's two lines, for every folder with products/products.json.
QStringList AttributeLines(const QStringList &files)
{
    const QString products = QStringLiteral("products/products.json");
    QStringList lines;
    for (const QString &file : files) {
        if (file != products && !file.endsWith(QLatin1Char('/') + products))
            continue;
        const QString folder = file.left(file.size() - products.size());
        lines << AttributePattern(folder + products) + QStringLiteral(" merge=") + kDriver
              << AttributePattern(folder + QStringLiteral("layouts/*")) + QStringLiteral(" merge=") + kDriver;
    }
    lines.sort();
    return lines;
}

bool SetConfig(const GitRepository &repository, const QString &key, const QString &value)
{
    const auto output = repository.Run({QStringLiteral("config"), key, value});
    if (!output.ok) {
        CommandError(QStringLiteral("%1: git config %2: %3").arg(repository.topLevel(), key, output.error));
        return false;
    }
    Out() << "set " << key << " = " << value << "\n";
    return true;
}

bool AddAttributes(const GitRepository &repository, const QStringList &lines)
{
    const QString path = QDir(repository.topLevel()).filePath(QStringLiteral(".gitattributes"));
    QFile file(path);
    QByteArray content;
    if (file.exists()) {
        if (!file.open(QIODevice::ReadOnly)) {
            CommandError(QStringLiteral("%1: cannot read: %2").arg(path, file.errorString()));
            return false;
        }
        content = file.readAll();
    }
    QStringList present;
    for (const QByteArray &line : content.split('\n'))
        present << QString::fromUtf8(line).simplified();
    QStringList added;
    for (const QString &line : lines)
        if (!present.contains(line))
            added << line;
    if (added.isEmpty()) {
        Out() << path << ": already routes every definition folder to the driver\n";
        return true;
    }
    if (!content.isEmpty() && !content.endsWith('\n'))
        content += '\n';
    content += added.join(QLatin1Char('\n')).toUtf8() + '\n';
    QString error;
    if (!FileAccess::WriteFileAtomically(path, content, &error)) {
        CommandError(QStringLiteral("cannot write %1: %2").arg(path, error));
        return false;
    }
    for (const QString &line : added)
        Out() << path << ": added " << line << "\n";
    return true;
}

} // namespace

int RunGitSetup(const QStringList &args, const Reader &)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    if (const auto status = ParseArguments(parser, QStringLiteral("git-setup"), args, 0, 1))
        return *status;
    const QStringList positional = parser.positionalArguments();
    QString error;
    const QString folder = positional.isEmpty() ? QDir::currentPath() : positional.first();
    const auto repository = GitRepository::Open(folder, &error);
    if (!repository)
        return CommandError(error);
    const auto files = repository->Files(&error);
    if (!files)
        return CommandError(QStringLiteral("%1: %2").arg(repository->topLevel(), error));

    const QString driver = ShellQuoted(QCoreApplication::applicationFilePath())
        + QStringLiteral(" merge-file %O %A %B -L ours -L base -L theirs --marker-size %L");
    if (!SetConfig(*repository, QStringLiteral("merge.%1.name").arg(kDriver),
                   QStringLiteral("product definitions, merged as JSON"))
        || !SetConfig(*repository, QStringLiteral("merge.%1.driver").arg(kDriver), driver))
        return ExitError;
    const QStringList lines = AttributeLines(*files);
    if (lines.isEmpty()) {
        Out() << repository->topLevel() << ": no definition folder (products/products.json) found\n";
        return ExitOk;
    }
    return AddAttributes(*repository, lines) ? ExitOk : ExitError;
}
