#include "models/QueryFilterFeatureModel.h"

#include "models/FeaturesModel.h"

#include <QHash>
#include <QVector>

namespace ProductEditor {

namespace {

const QString &KeySeparator()
{
    static const QString separator = QStringLiteral(",");
    return separator;
}

const QString &NonEmptyWildcard()
{
    static const QString wildcard = QStringLiteral("*");
    return wildcard;
}

const QString &Quote()
{
    static const QString quote = QStringLiteral("\"");
    return quote;
}

// One key, prepared once per query. The order of the keys is the order of
// the key set, since which key a value takes may decide the outcome.
struct PreparedKey
{
    bool quoted = false;
    QString strippedLower; // the key without its quotes, lower-cased
    QString trimmed;
};

class KeyMatcher
{
public:
    explicit KeyMatcher(const QStringList &keys)
    {
        const QSet<QString> set(keys.begin(), keys.end());
        m_keys.reserve(set.size());
        for (const QString &key : set) {
            PreparedKey prepared;
            prepared.quoted = key.startsWith(Quote()) && key.endsWith(Quote());
            if (prepared.quoted)
                prepared.strippedLower = key.mid(1, key.size() - 2).toLower();
            prepared.trimmed = key.trimmed();
            m_keys.append(prepared);
        }
    }

    bool Match(const QSet<QString> &values) const
    {
        int left = m_keys.size();
        if (left == 0)
            return true;
        QVector<bool> taken(m_keys.size(), false);
        for (const QString &value : values) {
            const QString lower = value.toLower();
            for (int k = 0; k < m_keys.size(); ++k) {
                if (taken[k])
                    continue;
                const PreparedKey &key = m_keys.at(k);
                // A quoted key that is not the whole word falls through to the
                // substring test with its quotes still on.
                if ((key.quoted && lower == key.strippedLower)
                    || lower.contains(key.trimmed, Qt::CaseInsensitive)) {
                    taken[k] = true;
                    --left;
                    break;
                }
            }
            if (left == 0)
                return true;
        }
        return false;
    }

private:
    QVector<PreparedKey> m_keys;
};

bool MatchLicenses(const QSet<QString> &keys, const QSet<QString> &licenses)
{
    for (const QString &key : keys) {
        if (!licenses.contains(key))
            return false;
    }
    return true;
}

} // namespace

std::optional<QStringList> FeatureQuery::Keys(const QString &text)
{
    if (text.isEmpty())
        return std::nullopt;
    return text.split(KeySeparator(), Qt::KeepEmptyParts, Qt::CaseSensitive);
}

QueryFilterFeatureModel::QueryFilterFeatureModel(QObject *parent) : QSortFilterProxyModel(parent)
{
}

QueryFilterFeatureModel::~QueryFilterFeatureModel() = default;

bool QueryFilterFeatureModel::MatchKeys(const QStringList &keys, const QSet<QString> &values)
{
    return KeyMatcher(keys).Match(values);
}

void QueryFilterFeatureModel::ApplyQuery(const FeatureQuery &query, VantixJsonData &store)
{
    m_acceptedIds.clear();
    const QMap<QString, VantixFeatureData> &features = store.GetFeatures();
    const QVector<ProductData> &products = store.GetProducts().products;

    if (!query.ids && !query.titles && !query.products && !query.layouts && !query.licenses) {
        for (auto it = features.constBegin(); it != features.constEnd(); ++it)
            m_acceptedIds.insert(it.key());
        invalidateFilter();
        return;
    }

    // The first product with an id wins, as in every product lookup.
    QHash<QString, const ProductData *> productById;
    for (const ProductData &product : products) {
        if (!productById.contains(product.id))
            productById.insert(product.id, &product);
    }
    const KeyMatcher ids(query.ids.value_or(QStringList()));
    const KeyMatcher titles(query.titles.value_or(QStringList()));
    const KeyMatcher productKeys(query.products.value_or(QStringList()));
    const KeyMatcher layouts(query.layouts.value_or(QStringList()));
    const QStringList licenseList = query.licenses.value_or(QStringList());
    const QSet<QString> licenseKeys(licenseList.begin(), licenseList.end());
    const bool titleWildcard =
        query.titles && !query.titles->isEmpty() && query.titles->first() == NonEmptyWildcard();

    for (auto it = features.constBegin(); it != features.constEnd(); ++it) {
        const VantixFeatureData &feature = it.value();
        if (feature.productIds.isEmpty())
            continue;
        // These fields do not depend on the product visited, so they are decided once.
        if (query.ids && !ids.Match({it.key()}))
            continue;
        if (query.titles && !(titleWildcard && !feature.title.isEmpty())
            && !titles.Match({feature.title}))
            continue;
        if (query.products && !productKeys.Match(feature.productIds))
            continue;
        if (!query.layouts && !query.licenses) {
            m_acceptedIds.insert(it.key());
            continue;
        }
        if (query.layouts && !layouts.Match(feature.layoutNames))
            continue;
        for (const QString &productId : feature.productIds) {
            const ProductData *product = productById.value(productId);
            if (!product)
                continue;
            if (query.layouts && !layouts.Match(product->modes))
                continue;
            if (query.licenses) {
                const auto entry = product->specificLicenses.constFind(it.key());
                if (entry == product->specificLicenses.constEnd()
                    || !MatchLicenses(licenseKeys, entry.value()))
                    continue;
            }
            m_acceptedIds.insert(it.key());
            break;
        }
    }
    invalidateFilter();
}

bool QueryFilterFeatureModel::filterAcceptsRow(int source_row,
                                               const QModelIndex &source_parent) const
{
    const QString id =
        sourceModel()->index(source_row, FeaturesModel::IdColumn, source_parent).data(Qt::DisplayRole).toString();
    return m_acceptedIds.contains(id);
}

bool QueryFilterFeatureModel::filterAcceptsColumn(int source_column, const QModelIndex &) const
{
    switch (source_column) {
    case FeaturesModel::IdColumn:
    case FeaturesModel::TitleColumn:
    case FeaturesModel::ProductsColumn:
    case FeaturesModel::LayoutsColumn:
    case FeaturesModel::LicensesColumn:
        return true;
    default:
        return false;
    }
}

QVariant QueryFilterFeatureModel::headerData(int section, Qt::Orientation orientation,
                                             int role) const
{
    // Rows are numbered over the visible rows, not by their source rows.
    if (orientation == Qt::Vertical)
        return sourceModel() ? sourceModel()->headerData(section, orientation, role) : QVariant();
    return QSortFilterProxyModel::headerData(section, orientation, role);
}

} // namespace ProductEditor
