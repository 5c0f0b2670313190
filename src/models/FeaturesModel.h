#pragma once

#include "ProductEditorExport.h"
#include "models/RowCursor.h"
#include "store/VantixJsonData.h"

#include <QAbstractTableModel>
#include <QVector>

namespace ProductEditor {

// Every feature of the store, one row per feature in id order; edits go
// straight into the store's feature records.
class PRODUCT_EDITOR_EXPORT FeaturesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The table's columns; views and proxies address them by these names.
    enum Column {
        IdColumn,
        TitleColumn,
        TooltipColumn,
        StatustipColumn,
        VisibleColumn,
        EmergencyColumn,
        ProductsColumn,
        LayoutsColumn,
        LicensesColumn,
        ColumnCount
    };

    explicit FeaturesModel(VantixJsonData &data, QObject *parent = nullptr);
    ~FeaturesModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

private:
    VantixJsonData &m_data; // not owned
    mutable MapRowCursor<QString, VantixFeatureData> m_cursor;
    QVector<QMetaObject::Connection> m_storeResets;
};

} // namespace ProductEditor
