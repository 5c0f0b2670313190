#include "models/LicensesModel.h"

#include "models/ModelReset.h"

namespace ProductEditor {

LicensesModel::LicensesModel(VantixJsonData &data, QObject *parent)
    : QAbstractTableModel(parent), m_data(data)
{
    FollowStoreResets(*this, m_data);
}

LicensesModel::~LicensesModel() = default;

int LicensesModel::rowCount(const QModelIndex &parent) const
{
    // A cell of a table has no rows under it.
    if (parent.isValid())
        return 0;
    return m_data.GetLicenses().size();
}

int LicensesModel::columnCount(const QModelIndex &) const
{
    return 3;
}

QVariant LicensesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return QVariant();
    if (index.column() != 1 && index.column() != 2)
        return QVariant();
    const QMap<QString, QString> &licenses = m_data.GetLicenses();
    const auto it = m_cursor.At(licenses, index.row());
    if (it == licenses.constEnd())
        return QVariant();
    return index.column() == 1 ? it.key() : it.value();
}

} // namespace ProductEditor
