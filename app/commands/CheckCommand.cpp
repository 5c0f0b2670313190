#include "commands/Command.h"
#include "commands/CommandLine.h"
#include "output/DiagnosticPrinter.h"
#include "output/LoadMessages.h"
#include "output/ProgramMessage.h"

#include "check/FolderChecker.h"

using namespace ProductEditor;

namespace {

bool ParseCheckFormat(const QString &text, CheckFormat *format)
{
    static const QMap<QString, CheckFormat> formats{
        {QStringLiteral("text"), CheckFormat::Text},
        {QStringLiteral("json"), CheckFormat::Json},
        {QStringLiteral("sarif"), CheckFormat::Sarif}};
    const auto found = formats.constFind(text.isEmpty() ? QStringLiteral("text") : text);
    if (found == formats.cend()) {
        ProgramMessage::Fail(QStringLiteral("check: unknown format '%1' (use text, json or sarif)").arg(text));
        return false;
    }
    *format = found.value();
    return true;
}

RecordCounts CountsOf(VantixJsonData *store)
{
    if (!store)
        return {};
    return {{QStringLiteral("features"), store->GetFeatures().size()},
            {QStringLiteral("products"), store->GetProducts().products.size()},
            {QStringLiteral("layouts"), store->GetLayouts().size()},
            {QStringLiteral("extensions"), store->GetExtensions().size()},
            {QStringLiteral("licenses"), store->GetLicenses().size()}};
}

int RunCheck(const QStringList &args, const Reader &reader)
{
    QCommandLineParser parser;
    AddStandardOptions(parser);
    AddCatalogueOption(parser);
    parser.addOption({QStringLiteral("format"), QStringLiteral("Output format: text (default), json or sarif."),
                      QStringLiteral("FORMAT"), QStringLiteral("text")});
    parser.addOption({QStringLiteral("strict"), QStringLiteral("Exit with 1 when there is any warning.")});
    if (const auto status = ParseArguments(parser, QStringLiteral("check"), args, 1, 1))
        return *status;
    CheckFormat format = CheckFormat::Text;
    if (!ParseCheckFormat(parser.value(QStringLiteral("format")), &format))
        return ExitError;

    FolderChecker checker(reader, CatalogueFile(parser));
    const CheckResult result = checker.Check(parser.positionalArguments().at(0));
    ProgramMessage::Print(RecoveryWarnings(result.recovery));
    // Each skipped layout file is a finding (PE011) of an opened folder, in every format;
    // the warnings are told only for a folder that could not be opened.
    if (!result.store)
        ProgramMessage::Print(OpenMessages(result.report, result.catalogueProblem));
    const RecordCounts counts = CountsOf(result.store.get());
    switch (format) {
    case CheckFormat::Text: PrintDiagnosticsText(Out(), counts, result.diagnostics); break;
    case CheckFormat::Json: PrintDiagnosticsJson(Out(), counts, result.diagnostics); break;
    case CheckFormat::Sarif: PrintDiagnosticsSarif(Out(), result.diagnostics); break;
    }
    if (!result.store)
        return ExitError;
    const bool warned = !result.diagnostics.isEmpty();
    return warned && parser.isSet(QStringLiteral("strict")) ? ExitDifferent : ExitOk;
}

} // namespace

extern const Command CheckCommand{
    QStringLiteral("check"),
    QStringLiteral("  product-editor check DIR [--format text|json|sarif] [--strict]\n"
                   "      Load DIR, print the count of each record kind and warn about what\n"
                   "      loading or saving would quietly change (exit 1 on warnings with\n"
                   "      --strict).\n"),
    RunCheck};
