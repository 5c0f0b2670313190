#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "git/EntryLog.h"
#include "output/LogPrinter.h"
#include "output/ProgramMessage.h"

#include "store/ChangeJson.h"
#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace ProductEditor;

namespace {

struct LogRequest
{
    EntryLog::Options options;
    bool json = false;
};

// Reads the options after they parsed; the exit status when they are not valid.
std::optional<int> ReadRequest(const QCommandLineParser &parser, LogRequest *request)
{
    const QString kind = parser.value(QStringLiteral("kind"));
    if (!EntryChanges::ParseKind(kind, &request->options.entry.record))
        return ProgramMessage::Fail(
            QStringLiteral("log: unknown --kind '%1' (use feature, product, extension, layout or licence)").arg(kind));
    const QString format = parser.value(QStringLiteral("format"));
    if (format != QLatin1String("text") && format != QLatin1String("json"))
        return ProgramMessage::Fail(QStringLiteral("log: unknown format '%1' (use text or json)").arg(format));
    request->json = format == QLatin1String("json");
    if (parser.isSet(QStringLiteral("max-count"))) {
        bool number = false;
        request->options.maxCount = parser.value(QStringLiteral("max-count")).toInt(&number);
        if (!number || request->options.maxCount < 0)
            return ProgramMessage::Fail(QStringLiteral("log: --max-count takes a number of commits, not '%1'")
                                    .arg(parser.value(QStringLiteral("max-count"))));
    }
    request->options.allParents = parser.isSet(QStringLiteral("all-parents"));
    request->options.entry.id = parser.positionalArguments().at(1);
    return std::nullopt;
}

// Lists the commits that changed one entry of a definition folder, newest first.
int RunLog(const QStringList &args, const Reader &)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    parser.addOption({QStringLiteral("kind"),
                      QStringLiteral("What ID names: feature (default), product, extension, layout or licence."),
                      QStringLiteral("KIND"), QStringLiteral("feature")});
    parser.addOption({{QStringLiteral("n"), QStringLiteral("max-count")},
                      QStringLiteral("List at most N commits."), QStringLiteral("N")});
    parser.addOption({QStringLiteral("all-parents"),
                      QStringLiteral("Follow every parent of a merge, not only the first.")});
    parser.addOption({QStringLiteral("format"), QStringLiteral("Output format: text (default) or json."),
                      QStringLiteral("FORMAT"), QStringLiteral("text")});
    if (const auto status = ParseArguments(parser, QStringLiteral("log"), args, 2, 2))
        return *status;
    LogRequest request;
    if (const auto status = ReadRequest(parser, &request))
        return *status;

    QString error;
    FolderHistory history;
    if (!history.Open(parser.positionalArguments().at(0), &error))
        return ProgramMessage::Fail(QStringLiteral("log: %1").arg(error));
    QJsonArray commits;
    int listed = 0;
    const auto found = [&](const EntryLog::Entry &entry) {
        ++listed;
        if (request.json)
            commits.append(LogEntryJson(entry));
        else
            PrintLogEntryText(Out(), entry);
    };
    const auto warn = [](const QString &message) { Err() << ProgramMessage::Warning(QStringLiteral("log: ") + message) << '\n'; };
    if (!EntryLog::Walk(history, request.options, found, warn, &error))
        return ProgramMessage::Fail(QStringLiteral("log: %1").arg(error));
    const EntryChanges &entry = request.options.entry;
    if (request.json) {
        const QJsonObject root{{QStringLiteral("version"), 1},
                               {QStringLiteral("kind"), RecordName(entry.record)},
                               {QStringLiteral("id"), entry.id},
                               {QStringLiteral("commits"), commits}};
        Out() << QString::fromUtf8(JsonText(QJsonDocument(root), QJsonDocument::Indented));
    }
    // Like grep rather than git log: a script can tell an entry that never changed.
    return listed > 0 ? ExitOk : ExitDifferent;
}

} // namespace

extern const Command LogCommand{
    QStringLiteral("log"),
    QStringLiteral("  product-editor log DIR ID [--kind feature|product|extension|layout|licence]\n"
                   "                     [--max-count N] [--all-parents] [--format text|json]\n"
                   "      List, newest first, the commits that changed one entry of DIR, with\n"
                   "      its changes in product terms (exit 1 when none did).\n"),
    RunLog};
