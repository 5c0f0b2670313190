#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QAbstractTableModel>

namespace ProductEditor {

// Check marks of the current extension in the six role sets of each row's
// extension access (columns 1 to 6); column 0 names the row.
class PRODUCT_EDITOR_EXPORT ExtensionsBaseModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The table\'s columns, as views address them.
    enum Column { NameColumn = 0, FirstSetColumn = 1, LastSetColumn = 6, ColumnCount = 8 };

    explicit ExtensionsBaseModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ExtensionsBaseModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    // Makes `id` the current extension and repaints every cell.
    void SetCurrentExtension(const QString &id);
    const QString &CurrentExtension() const { return m_currentExtension; }

protected:
    virtual QString RowName(const QModelIndex &index) const = 0;
    // The access sets behind the row, or null when the row does not exist.
    virtual const ExtensionAccess *RowAccess(const QModelIndex &index) const = 0;
    virtual int ItemCount() const = 0;
    virtual QString ItemTitle() const = 0;
    virtual ExtensionAccess *EditRowAccess(const QModelIndex &index) = 0;

    VantixJsonData &Data() const { return m_data; }

private:
    QString m_currentExtension;
    VantixJsonData &m_data; // not owned
};

} // namespace ProductEditor
