#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QAbstractTableModel>

namespace ProductEditor {

// The products of the store in list order: id, profile suffix, base licence.
class PRODUCT_EDITOR_EXPORT ProductsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The table\'s columns, as views address them.
    enum Column { CheckColumn, IdColumn, SuffixColumn, BaseColumn, ColumnCount };

    explicit ProductsModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ProductsModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;

private:
    VantixJsonData &m_data; // not owned
};

} // namespace ProductEditor
