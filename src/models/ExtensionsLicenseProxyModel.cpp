#include "models/ExtensionsLicenseProxyModel.h"

namespace ProductEditor {

ExtensionsLicenseProxyModel::ExtensionsLicenseProxyModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
}

ExtensionsLicenseProxyModel::~ExtensionsLicenseProxyModel() = default;

bool ExtensionsLicenseProxyModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QAbstractItemModel *source = sourceModel();
    for (int column : {2, 3}) {
        const int l = source->index(left.row(), column).data(Qt::UserRole).toInt();
        const int r = source->index(right.row(), column).data(Qt::UserRole).toInt();
        if (l != r)
            return l > r;
    }
    // Names are compared as numbers on purpose; names that are not numbers tie.
    return source->index(left.row(), 0).data(Qt::DisplayRole).toInt()
           < source->index(right.row(), 0).data(Qt::DisplayRole).toInt();
}

} // namespace ProductEditor
