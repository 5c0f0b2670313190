#include "commands/Usage.h"

#include "commands/CommandRegistry.h"

QString UsageText()
{
    QString text = QStringLiteral(
        "Usage:\n"
        "  product-editor [DIR] [--licenses FILE] [--screenshot FILE [--tab N]]\n"
        "      Open the editor window on DIR (default: the bundled example).\n");
    for (const Command *command : CommandRegistry::Commands())
        text += command->synopsis;
    return text
        + QStringLiteral(
               "\n"
               "Options:\n"
               "  --licenses FILE  license catalogue, a JSON object of key -> display text\n"
               "                   (for query, --licenses takes the license KEYS instead)\n"
               "  --help           show this text\n"
               "  --version        show the version\n"
               "\n"
               "Exit status: 0 success (no differences, a match), 1 differences, no match\n"
               "or warnings of check --strict, 2 error.\n");
}

QString VersionText()
{
    return QStringLiteral("product-editor " PE_VERSION "\n");
}
