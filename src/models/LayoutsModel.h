#pragma once

#include "ProductEditorExport.h"
#include "models/RowCursor.h"
#include "store/VantixJsonData.h"

#include <QAbstractTableModel>

namespace ProductEditor {

// The layouts of the store by name (column 2); columns 0 and 1 are filled by
// ProductLayoutsModel.
class PRODUCT_EDITOR_EXPORT LayoutsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LayoutsModel(VantixJsonData &data, QObject *parent = nullptr);
    ~LayoutsModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    VantixJsonData &m_data; // not owned
    mutable MapRowCursor<QString, LayoutData> m_cursor;
};

} // namespace ProductEditor
