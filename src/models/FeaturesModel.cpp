#include "models/FeaturesModel.h"

#include "models/KeyedRows.h"
#include "models/ModelReset.h"
#include "models/ModelText.h"

#include <utility>

namespace ProductEditor {

namespace {

// Looked up with insertion, so a section out of range gains an empty text.
QMap<int, QString> &HeaderTable()
{
    static QMap<int, QString> table = {
        {FeaturesModel::IdColumn, QStringLiteral("Id")},
        {FeaturesModel::TitleColumn, QStringLiteral("Title")},
        {FeaturesModel::TooltipColumn, QStringLiteral("Tooltip")},
        {FeaturesModel::StatustipColumn, QStringLiteral("Statustip")},
        {FeaturesModel::VisibleColumn, QStringLiteral("Visible")},
        {FeaturesModel::EmergencyColumn, QStringLiteral("Emergrncy")},
        {FeaturesModel::ProductsColumn, QStringLiteral("Products")},
        {FeaturesModel::LayoutsColumn, QStringLiteral("Layouts")},
        {FeaturesModel::LicensesColumn, QStringLiteral("Licenses")},
    };
    return table;
}

const QString &NewFeatureId()
{
    static const QString id = QStringLiteral("New_Feature");
    return id;
}

bool IsTextRole(int role)
{
    return role == Qt::DisplayRole || role == Qt::EditRole || role == Qt::ToolTipRole;
}

bool IsShownRole(int role)
{
    return role == Qt::DisplayRole || role == Qt::ToolTipRole;
}

} // namespace

FeaturesModel::FeaturesModel(VantixJsonData &data, QObject *parent)
    : QAbstractTableModel(parent), m_data(data)
{
    m_storeResets = FollowStoreResets(*this, m_data);
}

FeaturesModel::~FeaturesModel()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_storeResets))
        disconnect(connection);
}

int FeaturesModel::rowCount(const QModelIndex &parent) const
{
    // A cell of a table has no rows under it.
    if (parent.isValid())
        return 0;
    return m_data.GetFeatures().size();
}

int FeaturesModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant FeaturesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const QMap<QString, VantixFeatureData> &features = m_data.GetFeatures();
    const auto it = m_cursor.At(features, index.row());
    if (it == features.constEnd())
        return QVariant();
    const VantixFeatureData &feature = it.value();
    switch (index.column()) {
    case IdColumn:
        return IsTextRole(role) ? QVariant(it.key()) : QVariant();
    case TitleColumn:
        return IsTextRole(role) ? QVariant(feature.title) : QVariant();
    case TooltipColumn:
        return IsTextRole(role) ? QVariant(feature.tooltip) : QVariant();
    case StatustipColumn:
        return IsTextRole(role) ? QVariant(feature.statustip) : QVariant();
    case VisibleColumn:
        return IsTextRole(role) ? QVariant(feature.visual) : QVariant();
    case EmergencyColumn:
        return IsTextRole(role) ? QVariant(feature.emergency) : QVariant();
    case ProductsColumn:
        return IsShownRole(role) ? QVariant(JoinNames(feature.productIds)) : QVariant();
    case LayoutsColumn:
        return IsShownRole(role) ? QVariant(JoinNames(feature.layoutNames)) : QVariant();
    case LicensesColumn: {
        if (!IsShownRole(role))
            return QVariant();
        QSet<QString> licenses;
        for (const ProductData &product : std::as_const(m_data.GetProducts().products)) {
            const auto entry = product.specificLicenses.constFind(it.key());
            if (entry != product.specificLicenses.constEnd())
                licenses.unite(entry.value());
        }
        return JoinNames(licenses);
    }
    default:
        return QVariant();
    }
}

bool FeaturesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    // A text equal to the row's own id is refused for every column.
    return KeyedRows::Edit(*this, m_cursor, m_data.GetFeatures(), IdColumn, index, value, role,
                           [](VantixFeatureData &feature, int column, const QVariant &value) {
                               switch (column) {
                               case TitleColumn:
                                   feature.title = value.toString();
                                   break;
                               case TooltipColumn:
                                   feature.tooltip = value.toString();
                                   break;
                               case StatustipColumn:
                                   feature.statustip = value.toString();
                                   break;
                               case VisibleColumn:
                                   feature.visual = value.toBool();
                                   break;
                               case EmergencyColumn:
                                   feature.emergency = value.toBool();
                                   break;
                               default:
                                   break;
                               }
                           });
}

QVariant FeaturesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role != Qt::DisplayRole)
        return QVariant();
    return HeaderTable()[section];
}

bool FeaturesModel::insertRows(int, int, const QModelIndex &)
{
    QMap<QString, VantixFeatureData> &features = m_data.GetFeatures();
    // An existing "New_Feature" is kept as it is, yet the insertion is still announced.
    KeyedRows::Insert(*this, KeyedRows::RowOf(features, NewFeatureId()), [&features] {
        if (!features.contains(NewFeatureId()))
            features.insert(NewFeatureId(), VantixFeatureData());
    });
    return true;
}

bool FeaturesModel::removeRows(int row, int, const QModelIndex &)
{
    QMap<QString, VantixFeatureData> &features = m_data.GetFeatures();
    const auto it = m_cursor.At(features, row);
    if (it == features.constEnd())
        return false;
    const QString id = it.key();
    KeyedRows::Remove(*this, row, [&features, &id] { features.remove(id); });
    // Callers must not read the result as a failure: the row is gone.
    return false;
}

} // namespace ProductEditor
