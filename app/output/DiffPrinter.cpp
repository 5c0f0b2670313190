#include "output/DiffPrinter.h"

#include "commands/CommandLine.h"
#include "output/ProgramMessage.h"

#include "diff/JsonDiff.h"
#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace ProductEditor;

namespace {

QString TypeName(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::Null: return QStringLiteral("Null");
    case QJsonValue::Bool: return QStringLiteral("Bool");
    case QJsonValue::Double: return QStringLiteral("Double");
    case QJsonValue::String: return QStringLiteral("String");
    case QJsonValue::Array: return QStringLiteral("Array");
    case QJsonValue::Object: return QStringLiteral("Object");
    case QJsonValue::Undefined: break;
    }
    return QStringLiteral("Undefined");
}

QString ValueText(const QJsonValue &value)
{
    constexpr int limit = 100;
    QString text = QString::fromUtf8(JsonText(QJsonDocument(QJsonArray{value}), QJsonDocument::Compact));
    text = text.mid(1, text.size() - 2);
    if (text.size() > limit)
        text = text.left(limit) + QStringLiteral("...");
    return text;
}

QString Marker(int diffType)
{
    if (diffType & QJsonDiffTreeItem::LeftOnly)
        return QStringLiteral("-");
    if (diffType & QJsonDiffTreeItem::RightOnly)
        return QStringLiteral("+");
    return QStringLiteral("~");
}

void PrintTextNode(QTextStream &out, const QJsonDiffTreeItem &node, int depth)
{
    const int diffType = node.diffType();
    out << QString(depth * 2, QLatin1Char(' ')) << Marker(diffType) << ' ';
    const QJsonValue side = (diffType & QJsonDiffTreeItem::LeftOnly) ? node.values().left : node.values().right;
    if ((diffType & (QJsonDiffTreeItem::LeftOnly | QJsonDiffTreeItem::RightOnly)) && side.isString()
        && side.toString() == node.key()) {
        // A string array element is its own key.
        out << ValueText(side) << '\n';
        return;
    }
    out << (node.key().isEmpty() ? QStringLiteral("\"\"") : node.key());
    if (diffType & (QJsonDiffTreeItem::LeftOnly | QJsonDiffTreeItem::RightOnly))
        out << ": " << ValueText(side);
    else if (node.childCount() == 0)
        out << ": " << ValueText(node.values().left) << " -> " << ValueText(node.values().right);
    out << '\n';
    for (int i = 0; i < node.childCount(); ++i)
        PrintTextNode(out, *static_cast<const QJsonDiffTreeItem *>(node.child(i)), depth + 1);
}

struct DiffCounts
{
    int leftOnly = 0;
    int rightOnly = 0;
    int changed = 0;
};

// Counts items only on one side as one whatever they hold, and changed values.
void Count(const QJsonDiffTreeItem &node, DiffCounts &counts)
{
    if (node.diffType() & QJsonDiffTreeItem::LeftOnly) {
        ++counts.leftOnly;
        return;
    }
    if (node.diffType() & QJsonDiffTreeItem::RightOnly) {
        ++counts.rightOnly;
        return;
    }
    if (node.childCount() == 0)
        ++counts.changed;
    for (int i = 0; i < node.childCount(); ++i)
        Count(*static_cast<const QJsonDiffTreeItem *>(node.child(i)), counts);
}

QString SummaryLine(const std::vector<DiffReport> &reports)
{
    QStringList parts;
    for (const DiffReport &report : reports) {
        if (!report.tree)
            continue;
        DiffCounts counts;
        for (int i = 0; i < report.tree->childCount(); ++i)
            Count(*static_cast<const QJsonDiffTreeItem *>(report.tree->child(i)), counts);
        parts << QStringLiteral("%1: %2 left-only, %3 right-only, %4 changed")
                     .arg(report.name)
                     .arg(counts.leftOnly)
                     .arg(counts.rightOnly)
                     .arg(counts.changed);
    }
    return QStringLiteral("# summary: ") + parts.join(QStringLiteral("; "));
}

} // namespace

void AddFormatOption(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("format"), QStringLiteral("Output format: text (default) or json."),
                      QStringLiteral("FORMAT"), QStringLiteral("text")});
}

bool ParseDiffFormat(const QString &text, DiffFormat *format, const char *choices)
{
    if (text.isEmpty() || text == QLatin1String("text")) {
        *format = DiffFormat::Text;
        return true;
    }
    if (text == QLatin1String("json")) {
        *format = DiffFormat::Json;
        return true;
    }
    ProgramMessage::Fail(QStringLiteral("unknown format '%1' (use %2)").arg(text, QLatin1String(choices)));
    return false;
}

DiffReport CompareDocuments(const QString &name, const QJsonObject &left, const QJsonObject &right)
{
    return DiffReport{name, DiffJson(left, right)};
}

QJsonObject DiffNodeToJson(const QJsonDiffTreeItem &node)
{
    QJsonArray children;
    for (int i = 0; i < node.childCount(); ++i)
        children.append(DiffNodeToJson(*static_cast<const QJsonDiffTreeItem *>(node.child(i))));
    return QJsonObject{
        {QStringLiteral("key"), node.key()},
        {QStringLiteral("type"), TypeName(node.type())},
        {QStringLiteral("diffType"), node.diffType()},
        {QStringLiteral("action"), int(node.action())},
        {QStringLiteral("left"), node.values().left},
        {QStringLiteral("right"), node.values().right},
        {QStringLiteral("children"), children},
    };
}

bool PrintDiffReports(QTextStream &out, const std::vector<DiffReport> &reports, DiffFormat format,
                      const QString &leftSide, const QString &rightSide)
{
    bool different = false;
    for (const DiffReport &report : reports)
        different = different || report.tree;
    if (format == DiffFormat::Json) {
        // Written member by member: a QJsonObject would sort the document names.
        out << "{";
        bool first = true;
        for (const DiffReport &report : reports) {
            if (!report.tree)
                continue;
            const QByteArray name = JsonText(QJsonDocument(QJsonArray{report.name}), QJsonDocument::Compact);
            const QByteArray tree = JsonText(QJsonDocument(DiffNodeToJson(*report.tree)), QJsonDocument::Compact);
            out << (first ? "\n" : ",\n") << "  " << QString::fromUtf8(name.mid(1, name.size() - 2)) << ": "
                << QString::fromUtf8(tree);
            first = false;
        }
        out << (first ? "}\n" : "\n}\n");
        return different;
    }
    if (different) {
        out << "# left: " << leftSide << ", right: " << rightSide
            << "; - left only, + right only, ~ changed (left -> right)\n";
    }
    for (const DiffReport &report : reports) {
        if (!report.tree)
            continue;
        out << "=== " << report.name << '\n';
        for (int i = 0; i < report.tree->childCount(); ++i)
            PrintTextNode(out, *static_cast<const QJsonDiffTreeItem *>(report.tree->child(i)), 0);
    }
    if (different)
        out << SummaryLine(reports) << '\n';
    return different;
}
