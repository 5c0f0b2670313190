#include "merge/KeyedArrays.h"

#include "store/DefinitionKeys.h"

namespace ProductEditor {

namespace KeyedArrays {

using namespace Keys;

namespace {

QJsonObject WithValueAt(const QJsonObject &object, const QStringList &path, int depth, const QJsonValue &value)
{
    QJsonObject copy = object;
    const QString &key = path.at(depth);
    copy.insert(key, depth + 1 == path.size() ? value
                                              : WithValueAt(object.value(key).toObject(), path, depth + 1, value));
    return copy;
}

} // namespace

const QVector<QStringList> &Paths()
{
    // The extensions come before the coverage that names them.
    static const QVector<QStringList> paths{{kFeatures, kFeature},
                                            {kExtensions, kExtension},
                                            {kExtensions, kCoverage, kExport},
                                            {kExtensions, kCoverage, kImport},
                                            {kProducts, kProduct}};
    return paths;
}

bool IsIdOrdered(const QStringList &path) { return path.last() != kProduct; }
bool IsFeatures(const QStringList &path) { return path.last() == kFeature; }
bool IsExtensions(const QStringList &path) { return path.last() == kExtension; }
bool IsCoverage(const QStringList &path) { return path.size() == 3; }

QJsonValue ValueAt(const QJsonObject &document, const QStringList &path)
{
    QJsonValue value(document);
    for (const QString &key : path)
        value = value.toObject().value(key);
    return value;
}

QJsonObject WithValueAt(const QJsonObject &document, const QStringList &path, const QJsonValue &value)
{
    return WithValueAt(document, path, 0, value);
}

QString IdOf(const QJsonValue &entry)
{
    return entry.toObject().value(kId).toString();
}

} // namespace KeyedArrays

} // namespace ProductEditor
