#include "models/ExtensionsModel.h"

#include "models/KeyedRows.h"

namespace ProductEditor {

namespace {

const QMap<int, QString> &HeaderTable()
{
    static const QMap<int, QString> table = {
        {ExtensionsModel::IdColumn, QStringLiteral("Id")},
        {ExtensionsModel::TitleColumn, QStringLiteral("Title")},
        {ExtensionsModel::ExtColumn, QStringLiteral("Extension")},
        {ExtensionsModel::CadColumn, QStringLiteral("Cad support")},
        {ExtensionsModel::MultiplePartsColumn, QStringLiteral("Multiple parts support")},
        {ExtensionsModel::SlicesColumn, QStringLiteral("Slices support")},
        {ExtensionsModel::LoadAsPartColumn, QStringLiteral("Load as part")},
    };
    return table;
}

const QString &NewExtensionId()
{
    static const QString id = QStringLiteral("extension");
    return id;
}

bool *Flag(ExtensionInfo &info, int column)
{
    switch (column) {
    case ExtensionsModel::CadColumn:
        return &info.cad_support;
    case ExtensionsModel::MultiplePartsColumn:
        return &info.multiple_parts_support;
    case ExtensionsModel::SlicesColumn:
        return &info.slices_support;
    case ExtensionsModel::LoadAsPartColumn:
        return &info.load_as_part;
    default:
        return nullptr;
    }
}

} // namespace

ExtensionsModel::ExtensionsModel(VantixJsonData &data, QObject *parent)
    : QAbstractTableModel(parent), m_data(data)
{
}

ExtensionsModel::~ExtensionsModel() = default;

int ExtensionsModel::rowCount(const QModelIndex &parent) const
{
    // A cell of a table has no rows under it.
    if (parent.isValid())
        return 0;
    return m_data.GetExtensions().size();
}

int ExtensionsModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant ExtensionsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole)
        return QVariant();
    const QMap<QString, ExtensionInfo> &extensions = m_data.GetExtensions();
    const auto it = m_cursor.At(extensions, index.row());
    if (it == extensions.constEnd())
        return QVariant();
    const ExtensionInfo &info = it.value();
    switch (index.column()) {
    case IdColumn:
        return it.key();
    case TitleColumn:
        return info.title;
    case ExtColumn:
        return info.ext;
    case CadColumn:
        return info.cad_support;
    case MultiplePartsColumn:
        return info.multiple_parts_support;
    case SlicesColumn:
        return info.slices_support;
    case LoadAsPartColumn:
        return info.load_as_part;
    default:
        return QVariant();
    }
}

bool ExtensionsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    return KeyedRows::Edit(*this, m_cursor, m_data.GetExtensions(), IdColumn, index, value, role,
                           [](ExtensionInfo &info, int column, const QVariant &value) {
                               if (column == TitleColumn)
                                   info.title = value.toString();
                               else if (column == ExtColumn)
                                   info.ext = value.toString();
                               else if (bool *flag = Flag(info, column))
                                   *flag = value.toBool();
                           });
}

QVariant ExtensionsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role != Qt::DisplayRole)
        return QVariant();
    return HeaderTable().value(section);
}

bool ExtensionsModel::insertRows(int, int, const QModelIndex &)
{
    QMap<QString, ExtensionInfo> &extensions = m_data.GetExtensions();
    // An existing "extension" entry is reused and its pattern written again.
    KeyedRows::Insert(*this, KeyedRows::RowOf(extensions, NewExtensionId()), [&extensions] {
        extensions[NewExtensionId()].ext = QStringLiteral(".") + NewExtensionId();
    });
    return true;
}

bool ExtensionsModel::removeRows(int row, int, const QModelIndex &)
{
    const QMap<QString, ExtensionInfo> &extensions = m_data.GetExtensions();
    const auto it = m_cursor.At(extensions, row);
    if (it == extensions.constEnd())
        return false;
    const QString id = it.key();
    KeyedRows::Remove(*this, row, [this, &id] { m_data.RemoveExtension(id); });
    // Callers must not read the result as a failure: the row is gone.
    return false;
}

} // namespace ProductEditor
