#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>
#include <QVector>

namespace ProductEditor {

// The arrays of a products document whose entries are records with an "id". Each entry
// regenerates on its own, and all of them but the products are kept in id order.
namespace KeyedArrays {

const QVector<QStringList> &Paths();
bool IsIdOrdered(const QStringList &path);
bool IsFeatures(const QStringList &path);
bool IsExtensions(const QStringList &path);
bool IsCoverage(const QStringList &path);

QJsonValue ValueAt(const QJsonObject &document, const QStringList &path);
// `document` with the value at `path` replaced, the objects on the way made if missing.
QJsonObject WithValueAt(const QJsonObject &document, const QStringList &path, const QJsonValue &value);
// The entry's "id" as text; empty when it has none or it is not a string.
QString IdOf(const QJsonValue &entry);

} // namespace KeyedArrays

} // namespace ProductEditor
