#include "models/FilterFeatureModel.h"

namespace ProductEditor {

FilterFeatureModel::FilterFeatureModel(QObject *parent) : QSortFilterProxyModel(parent)
{
}

FilterFeatureModel::~FilterFeatureModel() = default;

void FilterFeatureModel::SetFilter(const QString &text)
{
    m_filter = text.trimmed();
    m_lowerFilter = m_filter.toLower();
    invalidateFilter();
}

bool FilterFeatureModel::filterAcceptsRow(int source_row, const QModelIndex &source_parent) const
{
    if (m_filter.isEmpty())
        return true;
    const QAbstractItemModel *source = sourceModel();
    const QString id = source->index(source_row, 0, source_parent).data(Qt::DisplayRole).toString();
    if (id.toLower().contains(m_lowerFilter))
        return true;
    const QString title =
        source->index(source_row, 1, source_parent).data(Qt::DisplayRole).toString();
    return title.toLower().contains(m_lowerFilter);
}

} // namespace ProductEditor
