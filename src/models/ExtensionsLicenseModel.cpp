#include "models/ExtensionsLicenseModel.h"

#include "models/CheckMark.h"

#include <QColor>

#include <utility>

namespace ProductEditor {

namespace {


const QMap<int, QString> &HeaderTable()
{
    static const QMap<int, QString> table = {
        {ExtensionsLicenseModel::NameColumn, QStringLiteral("Id")},
        {ExtensionsLicenseModel::TextColumn, QStringLiteral("Name")},
        {ExtensionsLicenseModel::ImportColumn, QStringLiteral("Import")},
        {ExtensionsLicenseModel::ExportColumn, QStringLiteral("Export")},
    };
    return table;
}

} // namespace

ExtensionsLicenseModel::ExtensionsLicenseModel(VantixJsonData &data, QObject *parent)
    : QAbstractTableModel(parent), m_data(data)
{
}

ExtensionsLicenseModel::~ExtensionsLicenseModel() = default;

int ExtensionsLicenseModel::rowCount(const QModelIndex &parent) const
{
    // A cell of a table has no rows under it.
    if (parent.isValid())
        return 0;
    return m_data.GetLicenses().size();
}

int ExtensionsLicenseModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant ExtensionsLicenseModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || m_currentExtension.isEmpty())
        return QVariant();
    const QMap<QString, QString> &licenses = m_data.GetLicenses();
    const auto it = m_cursor.At(licenses, index.row());
    if (it == licenses.constEnd())
        return QVariant();
    // Looked up with insertion: an unknown current id gains a default record.
    QMap<QString, ExtensionInfo> &extensions = m_data.GetExtensions();
    auto found = std::as_const(extensions).constFind(m_currentExtension);
    if (found == extensions.constEnd())
        found = extensions.insert(m_currentExtension, ExtensionInfo());
    const ExtensionInfo &info = found.value();

    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        if (index.column() == NameColumn)
            return it.key();
        if (index.column() == TextColumn)
            return it.value();
        return QVariant();
    }
    if (role == Qt::ForegroundRole) {
        const bool used = info.importLicenses.contains(it.key())
                          || info.exportLicenses.contains(it.key());
        return QColor(used ? Qt::black : Qt::gray);
    }
    if (index.column() == ImportColumn)
        return CheckMarkData(info.importLicenses.contains(it.key()), role);
    if (index.column() == ExportColumn)
        return CheckMarkData(info.exportLicenses.contains(it.key()), role);
    return QVariant();
}

bool ExtensionsLicenseModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() == NameColumn || index.column() == TextColumn
        || role != Qt::EditRole)
        return false;
    const QMap<QString, QString> &licenses = m_data.GetLicenses();
    const auto it = m_cursor.At(licenses, index.row());
    if (it == licenses.constEnd())
        return false;
    const QString name = it.key();
    ExtensionInfo &info = m_data.GetExtensions()[m_currentExtension];
    QSet<QString> *set = nullptr;
    if (index.column() == ImportColumn)
        set = &info.importLicenses;
    else if (index.column() == ExportColumn)
        set = &info.exportLicenses;
    SetCheckMark(set, name, value.toBool());
    emit dataChanged(index, index);
    return true;
}

QVariant ExtensionsLicenseModel::headerData(int section, Qt::Orientation orientation,
                                            int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role != Qt::DisplayRole)
        return QVariant();
    return HeaderTable().value(section);
}

void ExtensionsLicenseModel::SetCurrentExtension(const QString &id)
{
    m_currentExtension = id;
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

} // namespace ProductEditor
