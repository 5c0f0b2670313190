#pragma once

#include "ProductEditorExport.h"
#include "models/RowCursor.h"
#include "store/VantixJsonData.h"

#include <QAbstractTableModel>

namespace ProductEditor {

// Every extension of the store, one row per extension in id order.
class PRODUCT_EDITOR_EXPORT ExtensionsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The table's columns; views and proxies address them by these names.
    enum Column {
        IdColumn,
        TitleColumn,
        ExtColumn,
        CadColumn,
        MultiplePartsColumn,
        SlicesColumn,
        LoadAsPartColumn,
        ColumnCount
    };

    explicit ExtensionsModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ExtensionsModel() override;

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
    mutable MapRowCursor<QString, ExtensionInfo> m_cursor;
};

} // namespace ProductEditor
