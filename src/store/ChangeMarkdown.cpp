#include "store/ChangeMarkdown.h"

#include "store/ChangeText.h"
#include "store/ChangeWording.h"
#include "store/DefinitionKeys.h"
#include "store/FollowingChanges.h"

#include <QMap>
#include <QStringList>

namespace ProductEditor {

namespace {

using Record = RecordChange::Record;
using Kind = RecordChange::Kind;

// Lists longer than these fold into a <details> block.
constexpr int kLongList = 10;
constexpr int kLongCell = 8;

// The rows of a product's table, in this order.
const char *const kRows[][2] = {
    {"features", "Features"},
    {"modes", "Layouts"},
    {"open", "Opens"},
    {"import", "Imports"},
    {"import_as_project", "Imports as a project"},
    {"export", "Exports"},
    {"export_as_project", "Exports as a project"},
    {"export_as_scene", "Exports as a scene"},
    {"specific", "Specific licenses"},
};
constexpr int kRowCount = int(sizeof(kRows) / sizeof(kRows[0]));

// Text outside code spans: characters Markdown would act on are escaped, and '<', which
// would open an HTML tag. Underscores stay: ids hold them inside words, where forges
// read no emphasis.
QString Escaped(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char('<'))
            out += QStringLiteral("&lt;");
        else if (QStringLiteral("\\`*[]|#").contains(c))
            out += QLatin1Char('\\') + c;
        else
            out += c;
    }
    return out;
}

QString Code(const QString &name)
{
    // A name holding a backtick needs a longer fence.
    const QString fence = name.contains(QLatin1Char('`')) ? QStringLiteral("``") : QStringLiteral("`");
    const QString pad = fence.size() > 1 ? QStringLiteral(" ") : QString();
    return fence + pad + QString(name).replace(QLatin1Char('|'), QStringLiteral("\\|")) + pad + fence;
}

struct ProductSection
{
    QStringList notes;   // added, removed, renamed from
    QStringList bullets; // base license and suffix
    QStringList gained[kRowCount];
    QStringList lost[kRowCount];
};

int RowOf(const QString &field)
{
    for (int row = 0; row < kRowCount; ++row) {
        if (field == QLatin1String(kRows[row][0]))
            return row;
    }
    return -1;
}

QString NameInRow(const RecordChange &change, const QString &name)
{
    QString text = Code(name);
    if (change.field == Keys::kSpecific)
        text += QStringLiteral(" for ") + Code(change.entry);
    if (!change.licenses.isEmpty()) {
        QStringList licenses;
        for (const QString &license : change.licenses)
            licenses << Code(license);
        text += QStringLiteral(" (") + licenses.join(QStringLiteral(", ")) + QLatin1Char(')');
    }
    return text;
}

void AddToRow(ProductSection &section, const RecordChange &change, const QString &field)
{
    const int row = RowOf(field);
    if (row < 0)
        return;
    // A feature's change names the product; the product's table names the feature.
    const bool feature = change.record == Record::Feature;
    if (change.kind == Kind::Gained)
        section.gained[row] << NameInRow(change, feature ? change.id : change.after);
    else
        section.lost[row] << NameInRow(change, feature ? change.id : change.before);
}

void AddProductChange(QMap<QString, ProductSection> &sections, const RecordChange &change)
{
    switch (change.kind) {
    case Kind::Added:
        sections[change.id].notes << (change.before.isEmpty() ? QStringLiteral("added")
                                                              : QStringLiteral("added, a copy of ") + Code(change.before));
        break;
    case Kind::Removed: sections[change.id].notes << QStringLiteral("removed"); break;
    case Kind::Renamed: sections[change.after].notes << QStringLiteral("renamed from ") + Code(change.id); break;
    case Kind::Changed: sections[change.id].bullets << Escaped(WordChange(change, ChangeWording::Statement)); break;
    case Kind::Gained:
    case Kind::Lost: AddToRow(sections[change.id], change, change.field); break;
    }
}

QString List(const QStringList &items, const QString &summary, int longList = kLongList)
{
    QString out;
    for (const QString &item : items)
        out += QStringLiteral("- ") + item + QLatin1Char('\n');
    if (items.size() <= longList)
        return out;
    return QStringLiteral("<details><summary>%1</summary>\n\n%2\n</details>\n").arg(summary, out);
}

QString Cell(const QStringList &names, const QString &what, QStringList &folded)
{
    if (names.size() <= kLongCell)
        return names.join(QStringLiteral(", "));
    folded << List(names, QStringLiteral("%1 (%2)").arg(what).arg(names.size()), kLongCell);
    return QStringLiteral("%1, listed below").arg(names.size());
}

QString Section(const QString &id, const ProductSection &section)
{
    QString out = QStringLiteral("### Product ") + Code(id);
    if (!section.notes.isEmpty())
        out += QStringLiteral(" (") + section.notes.join(QStringLiteral("; ")) + QLatin1Char(')');
    out += QStringLiteral("\n\n");
    if (!section.bullets.isEmpty())
        out += List(section.bullets, QString()) + QLatin1Char('\n');
    QString table;
    QStringList folded;
    for (int row = 0; row < kRowCount; ++row) {
        if (section.gained[row].isEmpty() && section.lost[row].isEmpty())
            continue;
        const QString label = QLatin1String(kRows[row][1]);
        table += QStringLiteral("| %1 | %2 | %3 |\n")
                     .arg(label, Cell(section.gained[row], label + QStringLiteral(" gained by ") + Code(id), folded),
                          Cell(section.lost[row], label + QStringLiteral(" lost by ") + Code(id), folded));
    }
    if (!table.isEmpty())
        out += QStringLiteral("| | Gained | Lost |\n|---|---|---|\n") + table + QLatin1Char('\n');
    for (const QString &block : folded)
        out += block + QLatin1Char('\n');
    return out;
}

} // namespace

QString ChangesMarkdown(const RecordChanges &changes, const QString &left, const QString &right)
{
    if (changes.isEmpty())
        return QString();
    const RecordChanges shown = FoldFollowingChanges(changes);
    QStringList lists[5];
    QMap<QString, ProductSection> products;
    for (const RecordChange &change : shown) {
        if (change.record == Record::Product)
            AddProductChange(products, change);
        else if (change.record == Record::Feature && change.field == Keys::kProducts)
            AddToRow(products[change.kind == Kind::Gained ? change.after : change.before], change, Keys::kFeatures);
        else
            lists[int(change.record)] << Escaped(WordChange(change, ChangeWording::Statement));
    }
    QString out = QStringLiteral("## Definition changes: %1 -> %2\n\n").arg(Escaped(left), Escaped(right));
    out += QStringLiteral("**%1 %2** to %3\n\n")
               .arg(shown.size())
               .arg(shown.size() == 1 ? QStringLiteral("change") : QStringLiteral("changes"),
                    CountChangedRecords(shown));
    for (Record record : {Record::Feature, Record::Product, Record::Layout, Record::License, Record::Extension}) {
        if (record == Record::Product) {
            for (auto it = products.cbegin(); it != products.cend(); ++it)
                out += Section(it.key(), it.value());
            continue;
        }
        const QStringList &items = lists[int(record)];
        if (items.isEmpty())
            continue;
        const QString heading = RecordHeading(record);
        out += QStringLiteral("### %1\n\n").arg(heading)
               + List(items, QStringLiteral("%1 changes to %2").arg(items.size()).arg(heading.toLower()))
               + QLatin1Char('\n');
    }
    return out.trimmed() + QLatin1Char('\n');
}

} // namespace ProductEditor
