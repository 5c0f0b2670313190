#pragma once

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
// The node's path, both sides as indented JSON, and what "Apply changes" does with it.
QString Details(const QJsonDiffTreeItem &node, bool applicable);

} // namespace DiffText

} // namespace ProductEditor
