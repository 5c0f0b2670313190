#include "models/LicenseProxyModel.h"

namespace ProductEditor {

LicenseProxyModel::LicenseProxyModel(QObject *parent) : QSortFilterProxyModel(parent)
{
}

LicenseProxyModel::~LicenseProxyModel() = default;

bool LicenseProxyModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const int l = left.data(Qt::UserRole).toInt();
    const int r = right.data(Qt::UserRole).toInt();
    if (l != r)
        return l > r;
    // Names are compared as numbers on purpose; names that are not numbers tie.
    const QAbstractItemModel *source = sourceModel();
    return source->index(left.row(), 1).data(Qt::DisplayRole).toInt()
           < source->index(right.row(), 1).data(Qt::DisplayRole).toInt();
}

} // namespace ProductEditor
