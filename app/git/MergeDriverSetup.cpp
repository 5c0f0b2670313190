#include "git/MergeDriverSetup.h"

#include "git/GitRepository.h"
#include "host/FileAccess.h"
#include "output/Console.h"
#include "output/ProgramMessage.h"
#include "store/DefinitionFolder.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using ProductEditor::DefinitionFolder;

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

} // namespace

MergeDriverSetup::MergeDriverSetup(const GitRepository &repository)
    : m_repository(repository)
{
}

bool MergeDriverSetup::SetDriver(const QString &program) const
{
    const QString driver = ShellQuoted(program)
        + QStringLiteral(" merge-file %O %A %B -L ours -L base -L theirs --marker-size %L");
    return SetConfig(QStringLiteral("merge.%1.name").arg(kDriver), QStringLiteral("product definitions, merged as JSON"))
        && SetConfig(QStringLiteral("merge.%1.driver").arg(kDriver), driver);
}

QStringList MergeDriverSetup::AttributeLines(const QStringList &files)
{
    const QString products = DefinitionFolder::ProductsRelativePath();
    QStringList lines;
    for (const QString &file : files) {
        if (file != products && !file.endsWith(QLatin1Char('/') + products))
            continue;
        const QString folder = file.left(file.size() - products.size());
        lines << AttributePattern(folder + products) + QStringLiteral(" merge=") + kDriver
              << AttributePattern(folder + DefinitionFolder::LayoutRelativePath(QStringLiteral("*"))) + QStringLiteral(" merge=") + kDriver;
    }
    lines.sort();
    return lines;
}

bool MergeDriverSetup::AddAttributes(const QStringList &lines) const
{
    const QString path = QDir(m_repository.topLevel()).filePath(QStringLiteral(".gitattributes"));
    QFile file(path);
    QByteArray content;
    if (file.exists()) {
        if (!file.open(QIODevice::ReadOnly)) {
            ProgramMessage::Fail(QStringLiteral("%1: cannot read: %2").arg(path, file.errorString()));
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
        ProgramMessage::Fail(QStringLiteral("cannot write %1: %2").arg(path, error));
        return false;
    }
    for (const QString &line : added)
        Out() << path << ": added " << line << "\n";
    return true;
}

bool MergeDriverSetup::SetConfig(const QString &key, const QString &value) const
{
    const auto output = m_repository.Run({QStringLiteral("config"), key, value});
    if (!output.ok) {
        ProgramMessage::Fail(QStringLiteral("%1: git config %2: %3").arg(m_repository.topLevel(), key, output.error));
        return false;
    }
    Out() << "set " << key << " = " << value << "\n";
    return true;
}
