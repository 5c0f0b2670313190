#include "output/DiagnosticPrinter.h"

#include "check/DiagnosticRules.h"
#include "store/JsonText.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

using namespace ProductEditor;

namespace {

QString SeverityName(Diagnostic::Severity severity)
{
    return severity == Diagnostic::Severity::Error ? QStringLiteral("error") : QStringLiteral("warning");
}

int CountOf(const Diagnostics &diagnostics, Diagnostic::Severity severity)
{
    return int(std::count_if(diagnostics.cbegin(), diagnostics.cend(),
                             [severity](const Diagnostic &diagnostic) { return diagnostic.severity == severity; }));
}

QString Plural(int count, const char *word)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(word)).arg(count == 1 ? "" : "s");
}

// A relative path stays a relative reference, which code-scanning services resolve
// against the checkout; an absolute one becomes a file URI.
QString FileUri(const QString &file)
{
    if (QDir::isAbsolutePath(file))
        return QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
    return QString::fromLatin1(QUrl::toPercentEncoding(QDir::fromNativeSeparators(QDir::cleanPath(file)), "/"));
}

QJsonObject SarifResult(const Diagnostic &diagnostic, const QHash<QString, int> &ruleIndex)
{
    const QJsonObject region{{QStringLiteral("startLine"), diagnostic.line},
                             {QStringLiteral("startColumn"), diagnostic.column}};
    const QJsonObject physical{
        {QStringLiteral("artifactLocation"), QJsonObject{{QStringLiteral("uri"), FileUri(diagnostic.file)}}},
        {QStringLiteral("region"), region}};
    const QJsonObject location{
        {QStringLiteral("physicalLocation"), physical},
        {QStringLiteral("logicalLocations"),
         QJsonArray{QJsonObject{{QStringLiteral("fullyQualifiedName"), diagnostic.path}}}}};
    return QJsonObject{{QStringLiteral("ruleId"), diagnostic.code},
                       {QStringLiteral("ruleIndex"), ruleIndex.value(diagnostic.code)},
                       {QStringLiteral("level"), SeverityName(diagnostic.severity)},
                       {QStringLiteral("message"), QJsonObject{{QStringLiteral("text"), diagnostic.message}}},
                       {QStringLiteral("locations"), QJsonArray{location}}};
}

} // namespace

void PrintDiagnosticsText(QTextStream &out, const RecordCounts &counts, const Diagnostics &diagnostics)
{
    for (const auto &count : counts)
        out << count.first << ": " << count.second << "\n";
    for (const Diagnostic &diagnostic : diagnostics)
        out << diagnostic.file << ':' << diagnostic.line << ':' << diagnostic.column << ": "
            << SeverityName(diagnostic.severity) << ": " << diagnostic.message << " [" << diagnostic.code << "]\n";
    out << Plural(CountOf(diagnostics, Diagnostic::Severity::Warning), "warning") << ", "
        << Plural(CountOf(diagnostics, Diagnostic::Severity::Error), "error") << "\n";
}

void PrintDiagnosticsJson(QTextStream &out, const RecordCounts &counts, const Diagnostics &diagnostics)
{
    QJsonObject countObject;
    for (const auto &count : counts)
        countObject.insert(count.first, count.second);
    QJsonArray list;
    for (const Diagnostic &diagnostic : diagnostics)
        list.append(QJsonObject{{QStringLiteral("code"), diagnostic.code},
                                {QStringLiteral("severity"), SeverityName(diagnostic.severity)},
                                {QStringLiteral("file"), diagnostic.file},
                                {QStringLiteral("line"), diagnostic.line},
                                {QStringLiteral("column"), diagnostic.column},
                                {QStringLiteral("path"), diagnostic.path},
                                {QStringLiteral("message"), diagnostic.message}});
    const QJsonObject document{{QStringLiteral("counts"), countObject},
                               {QStringLiteral("warnings"), CountOf(diagnostics, Diagnostic::Severity::Warning)},
                               {QStringLiteral("errors"), CountOf(diagnostics, Diagnostic::Severity::Error)},
                               {QStringLiteral("diagnostics"), list}};
    out << QString::fromUtf8(ProductEditor::JsonText(QJsonDocument(document), QJsonDocument::Indented));
}

void PrintDiagnosticsSarif(QTextStream &out, const Diagnostics &diagnostics)
{
    QJsonArray rules;
    QHash<QString, int> ruleIndex;
    for (const DiagnosticRule &rule : DiagnosticRules()) {
        ruleIndex.insert(QString::fromLatin1(rule.code), rules.size());
        rules.append(QJsonObject{
            {QStringLiteral("id"), QString::fromLatin1(rule.code)},
            {QStringLiteral("name"), QString::fromLatin1(rule.name)},
            {QStringLiteral("shortDescription"), QJsonObject{{QStringLiteral("text"), QString::fromUtf8(rule.description)}}}});
    }
    QJsonArray results;
    for (const Diagnostic &diagnostic : diagnostics)
        results.append(SarifResult(diagnostic, ruleIndex));
    const QJsonObject driver{{QStringLiteral("name"), QStringLiteral("product-editor")},
                             {QStringLiteral("version"), QStringLiteral(PE_VERSION)},
                             {QStringLiteral("rules"), rules}};
    const QJsonObject run{{QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
                          {QStringLiteral("columnKind"), QStringLiteral("utf16CodeUnits")},
                          {QStringLiteral("results"), results}};
    const QJsonObject log{{QStringLiteral("$schema"), QStringLiteral("https://json.schemastore.org/sarif-2.1.0.json")},
                          {QStringLiteral("version"), QStringLiteral("2.1.0")},
                          {QStringLiteral("runs"), QJsonArray{run}}};
    out << QString::fromUtf8(ProductEditor::JsonText(QJsonDocument(log), QJsonDocument::Indented));
}
