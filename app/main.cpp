#include "CliSupport.h"
#include "Commands.h"

#include <QCoreApplication>

#include <functional>

namespace {

using Command = std::function<int(const QStringList &)>;

const QMap<QString, Command> &CommandTable()
{
    static const QMap<QString, Command> table = {
        {QStringLiteral("check"), RunCheck},
        {QStringLiteral("normalize"), RunNormalize},
        {QStringLiteral("diff"), RunDiff},
        {QStringLiteral("compare-products"), RunCompareProducts},
        {QStringLiteral("query"), RunQuery},
    };
    return table;
}

int RunCommandLine(int argc, char **argv, const Command &command)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(2);
    const int status = command(args);
    Out().flush();
    Err().flush();
    return status;
}

} // namespace

QString UsageText()
{
    return QStringLiteral(
        "Usage:\n"
        "  product-editor [DIR] [--licenses FILE] [--screenshot FILE [--tab N]]\n"
        "      Open the editor window on DIR (default: the bundled example).\n"
        "  product-editor check DIR\n"
        "      Load DIR and print the count of each record kind.\n"
        "  product-editor normalize DIR [--out OUT] [--check]\n"
        "      Rewrite DIR (or write OUT) in canonical form; --check only lists\n"
        "      the files that would change (exit 1 when any would).\n"
        "  product-editor diff DIR [OTHER] [--format text|json]\n"
        "      Show what regenerating DIR changes, or how DIR and OTHER differ.\n"
        "  product-editor compare-products DIR LEFT RIGHT [--format text|json]\n"
        "      Compare two products of DIR.\n"
        "  product-editor query DIR [--id KEYS] [--title KEYS] [--products KEYS]\n"
        "                           [--layouts KEYS] [--licenses KEYS]\n"
        "      Print the ids of the features that match the query.\n"
        "\n"
        "Options:\n"
        "  --licenses FILE  license catalogue, a JSON object of key -> display text\n"
        "                   (for query, --licenses takes the license KEYS instead)\n"
        "  --help           show this text\n"
        "  --version        show the version\n"
        "\n"
        "Exit status: 0 success (no differences, a match), 1 differences or no match,\n"
        "2 error.\n");
}

int main(int argc, char **argv)
{
    const QString first = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        QCoreApplication app(argc, argv);
        Out() << UsageText();
        Out().flush();
        return ExitOk;
    }
    if (first == QLatin1String("--version")) {
        QCoreApplication app(argc, argv);
        Out() << "product-editor " << PE_VERSION << "\n";
        Out().flush();
        return ExitOk;
    }
    const auto command = CommandTable().constFind(first);
    if (command != CommandTable().constEnd())
        return RunCommandLine(argc, argv, command.value());
    return RunEditor(argc, argv);
}
