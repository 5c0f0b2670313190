// The facade's wiring and routing, and rows of a map reached through a cursor.
#include "ModelsFixture.h"

class ModelFacadeTest : public ModelsFixture
{
    Q_OBJECT

private slots:
    // --- the facade

    void everyModelIsAChildAndChained()
    {
        Model &model = *m_model;
        QCOMPARE(&model.GetData(), m_fixture->store.get());
        QCOMPARE(model.parent(), nullptr);
        for (QObject *child : QList<QObject *>{
                 model.GetSourceFeaturesModel(), model.GetFeaturesModel(), model.GetProductsModel(),
                 model.GetFeatureProductsModel(), model.GetLayoutsModel(), model.GetProductLayoutsModel(),
                 model.GetLicensesModel(), model.GetProductLicensesModel(), model.GetExtensionsModel(),
                 model.GetExtensionsProductModel(), model.GetExtensionsLayoutModel(),
                 model.GetExtensionsLicenseModel(), model.GetDiffModel(), model.GetResultModel()})
            QVERIFY(child && child->parent() == &model);
        QCOMPARE(SourceOf(model.GetFeaturesModel()), model.GetSourceFeaturesModel());
        QCOMPARE(SourceOf(model.GetFeatureProductsModel()), model.GetProductsModel());
        QCOMPARE(SourceOf(model.GetProductLayoutsModel()), model.GetLayoutsModel());
        QVERIFY(m_productLicenses && m_extensionLicenses && m_extensionProducts && m_extensionLayouts);
        QCOMPARE(SourceOf(m_productLicenses), model.GetLicensesModel());
        QPointer<QAbstractItemModel> features = model.GetSourceFeaturesModel();
        QPointer<QAbstractItemModel> diff = model.GetDiffModel();
        m_model.reset();
        QVERIFY(features.isNull() && diff.isNull());
    }

    void selectProductReachesTheProductModels()
    {
        QAbstractItemModel *licenses = m_model->GetProductLicensesModel();
        const auto tester = Tester(licenses);
        QSignalSpy extensionProducts(m_extensionProducts, &QAbstractItemModel::dataChanged);
        QSignalSpy licencesSorted(licenses, &QAbstractItemModel::layoutChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectFeature(QStringLiteral("Open"));
        QCOMPARE(featureProducts.count() + extensionProducts.count(), 0);
        QCOMPARE(licencesSorted.count(), 1);
        QCOMPARE(m_featureProducts->CurrentFeature() + m_productLayouts->CurrentFeature()
                     + m_productLicenses->CurrentFeature(), QStringLiteral("OpenOpenOpen"));
        QSignalSpy layoutsChanged(m_productLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy extensionLicences(m_extensionLicenses, &QAbstractItemModel::dataChanged);
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Emissions(layoutsChanged), QStringLiteral("0,0 1,2 []"));
        // The product layouts' change repaints the feature's product marks (one past the end, kept).
        QCOMPARE(Emissions(featureProducts), QStringLiteral("0,0 3,4 []"));
        QCOMPARE(m_featureProducts->CurrentFeature(), QStringLiteral("Open"));
        QCOMPARE(extensionLicences.count() + extensionProducts.count(), 0);
        QCOMPARE(ColumnText(*m_productLayouts, 1, Qt::UserRole), QStringLiteral("true,false"));
        // Attached {2, Lic1} first, then {10, B}; names compare as numbers, words count as 0.
        licenses->sort(0);
        QCOMPARE(ColumnText(*licenses, 1), QStringLiteral("Lic1,2,B,10"));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(0, 0), true));
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(ColumnText(*licenses, 1), QStringLiteral("Lic1,2,10,B"));
    }

    void selectExtensionReachesTheExtensionModels()
    {
        QSignalSpy products(m_extensionProducts, &QAbstractItemModel::dataChanged);
        QSignalSpy layouts(m_extensionLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy licenses(m_extensionLicenses, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectExtension(QStringLiteral("stl"));
        QCOMPARE(Emissions(products) + '/' + Emissions(layouts) + '/' + Emissions(licenses),
                 QStringLiteral("0,0 2,7 []/0,0 1,7 []/0,0 3,3 []"));
        QCOMPARE(featureProducts.count(), 0);
        QCOMPARE(m_extensionProducts->CurrentExtension() + m_extensionLicenses->CurrentExtension(), "stlstl");
    }

    // --- rows of a map: whatever happened to it, a cursor answers what counting from the first would

    void cursorAccessInAnyOrder_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::newRow("forward") << QList<int>{0, 1, 2, 3, 50, 51, 99};
        QTest::newRow("backward") << QList<int>{99, 98, 60, 3, 0};
        QTest::newRow("jumps") << QList<int>{40, 2, 97, 41, 41, 0, 70};
        QTest::newRow("past either end") << QList<int>{5, 100, -1, 99};
    }
    void cursorAccessInAnyOrder()
    {
        QFETCH(QList<int>, rows);
        const Map map = Numbers(100);
        Cursor cursor;
        for (int row : rows)
            QCOMPARE(KeyAt(cursor, map, row), map.keys().value(row, QStringLiteral("<end>")));
        QCOMPARE(KeyAt(cursor, Map(), 0), QStringLiteral("<end>"));
    }

    void cursorNoticesChanges_data()
    {
        QTest::addColumn<MapChange>("change");
        QTest::newRow("insertion before the cursor") << MapChange([](Map &map) { map.insert("a", -1); });
        QTest::newRow("removal before the cursor") << MapChange([](Map &map) { map.remove("k003"); });
        QTest::newRow("whole map replaced, same size") << MapChange([](Map &map) { map = Numbers(20, "j"); });
        QTest::newRow("key swap announced by a model") << MapChange([](Map &map) {
            map.remove("k003");
            map.insert("k0155", -1);
            BumpRowEpoch();
        });
        // The copy keeps the old entries until it goes, after the map has detached from it.
        QTest::newRow("map detached from a copy") << MapChange([](Map &map) {
            const Map copy = map;
            map["k000"] = 7;
        });
    }
    void cursorNoticesChanges()
    {
        QFETCH(MapChange, change);
        Map map = Numbers(20);
        Cursor cursor;
        QCOMPARE(KeyAt(cursor, map, 10), QStringLiteral("k010"));
        change(map);
        for (int row : {11, 10, 0, int(map.size()) - 1})
            QCOMPARE(KeyAt(cursor, map, row), map.keys().at(row));
    }
};

QTEST_MAIN(ModelFacadeTest)
#include "ModelFacadeTest.moc"
