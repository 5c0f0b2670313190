#include "diff/JsonDiff.h"

#include "diff/JsonArraySide.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

#include <memory>
#include <vector>

namespace ProductEditor {

namespace {

const QString IdKey = QStringLiteral("id");

void AppendOneSide(QJsonDiffTreeItem *node, const QString &key, const QJsonValue &value, bool left, int diffType)
{
    auto *child = new QJsonDiffTreeItem(node);
    child->setKey(key);
    child->setType(value.type());
    if (left)
        child->setLeftValue(value);
    else
        child->setRightValue(value);
    child->setDiffType(diffType);
    node->appendChild(child);
}

struct SidePool;

bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonDiffTreeItem *node, bool knownDifferent,
               SidePool &pool);

bool BuildObjectDiff(const QJsonObject &lo, const QJsonObject &ro, QJsonDiffTreeItem *node, SidePool &pool)
{
    const QString lid = lo.value(IdKey).toString();
    const QString rid = ro.value(IdKey).toString();
    if ((!lid.isEmpty() || !rid.isEmpty()) && lid != rid)
        return false;

    const int before = node->childCount();
    for (auto it = lo.constBegin(); it != lo.constEnd(); ++it) {
        if (!ro.contains(it.key()))
            AppendOneSide(node, it.key(), it.value(), true, QJsonDiffTreeItem::LeftOnly);
    }
    for (auto it = ro.constBegin(); it != ro.constEnd(); ++it) {
        if (!lo.contains(it.key()))
            AppendOneSide(node, it.key(), it.value(), false, QJsonDiffTreeItem::RightOnly);
    }
    for (auto it = lo.constBegin(); it != lo.constEnd(); ++it) {
        const QJsonValue l = it.value();
        const QJsonValue r = ro.value(it.key());
        if (l.isUndefined() || r.isUndefined() || l == r)
            continue;
        auto *child = new QJsonDiffTreeItem(node);
        if (BuildDiff(l, r, child, true, pool)) {
            child->setKey(it.key());
            child->setType(l.type());
            child->setDiffType(QJsonDiffTreeItem::Changed);
            node->appendChild(child);
        } else {
            delete child;
        }
    }
    return node->childCount() > before;
}

// Scratch sides for the array comparisons of one diff, a pair per nesting level, reused
// so that every compared array does not allocate its buffers afresh.
struct SidePool
{
    std::vector<std::unique_ptr<JsonArraySide>> sides;
    int depth = 0;
};

bool BuildArrayDiff(const QJsonArray &la, const QJsonArray &ra, QJsonDiffTreeItem *node, SidePool &pool)
{
    const int level = pool.depth++;
    while (int(pool.sides.size()) < 2 * level + 2)
        pool.sides.push_back(std::make_unique<JsonArraySide>());
    JsonArraySide &left = *pool.sides.at(2 * level);
    JsonArraySide &right = *pool.sides.at(2 * level + 1);
    left.Reset(la);
    right.Reset(ra);
    const int leftOthers = left.size() - left.objectCount;
    const int rightOthers = right.size() - right.objectCount;
    if (left.objectCount > 0)
        right.IndexIds(true);
    if (leftOthers > 0)
        right.IndexScalars();
    if (right.objectCount > 0)
        left.IndexIds(false);
    if (rightOthers > 0)
        left.IndexScalars();

    const int before = node->childCount();
    for (int position = 0; position < left.size(); ++position) {
        if (!left.isObject(position)) {
            if (!right.containsScalar(left, position))
                AppendOneSide(node, left.text(position).toString(), left.value(position), true,
                              QJsonDiffTreeItem::LeftOnly);
            continue;
        }
        const QJsonObject &object = left.objects.at(position);
        const int idClass = right.findId(left, position);
        // The walk over the right array goes on past equal partners and stops at the
        // first differing one; `found` is the last partner it looked at.
        int found = -1;
        bool stopped = false;
        if (idClass >= 0) {
            const int head = right.first.at(idClass);
            if (right.objects.at(head) != object) {
                found = head;
                stopped = true;
            } else {
                // Equal to the head, so "differs from the element" means "differs from the head".
                const int different = right.firstDifferentOf(idClass);
                stopped = different != JsonArraySide::None;
                found = stopped ? different : right.last.at(idClass);
            }
        }
        if (stopped) {
            auto *child = new QJsonDiffTreeItem(node);
            if (BuildDiff(QJsonValue(object), QJsonValue(right.objects.at(found)), child, true, pool)) {
                child->setKey(left.text(position).toString());
                child->setType(QJsonValue::Object);
                child->setDiffType(QJsonDiffTreeItem::IdMatched);
                node->appendChild(child);
            } else {
                delete child;
            }
        }
        if (found < 0 || right.objects.at(found).isEmpty()) {
            AppendOneSide(node, left.text(position).toString(), QJsonValue(object), true,
                          QJsonDiffTreeItem::LeftOnly | QJsonDiffTreeItem::IdMatched);
        }
    }
    for (int position = 0; position < right.size(); ++position) {
        if (!right.isObject(position)) {
            if (!left.containsScalar(right, position))
                AppendOneSide(node, right.text(position).toString(), right.value(position), false,
                              QJsonDiffTreeItem::RightOnly);
            continue;
        }
        if (left.findId(right, position) < 0) {
            AppendOneSide(node, right.text(position).toString(), QJsonValue(right.objects.at(position)), false,
                          QJsonDiffTreeItem::RightOnly | QJsonDiffTreeItem::IdMatched);
        }
    }
    --pool.depth;
    return node->childCount() > before;
}

bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonDiffTreeItem *node, bool knownDifferent,
               SidePool &pool)
{
    if (!knownDifferent && left == right)
        return false;
    if (left.isObject())
        return BuildObjectDiff(left.toObject(), right.toObject(), node, pool);
    if (left.isArray())
        return BuildArrayDiff(left.toArray(), right.toArray(), node, pool);
    node->setLeftValue(left);
    node->setRightValue(right);
    node->setDiffType(QJsonDiffTreeItem::ValueChanged);
    return true;
}

} // namespace

bool BuildJsonDiff(const QJsonValue &left, const QJsonValue &right, QJsonDiffTreeItem *node)
{
    SidePool pool;
    return BuildDiff(left, right, node, false, pool);
}

std::unique_ptr<QJsonDiffTreeItem> NewDiffRoot()
{
    auto root = std::make_unique<QJsonDiffTreeItem>(nullptr);
    root->setKey(QStringLiteral("root"));
    root->setType(QJsonValue::Object);
    return root;
}

std::unique_ptr<QJsonDiffTreeItem> DiffJson(const QJsonObject &left, const QJsonObject &right)
{
    auto root = NewDiffRoot();
    if (!BuildJsonDiff(QJsonValue(left), QJsonValue(right), root.get()))
        return nullptr;
    return root;
}

QJsonValue PatchJson(const QJsonDiffTreeItem *node, const QJsonValue &value)
{
    if (!node)
        return value;
    const int count = node->childCount();
    if (node->type() == QJsonValue::Array) {
        // Children grouped by key; an element goes to the first child holding its key,
        // as a front-to-back search would find it.
        QVector<QString> childKeys(count); // the index keeps views into these
        JsonValueIndex keys(count);
        QVector<int> firstWithKey; // key class -> first child
        QVector<int> keyOfChild(count);
        for (int i = 0; i < count; ++i) {
            childKeys[i] = node->child(i)->key();
            const int keyClass = keys.insertString(childKeys.at(i));
            if (keyClass == firstWithKey.size())
                firstWithKey.append(i);
            keyOfChild[i] = keyClass;
        }
        std::vector<bool> handled(firstWithKey.size(), false);

        QJsonArray output;
        for (const QJsonValue element : value.toArray()) {
            const bool isObject = element.isObject();
            if (!isObject && !element.isString()) {
                output.append(element);
                continue;
            }
            const QString key = isObject ? element.toObject().value(IdKey).toString() : element.toString();
            const int keyClass = keys.findString(key);
            if (keyClass < 0) {
                output.append(element);
                continue;
            }
            handled[keyClass] = true;
            const auto *child = static_cast<const QJsonDiffTreeItem *>(node->child(firstWithKey.at(keyClass)));
            const int diffType = child->diffType();
            const DiffAction action = child->action();
            if (isObject) {
                if (diffType & QJsonDiffTreeItem::LeftOnly) {
                    if (action == UseLeft)
                        output.append(PatchJson(child, element));
                } else if (diffType & QJsonDiffTreeItem::RightOnly) {
                    if (action == UseRight)
                        output.append(PatchJson(child, element));
                } else {
                    output.append(PatchJson(child, element));
                }
            } else {
                if (diffType & QJsonDiffTreeItem::LeftOnly) {
                    if (action == UseLeft)
                        output.append(element);
                } else if (!(diffType & QJsonDiffTreeItem::RightOnly) || action == UseRight) {
                    output.append(element);
                }
            }
        }
        for (int i = 0; i < count; ++i) {
            const auto *child = static_cast<const QJsonDiffTreeItem *>(node->child(i));
            if (handled[keyOfChild.at(i)])
                continue;
            if ((child->diffType() & QJsonDiffTreeItem::LeftOnly) && child->action() == UseLeft)
                output.append(child->values().left);
            else if ((child->diffType() & QJsonDiffTreeItem::RightOnly) && child->action() == UseRight)
                output.append(child->values().right);
        }
        return output;
    }
    if (node->type() == QJsonValue::Object) {
        if (!value.isObject())
            return value;
        QJsonObject object = value.toObject();
        bool changed = false;
        for (int i = 0; i < count; ++i) {
            const auto *child = static_cast<const QJsonDiffTreeItem *>(node->child(i));
            const QString key = child->key();
            // A patch neither adds nor removes members: the right-only member taken and the
            // left-only member dropped are both left as they are.
            if (!object.contains(key))
                continue;
            if (child->diffType() == QJsonDiffTreeItem::LeftOnly && child->action() == UseRight)
                continue;
            object.insert(key, PatchJson(child, object.value(key)));
            changed = true;
        }
        return changed ? QJsonValue(object) : value;
    }
    return node->action() == UseLeft ? node->values().left : node->values().right;
}

} // namespace ProductEditor
