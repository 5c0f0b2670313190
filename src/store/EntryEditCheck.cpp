#include "store/EntryEditCheck.h"

#include "store/DefinitionKeys.h"
#include "store/JsonEditSpan.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace ProductEditor {

namespace {

using Record = RecordChange::Record;

// A name as the loader reads it from a list or an "id": anything but a string is "".
QString NameOf(const QJsonValue &value)
{
    return value.isString() ? value.toString() : QString();
}

std::optional<QJsonObject> ObjectOf(const QByteArray &bytes)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    return document.isObject() ? std::optional<QJsonObject>(document.object()) : std::nullopt;
}

// Whether the list holds the name; nothing when the bytes are not a JSON array.
std::optional<bool> ListHolds(const QByteArray &bytes, const QString &name)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isArray())
        return std::nullopt;
    const QJsonArray names = document.array();
    for (const QJsonValue &value : names) {
        if (NameOf(value) == name)
            return true;
    }
    return false;
}

// Both versions of the list parse (so both documents read alike around them), and the
// entry is in both or in neither.
bool SameMembership(const JsonEditSpan &span, const QString &id)
{
    const auto before = ListHolds(span.before(), id), after = ListHolds(span.after(), id);
    return before && after && *before == *after;
}

// products.json: "features" / "feature" / N holds one feature entry.
bool FeatureEntryEdit(const JsonEditSpan &span, Record record, const QString &id)
{
    const auto before = ObjectOf(span.before(3)), after = ObjectOf(span.after(3));
    if (!before || !after)
        return false;
    const QString kept = NameOf(before->value(Keys::kId));
    return kept == NameOf(after->value(Keys::kId)) && (record != Record::Feature || kept != id);
}

// A features list of a product (products.json: "products" / "product" / N / "features")
// or of a layout (a layout file: "layouts" / NAME / "features"), owned by `owner` of
// kind `ownerRecord`: only the features in it and the owner are concerned.
bool FeatureListEdit(const JsonEditSpan &span, Record ownerRecord, const QString &owner, Record record,
                     const QString &id)
{
    if (!SameMembership(span, id))
        return false;
    return record != ownerRecord || (!owner.isNull() && owner != id);
}

} // namespace

bool EditLeavesEntry(const QByteArray &before, const QByteArray &after, bool productsFile, Record record,
                     const QString &id)
{
    // An entry of a definition document sits at depth 3: root, section, list, entry.
    const JsonEditSpan span(before, after, 3);
    if (!span.found())
        return false;
    const QStringList &path = span.path();
    if (productsFile) {
        if (path.size() >= 3 && path.at(0) == Keys::kFeatures && path.at(1) == Keys::kFeature)
            return FeatureEntryEdit(span, record, id);
        if (path.size() == 4 && path.at(0) == Keys::kProducts && path.at(1) == Keys::kProduct
            && path.at(3) == Keys::kFeatures) {
            const auto product = ObjectOf(span.before(3));
            return product && FeatureListEdit(span, Record::Product, NameOf(product->value(Keys::kId)), record, id);
        }
        return false;
    }
    // A layout name written with escapes is not compared as text.
    if (path.size() == 3 && path.at(0) == Keys::kLayouts && path.at(2) == Keys::kFeatures)
        return FeatureListEdit(span, Record::Layout, path.at(1).contains(QLatin1Char('\\')) ? QString() : path.at(1),
                               record, id);
    return false;
}

} // namespace ProductEditor
