#pragma once

#include "json/QJsonDiffTreeItem.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

#include <algorithm>

// The comparison and the patch written as plainly as possible, walking the other array
// for every element; the indexed engine must build the same trees and patches.
namespace QuadraticDiff {

using ProductEditor::QJsonDiffTreeItem;
using ProductEditor::QJsonTreeItem;

inline bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonTreeItem *treeNode);

// A one-side child (4 or 8 set) holds that side's value; any other child holds the
// comparison of both values and is kept only when they differ.
inline void Append(QJsonTreeItem *node, const QString &key, const QJsonValue &left, const QJsonValue &right,
                   int diffType)
{
    auto *child = new QJsonDiffTreeItem(node);
    if (diffType & 4) {
        child->setLeftValue(left);
    } else if (diffType & 8) {
        child->setRightValue(right);
    } else if (!BuildDiff(left, right, child)) {
        delete child;
        return;
    }
    child->setKey(key);
    child->setType((diffType & 8) ? right.type() : left.type());
    child->setDiffType(diffType);
    node->appendChild(child);
}

// Every caller hands in a fresh node, so "appended anything" is "has children".
inline bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonTreeItem *treeNode)
{
    auto *node = static_cast<QJsonDiffTreeItem *>(treeNode);
    if (left == right)
        return false;
    if (!left.isObject() && !left.isArray()) {
        node->setLeftValue(left);
        node->setRightValue(right);
        node->setDiffType(16);
        return true;
    }
    if (left.isObject()) {
        const QJsonObject lo = left.toObject();
        const QJsonObject ro = right.toObject();
        const QString lid = lo["id"].toString();
        const QString rid = ro["id"].toString();
        if ((!lid.isEmpty() || !rid.isEmpty()) && lid != rid)
            return false;
        for (const QString &key : lo.keys()) {
            if (!ro.keys().contains(key))
                Append(node, key, lo[key], QJsonValue(), 4);
        }
        for (const QString &key : ro.keys()) {
            if (!lo.keys().contains(key))
                Append(node, key, QJsonValue(), ro[key], 8);
        }
        for (const QString &key : lo.keys()) {
            if (ro.contains(key) && lo[key] != ro[key])
                Append(node, key, lo[key], ro[key], 1);
        }
        return node->childCount() > 0;
    }
    const QJsonArray la = left.toArray();
    const QJsonArray ra = right.toArray();
    for (const QJsonValue e : la) {
        if (!e.isObject()) {
            if (!ra.contains(e))
                Append(node, e.toString(), e, QJsonValue(), 4);
            continue;
        }
        const QJsonValue id = e.toObject()["id"]; // Null when absent, as for non-objects
        QJsonObject found;
        bool stopped = false;
        for (const QJsonValue f : ra) {
            if (f.toObject()["id"] != id)
                continue;
            found = f.toObject();
            if ((stopped = found != e.toObject()))
                break;
        }
        if (stopped)
            Append(node, id.toString(), e.toObject(), found, 2);
        if (found.isEmpty())
            Append(node, id.toString(), e, QJsonValue(), 6);
    }
    for (const QJsonValue e : ra) {
        const QJsonValue id = e.toObject()["id"];
        const auto sameId = [&id](const QJsonValue &f) { return f.toObject()["id"] == id; };
        if (!e.isObject() && !la.contains(e))
            Append(node, e.toString(), QJsonValue(), e, 8);
        else if (e.isObject() && std::none_of(la.begin(), la.end(), sameId))
            Append(node, id.toString(), QJsonValue(), e, 10);
    }
    return node->childCount() > 0;
}

inline QJsonValue GenPatch(QJsonTreeItem *treeNode, QJsonValue value)
{
    auto *node = static_cast<QJsonDiffTreeItem *>(treeNode);
    if (!node)
        return value;
    if (node->type() != QJsonValue::Object && node->type() != QJsonValue::Array)
        return node->action() == 1 ? node->values().left : node->values().right;
    if (node->type() == QJsonValue::Object) {
        // Adding a missing member (8, right taken) and removing one (4, right taken) happen
        // on discarded copies: a patch changes only members the target already has.
        const QStringList keys = value.toObject().keys();
        for (int i = 0; i < node->childCount(); ++i) {
            auto *child = static_cast<QJsonDiffTreeItem *>(node->child(i));
            if (!keys.contains(child->key()) || (child->diffType() == 4 && child->action() == 2))
                continue;
            QJsonObject obj = value.toObject();
            obj[child->key()] = GenPatch(child, obj.value(child->key()));
            value = QJsonValue(obj);
        }
        return value;
    }
    QJsonArray output;
    QSet<QString> handled;
    const auto childWithKey = [node](const QString &key) -> QJsonDiffTreeItem * {
        for (int i = 0; i < node->childCount(); ++i) {
            if (node->child(i)->key() == key)
                return static_cast<QJsonDiffTreeItem *>(node->child(i));
        }
        return nullptr;
    };
    for (const QJsonValue e : value.toArray()) {
        QJsonDiffTreeItem *child = e.isObject() ? childWithKey(e.toObject()["id"].toString())
                                                : e.isString() ? childWithKey(e.toString()) : nullptr;
        if (child)
            handled.insert(child->key());
        const int type = child ? child->diffType() : 0;
        if (!child || ((type & 4) ? child->action() == 1 : (!(type & 8) || child->action() == 2)))
            output.append(child && e.isObject() ? GenPatch(child, e) : e);
    }
    for (int i = 0; i < node->childCount(); ++i) {
        auto *child = static_cast<QJsonDiffTreeItem *>(node->child(i));
        if (handled.contains(child->key()))
            continue;
        if ((child->diffType() & 4) && child->action() == 1)
            output.append(child->values().left);
        else if ((child->diffType() & 8) && child->action() == 2)
            output.append(child->values().right);
    }
    return output;
}

} // namespace QuadraticDiff
