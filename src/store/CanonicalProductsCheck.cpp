#include "store/CanonicalProductsCheck.h"

#include "store/DefinitionKeys.h"

#include <QJsonArray>
#include <QSet>
#include <QVector>

#include <algorithm>

namespace ProductEditor {

using namespace Keys;

namespace {

// Regeneration writes every set of names sorted and once, and every keyed list in id
// order with each id once: both come down to strictly increasing strings.
class IncreasingStrings
{
public:
    bool Next(const QJsonValue &value)
    {
        if (!value.isString())
            return false;
        QString text = value.toString();
        if (m_started && !(m_last < text))
            return false;
        m_last = std::move(text);
        m_started = true;
        return true;
    }

    const QString &Last() const { return m_last; }

private:
    QString m_last;
    bool m_started = false;
};

bool IsNameSet(const QJsonValue &value, bool allowEmpty = true)
{
    if (!value.isArray())
        return false;
    const QJsonArray names = value.toArray();
    IncreasingStrings order;
    for (const QJsonValue name : names) {
        if (!order.Next(name))
            return false;
    }
    return allowEmpty || !names.isEmpty();
}

bool HasExactly(const QJsonObject &object, int count, std::initializer_list<const QString *> keys)
{
    if (object.size() != count)
        return false;
    for (const QString *key : keys) {
        if (!object.contains(*key))
            return false;
    }
    return true;
}

bool IsAccessLists(const QJsonValue &value)
{
    const QJsonObject access = value.toObject();
    if (!value.isObject() || access.size() != 6)
        return false;
    for (const QString *key : {&kExport, &kExportAsProject, &kImport, &kImportAsProject, &kExportAsScene, &kOpen}) {
        if (!IsNameSet(access.value(*key)))
            return false;
    }
    return true;
}

bool IsExtension(const QJsonObject &entry)
{
    if (!HasExactly(entry, 7, {&kId, &kExt, &kTitle}))
        return false;
    for (const QString *key : {&kCadSupport, &kMultiplePartsSupport, &kLoadAsPart, &kSlicesSupport}) {
        if (!entry.value(*key).isBool())
            return false;
    }
    return entry.value(kExt).isString() && entry.value(kTitle).isString();
}

// Coverage lists exactly the extensions that have licenses for the role.
bool IsCoverage(const QJsonValue &value, const QSet<QString> &extensionIds)
{
    if (!value.isArray())
        return false;
    IncreasingStrings order;
    for (const QJsonValue entryValue : value.toArray()) {
        const QJsonObject entry = entryValue.toObject();
        if (!HasExactly(entry, 2, {&kId, &kLic}) || !order.Next(entry.value(kId))
            || !extensionIds.contains(order.Last()) || !IsNameSet(entry.value(kLic), false))
            return false;
    }
    return true;
}

bool IsExtensionsPart(const QJsonValue &value)
{
    const QJsonObject extensions = value.toObject();
    const QJsonValue entries = extensions.value(kExtension);
    const QJsonValue coverageValue = extensions.value(kCoverage);
    if (!value.isObject() || !entries.isArray() || !coverageValue.isObject())
        return false;
    QSet<QString> ids;
    IncreasingStrings order;
    for (const QJsonValue entry : entries.toArray()) {
        if (!IsExtension(entry.toObject()) || !order.Next(entry.toObject().value(kId)))
            return false;
        ids.insert(order.Last());
    }
    const QJsonObject coverage = coverageValue.toObject();
    return IsCoverage(coverage.value(kExport), ids) && IsCoverage(coverage.value(kImport), ids);
}

// Only what differs from a default is written for a feature.
bool IsFeature(const QJsonObject &entry)
{
    for (auto it = entry.begin(); it != entry.end(); ++it) {
        const QString &key = it.key();
        const QJsonValue value = it.value();
        if (key == kId)
            continue;
        if (key == kStatustip || key == kTitle || key == kTooltip) {
            if (!value.isString() || value.toString().isEmpty())
                return false;
        } else if (key == kVisual) {
            if (value != QJsonValue(false))
                return false;
        } else if (key != kEmergency || value != QJsonValue(true)) {
            return false;
        }
    }
    return true;
}

bool IsFeaturesPart(const QJsonValue &value, QVector<QString> &ids)
{
    const QJsonValue entries = value.toObject().value(kFeature);
    if (!value.isObject() || !entries.isArray())
        return false;
    const QJsonArray features = entries.toArray();
    ids.reserve(features.size());
    IncreasingStrings order;
    for (const QJsonValue entry : features) {
        if (!order.Next(entry.toObject().value(kId)) || !IsFeature(entry.toObject()))
            return false;
        ids.append(order.Last());
    }
    return true;
}

bool IsLicensing(const QJsonValue &value)
{
    const QJsonObject licensing = value.toObject();
    const QJsonValue specific = licensing.value(kSpecific);
    if (!HasExactly(licensing, 2, {&kBase, &kSpecific}) || !licensing.value(kBase).isString() || !specific.isArray())
        return false;
    IncreasingStrings order;
    for (const QJsonValue entryValue : specific.toArray()) {
        const QJsonObject entry = entryValue.toObject();
        if (!HasExactly(entry, 2, {&kId, &kLicenses}) || !order.Next(entry.value(kId))
            || !IsNameSet(entry.value(kLicenses)))
            return false;
    }
    return true;
}

// Whether `id` is among the sorted ids at or after `from`; moves `from` past it. A
// product's list is sorted too, so each search starts where the last one ended and
// gallops forward over nearby ids instead of hashing each one.
bool FindFrom(const QVector<QString> &sorted, const QString &id, int &from)
{
    int step = 1;
    int low = from;
    int high = from;
    while (high < sorted.size() && sorted.at(high) < id) {
        low = high + 1;
        high = from + step;
        step *= 2;
    }
    const auto found = std::lower_bound(sorted.begin() + low, sorted.begin() + std::min(high + 1, int(sorted.size())), id);
    if (found == sorted.end() || *found != id)
        return false;
    from = int(found - sorted.begin()) + 1;
    return true;
}

// A product's features are the ones that name it; with its id used once, that is
// its own list, so each must exist.
bool IsProductFeatures(const QJsonValue &value, const QVector<QString> &featureIds)
{
    if (!value.isArray())
        return false;
    IncreasingStrings order;
    int from = 0;
    for (const QJsonValue id : value.toArray()) {
        if (!order.Next(id) || !FindFrom(featureIds, order.Last(), from))
            return false;
    }
    return true;
}

bool IsProduct(const QJsonObject &entry, const QVector<QString> &featureIds)
{
    return HasExactly(entry, 6, {&kId, &kProfileSuffix, &kModes, &kLicensing, &kExtensions, &kFeatures})
        && entry.value(kId).isString() && entry.value(kProfileSuffix).isString() && IsNameSet(entry.value(kModes))
        && IsLicensing(entry.value(kLicensing)) && IsAccessLists(entry.value(kExtensions))
        && IsProductFeatures(entry.value(kFeatures), featureIds);
}

bool IsProductsPart(const QJsonValue &value, const QVector<QString> &featureIds)
{
    const QJsonObject products = value.toObject();
    const QJsonValue entries = products.value(kProduct);
    if (!HasExactly(products, 1, {&kProduct}) || !entries.isArray())
        return false;
    QSet<QString> ids;
    for (const QJsonValue entry : entries.toArray()) {
        if (!IsProduct(entry.toObject(), featureIds))
            return false;
        const QString id = entry.toObject().value(kId).toString();
        if (ids.contains(id))
            return false;
        ids.insert(id);
    }
    return true;
}

} // namespace

bool IsCanonicalProductsDocument(const QJsonObject &document)
{
    // Regeneration writes all three parts; a layout file or an empty object has none.
    QVector<QString> featureIds;
    return IsExtensionsPart(document.value(kExtensions)) && IsFeaturesPart(document.value(kFeatures), featureIds)
        && IsProductsPart(document.value(kProducts), featureIds);
}

} // namespace ProductEditor
