// Check-mark tables of products, layouts and licenses, the facade that routes the selection
// to them, the icons and their delegate.
#include "ModelsFixture.h"
#include "json/VantixFeaturesDiffModel.h"
#include "json/VantixResultModel.h"
#include "models/CheckMark.h"
#include "models/IconDelegate.h"

#include <QStandardItemModel>
#include <QStyle>
#include <QTableView>

class ExposedDelegate : public IconDelegate
{
public:
    using IconDelegate::IconDelegate;
    using IconDelegate::initStyleOption;
};

class CheckMarkModelsTest : public ModelsFixture
{
    Q_OBJECT

private slots:
    void extensionAccessTables_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("marks");
        const QString none = "-|false|false|false|false|false|false|-";
        QTest::newRow("products, no extension") << false << "" << "-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-";
        QTest::newRow("products, stl") << false << "stl" << "-|false|false|true|false|false|true|-;" + none + ';' + none;
        QTest::newRow("layouts, obj") << true << "obj" << none + ";-|false|false|true|false|false|false|-";
    }
    void extensionAccessTables()
    {
        QFETCH(bool, layouts);
        QFETCH(QString, extension);
        QFETCH(QString, marks);
        ExtensionsBaseModel *model = layouts ? m_extensionLayouts : m_extensionProducts;
        const auto tester = Tester(model);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectExtension(extension);
        QCOMPARE(Emissions(changed), QString("0,0 %1,7 []").arg(model->rowCount() - 1));
        QCOMPARE(featureProducts.count(), 0);
        QCOMPARE(HeaderText(*model), QString("%1|Export|Export\nproject|Import|Import\nproject|Export\nscene|Open|")
                                         .arg(layouts ? "Layout" : "Product"));
        QCOMPARE(Text(*model, Qt::DisplayRole, 0), extension.isEmpty() ? "-,-,-" : layouts ? "design,print" : "Base,Base2,ab");
        QCOMPARE(Text(*model, Qt::UserRole), marks);
        QCOMPARE(Text(*model, Qt::DecorationRole, -1, 0), extension.isEmpty() ? "-|-|-|-|-|-|-|-" : "-|||||||-");
    }

    // Marks of row 1 after ticking one column for "stl".
    void extensionAccessToggles_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("marks");
        QTest::newRow("export") << false << 1 << "-|true|false|false|false|false|false|-";
        QTest::newRow("import project") << false << 4 << "-|false|false|false|true|false|false|-";
        QTest::newRow("layout open") << true << 6 << "-|false|false|false|false|false|true|-";
        QTest::newRow("name column refused") << false << 0 << "";
        QTest::newRow("column 7 accepted, nothing kept") << true << 7 << "-|false|false|false|false|false|false|-";
    }
    void extensionAccessToggles()
    {
        QFETCH(bool, layouts);
        QFETCH(int, column);
        QFETCH(QString, marks);
        ExtensionsBaseModel *model = layouts ? m_extensionLayouts : m_extensionProducts;
        model->SetCurrentExtension(QStringLiteral("stl"));
        const QString before = Text(*model, Qt::UserRole, -1, 1);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        QVERIFY(!model->setData(model->index(1, column), true, Qt::DisplayRole));
        QCOMPARE(model->setData(model->index(1, column), true), !marks.isEmpty());
        QCOMPARE(Emissions(changed), marks.isEmpty() ? "" : QString("1,%1 1,%1 []").arg(column));
        QCOMPARE(Text(*model, Qt::UserRole, -1, 1), marks.isEmpty() ? before : marks);
        model->setData(model->index(1, column), false);
        QCOMPARE(Text(*model, Qt::UserRole, -1, 1), before);
    }

    void extensionLicenceTable()
    {
        ExtensionsLicenseModel &model = *m_extensionLicenses;
        const auto tester = Tester(&model);
        QCOMPARE(HeaderText(model), QStringLiteral("Id|Name|Import|Export"));
        QCOMPARE(Text(model, Qt::DisplayRole, -1, 0), QStringLiteral("-|-|-|-"));
        // Without a current extension a write goes to the empty id; the licence model makes its record.
        QVERIFY(model.setData(model.index(0, 2), true));
        QCOMPARE(store().GetExtensions().value(QString()).importLicenses, QSet<QString>{"10"});
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        m_model->SelectExtension(QStringLiteral("stl"));
        QCOMPARE(Text(model), QStringLiteral("10|Ten|-|-;2|Two|-|-;B|Bee|-|-;Lic1|Licence one|-|-"));
        QCOMPARE(Text(model, Qt::UserRole, 2) + '/' + Text(model, Qt::UserRole, 3), "true,true,false,false/false,false,false,false");
        QVERIFY(model.setData(model.index(2, 3), true));
        QVERIFY(model.setData(model.index(0, 2), false));
        QVERIFY(!model.setData(model.index(0, 1), true) && !model.setData(model.index(0, 2), true, Qt::DisplayRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,3 [];2,3 2,3 [];0,2 0,2 []"));
        const ExtensionInfo &stl = store().GetExtensions()["stl"];
        QCOMPARE(SortedJoin(stl.importLicenses) + '/' + SortedJoin(stl.exportLicenses), QStringLiteral("2/B"));
        QCOMPARE(Text(model, Qt::ForegroundRole, 0), QStringLiteral("gray,black,black,gray"));
        model.SetCurrentExtension(QStringLiteral("step")); // unknown: made on first read
        QCOMPARE(Text(model, Qt::UserRole, 2), QStringLiteral("false,false,false,false"));
        QVERIFY(store().GetExtensions().contains("step"));
    }

    void extensionLicenceSort_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("order");
        // Import users, then export users, then the rest; names compare as numbers, words count as 0.
        QTest::newRow("stl: 2 before 10 as numbers") << "stl" << "2,10,B,Lic1";
        QTest::newRow("obj: words count as 0") << "obj" << "B,Lic1,2,10";
        QTest::newRow("no current extension: all tie") << "" << "10,2,B,Lic1";
    }
    void extensionLicenceSort()
    {
        QFETCH(QString, extension);
        QFETCH(QString, order);
        auto *proxy = qobject_cast<QAbstractProxyModel *>(m_model->GetExtensionsLicenseModel());
        const auto tester = Tester(proxy);
        QSignalSpy sorted(proxy, &QAbstractItemModel::layoutChanged);
        m_model->SelectExtension(extension);
        QCOMPARE(sorted.count(), 1);
        proxy->sort(1);
        QStringList names; // without a current extension the table shows no names
        for (int row = 0; row < proxy->rowCount(); ++row)
            names << store().GetLicenses().keys().at(proxy->mapToSource(proxy->index(row, 0)).row());
        QCOMPARE(names.join(','), order);
    }

    // Marks per row as "feature|product|-"; layout names black where the product offers them.
    void productLayouts()
    {
        const auto tester = Tester(m_productLayouts);
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Text(*m_productLayouts) + '/' + Text(*m_productLayouts, Qt::UserRole), "-|-|-;-|-|-/-|-|-;-|-|-"); // no feature
        QSignalSpy changed(m_productLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectFeature(QStringLiteral("save"));
        QCOMPARE(changed.count(), 0); // a new feature alone does not repaint
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Text(*m_productLayouts, Qt::UserRole) + '/' + Text(*m_productLayouts, Qt::ForegroundRole, 2),
                 "false|true|-;true|false|-/black,gray");
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(1, 1), true));
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(0, 0), true));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 2), true));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 0), false, Qt::UserRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 1,2 [];1,1 1,1 [];0,0 0,0 []"));
        // Each change repaints the feature's product marks, one past the last row and column (kept).
        QCOMPARE(Emissions(featureProducts), QStringLiteral("0,0 3,4 [];0,0 3,4 [];0,0 3,4 []"));
        QCOMPARE(SortedJoin(store().GetFeatures().value("save").layoutNames), QStringLiteral("design,print"));
        QCOMPARE(SortedJoin(store().GetProducts().products.at(0).modes), QStringLiteral("design,print"));
        m_model->SelectProduct(QStringLiteral("nothing"));
        QCOMPARE(Text(*m_productLayouts, Qt::UserRole), QStringLiteral("true|-|-;true|-|-"));
    }

    void productLicenses()
    {
        const auto tester = Tester(m_model->GetProductLicensesModel());
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        QCOMPARE(Text(*m_productLicenses, Qt::DisplayRole, -1, 1), QStringLiteral("-|-|-")); // no product yet
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Text(*m_productLicenses, Qt::UserRole, 0), QStringLiteral("false,true,false,true"));
        QCOMPARE(Text(*m_productLicenses, Qt::ForegroundRole, 1), QStringLiteral("gray,black,gray,black"));
        // Attached {2, Lic1} first; names compare as numbers, words count as 0.
        m_model->GetProductLicensesModel()->sort(0);
        QCOMPARE(Text(*m_model->GetProductLicensesModel(), Qt::DisplayRole, 1), QStringLiteral("Lic1,2,B,10"));
        QSignalSpy changed(m_productLicenses, &QAbstractItemModel::dataChanged);
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(1, 0), false));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(3, 0), false));
        const auto &specific = store().GetProducts().products.at(0).specificLicenses;
        QVERIFY(!specific.contains("Open")); // no empty entry is left behind
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(2, 0), true));
        QCOMPARE(specific.value("Open"), QSet<QString>{"B"});
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(2, 1), true));
        QCOMPARE(Emissions(changed), QStringLiteral("1,0 1,0 [];3,0 3,0 [];2,0 2,0 []"));
    }

    void featureProductMarks()
    {
        const auto tester = Tester(m_featureProducts);
        QCOMPARE(Text(*m_featureProducts), QStringLiteral("-|-|-|-;-|-|-|-;-|-|-|-"));
        QSignalSpy changed(m_featureProducts, &QAbstractItemModel::dataChanged);
        QSignalSpy extensions(m_extensionProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectFeature(QStringLiteral("save"));
        QCOMPARE(changed.count() + extensions.count(), 0);
        QCOMPARE(Text(*m_featureProducts, Qt::UserRole, 0), QStringLiteral("true,true,false"));
        QCOMPARE(Text(*m_featureProducts, Qt::DisplayRole, -1, 0), QStringLiteral("-|Base|_b|L1"));
        QCOMPARE(Text(*m_featureProducts, Qt::ForegroundRole, 1), QStringLiteral("black,black,gray"));
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(2, 0), true));
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 0), false));
        QCOMPARE(SortedJoin(store().GetFeatures().value("save").productIds), QStringLiteral("Base2,ab"));
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 2), QStringLiteral("x"))); // accepted, unchanged
        QCOMPARE(store().GetProducts().products.at(0).profile_suffix, QStringLiteral("_b"));
        QCOMPARE(Emissions(changed), QStringLiteral("2,0 2,0 [];0,0 0,0 [];0,2 0,2 []"));
    }

    void delegateGeometry_data()
    {
        QTest::addColumn<bool>("withIcon");
        QTest::addColumn<bool>("withWidget");
        QTest::newRow("icon, no widget: the whole cell") << true << false;
        QTest::newRow("in a view: room for the focus frame") << true << true;
    }
    void delegateGeometry()
    {
        QFETCH(bool, withIcon);
        QFETCH(bool, withWidget);
        QStandardItemModel model(1, 1);
        if (withIcon)
            model.setData(model.index(0, 0), CheckMarkIcon(true), Qt::DecorationRole);
        QTableView view;
        ExposedDelegate delegate(&view);
        QCOMPARE(delegate.parent(), nullptr); // the parent argument does not take ownership
        QStyleOptionViewItem option;
        if (withWidget) {
            option.initFrom(&view);
            option.widget = &view;
        }
        option.rect = QRect(3, 4, 30, 22);
        delegate.initStyleOption(&option, model.index(0, 0));
        const int margin = withWidget ? view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, &view) + 1 : 0;
        QCOMPARE(option.decorationSize, QSize(30 - margin, 22 - margin));
        QCOMPARE(option.decorationAlignment, Qt::Alignment(Qt::AlignCenter));
        QCOMPARE(option.features.testFlag(QStyleOptionViewItem::HasDecoration), withIcon);
    }
};

QTEST_MAIN(CheckMarkModelsTest)
#include "CheckMarkModelsTest.moc"
