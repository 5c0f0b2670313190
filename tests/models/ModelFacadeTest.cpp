#include "ModelsFixture.h"
#include "json/VantixFeaturesDiffModel.h"
#include "json/VantixResultModel.h"
#include "models/ExtensionsBaseModel.h"
#include "models/ExtensionsLicenseModel.h"
#include "models/FeatureProductsModel.h"
#include "models/Model.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QIdentityProxyModel>
#include <QPointer>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>

using namespace ProductEditor;

namespace {

QAbstractItemModel *SourceOf(QAbstractItemModel *model)
{
    auto *proxy = qobject_cast<QAbstractProxyModel *>(model);
    return proxy ? proxy->sourceModel() : nullptr;
}

} // namespace

class ModelFacadeTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<StoreFixture>();
        m_model = std::make_unique<Model>(m_fixture->data());
    }
    void cleanup()
    {
        m_model.reset();
        m_fixture.reset();
    }

    void everyModelIsAChildAndChained()
    {
        Model &model = *m_model;
        QCOMPARE(&model.GetData(), &m_fixture->data());
        QCOMPARE(model.parent(), nullptr);
        const QList<QObject *> models = {
            model.GetSourceFeaturesModel(), model.GetFeaturesModel(), model.GetProductsModel(),
            model.GetFeatureProductsModel(), model.GetLayoutsModel(), model.GetProductLayoutsModel(),
            model.GetLicensesModel(), model.GetProductLicensesModel(), model.GetExtensionsModel(),
            model.GetExtensionsProductModel(), model.GetExtensionsLayoutModel(),
            model.GetExtensionsLicenseModel(), model.GetDiffModel(), model.GetResultModel()};
        for (QObject *child : models) {
            QVERIFY(child);
            QCOMPARE(child->parent(), &model);
        }
        QCOMPARE(SourceOf(model.GetFeaturesModel()), model.GetSourceFeaturesModel());
        QCOMPARE(SourceOf(model.GetFeatureProductsModel()), model.GetProductsModel());
        QCOMPARE(SourceOf(model.GetProductLayoutsModel()), model.GetLayoutsModel());
        QVERIFY(qobject_cast<ProductLicensesModel *>(SourceOf(model.GetProductLicensesModel())));
        QCOMPARE(SourceOf(SourceOf(model.GetProductLicensesModel())), model.GetLicensesModel());
        QVERIFY(qobject_cast<ExtensionsLicenseModel *>(SourceOf(model.GetExtensionsLicenseModel())));
        QCOMPARE(model.GetFeaturesModel()->rowCount(), model.GetSourceFeaturesModel()->rowCount());
    }

    void setFilterNarrowsTheFeatures_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rows");
        QTest::newRow("blanks") << "   " << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("trimmed") << " SAV " << "save";
    }
    void setFilterNarrowsTheFeatures()
    {
        QFETCH(QString, text);
        QFETCH(QString, rows);
        QAbstractItemModelTester tester(m_model->GetFeaturesModel(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_model->SetFilter(text);
        QCOMPARE(ColumnText(*m_model->GetFeaturesModel()), rows);
        QCOMPARE(m_model->GetSourceFeaturesModel()->rowCount(), 5);
    }

    void selectFeatureReachesTheFeatureModels()
    {
        QSignalSpy featureProducts(m_model->GetFeatureProductsModel(), &QAbstractItemModel::dataChanged);
        QSignalSpy extensionProducts(m_model->GetExtensionsProductModel(),
                                     &QAbstractItemModel::dataChanged);
        QSignalSpy licencesSorted(m_model->GetProductLicensesModel(), &QAbstractItemModel::layoutChanged);
        m_model->SelectFeature(QStringLiteral("save"));
        QCOMPARE(featureProducts.count(), 0);
        QCOMPARE(extensionProducts.count(), 0);
        QCOMPARE(licencesSorted.count(), 1);
        QCOMPARE(ColumnText(*m_model->GetFeatureProductsModel(), 0, Qt::UserRole),
                 QStringLiteral("true,true,false"));
        auto *layouts = qobject_cast<ProductLayoutsModel *>(m_model->GetProductLayoutsModel());
        QCOMPARE(layouts->CurrentFeature(), QStringLiteral("save"));
        auto *licences = qobject_cast<ProductLicensesModel *>(SourceOf(m_model->GetProductLicensesModel()));
        QCOMPARE(licences->CurrentFeature(), QStringLiteral("save"));
    }

    void selectProductReachesTheProductModels()
    {
        QAbstractItemModelTester tester(m_model->GetProductLicensesModel(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_model->SelectFeature(QStringLiteral("Open"));
        QSignalSpy layoutsChanged(m_model->GetProductLayoutsModel(), &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_model->GetFeatureProductsModel(), &QAbstractItemModel::dataChanged);
        QSignalSpy extensionLicences(m_model->GetExtensionsLicenseModel(),
                                     &QAbstractItemModel::dataChanged);
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(layoutsChanged.count(), 1);
        // The product layouts' change repaints the feature's product marks; their feature stays.
        QCOMPARE(featureProducts.count(), 1);
        QCOMPARE(featureProducts.at(0).at(1).toModelIndex().row(), 3);
        QCOMPARE(qobject_cast<FeatureProductsModel *>(m_model->GetFeatureProductsModel())->CurrentFeature(),
                 QStringLiteral("Open"));
        QCOMPARE(extensionLicences.count(), 0);
        // Attached licences first once sorted: Open has {Lic1, 2} in Base.
        m_model->GetProductLicensesModel()->sort(0);
        QCOMPARE(ColumnText(*m_model->GetProductLicensesModel(), 1), QStringLiteral("Lic1,2,B,10"));
        QCOMPARE(ColumnText(*m_model->GetProductLayoutsModel(), 1, Qt::UserRole),
                 QStringLiteral("true,false"));
    }

    void tickingAProductLayoutRepaintsTheFeatureProducts()
    {
        m_model->SelectFeature(QStringLiteral("Open"));
        m_model->SelectProduct(QStringLiteral("Base2"));
        QSignalSpy featureProducts(m_model->GetFeatureProductsModel(), &QAbstractItemModel::dataChanged);
        QAbstractItemModel *layouts = m_model->GetProductLayoutsModel();
        QVERIFY(layouts->setData(layouts->index(1, 0), true));
        QCOMPARE(featureProducts.count(), 1);
        QCOMPARE(featureProducts.at(0).at(0).toModelIndex(), m_model->GetFeatureProductsModel()->index(0, 0));
        QCOMPARE(SortedJoin(m_fixture->data().GetFeatures().value("Open").layoutNames),
                 QStringLiteral("design,print"));
    }

    void selectExtensionReachesTheExtensionModels()
    {
        QSignalSpy products(m_model->GetExtensionsProductModel(), &QAbstractItemModel::dataChanged);
        QSignalSpy layouts(m_model->GetExtensionsLayoutModel(), &QAbstractItemModel::dataChanged);
        QSignalSpy licencesSorted(m_model->GetExtensionsLicenseModel(), &QAbstractItemModel::layoutChanged);
        QSignalSpy featureProducts(m_model->GetFeatureProductsModel(), &QAbstractItemModel::dataChanged);
        m_model->SelectExtension(QStringLiteral("stl"));
        QCOMPARE(products.count(), 1);
        QCOMPARE(layouts.count(), 1);
        QCOMPARE(licencesSorted.count(), 1);
        QCOMPARE(featureProducts.count(), 0);
        QCOMPARE(qobject_cast<ExtensionsBaseModel *>(m_model->GetExtensionsProductModel())->CurrentExtension(),
                 QStringLiteral("stl"));
        QCOMPARE(ColumnText(*m_model->GetExtensionsLayoutModel(), 1, Qt::UserRole),
                 QStringLiteral("true,false"));
        m_model->GetExtensionsLicenseModel()->sort(0);
        QCOMPARE(ColumnText(*m_model->GetExtensionsLicenseModel()), QStringLiteral("2,10,B,Lic1"));
    }

    void destructionFreesTheModelsAndLeavesTheStore()
    {
        QPointer<QAbstractItemModel> features = m_model->GetSourceFeaturesModel();
        QPointer<QAbstractItemModel> diff = m_model->GetDiffModel();
        m_model.reset();
        QVERIFY(features.isNull());
        QVERIFY(diff.isNull());
        QVERIFY(m_fixture->data().DuplicateFeatureFrom("save", "save2"));
        QVERIFY(m_fixture->data().DuplicateProductFrom("Base", "Base3"));
    }

private:
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<Model> m_model;
};

QTEST_MAIN(ModelFacadeTest)
#include "ModelFacadeTest.moc"
