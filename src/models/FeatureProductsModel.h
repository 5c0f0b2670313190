#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QIdentityProxyModel>

namespace ProductEditor {

// Over a ProductsModel: whether the current feature belongs to each product
// (column 0), with the product ids greyed out where it does not.
class PRODUCT_EDITOR_EXPORT FeatureProductsModel : public QIdentityProxyModel
{
    Q_OBJECT

public:
    explicit FeatureProductsModel(VantixJsonData &data, QObject *parent = nullptr);
    ~FeatureProductsModel() override;

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    // Makes `id` the current feature; the refresh comes with Update.
    void UpdateFeature(const QString &id);
    const QString &CurrentFeature() const { return m_currentFeature; }

public slots:
    void Update();

private:
    VantixJsonData &m_data; // not owned
    QString m_currentFeature;
};

} // namespace ProductEditor
