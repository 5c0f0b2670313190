#pragma once

#include "ProductEditorExport.h"
#include "models/RowCursor.h"
#include "store/VantixJsonData.h"

#include <QAbstractTableModel>

namespace ProductEditor {

// The licence catalogue: name (column 1) and display text (column 2); column 0
// is filled by ProductLicensesModel.
class PRODUCT_EDITOR_EXPORT LicensesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LicensesModel(VantixJsonData &data, QObject *parent = nullptr);
    ~LicensesModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    VantixJsonData &m_data; // not owned
    mutable MapRowCursor<QString, QString> m_cursor;
};

} // namespace ProductEditor
