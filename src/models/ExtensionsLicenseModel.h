#pragma once

#include "ProductEditorExport.h"
#include "models/RowCursor.h"
#include "store/VantixJsonData.h"

#include <QAbstractTableModel>

namespace ProductEditor {

// The licences of the catalogue and whether they cover the current extension
// for import (column 2) and export (column 3).
class PRODUCT_EDITOR_EXPORT ExtensionsLicenseModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The table\'s columns, as views address them.
    enum Column { NameColumn, TextColumn, ImportColumn, ExportColumn, ColumnCount };

    explicit ExtensionsLicenseModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ExtensionsLicenseModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // Makes `id` the current extension and repaints every cell.
    void SetCurrentExtension(const QString &id);
    const QString &CurrentExtension() const { return m_currentExtension; }

private:
    QString m_currentExtension;
    VantixJsonData &m_data; // not owned
    mutable MapRowCursor<QString, QString> m_cursor;
};

} // namespace ProductEditor
