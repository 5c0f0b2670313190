#include "diff/DiffNodeChange.h"

#include "json/QJsonDiffTreeItem.h"

#include <QStringList>

#include <initializer_list>

namespace ProductEditor {

namespace {

using Record = RecordChange::Record;
using Kind = RecordChange::Kind;

QStringList PathKeys(const QJsonTreeItem &node)
{
    QStringList keys;
    for (const QJsonTreeItem *item = &node; item && item->parent(); item = item->parent())
        keys.prepend(item->key());
    return keys;
}

// Whether `keys` follow `pattern`, whose "*" take any key; those keys go to `captured`.
bool Match(const QStringList &keys, std::initializer_list<const char *> pattern, QStringList *captured)
{
    if (keys.size() != int(pattern.size()))
        return false;
    captured->clear();
    int i = 0;
    for (const char *part : pattern) {
        if (qstrcmp(part, "*") == 0)
            captured->append(keys.at(i));
        else if (keys.at(i) != QLatin1String(part))
            return false;
        ++i;
    }
    return true;
}

// The fields a row can change, with the value a document that leaves them out means.
struct Field
{
    const char *key;
    bool flag;
    bool fallback; // for flags
};

const Field kFields[] = {{"title", false, false},         {"tooltip", false, false},
                         {"statustip", false, false},     {"ext", false, false},
                         {"base", false, false},          {"profile_suffix", false, false},
                         {"visual", true, true},          {"emergency", true, false},
                         {"slices_support", true, false}, {"cad_support", true, false},
                         {"load_as_part", true, false},   {"multiple_parts_support", true, false}};

class RowReader
{
public:
    explicit RowReader(const QJsonDiffTreeItem &node)
        : m_node(node)
        , m_leftOnly(node.diffType() & QJsonDiffTreeItem::LeftOnly)
        , m_rightOnly(node.diffType() & QJsonDiffTreeItem::RightOnly)
    {
    }

    std::optional<RecordChange> Record(RecordChange::Record record, const QString &id) const
    {
        if (!m_leftOnly && !m_rightOnly)
            return std::nullopt;
        return RecordChange(record, m_leftOnly ? Kind::Removed : Kind::Added, id);
    }

    std::optional<RecordChange> Name(RecordChange::Record record, const QString &id, const QString &field,
                                     const QString &name, const QString &entry = QString()) const
    {
        if (!m_leftOnly && !m_rightOnly)
            return std::nullopt;
        RecordChange change(record, m_leftOnly ? Kind::Lost : Kind::Gained, id);
        change.field = field;
        change.entry = entry;
        (m_leftOnly ? change.before : change.after) = name;
        return change;
    }

    std::optional<RecordChange> Value(RecordChange::Record record, const QString &id, const QString &key) const
    {
        if (m_node.childCount() > 0)
            return std::nullopt;
        for (const Field &field : kFields) {
            if (key != QLatin1String(field.key))
                continue;
            RecordChange change(record, Kind::Changed, id);
            change.field = key;
            change.before = Text(field, m_rightOnly ? QJsonValue() : m_node.values().left);
            change.after = Text(field, m_leftOnly ? QJsonValue() : m_node.values().right);
            if (change.before == change.after)
                return std::nullopt;
            return change;
        }
        return std::nullopt;
    }

private:
    static QString Text(const Field &field, const QJsonValue &value)
    {
        if (!field.flag)
            return value.toString();
        return (value.isBool() ? value.toBool() : field.fallback) ? QStringLiteral("true") : QStringLiteral("false");
    }

    const QJsonDiffTreeItem &m_node;
    bool m_leftOnly;
    bool m_rightOnly;
};

} // namespace

std::optional<RecordChange> RecordChangeOfDiffNode(const QJsonDiffTreeItem &node)
{
    const QStringList keys = PathKeys(node);
    const RowReader row(node);
    QStringList c;
    if (Match(keys, {"features", "feature", "*"}, &c))
        return row.Record(Record::Feature, c[0]);
    if (Match(keys, {"features", "feature", "*", "*"}, &c))
        return row.Value(Record::Feature, c[0], c[1]);
    if (Match(keys, {"products", "product", "*"}, &c))
        return row.Record(Record::Product, c[0]);
    if (Match(keys, {"products", "product", "*", "features", "*"}, &c))
        return row.Name(Record::Feature, c[1], QStringLiteral("products"), c[0]);
    if (Match(keys, {"products", "product", "*", "modes", "*"}, &c))
        return row.Name(Record::Product, c[0], QStringLiteral("modes"), c[1]);
    if (Match(keys, {"products", "product", "*", "extensions", "*", "*"}, &c))
        return row.Name(Record::Product, c[0], c[1], c[2]);
    if (Match(keys, {"products", "product", "*", "licensing", "base"}, &c))
        return row.Value(Record::Product, c[0], QStringLiteral("base"));
    if (Match(keys, {"products", "product", "*", "profile_suffix"}, &c))
        return row.Value(Record::Product, c[0], QStringLiteral("profile_suffix"));
    if (Match(keys, {"products", "product", "*", "licensing", "specific", "*", "licenses", "*"}, &c))
        return row.Name(Record::Product, c[0], QStringLiteral("specific"), c[2], c[1]);
    if (Match(keys, {"extensions", "extension", "*"}, &c))
        return row.Record(Record::Extension, c[0]);
    if (Match(keys, {"extensions", "extension", "*", "*"}, &c))
        return row.Value(Record::Extension, c[0], c[1]);
    if (Match(keys, {"extensions", "lic_coveradge", "*", "*", "lic", "*"}, &c))
        return row.Name(Record::Extension, c[1], c[0], c[2]);
    if (Match(keys, {"layouts", "*", "features", "*"}, &c))
        return row.Name(Record::Feature, c[1], QStringLiteral("layouts"), c[0]);
    if (Match(keys, {"layouts", "*", "extensions", "*", "*"}, &c))
        return row.Name(Record::Layout, c[0], c[1], c[2]);
    return std::nullopt;
}

} // namespace ProductEditor
