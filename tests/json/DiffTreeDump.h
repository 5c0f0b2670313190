#pragma once

#include "json/QJsonDiffTreeItem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

// Whole-tree texts for one-line comparisons.
namespace DiffTreeDump {

inline QString JsonText(const QJsonValue &value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
}

// Every field of every node, one line per node, also checking the parent links.
inline void Full(const ProductEditor::QJsonTreeItem *treeNode, int depth, QStringList &lines)
{
    const auto *node = static_cast<const ProductEditor::QJsonDiffTreeItem *>(treeNode);
    lines << QString(depth, QLatin1Char(' ')) + node->key() + QLatin1String(" type=") + QString::number(node->type())
                 + QLatin1String(" diff=") + QString::number(node->diffType()) + QLatin1String(" action=")
                 + QString::number(node->action()) + QLatin1String(" value=") + node->value()
                 + QLatin1String(" left=") + JsonText(node->values().left) + QLatin1String(" right=")
                 + JsonText(node->values().right);
    for (int i = 0; i < node->childCount(); ++i) {
        const ProductEditor::QJsonTreeItem *child = node->child(i);
        if (child->parent() != node || child->row() != i)
            lines << QStringLiteral("broken link at %1").arg(i);
        Full(child, depth + 1, lines);
    }
}

inline QStringList Full(const ProductEditor::QJsonTreeItem *root)
{
    QStringList lines;
    if (root)
        Full(root, 0, lines);
    return lines;
}

// Keys and diff types only: `a[2](v[1]) b[6]`.
inline QString Shape(const ProductEditor::QJsonTreeItem *node)
{
    QStringList parts;
    for (int i = 0; node && i < node->childCount(); ++i) {
        const auto *child = static_cast<const ProductEditor::QJsonDiffTreeItem *>(node->child(i));
        QString part = child->key() + QLatin1Char('[') + QString::number(child->diffType()) + QLatin1Char(']');
        if (child->childCount() > 0)
            part += QLatin1Char('(') + Shape(child) + QLatin1Char(')');
        parts << part;
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace DiffTreeDump
