#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QIdentityProxyModel>

namespace ProductEditor {

// Over a LicensesModel: check marks of the licences that the current product
// grants the current feature (its "specific" entry), in column 0.
class PRODUCT_EDITOR_EXPORT ProductLicensesModel : public QIdentityProxyModel
{
    Q_OBJECT

public:
    // The table\'s columns, as views address them.
    enum Column { CheckColumn, NameColumn, TextColumn };

    explicit ProductLicensesModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ProductLicensesModel() override;

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // Makes `product` current and repaints every cell.
    void UpdateData(const QString &product);
    // Makes `feature` current; the next repaint shows it.
    void UpdateFeature(const QString &feature);

    const QString &CurrentProduct() const { return m_currentProduct; }
    const QString &CurrentFeature() const { return m_currentFeature; }

private:
    QString m_currentProduct;
    QString m_currentFeature;
    VantixJsonData &m_data; // not owned
};

} // namespace ProductEditor
