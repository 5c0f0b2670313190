#pragma once

#include "json/QJsonDiffTreeItem.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QSet>
#include <QStringList>

// The comparison and the patch written as plainly as possible, walking the other array
// for every element; only here to measure the indexed engine against.
namespace QuadraticDiff {

using ProductEditor::QJsonDiffTreeItem;
using ProductEditor::QJsonTreeItem;

inline QJsonDiffTreeItem *AppendSide(QJsonTreeItem *node, const QString &key, const QJsonValue &value, bool left,
                                     int diffType)
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
    return child;
}

inline bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonTreeItem *treeNode)
{
    auto *node = static_cast<QJsonDiffTreeItem *>(treeNode);
    if (!left.isObject() && !left.isArray()) {
        if (left == right)
            return false;
        node->setLeftValue(left);
        node->setRightValue(right);
        node->setDiffType(16);
        return true;
    }
    bool appended = false;
    if (left.isObject()) {
        if (left == right)
            return false;
        const QString lid = left.toObject()["id"].toString();
        const QString rid = right.toObject()["id"].toString();
        if ((!lid.isEmpty() || !rid.isEmpty()) && lid != rid)
            return false;
        const QStringList rightKeys = right.toObject().keys();
        const QStringList leftKeys = left.toObject().keys();
        for (const QString &key : leftKeys) {
            if (!rightKeys.contains(key)) {
                AppendSide(node, key, left.toObject()[key], true, 4);
                appended = true;
            }
        }
        for (const QString &key : rightKeys) {
            if (!leftKeys.contains(key)) {
                AppendSide(node, key, right.toObject()[key], false, 8);
                appended = true;
            }
        }
        for (const QString &key : leftKeys) {
            const QJsonValue l = left.toObject().value(key);
            const QJsonValue r = right.toObject().value(key);
            if (l.isUndefined() || r.isUndefined() || l == r)
                continue;
            auto *child = new QJsonDiffTreeItem(node);
            if (BuildDiff(l, r, child)) {
                child->setKey(key);
                child->setType(l.type());
                child->setDiffType(1);
                node->appendChild(child);
                appended = true;
            } else {
                delete child;
            }
        }
        return appended;
    }
    const QJsonArray la = left.toArray();
    const QJsonArray ra = right.toArray();
    if (la == ra)
        return false;
    for (const QJsonValue e : la) {
        if (!e.isObject()) {
            if (ra.contains(e))
                continue;
            AppendSide(node, e.toString(), e, true, 4);
            appended = true;
            continue;
        }
        const QJsonValue id = e.toObject()["id"];
        QJsonObject found;
        bool stopped = false;
        for (const QJsonValue f : ra) {
            const QJsonValue fid = f.toObject()["id"];
            if (fid == id) {
                found = f.toObject();
                if (found == e.toObject())
                    continue;
                stopped = true;
                break;
            }
        }
        if (stopped) {
            auto *child = new QJsonDiffTreeItem(node);
            if (BuildDiff(e.toObject(), found, child)) {
                child->setKey(id.toString());
                child->setType(e.type());
                child->setDiffType(2);
                node->appendChild(child);
                appended = true;
            } else {
                delete child;
            }
        }
        if (found.isEmpty()) {
            AppendSide(node, id.toString(), e, true, 6);
            appended = true;
        }
    }
    for (const QJsonValue e : ra) {
        if (!e.isObject()) {
            if (la.contains(e))
                continue;
            AppendSide(node, e.toString(), e, false, 8);
            appended = true;
            continue;
        }
        const QJsonValue id = e.toObject()["id"];
        bool partner = false;
        for (const QJsonValue f : la) {
            if (f.toObject()["id"] == id) {
                partner = true;
                break;
            }
        }
        if (!partner) {
            AppendSide(node, id.toString(), e, false, 10);
            appended = true;
        }
    }
    return appended;
}

inline QJsonValue GenPatch(QJsonTreeItem *treeNode, QJsonValue value)
{
    if (!treeNode)
        return value;
    auto *node = static_cast<QJsonDiffTreeItem *>(treeNode);
    if (node->type() != QJsonValue::Object && node->type() != QJsonValue::Array)
        return node->action() == 1 ? node->values().left : node->values().right;
    if (node->type() == QJsonValue::Array) {
        QJsonArray output;
        QSet<QString> handled;
        const int n = node->childCount();
        for (const QJsonValue e : value.toArray()) {
            QString key;
            int match = -1;
            if (e.isObject() || e.isString()) {
                key = e.isObject() ? e.toObject()["id"].toString() : e.toString();
                for (int i = 0; i < n; ++i) {
                    if (node->child(i)->key() == key) {
                        match = i;
                        break;
                    }
                }
            }
            if (match < 0) {
                output.append(e);
                continue;
            }
            handled.insert(key);
            auto *child = static_cast<QJsonDiffTreeItem *>(node->child(match));
            const int type = child->diffType();
            if (e.isObject()) {
                if (type & 4) {
                    if (child->action() == 1)
                        output.append(GenPatch(child, e));
                } else if (type & 8) {
                    if (child->action() == 2)
                        output.append(GenPatch(child, e));
                } else {
                    output.append(GenPatch(child, e));
                }
            } else {
                if (type & 4) {
                    if (child->action() == 1)
                        output.append(e);
                } else if ((type & 8) && child->action() != 2) {
                } else {
                    output.append(e);
                }
            }
        }
        for (int i = 0; i < n; ++i) {
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
    const QStringList keys = value.toObject().keys();
    for (int i = 0; i < node->childCount(); ++i) {
        auto *child = static_cast<QJsonDiffTreeItem *>(node->child(i));
        const QString k = child->key();
        if (!keys.contains(k)) {
            if (child->diffType() == 8 && child->action() == 2) {
                QJsonObject discarded = value.toObject();
                discarded[k] = child->values().right;
            }
            continue;
        }
        if (child->diffType() == 4 && child->action() == 2) {
            QJsonObject discarded = value.toObject();
            discarded.remove(k);
            continue;
        }
        QJsonObject obj = value.toObject();
        obj[k] = GenPatch(child, obj.value(k));
        value = QJsonValue(obj);
    }
    return value;
}

} // namespace QuadraticDiff
