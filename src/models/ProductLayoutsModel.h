#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QIdentityProxyModel>

namespace ProductEditor {

// Over a LayoutsModel: check marks of the current feature's layouts
// (column 0) and of the current product's modes (column 1).
class PRODUCT_EDITOR_EXPORT ProductLayoutsModel : public QIdentityProxyModel
{
    Q_OBJECT

public:
    // The table\'s columns, as views address them.
    enum Column { FeatureColumn, ProductColumn, NameColumn };

    explicit ProductLayoutsModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ProductLayoutsModel() override;

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // Makes `product` current and repaints every cell.
    void UpdateData(const QString &product);
    // Makes `feature` current; the next repaint shows it.
    void UpdateFeature(const QString &feature);

    const QString &CurrentProduct() const { return m_currentProduct; }
    const QString &CurrentFeature() const { return m_currentFeature; }

private:
    QString _LayoutName(const QModelIndex &index) const;

    QString m_currentProduct;
    QString m_currentFeature;
    VantixJsonData &m_data; // not owned
};

} // namespace ProductEditor
