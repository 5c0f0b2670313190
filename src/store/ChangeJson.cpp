#include "store/ChangeJson.h"

#include "store/ChangeWording.h"

namespace ProductEditor {

namespace {

void Put(QJsonObject &object, const char *key, const QString &value)
{
    if (!value.isEmpty())
        object.insert(QLatin1String(key), value);
}

} // namespace

QString RecordName(RecordChange::Record record)
{
    static const char *const names[] = {"feature", "product", "layout", "license", "extension"};
    return QLatin1String(names[int(record)]);
}

QString KindName(RecordChange::Kind kind)
{
    static const char *const names[] = {"added", "removed", "renamed", "changed", "gained", "lost"};
    return QLatin1String(names[int(kind)]);
}

QJsonObject ChangeToJson(const RecordChange &change)
{
    QJsonObject object{{QStringLiteral("record"), RecordName(change.record)},
                       {QStringLiteral("kind"), KindName(change.kind)},
                       {QStringLiteral("id"), change.id},
                       {QStringLiteral("text"), WordChange(change, ChangeWording::Statement)}};
    Put(object, "field", change.field);
    Put(object, "entry", change.entry);
    Put(object, "before", change.before);
    Put(object, "after", change.after);
    Put(object, "title", change.title);
    if (!change.licenses.isEmpty())
        object.insert(QStringLiteral("licenses"), QJsonArray::fromStringList(change.licenses));
    return object;
}

QJsonArray ChangesToJson(const RecordChanges &changes)
{
    QJsonArray array;
    for (const RecordChange &change : changes)
        array.append(ChangeToJson(change));
    return array;
}

QJsonObject ChangesReportJson(const RecordChanges &changes, const QString &left, const QString &right)
{
    return QJsonObject{{QStringLiteral("version"), kChangeJsonVersion},
                       {QStringLiteral("left"), left},
                       {QStringLiteral("right"), right},
                       {QStringLiteral("count"), changes.size()},
                       {QStringLiteral("changes"), ChangesToJson(changes)}};
}

} // namespace ProductEditor
