#pragma once

#include <QJsonObject>
#include <QString>

namespace ProductEditor {

class QJsonDiffTreeItem;
class QJsonTreeItem;

// The words of the Changes page for one node of a diff tree.
namespace DiffText {

// Rows with no rows below them: the differences themselves.
int CountDifferences(const QJsonTreeItem *root);
// "3 differences", "1 difference".
QString Differences(int count);
// The summary before anything was compared.
QString NotCompared();
// The summary of a comparison that `edits` edits (undos, redos and loads among them) left behind.
QString OutOfDate(int edits);
// The summary right after "Apply changes" took `taken` of `total` differences from the right side.
QString Applied(int taken, int total);
// The node's path, both sides as indented JSON, and what "Apply changes" does with it.
// A record that changed inside (an element of an array, such as one feature) holds no
// values of its own; its sides are then read from the two compared documents.
QString Details(const QJsonDiffTreeItem &node, bool applicable, const QJsonObject &left = {},
                const QJsonObject &right = {});

} // namespace DiffText

} // namespace ProductEditor
