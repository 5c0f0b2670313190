#pragma once

#include "ProductEditorExport.h"

#include <QObject>
#include <QString>

#include <memory>

class QAbstractItemModel;

namespace ProductEditor {

class VantixJsonData;
class VantixFeaturesDiffModel;
class VantixResultModel;

// The one object through which the window reaches every item model over a
// store. It owns the models (as Qt children) and routes the current
// selection to them. The store must outlive it.
class PRODUCT_EDITOR_EXPORT Model : public QObject
{
    Q_OBJECT

public:
    explicit Model(VantixJsonData &data);
    ~Model() override;

    VantixJsonData &GetData() const;
    QAbstractItemModel *GetSourceFeaturesModel() const;
    QAbstractItemModel *GetFeaturesModel() const;
    QAbstractItemModel *GetProductsModel() const;
    QAbstractItemModel *GetFeatureProductsModel() const;
    QAbstractItemModel *GetLayoutsModel() const;
    QAbstractItemModel *GetProductLayoutsModel() const;
    QAbstractItemModel *GetLicensesModel() const;
    QAbstractItemModel *GetProductLicensesModel() const;
    QAbstractItemModel *GetExtensionsModel() const;
    QAbstractItemModel *GetExtensionsProductModel() const;
    QAbstractItemModel *GetExtensionsLayoutModel() const;
    QAbstractItemModel *GetExtensionsLicenseModel() const;
    VantixFeaturesDiffModel *GetDiffModel() const;
    VantixResultModel *GetResultModel() const;

public slots:
    void SelectFeature(const QString &i_feature);
    void SelectProduct(const QString &i_product);
    void SetFilter(const QString &i_filter);
    void SelectExtension(const QString &i_id);

private:
    struct ModelPrivate;
    std::unique_ptr<ModelPrivate> d; // owned
};

} // namespace ProductEditor
