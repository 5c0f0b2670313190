#include "models/ExtensionsBaseModel.h"

#include "models/CheckMark.h"

namespace ProductEditor {

namespace {


const QMap<int, QString> &HeaderTable()
{
    static const QMap<int, QString> table = {
        {0, QStringLiteral("Id")},
        {1, QStringLiteral("Export")},
        {2, QStringLiteral("Export\nproject")},
        {3, QStringLiteral("Import")},
        {4, QStringLiteral("Import\nproject")},
        {5, QStringLiteral("Export\nscene")},
        {6, QStringLiteral("Open")},
    };
    return table;
}

// Columns 1 to 6 follow the declaration order of the access sets.
template <typename Access>
auto *SetOfColumn(Access &access, int column)
{
    switch (column) {
    case 1:
        return &access.export_;
    case 2:
        return &access.export_as_project;
    case 3:
        return &access.import;
    case 4:
        return &access.import_as_project;
    case 5:
        return &access.export_as_scene;
    case 6:
        return &access.open;
    default:
        return static_cast<decltype(&access.open)>(nullptr);
    }
}

} // namespace

ExtensionsBaseModel::ExtensionsBaseModel(VantixJsonData &data, QObject *parent)
    : QAbstractTableModel(parent), m_data(data)
{
}

ExtensionsBaseModel::~ExtensionsBaseModel() = default;

int ExtensionsBaseModel::rowCount(const QModelIndex &parent) const
{
    // A cell of a table has no rows under it.
    if (parent.isValid())
        return 0;
    return ItemCount();
}

int ExtensionsBaseModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant ExtensionsBaseModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || m_currentExtension.isEmpty())
        return QVariant();
    if (index.column() == NameColumn)
        return role == Qt::DisplayRole ? QVariant(RowName(index)) : QVariant();
    if (index.column() < FirstSetColumn || index.column() > LastSetColumn)
        return QVariant();
    if (role != Qt::DecorationRole && role != Qt::UserRole)
        return QVariant();
    const ExtensionAccess *access = RowAccess(index);
    if (!access)
        return QVariant();
    return CheckMarkData(SetOfColumn(*access, index.column())->contains(m_currentExtension), role);
}

bool ExtensionsBaseModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() == NameColumn || role != Qt::EditRole)
        return false;
    if (index.column() >= FirstSetColumn && index.column() <= LastSetColumn) {
        ExtensionAccess *access = EditRowAccess(index);
        if (!access)
            return false;
        SetCheckMark(SetOfColumn(*access, index.column()), m_currentExtension, value.toBool());
    }
    emit dataChanged(index, index);
    return true;
}

QVariant ExtensionsBaseModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role != Qt::DisplayRole)
        return QVariant();
    if (section == NameColumn)
        return ItemTitle();
    return HeaderTable().value(section);
}

void ExtensionsBaseModel::SetCurrentExtension(const QString &id)
{
    m_currentExtension = id;
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

} // namespace ProductEditor
