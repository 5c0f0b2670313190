#include "host/EditorOptions.h"

#include "commands/CommandLine.h"

namespace {

const QString ScreenshotOption = QStringLiteral("screenshot");
const QString TabOption = QStringLiteral("tab");

} // namespace

void AddEditorOptions(QCommandLineParser &parser)
{
    AddCatalogueOption(parser);
    parser.addOption({ScreenshotOption, QStringLiteral("Render the window to a PNG file and exit."),
                      QStringLiteral("FILE")});
    parser.addOption({TabOption, QStringLiteral("The page to render, 0 to 5."), QStringLiteral("N")});
}

std::optional<int> ParseEditorArguments(const QStringList &args, EditorOptions *options)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddEditorOptions(parser);
    if (const auto status = ParseArguments(parser, QString(), args, 0, 1))
        return status;
    options->folder = parser.positionalArguments().value(0);
    options->licenses = CatalogueFile(parser);
    options->screenshot = parser.value(ScreenshotOption);
    if (!parser.isSet(TabOption))
        return std::nullopt;
    const QString text = parser.value(TabOption);
    bool ok = false;
    options->tab = text.toInt(&ok);
    if (!ok || options->tab < 0 || options->tab > 5)
        return UsageError(QStringLiteral("--tab: '%1' is not a page number from 0 to 5").arg(text));
    if (options->screenshot.isEmpty())
        return UsageError(QStringLiteral("--tab is only meaningful with --screenshot"));
    return std::nullopt;
}
