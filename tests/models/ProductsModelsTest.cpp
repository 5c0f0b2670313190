#include "ModelsFixture.h"
#include "models/FeatureProductsModel.h"
#include "models/ProductsModel.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QColor>
#include <QIcon>
#include <QSignalSpy>
#include <QTest>

using namespace ProductEditor;

class ProductsModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture = std::make_unique<StoreFixture>();
        m_products = std::make_unique<ProductsModel>(m_fixture->data());
        m_featureProducts = std::make_unique<FeatureProductsModel>(m_fixture->data());
        m_featureProducts->setSourceModel(m_products.get());
    }
    void cleanup()
    {
        m_featureProducts.reset();
        m_products.reset();
        m_fixture.reset();
    }

    void productsTable()
    {
        QAbstractItemModelTester tester(m_products.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(m_products->columnCount(), 4);
        QCOMPARE(RowText(*m_products, 0), QStringLiteral("-|Base|_b|L1"));
        QCOMPARE(RowText(*m_products, 2), QStringLiteral("-|ab||L3"));
        QCOMPARE(RowText(*m_products, 1, Qt::EditRole), QStringLiteral("-|-|_b2|L2"));
        QCOMPARE(RowText(*m_products, 1, Qt::ToolTipRole), QStringLiteral("-|-|-|-"));
    }

    void headers_data()
    {
        QTest::addColumn<int>("section");
        QTest::addColumn<QVariant>("text");
        QTest::newRow("0 is empty") << 0 << QVariant();
        QTest::newRow("1") << 1 << QVariant("Product");
        QTest::newRow("2") << 2 << QVariant("Suffix");
        QTest::newRow("3") << 3 << QVariant("Base lic");
        QTest::newRow("4") << 4 << QVariant();
    }
    void headers()
    {
        QFETCH(int, section);
        QFETCH(QVariant, text);
        QCOMPARE(m_products->headerData(section, Qt::Horizontal), text);
        // The same words beside the rows.
        QCOMPARE(m_products->headerData(section, Qt::Vertical), text);
        QVERIFY(!m_products->headerData(section, Qt::Horizontal, Qt::ToolTipRole).isValid());
    }

    void flagsAllowSuffixAndBase()
    {
        QVERIFY(!m_products->flags(m_products->index(0, 0)).testFlag(Qt::ItemIsEditable));
        QVERIFY(!m_products->flags(m_products->index(0, 1)).testFlag(Qt::ItemIsEditable));
        QVERIFY(m_products->flags(m_products->index(0, 2)).testFlag(Qt::ItemIsEditable));
        QVERIFY(m_products->flags(m_products->index(0, 3)).testFlag(Qt::ItemIsEditable));
        QVERIFY(m_products->flags(m_products->index(0, 3)).testFlag(Qt::ItemIsSelectable));
    }

    void edits_data()
    {
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("role");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("row");
        QTest::newRow("suffix") << 2 << int(Qt::EditRole) << true << "-|Base2|_new|L2";
        QTest::newRow("base") << 3 << int(Qt::EditRole) << true << "-|Base2|_b2|new";
        QTest::newRow("id, written straight") << 1 << int(Qt::EditRole) << true << "-|new|_b2|L2";
        QTest::newRow("column 0 accepted, nothing kept") << 0 << int(Qt::EditRole) << true
                                                         << "-|Base2|_b2|L2";
        QTest::newRow("display role refused") << 2 << int(Qt::DisplayRole) << false
                                              << "-|Base2|_b2|L2";
    }
    void edits()
    {
        QFETCH(int, column);
        QFETCH(int, role);
        QFETCH(bool, accepted);
        QFETCH(QString, row);
        QAbstractItemModelTester tester(m_products.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(m_products.get(), &QAbstractItemModel::dataChanged);
        const QModelIndex index = m_products->index(1, column);
        QString value = QStringLiteral("new");
        if (column == 2)
            value = QStringLiteral("_new");
        QCOMPARE(m_products->setData(index, value, role), accepted);
        QCOMPARE(RowText(*m_products, 1), row);
        QCOMPARE(changed.count(), accepted ? 1 : 0);
        if (accepted) {
            QCOMPARE(changed.at(0).at(0).toModelIndex(), index);
            QCOMPARE(changed.at(0).at(1).toModelIndex(), index);
        }
    }

    void renamingAProductLeavesTheFeatures()
    {
        QVERIFY(m_products->setData(m_products->index(1, 1), QStringLiteral("Other")));
        QVERIFY(m_fixture->data().GetFeatures().value("exit").productIds.contains("Base2"));
        QVERIFY(!m_fixture->data().GetFeatures().value("exit").productIds.contains("Other"));
    }

    void removeTakesOnlyTheGivenRow()
    {
        QAbstractItemModelTester tester(m_products.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy removed(m_products.get(), &QAbstractItemModel::rowsRemoved);
        QVERIFY(m_products->removeRows(2, 5));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.at(0).at(1).toInt(), 2);
        QCOMPARE(removed.at(0).at(2).toInt(), 2);
        QCOMPARE(ColumnText(*m_products, 1), QStringLiteral("Base,Base2"));
        QCOMPARE(SortedJoin(m_fixture->data().GetFeatures().value("exit").productIds),
                 QStringLiteral("Base2"));
        QVERIFY(m_products->removeRows(0, 1));
        QCOMPARE(ColumnText(*m_products, 1), QStringLiteral("Base2"));
        QVERIFY(!m_products->removeRows(1, 1));
        QCOMPARE(removed.count(), 2);
    }

    void storeSignalsResetTheProducts()
    {
        QAbstractItemModelTester tester(m_products.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy reset(m_products.get(), &QAbstractItemModel::modelReset);
        QVERIFY(m_fixture->data().DuplicateProductFrom("ab", "ab2"));
        QCOMPARE(reset.count(), 1);
        QCOMPARE(ColumnText(*m_products, 1), QStringLiteral("Base,Base2,ab,ab2"));
        QVERIFY(m_fixture->data().DuplicateFeatureFrom("exit", "exit2"));
        QCOMPARE(reset.count(), 2);
    }

    void featureProductsWithoutFeatureShowNothing()
    {
        QAbstractItemModelTester tester(m_featureProducts.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(RowText(*m_featureProducts, 0), QStringLiteral("-|-|-|-"));
        QCOMPARE(RowText(*m_featureProducts, 0, Qt::UserRole), QStringLiteral("-|-|-|-"));
    }

    void featureProductsMarks()
    {
        QAbstractItemModelTester tester(m_featureProducts.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy changed(m_featureProducts.get(), &QAbstractItemModel::dataChanged);
        m_featureProducts->UpdateFeature(QStringLiteral("save"));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(ColumnText(*m_featureProducts, 0, Qt::UserRole), QStringLiteral("true,true,false"));
        QCOMPARE(RowText(*m_featureProducts, 0), QStringLiteral("-|Base|_b|L1"));
        QCOMPARE(m_featureProducts->index(0, 0).data(Qt::DecorationRole).userType(),
                 qMetaTypeId<QIcon>());
        QCOMPARE(m_featureProducts->index(0, 1).data(Qt::ForegroundRole).value<QColor>(),
                 QColor(Qt::black));
        QCOMPARE(m_featureProducts->index(2, 1).data(Qt::ForegroundRole).value<QColor>(),
                 QColor(Qt::gray));
        QVERIFY(!m_featureProducts->index(2, 2).data(Qt::ForegroundRole).isValid());
    }

    void tickingAProductWritesTheFeature()
    {
        QAbstractItemModelTester tester(m_featureProducts.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_featureProducts->UpdateFeature(QStringLiteral("save"));
        QSignalSpy changed(m_featureProducts.get(), &QAbstractItemModel::dataChanged);
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(2, 0), true));
        QCOMPARE(SortedJoin(m_fixture->data().GetFeatures().value("save").productIds),
                 QStringLiteral("Base,Base2,ab"));
        QCOMPARE(m_featureProducts->index(2, 1).data(Qt::ForegroundRole).value<QColor>(),
                 QColor(Qt::black));
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 0), false));
        QCOMPARE(SortedJoin(m_fixture->data().GetFeatures().value("save").productIds),
                 QStringLiteral("Base2,ab"));
        // Other columns are accepted and change nothing.
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 2), QStringLiteral("x")));
        QCOMPARE(m_fixture->data().GetProducts().products.at(0).profile_suffix, QStringLiteral("_b"));
        QVERIFY(!m_featureProducts->setData(m_featureProducts->index(0, 0), true, Qt::UserRole));
        QCOMPARE(changed.count(), 3);
        QCOMPARE(changed.at(0).at(0).toModelIndex(), m_featureProducts->index(2, 0));
    }

    // The tester is left out: Update reports one past the last row and column.
    void updateReportsOnePastTheEnd()
    {
        QSignalSpy changed(m_featureProducts.get(), &QAbstractItemModel::dataChanged);
        m_featureProducts->Update();
        QCOMPARE(changed.count(), 1);
        const QModelIndex topLeft = changed.at(0).at(0).toModelIndex();
        const QModelIndex bottomRight = changed.at(0).at(1).toModelIndex();
        QCOMPARE(topLeft, m_featureProducts->index(0, 0));
        QCOMPARE(bottomRight.row(), 3);
        QCOMPARE(bottomRight.column(), 4);
        QCOMPARE(changed.at(0).at(2).value<QVector<int>>(), QVector<int>());
    }

private:
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<ProductsModel> m_products;
    std::unique_ptr<FeatureProductsModel> m_featureProducts;
};

QTEST_MAIN(ProductsModelsTest)
#include "ProductsModelsTest.moc"
