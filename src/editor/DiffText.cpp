#include "editor/DiffText.h"

#include "diff/DiffNodeChange.h"
#include "json/QJsonDiffTreeItem.h"
#include "store/ChangeWording.h"
#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace ProductEditor {
namespace DiffText {

namespace {

using Flag = QJsonDiffTreeItem::DiffFlag;

QString Json(const QJsonValue &value)
{
    if (value.isObject())
        return QString::fromUtf8(JsonText(QJsonDocument(value.toObject()), QJsonDocument::Indented)).trimmed();
    if (value.isArray())
        return QString::fromUtf8(JsonText(QJsonDocument(value.toArray()), QJsonDocument::Indented)).trimmed();
    // A scalar is written as the one element of an array, without the brackets.
    const QString text = QString::fromUtf8(JsonText(QJsonDocument(QJsonArray{value}), QJsonDocument::Compact));
    return text.mid(1, text.size() - 2);
}

QString Path(const QJsonTreeItem &node)
{
    QStringList keys;
    for (const QJsonTreeItem *item = &node; item && item->parent(); item = item->parent())
        keys.prepend(item->key());
    return keys.join(QStringLiteral(" / "));
}

bool InArray(const QJsonDiffTreeItem &node)
{
    return node.parent() && node.parent()->type() == QJsonValue::Array;
}

QString Outcome(const QJsonDiffTreeItem &node, bool applicable)
{
    if (!applicable)
        return QStringLiteral("nothing: a comparison of two products cannot be applied");
    const int type = node.diffType();
    const bool left = node.action() == UseLeft;
    if (node.childCount() > 0)
        return QStringLiteral("follows the rows below it");
    if (type & Flag::ValueChanged)
        return left ? QStringLiteral("keeps the left value") : QStringLiteral("takes the right value");
    if (type & Flag::LeftOnly) {
        if (InArray(node))
            return left ? QStringLiteral("keeps the element") : QStringLiteral("drops the element");
        return left ? QStringLiteral("keeps the member")
                    : QStringLiteral("keeps the member (a patch never removes a member)");
    }
    if (type & Flag::RightOnly) {
        if (InArray(node))
            return left ? QStringLiteral("leaves the element out") : QStringLiteral("adds the element");
        return left ? QStringLiteral("leaves the member out")
                    : QStringLiteral("leaves the member out (a patch never adds a member)");
    }
    // A nested changed value offers no choice and keeps its side.
    return left ? QStringLiteral("keeps the left value") : QStringLiteral("takes the right value");
}

// The value `node` stands for in `document`: members by key, array elements by their "id".
QJsonValue ValueAt(const QJsonObject &document, const QJsonTreeItem &node)
{
    QVector<const QJsonTreeItem *> path;
    for (const QJsonTreeItem *item = &node; item && item->parent(); item = item->parent())
        path.prepend(item);
    QJsonValue value(document);
    for (const QJsonTreeItem *item : path) {
        if (value.isObject()) {
            value = value.toObject().value(item->key());
            continue;
        }
        const QJsonArray array = value.toArray();
        const auto element = std::find_if(array.begin(), array.end(), [item](const QJsonValue &candidate) {
            return candidate.toObject().value(QLatin1String("id")).toString() == item->key();
        });
        if (element == array.end())
            return QJsonValue(QJsonValue::Undefined);
        value = *element;
    }
    return value;
}

// Both sides of a record that changed inside, or nothing for anything larger than a record.
bool RecordSides(const QJsonDiffTreeItem &node, const QJsonObject &left, const QJsonObject &right,
                 QString &leftText, QString &rightText)
{
    if (node.childCount() == 0 || !InArray(node) || (left.isEmpty() && right.isEmpty()))
        return false;
    const QJsonValue leftValue = ValueAt(left, node);
    const QJsonValue rightValue = ValueAt(right, node);
    const QString absent = QStringLiteral("(absent)");
    leftText = leftValue.isUndefined() ? absent : Json(leftValue);
    rightText = rightValue.isUndefined() ? absent : Json(rightValue);
    return true;
}

} // namespace

int CountDifferences(const QJsonTreeItem *root)
{
    if (!root)
        return 0;
    int count = 0;
    for (int i = 0; i < root->childCount(); ++i) {
        const QJsonTreeItem *child = root->child(i);
        count += child->childCount() == 0 ? 1 : CountDifferences(child);
    }
    return count;
}

QString Differences(int count)
{
    return count == 1 ? QStringLiteral("1 difference") : QStringLiteral("%1 differences").arg(count);
}

QString NotCompared()
{
    return QStringLiteral("Not compared yet: press Update to compare the definitions with the files as loaded.");
}

QString OutOfDate(int edits)
{
    return QStringLiteral("Out of date: %1 since this comparison. Press Update.")
        .arg(edits == 1 ? QStringLiteral("1 edit") : QStringLiteral("%1 edits").arg(edits));
}

QString Applied(int taken, int total)
{
    return QStringLiteral("Applied: %1 of %2 took the right side, and the loaded documents were re-read from "
                          "the result. Press Update to compare again.")
        .arg(taken)
        .arg(Differences(total));
}

QString Details(const QJsonDiffTreeItem &node, bool applicable, const QJsonObject &leftDocument,
                const QJsonObject &rightDocument)
{
    const int type = node.diffType();
    const QString absent = QStringLiteral("(absent)");
    QString left = (type & Flag::RightOnly) ? absent : Json(node.values().left);
    QString right = (type & Flag::LeftOnly) ? absent : Json(node.values().right);
    QStringList lines{QStringLiteral("Path: ") + Path(node)};
    if (const auto change = applicable ? RecordChangeOfDiffNode(node) : std::nullopt)
        lines << QStringLiteral("In product terms: ") + WordChange(*change, ChangeWording::Statement);
    const Difference &values = node.values();
    if ((type & Flag::Choosable) || !values.left.isNull() || !values.right.isNull()
        || RecordSides(node, leftDocument, rightDocument, left, right))
        lines << QStringLiteral("Left:") << left << QStringLiteral("Right:") << right;
    else
        lines << QStringLiteral("Changed inside; the rows below it hold the values.");
    lines << QStringLiteral("Apply changes: ") + Outcome(node, applicable);
    return lines.join(QLatin1Char('\n'));
}

} // namespace DiffText
} // namespace ProductEditor
