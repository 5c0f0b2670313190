#include "models/LayoutsModel.h"

#include "models/ModelReset.h"

namespace ProductEditor {

LayoutsModel::LayoutsModel(VantixJsonData &data, QObject *parent)
    : QAbstractTableModel(parent), m_data(data)
{
    FollowStoreResets(*this, m_data);
}

LayoutsModel::~LayoutsModel() = default;

int LayoutsModel::rowCount(const QModelIndex &parent) const
{
    // A cell of a table has no rows under it.
    if (parent.isValid())
        return 0;
    return m_data.GetLayouts().size();
}

int LayoutsModel::columnCount(const QModelIndex &) const
{
    return 3;
}

QVariant LayoutsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.column() != 2 || role != Qt::DisplayRole)
        return QVariant();
    const QMap<QString, LayoutData> &layouts = m_data.GetLayouts();
    const auto it = m_cursor.At(layouts, index.row());
    return it == layouts.constEnd() ? QVariant() : QVariant(it.key());
}

QVariant LayoutsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case 0:
        return QStringLiteral("Current\nFeature");
    case 1:
        return QStringLiteral("Current\nProduct");
    default:
        return QStringLiteral("Name");
    }
}

} // namespace ProductEditor
