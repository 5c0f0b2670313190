#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QSet>
#include <QSortFilterProxyModel>
#include <QStringList>

#include <optional>

namespace ProductEditor {

// The five fields of a feature query. An absent field is no criterion; a
// present one holds the keys typed into it.
struct FeatureQuery
{
    std::optional<QStringList> ids;
    std::optional<QStringList> titles;
    std::optional<QStringList> products;
    std::optional<QStringList> layouts;
    std::optional<QStringList> licenses;

    // The keys of a field as typed: split at "," with empty parts kept, or
    // absent for an empty text.
    static std::optional<QStringList> Keys(const QString &text);
};

// The query tab's search: shows the features accepted by the last ApplyQuery
// with the columns id, title, products, layouts and licenses.
class PRODUCT_EDITOR_EXPORT QueryFilterFeatureModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit QueryFilterFeatureModel(QObject *parent = nullptr);
    ~QueryFilterFeatureModel() override;

    void ApplyQuery(const FeatureQuery &query, VantixJsonData &store);
    const QSet<QString> &AcceptedIds() const { return m_acceptedIds; }

    // True when every key is matched by a different value (see the query tab's syntax).
    static bool MatchKeys(const QStringList &keys, const QSet<QString> &values);

    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

protected:
    bool filterAcceptsRow(int source_row, const QModelIndex &source_parent) const override;
    bool filterAcceptsColumn(int source_column, const QModelIndex &source_parent) const override;

private:
    QSet<QString> m_acceptedIds;
};

} // namespace ProductEditor
