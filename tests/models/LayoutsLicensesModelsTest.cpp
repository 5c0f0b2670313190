#include "ModelsFixture.h"
#include "models/LayoutsModel.h"
#include "models/LicenseProxyModel.h"
#include "models/LicensesModel.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QColor>
#include <QIcon>
#include <QSignalSpy>
#include <QTest>

using namespace ProductEditor;

namespace {

QString ColorName(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("-");
    const QColor color = value.value<QColor>();
    if (color == QColor(Qt::black))
        return QStringLiteral("black");
    if (color == QColor(Qt::gray))
        return QStringLiteral("gray");
    return color.name();
}

} // namespace

class LayoutsLicensesModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<StoreFixture>();
        m_layouts = std::make_unique<LayoutsModel>(m_fixture->data());
        m_productLayouts = std::make_unique<ProductLayoutsModel>(m_fixture->data());
        m_productLayouts->setSourceModel(m_layouts.get());
        m_licenses = std::make_unique<LicensesModel>(m_fixture->data());
        m_productLicenses = std::make_unique<ProductLicensesModel>(m_fixture->data());
        m_productLicenses->setSourceModel(m_licenses.get());
    }
    void cleanup()
    {
        m_productLicenses.reset();
        m_licenses.reset();
        m_productLayouts.reset();
        m_layouts.reset();
        m_fixture.reset();
    }

    void layoutsTable()
    {
        QAbstractItemModelTester tester(m_layouts.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(m_layouts->columnCount(), 3);
        QCOMPARE(RowText(*m_layouts, 0), QStringLiteral("-|-|design"));
        QCOMPARE(RowText(*m_layouts, 1, Qt::EditRole), QStringLiteral("-|-|-"));
        QCOMPARE(m_layouts->headerData(0, Qt::Horizontal), QVariant("Current\nFeature"));
        QCOMPARE(m_layouts->headerData(1, Qt::Horizontal), QVariant("Current\nProduct"));
        QCOMPARE(m_layouts->headerData(2, Qt::Horizontal), QVariant("Name"));
        QCOMPARE(m_layouts->headerData(7, Qt::Horizontal), QVariant("Name"));
        QVERIFY(!m_layouts->headerData(0, Qt::Vertical).isValid());
        QVERIFY(!m_layouts->headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
    }

    void licensesTable()
    {
        QAbstractItemModelTester tester(m_licenses.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(RowText(*m_licenses, 0), QStringLiteral("-|10|Ten"));
        QCOMPARE(RowText(*m_licenses, 3), QStringLiteral("-|Lic1|Licence one"));
        QCOMPARE(RowText(*m_licenses, 3, Qt::ToolTipRole), QStringLiteral("-|-|-"));
        // Base-class headers: numbers.
        QCOMPARE(m_licenses->headerData(1, Qt::Horizontal).toInt(), 2);
    }

    void tablesResetWithTheFeatures()
    {
        QSignalSpy layoutsReset(m_layouts.get(), &QAbstractItemModel::modelReset);
        QSignalSpy licensesReset(m_licenses.get(), &QAbstractItemModel::modelReset);
        QSignalSpy proxyReset(m_productLayouts.get(), &QAbstractItemModel::modelReset);
        QVERIFY(m_fixture->data().DuplicateFeatureFrom("save", "save2"));
        QCOMPARE(layoutsReset.count(), 1);
        QCOMPARE(licensesReset.count(), 1);
        QCOMPARE(proxyReset.count(), 1);
    }

    void productLayoutsNeedAFeature()
    {
        m_productLayouts->UpdateData(QStringLiteral("Base"));
        QCOMPARE(RowText(*m_productLayouts, 0), QStringLiteral("-|-|-"));
        QCOMPARE(RowText(*m_productLayouts, 0, Qt::UserRole), QStringLiteral("-|-|-"));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 2), true));
    }

    void productLayoutsNotifications()
    {
        QAbstractItemModelTester tester(m_productLayouts.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(m_productLayouts.get(), &QAbstractItemModel::dataChanged);
        m_productLayouts->UpdateFeature(QStringLiteral("save"));
        QCOMPARE(changed.count(), 0);
        m_productLayouts->UpdateData(QStringLiteral("Base"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(0).toModelIndex(), m_productLayouts->index(0, 0));
        QCOMPARE(changed.at(0).at(1).toModelIndex(), m_productLayouts->index(1, 2));
        QCOMPARE(changed.at(0).at(2).value<QVector<int>>(), QVector<int>());
    }

    void productLayoutsMarks_data()
    {
        QTest::addColumn<QString>("feature");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("design");
        QTest::addColumn<QString>("print");
        QTest::addColumn<QString>("colors");
        QTest::newRow("save in Base") << "save" << "Base" << "false|true|-" << "true|false|-"
                                      << "black,gray";
        QTest::newRow("Open in Base2") << "Open" << "Base2" << "true|true|-" << "false|true|-"
                                       << "black,black";
        QTest::newRow("product naming none") << "Open" << "nothing" << "true|-|-" << "false|-|-"
                                             << "-,-";
    }
    void productLayoutsMarks()
    {
        QFETCH(QString, feature);
        QFETCH(QString, product);
        QFETCH(QString, design);
        QFETCH(QString, print);
        QFETCH(QString, colors);
        m_productLayouts->UpdateFeature(feature);
        m_productLayouts->UpdateData(product);
        QCOMPARE(RowText(*m_productLayouts, 0, Qt::UserRole), design);
        QCOMPARE(RowText(*m_productLayouts, 1, Qt::UserRole), print);
        QCOMPARE(RowText(*m_productLayouts, 0), QStringLiteral("-|-|design"));
        const QModelIndex mark = m_productLayouts->index(0, 0);
        QCOMPARE(mark.data(Qt::DecorationRole).userType(), qMetaTypeId<QIcon>());
        // Names are black where the product offers the layout.
        QCOMPARE(ColorName(m_productLayouts->index(0, 2).data(Qt::ForegroundRole)) + ","
                     + ColorName(m_productLayouts->index(1, 2).data(Qt::ForegroundRole)),
                 colors);
    }

    void productLayoutsToggles()
    {
        QAbstractItemModelTester tester(m_productLayouts.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_productLayouts->UpdateFeature(QStringLiteral("save"));
        m_productLayouts->UpdateData(QStringLiteral("Base"));
        QSignalSpy changed(m_productLayouts.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(0, 0), true));
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(1, 1), true));
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(0, 1), false));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 2), true));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 0), false, Qt::UserRole));
        QCOMPARE(changed.count(), 3);
        QCOMPARE(changed.at(1).at(0).toModelIndex(), m_productLayouts->index(1, 1));
        VantixJsonData &data = m_fixture->data();
        QCOMPARE(SortedJoin(data.GetFeatures().value("save").layoutNames), QStringLiteral("design,print"));
        QCOMPARE(SortedJoin(data.GetProducts().products.at(0).modes), QStringLiteral("print"));
        QCOMPARE(RowText(*m_productLayouts, 1, Qt::UserRole), QStringLiteral("true|true|-"));
    }

    void unknownFeatureIsCreatedOnRead()
    {
        m_productLayouts->UpdateFeature(QStringLiteral("fresh"));
        QCOMPARE(m_productLayouts->index(0, 0).data(Qt::UserRole), QVariant(false));
        QVERIFY(m_fixture->data().GetFeatures().contains("fresh"));
    }

    void productLicensesNeedFeatureAndProduct()
    {
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        QCOMPARE(RowText(*m_productLicenses, 1), QStringLiteral("-|-|-"));
        m_productLicenses->UpdateFeature(QString());
        m_productLicenses->UpdateData(QStringLiteral("Base"));
        QCOMPARE(RowText(*m_productLicenses, 1), QStringLiteral("-|-|-"));
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        m_productLicenses->UpdateData(QStringLiteral("nothing"));
        QCOMPARE(RowText(*m_productLicenses, 1), QStringLiteral("-|-|-"));
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(1, 0), true));
    }

    void productLicensesMarks()
    {
        QAbstractItemModelTester tester(m_productLicenses.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(m_productLicenses.get(), &QAbstractItemModel::dataChanged);
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        QCOMPARE(changed.count(), 0);
        m_productLicenses->UpdateData(QStringLiteral("Base"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.at(0).at(1).toModelIndex(), m_productLicenses->index(3, 2));
        QCOMPARE(ColumnText(*m_productLicenses, 0, Qt::UserRole), QStringLiteral("false,true,false,true"));
        QCOMPARE(ColumnText(*m_productLicenses, 1), QStringLiteral("10,2,B,Lic1"));
        QStringList colors;
        for (int row = 0; row < 4; ++row)
            colors << ColorName(m_productLicenses->index(row, 1).data(Qt::ForegroundRole)) + "/"
                          + ColorName(m_productLicenses->index(row, 2).data(Qt::ForegroundRole)) + "/"
                          + ColorName(m_productLicenses->index(row, 0).data(Qt::ForegroundRole));
        QCOMPARE(colors.join(','), QStringLiteral("gray/gray/-,black/black/-,gray/gray/-,black/black/-"));
    }

    void productLicensesToggles()
    {
        QAbstractItemModelTester tester(m_productLicenses.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        m_productLicenses->UpdateData(QStringLiteral("Base"));
        QSignalSpy changed(m_productLicenses.get(), &QAbstractItemModel::dataChanged);
        const auto &specific = m_fixture->data().GetProducts().products.at(0).specificLicenses;

        QVERIFY(m_productLicenses->setData(m_productLicenses->index(1, 0), false));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(3, 0), false));
        // No empty entry is left behind.
        QVERIFY(!specific.contains("Open"));
        QCOMPARE(ColumnText(*m_productLicenses, 0, Qt::UserRole), QStringLiteral("false,false,false,false"));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(2, 0), true));
        QCOMPARE(specific.value("Open"), QSet<QString>{"B"});
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(2, 1), true));
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(2, 0), true, Qt::DisplayRole));
        QCOMPARE(changed.count(), 3);
        QCOMPARE(changed.at(2).at(0).toModelIndex(), m_productLicenses->index(2, 0));
    }

    void licenceSortPutsAttachedFirst()
    {
        LicenseProxyModel proxy;
        proxy.setSourceModel(m_productLicenses.get());
        QAbstractItemModelTester tester(&proxy,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        m_productLicenses->UpdateData(QStringLiteral("Base"));
        proxy.invalidate();
        proxy.sort(0);
        // Attached {2, Lic1}, then {10, B}; names as numbers, words count as 0.
        QCOMPARE(ColumnText(proxy, 1), QStringLiteral("Lic1,2,B,10"));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(0, 0), true));
        proxy.invalidate();
        QCOMPARE(ColumnText(proxy, 1), QStringLiteral("Lic1,2,10,B"));
    }

private:
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<LayoutsModel> m_layouts;
    std::unique_ptr<ProductLayoutsModel> m_productLayouts;
    std::unique_ptr<LicensesModel> m_licenses;
    std::unique_ptr<ProductLicensesModel> m_productLicenses;
};

QTEST_MAIN(LayoutsLicensesModelsTest)
#include "LayoutsLicensesModelsTest.moc"
