#include "commands/CommandLine.h"

#include "commands/Usage.h"
#include "host/FolderOpener.h"
#include "output/ProgramMessage.h"

void AddStandardOptions(QCommandLineParser &parser)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show the usage.")});
    parser.addOption({QStringLiteral("version"), QStringLiteral("Show the version.")});
}

void AddCatalogueOption(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("licenses"),
                      QStringLiteral("License catalogue: a JSON object of license key to display text."),
                      QStringLiteral("FILE")});
}

QString CatalogueFile(const QCommandLineParser &parser)
{
    return parser.value(QStringLiteral("licenses"));
}

std::optional<int> ParseArguments(QCommandLineParser &parser, const QString &command, const QStringList &args,
                                  int minPositional, int maxPositional)
{
    const QString prefix = command.isEmpty() ? QString() : command + QStringLiteral(": ");
    if (!parser.parse(QStringList(QStringLiteral("product-editor")) + args))
        return UsageError(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        Out() << UsageText();
        return ExitOk;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        Out() << VersionText();
        return ExitOk;
    }
    const QStringList positional = parser.positionalArguments();
    if (positional.size() < minPositional)
        return UsageError(prefix + QStringLiteral("missing argument"));
    if (positional.size() > maxPositional)
        return UsageError(prefix + QStringLiteral("unexpected argument '%1'").arg(positional.at(maxPositional)));
    return std::nullopt;
}

int UsageError(const QString &message)
{
    Err() << ProgramMessage::Text(message) << "\n\n" << UsageText();
    return ExitError;
}

std::unique_ptr<ProductEditor::VantixJsonData> OpenFolder(const QString &path, const QString &catalogueFile,
                                                          const ProductEditor::Reader &reader,
                                                          const ProductEditor::Writer &writer)
{
    FolderOpener opener(reader, catalogueFile);
    auto store = opener.Open(path, writer);
    ProgramMessage::Print(opener.Messages());
    return store;
}
