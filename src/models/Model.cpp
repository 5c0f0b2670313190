#include "models/Model.h"

#include "models/ExtensionsLayoutModel.h"
#include "models/ExtensionsLicenseModel.h"
#include "models/ExtensionsLicenseProxyModel.h"
#include "models/ExtensionsModel.h"
#include "models/ExtensionsProductModel.h"
#include "models/FeatureProductsModel.h"
#include "models/FeaturesModel.h"
#include "models/FilterFeatureModel.h"
#include "models/LayoutsModel.h"
#include "models/LicenseProxyModel.h"
#include "models/LicensesModel.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"
#include "models/ProductsModel.h"

#include "diff/VantixFeaturesDiffModel.h"
#include "json/VantixResultModel.h"

#include <QPointer>

namespace ProductEditor {

struct Model::ModelPrivate
{
    explicit ModelPrivate(VantixJsonData &store) : data(store) {}

    VantixJsonData &data; // not owned
    // The models are children of the facade; these only observe them.
    QPointer<FeaturesModel> featuresModel;
    QPointer<ProductsModel> productsModel;
    QPointer<LayoutsModel> layoutsModel;
    QPointer<LicensesModel> licensesModel;
    QPointer<ExtensionsModel> extensionsModel;
    QPointer<ExtensionsProductModel> extensionsProductModel;
    QPointer<ExtensionsLayoutModel> extensionsLayoutModel;
    QPointer<ExtensionsLicenseModel> extensionsLicenseModel;
    QPointer<ExtensionsLicenseProxyModel> extensionsLicenseProxy;
    QPointer<VantixFeaturesDiffModel> diffModel;
    QPointer<VantixResultModel> resultModel;
    QPointer<FilterFeatureModel> featureFilter;
    QPointer<FeatureProductsModel> featureProductsModel;
    QPointer<ProductLicensesModel> productLicensesModel;
    QPointer<LicenseProxyModel> productLicensesProxy;
    QPointer<ProductLayoutsModel> productLayoutsModel;
    QMetaObject::Connection layoutsToFeatureProducts;
};

Model::Model(VantixJsonData &data) : QObject(nullptr), d(std::make_unique<ModelPrivate>(data))
{
    d->featuresModel = new FeaturesModel(data, this);
    d->productsModel = new ProductsModel(data, this);
    d->layoutsModel = new LayoutsModel(data, this);
    d->licensesModel = new LicensesModel(data, this);
    d->extensionsModel = new ExtensionsModel(data, this);
    d->extensionsProductModel = new ExtensionsProductModel(data, this);
    d->extensionsLayoutModel = new ExtensionsLayoutModel(data, this);
    d->extensionsLicenseModel = new ExtensionsLicenseModel(data, this);

    d->extensionsLicenseProxy = new ExtensionsLicenseProxyModel(this);
    d->extensionsLicenseProxy->setSourceModel(d->extensionsLicenseModel);

    d->diffModel = new VantixFeaturesDiffModel(this);
    d->resultModel = new VantixResultModel(this);

    d->featureFilter = new FilterFeatureModel(this);
    d->featureFilter->setSourceModel(d->featuresModel);

    d->featureProductsModel = new FeatureProductsModel(data, this);
    d->featureProductsModel->setSourceModel(d->productsModel);

    d->productLayoutsModel = new ProductLayoutsModel(data, this);
    d->productLayoutsModel->setSourceModel(d->layoutsModel);

    d->productLicensesModel = new ProductLicensesModel(data, this);
    d->productLicensesModel->setSourceModel(d->licensesModel);

    d->productLicensesProxy = new LicenseProxyModel(this);
    d->productLicensesProxy->setSourceModel(d->productLicensesModel);

    // Ticking a layout for a product refreshes the current feature's product marks.
    d->layoutsToFeatureProducts =
        connect(d->productLayoutsModel.data(), &QAbstractItemModel::dataChanged,
                d->featureProductsModel.data(), &FeatureProductsModel::Update);
}

Model::~Model()
{
    disconnect(d->layoutsToFeatureProducts);
    d.reset();
}

VantixJsonData &Model::GetData() const
{
    return d->data;
}

QAbstractItemModel *Model::GetSourceFeaturesModel() const
{
    return d->featuresModel.data();
}

QAbstractItemModel *Model::GetFeaturesModel() const
{
    return d->featureFilter.data();
}

QAbstractItemModel *Model::GetProductsModel() const
{
    return d->productsModel.data();
}

QAbstractItemModel *Model::GetFeatureProductsModel() const
{
    return d->featureProductsModel.data();
}

QAbstractItemModel *Model::GetLayoutsModel() const
{
    return d->layoutsModel.data();
}

QAbstractItemModel *Model::GetProductLayoutsModel() const
{
    return d->productLayoutsModel.data();
}

QAbstractItemModel *Model::GetLicensesModel() const
{
    return d->licensesModel.data();
}

QAbstractItemModel *Model::GetProductLicensesModel() const
{
    return d->productLicensesProxy.data();
}

QAbstractItemModel *Model::GetExtensionsModel() const
{
    return d->extensionsModel.data();
}

QAbstractItemModel *Model::GetExtensionsProductModel() const
{
    return d->extensionsProductModel.data();
}

QAbstractItemModel *Model::GetExtensionsLayoutModel() const
{
    return d->extensionsLayoutModel.data();
}

QAbstractItemModel *Model::GetExtensionsLicenseModel() const
{
    return d->extensionsLicenseProxy.data();
}

VantixFeaturesDiffModel *Model::GetDiffModel() const
{
    return d->diffModel.data();
}

VantixResultModel *Model::GetResultModel() const
{
    return d->resultModel.data();
}

void Model::SelectFeature(const QString &i_feature)
{
    d->featureProductsModel->UpdateFeature(i_feature);
    d->productLayoutsModel->UpdateFeature(i_feature);
    d->productLicensesModel->UpdateFeature(i_feature);
    d->productLicensesProxy->invalidate();
}

void Model::SelectProduct(const QString &i_product)
{
    d->productLayoutsModel->UpdateData(i_product);
    d->productLicensesModel->UpdateData(i_product);
    d->productLicensesProxy->invalidate();
}

void Model::SetFilter(const QString &i_filter)
{
    d->featureFilter->SetFilter(i_filter);
}

void Model::SelectExtension(const QString &i_id)
{
    d->extensionsProductModel->SetCurrentExtension(i_id);
    d->extensionsLayoutModel->SetCurrentExtension(i_id);
    d->extensionsLicenseModel->SetCurrentExtension(i_id);
    d->extensionsLicenseProxy->invalidate();
}

} // namespace ProductEditor
