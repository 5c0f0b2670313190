// Check-mark tables of products, layouts and licenses, the icons and their delegate.
#include "ModelsFixture.h"

class CheckMarkModelsTest : public ModelsFixture
{
    Q_OBJECT

private slots:
    // --- check marks of products, layouts and licences against the current extension

    void extensionAccessTables_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("names");
        QTest::addColumn<QString>("marks");
        const QString none = "-|false|false|false|false|false|false|-";
        QTest::newRow("products, no extension") << false << "" << "-,-,-"
                                                << "-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-";
        QTest::newRow("products, stl") << false << "stl" << "Base,Base2,ab"
                                       << "-|false|false|true|false|false|true|-;" + none + ';' + none;
        QTest::newRow("products, obj") << false << "obj" << "Base,Base2,ab"
                                       << "-|false|false|false|false|false|true|-;" + none + ';' + none;
        QTest::newRow("layouts, stl") << true << "stl" << "design,print"
                                      << "-|true|false|false|false|false|false|-;" + none;
        QTest::newRow("layouts, obj") << true << "obj" << "design,print"
                                      << none + ";-|false|false|true|false|false|false|-";
    }
    void extensionAccessTables()
    {
        QFETCH(bool, layouts);
        QFETCH(QString, extension);
        QFETCH(QString, names);
        QFETCH(QString, marks);
        ExtensionsBaseModel *model = layouts ? m_extensionLayouts : m_extensionProducts;
        const auto tester = Tester(model);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        model->SetCurrentExtension(extension);
        QCOMPARE(Emissions(changed), QString("0,0 %1,7 []").arg(model->rowCount() - 1));
        QCOMPARE(HeaderText(*model), QString("%1|Export|Export\nproject|Import|Import\nproject|Export\nscene|Open|")
                                         .arg(layouts ? "Layout" : "Product"));
        QVERIFY(!model->headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(ColumnText(*model), names);
        QCOMPARE(TableText(*model, Qt::UserRole), marks);
        QCOMPARE(RowText(*model, 0, Qt::DecorationRole), extension.isEmpty() ? "-|-|-|-|-|-|-|-" : "-|||||||-");
        QCOMPARE(RowText(*model, 0, Qt::EditRole), QStringLiteral("-|-|-|-|-|-|-|-"));
    }

    void extensionAccessToggles_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<int>("column");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("sets");
        QTest::newRow("export") << false << 1 << true << "export";
        QTest::newRow("export project") << false << 2 << true << "export_as_project";
        QTest::newRow("import") << false << 3 << true << "import";
        QTest::newRow("import project") << false << 4 << true << "import_as_project";
        QTest::newRow("export scene") << false << 5 << true << "export_as_scene";
        QTest::newRow("open") << false << 6 << true << "open";
        QTest::newRow("layout open") << true << 6 << true << "open";
        QTest::newRow("name column refused") << false << 0 << false << "";
        QTest::newRow("column 7 accepted, nothing kept") << true << 7 << true << "";
    }
    void extensionAccessToggles()
    {
        QFETCH(bool, layouts);
        QFETCH(int, column);
        QFETCH(bool, accepted);
        QFETCH(QString, sets);
        ExtensionsBaseModel *model = layouts ? m_extensionLayouts : m_extensionProducts;
        model->SetCurrentExtension(QStringLiteral("stl"));
        const ExtensionAccess &access = layouts ? m_fixture->store->GetLayouts()["print"]
                                                : m_fixture->store->GetProducts().products[1].extensions;
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        const QModelIndex index = model->index(1, column);
        QVERIFY(!model->setData(index, true, Qt::DisplayRole));
        QCOMPARE(model->setData(index, true), accepted);
        QCOMPARE(Emissions(changed), accepted ? QString("1,%1 1,%1 []").arg(column) : "");
        QCOMPARE(Holding(access, "stl"), sets);
        QCOMPARE(CellText(index.data(Qt::UserRole)), sets.isEmpty() ? "-" : "true");
        QCOMPARE(model->setData(index, false), accepted);
        QCOMPARE(Holding(access, "stl"), QString());
    }

    void extensionLicenceTable()
    {
        ExtensionsLicenseModel &model = *m_extensionLicenses;
        const auto tester = Tester(&model);
        QCOMPARE(HeaderText(model), QStringLiteral("Id|Name|Import|Export"));
        QCOMPARE(RowText(model, 0), QStringLiteral("-|-|-|-"));
        // Without a current extension a write goes to the empty id; the licence model makes its record.
        QVERIFY(m_extensionProducts->setData(m_extensionProducts->index(2, 6), true));
        QCOMPARE(m_fixture->store->GetProducts().products.at(2).extensions.open, QSet<QString>{QString()});
        QVERIFY(model.setData(model.index(0, 2), true));
        QCOMPARE(m_fixture->store->GetExtensions().value(QString()).importLicenses, QSet<QString>{"10"});
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        model.SetCurrentExtension(QStringLiteral("stl"));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,3 []"));
        QCOMPARE(TableText(model), QStringLiteral("10|Ten|-|-;2|Two|-|-;B|Bee|-|-;Lic1|Licence one|-|-"));
        QCOMPARE(TableText(model, Qt::ToolTipRole), TableText(model));
        QCOMPARE(ColumnText(model, 2, Qt::UserRole) + '/' + ColumnText(model, 3, Qt::UserRole),
                 QStringLiteral("true,true,false,false/false,false,false,false"));
        QCOMPARE(RowText(model, 0, Qt::DecorationRole), QStringLiteral("-|-||"));
        QCOMPARE(ColumnText(model, 0, Qt::ForegroundRole) + '/' + ColumnText(model, 3, Qt::ForegroundRole),
                 QStringLiteral("black,black,gray,gray/black,black,gray,gray"));

        QVERIFY(model.setData(model.index(2, 3), true));
        QVERIFY(model.setData(model.index(0, 2), false));
        QVERIFY(!model.setData(model.index(0, 1), true) && !model.setData(model.index(0, 0), true));
        QVERIFY(!model.setData(model.index(0, 2), true, Qt::DisplayRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,3 [];2,3 2,3 [];0,2 0,2 []"));
        const ExtensionInfo &stl = m_fixture->store->GetExtensions()["stl"];
        QCOMPARE(SortedJoin(stl.importLicenses) + '/' + SortedJoin(stl.exportLicenses), QStringLiteral("2/B"));
        QCOMPARE(ColumnText(model, 0, Qt::ForegroundRole), QStringLiteral("gray,black,black,gray"));

        model.SetCurrentExtension(QStringLiteral("step")); // unknown: made on first read
        QCOMPARE(ColumnText(model, 2, Qt::UserRole), QStringLiteral("false,false,false,false"));
        QVERIFY(m_fixture->store->GetExtensions().contains("step"));
    }

    void extensionLicenceSort_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("order");
        // Import users, then export users, then the rest; names compare as numbers.
        QTest::newRow("stl: 2 before 10 as numbers") << "stl" << "2,10,B,Lic1";
        QTest::newRow("obj: words count as 0") << "obj" << "B,Lic1,2,10";
        QTest::newRow("no current extension: all tie") << "" << "10,2,B,Lic1";
    }
    void extensionLicenceSort()
    {
        QFETCH(QString, extension);
        QFETCH(QString, order);
        QAbstractProxyModel *proxy = qobject_cast<QAbstractProxyModel *>(m_model->GetExtensionsLicenseModel());
        const auto tester = Tester(proxy);
        QSignalSpy sorted(proxy, &QAbstractItemModel::layoutChanged);
        m_model->SelectExtension(extension);
        QCOMPARE(sorted.count(), 1);
        proxy->sort(1);
        // Without a current extension the table shows no names; take them from the store.
        const QStringList keys = m_fixture->store->GetLicenses().keys();
        QStringList names;
        for (int row = 0; row < proxy->rowCount(); ++row)
            names << keys.at(proxy->mapToSource(proxy->index(row, 0)).row());
        QCOMPARE(names.join(','), order);
    }

    // --- layouts and licences against the current feature and product

    // Marks per row as "feature|product|-".
    void productLayouts_data()
    {
        QTest::addColumn<QString>("feature");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("marks");
        QTest::addColumn<QString>("colors");
        QTest::newRow("no feature shows nothing") << "" << "Base" << "-|-|-;-|-|-" << "-,-";
        QTest::newRow("save in Base") << "save" << "Base" << "false|true|-;true|false|-" << "black,gray";
        QTest::newRow("Open in Base2") << "Open" << "Base2" << "true|true|-;false|true|-" << "black,black";
        QTest::newRow("product naming none") << "Open" << "nothing" << "true|-|-;false|-|-" << "-,-";
    }
    void productLayouts()
    {
        QFETCH(QString, feature);
        QFETCH(QString, product);
        QFETCH(QString, marks);
        QFETCH(QString, colors);
        const auto tester = Tester(m_productLayouts);
        QSignalSpy changed(m_productLayouts, &QAbstractItemModel::dataChanged);
        m_productLayouts->UpdateFeature(feature);
        QCOMPARE(changed.count(), 0);
        m_productLayouts->UpdateData(product);
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 1,2 []"));
        QCOMPARE(TableText(*m_productLayouts, Qt::UserRole), marks);
        QCOMPARE(ColumnText(*m_productLayouts, 2, Qt::ForegroundRole), colors);
        QCOMPARE(RowText(*m_productLayouts, 0), feature.isEmpty() ? "-|-|-" : "-|-|design");
        // An icon wherever a mark is shown.
        QCOMPARE(RowText(*m_productLayouts, 0, Qt::DecorationRole),
                 marks.section(';', 0, 0).remove("true").remove("false"));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 2), true));
    }

    void productLayoutToggles()
    {
        const auto tester = Tester(m_productLayouts);
        m_productLayouts->UpdateFeature(QStringLiteral("save"));
        m_productLayouts->UpdateData(QStringLiteral("Base"));
        QSignalSpy changed(m_productLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(0, 0), true));
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(1, 1), true));
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(0, 1), false));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 0), false, Qt::UserRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 0,0 [];1,1 1,1 [];0,1 0,1 []"));
        // The facade has each change repaint the feature's product marks (one past the end, kept).
        QCOMPARE(Emissions(featureProducts), QStringLiteral("0,0 3,4 [];0,0 3,4 [];0,0 3,4 []"));
        VantixJsonData &data = *m_fixture->store;
        QCOMPARE(SortedJoin(data.GetFeatures().value("save").layoutNames), QStringLiteral("design,print"));
        QCOMPARE(SortedJoin(data.GetProducts().products.at(0).modes), QStringLiteral("print"));

        m_productLayouts->UpdateFeature(QStringLiteral("fresh")); // unknown: made on first read
        QCOMPARE(ColumnText(*m_productLayouts, 0, Qt::UserRole), QStringLiteral("false,false"));
        QVERIFY(data.GetFeatures().contains("fresh"));
    }

    void productLicenses_data()
    {
        QTest::addColumn<QString>("feature");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("row");
        QTest::newRow("no product") << "Open" << "" << "-|-|-";
        QTest::newRow("no feature") << "" << "Base" << "-|-|-";
        QTest::newRow("product naming none") << "Open" << "nothing" << "-|-|-";
        QTest::newRow("Open in Base") << "Open" << "Base" << "-|2|Two";
    }
    void productLicenses()
    {
        QFETCH(QString, feature);
        QFETCH(QString, product);
        QFETCH(QString, row);
        const auto tester = Tester(m_productLicenses);
        QSignalSpy changed(m_productLicenses, &QAbstractItemModel::dataChanged);
        m_productLicenses->UpdateFeature(feature);
        QCOMPARE(changed.count(), 0);
        m_productLicenses->UpdateData(product);
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,2 []"));
        QCOMPARE(RowText(*m_productLicenses, 1), row);
        if (row == "-|-|-")
            return;
        QCOMPARE(ColumnText(*m_productLicenses, 0, Qt::UserRole), QStringLiteral("false,true,false,true"));
        QCOMPARE(TableText(*m_productLicenses, Qt::ForegroundRole),
                 QStringLiteral("-|gray|gray;-|black|black;-|gray|gray;-|black|black"));
        QCOMPARE(RowText(*m_productLicenses, 0, Qt::DecorationRole), QStringLiteral("|-|-"));
    }

    void productLicenseToggles()
    {
        const auto tester = Tester(m_productLicenses);
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        m_productLicenses->UpdateData(QStringLiteral("Base"));
        QSignalSpy changed(m_productLicenses, &QAbstractItemModel::dataChanged);
        const auto &specific = m_fixture->store->GetProducts().products.at(0).specificLicenses;
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(1, 0), false));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(3, 0), false));
        QVERIFY(!specific.contains("Open")); // no empty entry is left behind
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(2, 0), true));
        QCOMPARE(specific.value("Open"), QSet<QString>{"B"});
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(2, 1), true));
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(2, 0), true, Qt::DisplayRole));
        QCOMPARE(Emissions(changed), QStringLiteral("1,0 1,0 [];3,0 3,0 [];2,0 2,0 []"));
        m_productLicenses->UpdateData(QStringLiteral("nothing"));
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(1, 0), true));
    }

    // --- feature products

    void featureProductMarks()
    {
        const auto tester = Tester(m_featureProducts);
        QCOMPARE(TableText(*m_featureProducts), QStringLiteral("-|-|-|-;-|-|-|-;-|-|-|-"));
        QCOMPARE(RowText(*m_featureProducts, 0, Qt::UserRole), QStringLiteral("-|-|-|-"));
        QSignalSpy changed(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_featureProducts->UpdateFeature(QStringLiteral("save"));
        QCOMPARE(ColumnText(*m_featureProducts, 0, Qt::UserRole), QStringLiteral("true,true,false"));
        QCOMPARE(RowText(*m_featureProducts, 0), QStringLiteral("-|Base|_b|L1"));
        QCOMPARE(RowText(*m_featureProducts, 0, Qt::DecorationRole), QStringLiteral("|-|-|-"));
        QCOMPARE(TableText(*m_featureProducts, Qt::ForegroundRole),
                 QStringLiteral("-|black|-|-;-|black|-|-;-|gray|-|-"));

        QVERIFY(m_featureProducts->setData(m_featureProducts->index(2, 0), true));
        QCOMPARE(ColumnText(*m_featureProducts, 1, Qt::ForegroundRole), QStringLiteral("black,black,black"));
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 0), false));
        QCOMPARE(SortedJoin(m_fixture->store->GetFeatures().value("save").productIds), QStringLiteral("Base2,ab"));
        // Other columns are accepted and change nothing.
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 2), QStringLiteral("x")));
        QCOMPARE(m_fixture->store->GetProducts().products.at(0).profile_suffix, QStringLiteral("_b"));
        QVERIFY(!m_featureProducts->setData(m_featureProducts->index(0, 0), true, Qt::UserRole));
        QCOMPARE(Emissions(changed), QStringLiteral("2,0 2,0 [];0,0 0,0 [];0,2 0,2 []"));
    }

    // --- the check-mark icons and their delegate

    void checkMarks_data()
    {
        QTest::addColumn<bool>("member");
        QTest::addColumn<QString>("path");
        QTest::newRow("member") << true << ":/check.png";
        QTest::newRow("not a member") << false << ":/uncheck.png";
    }
    void checkMarks()
    {
        QFETCH(bool, member);
        QFETCH(QString, path);
        const QImage image = QImage(path).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(image.size(), QSize(50, 50));
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0); // transparent corners, drawn middle
        QVERIFY(qAlpha(image.pixel(25, 25)) > 0);
        const QIcon icon = CheckMarkData(member, Qt::DecorationRole).value<QIcon>();
        QCOMPARE(icon.pixmap(50, 50).toImage().convertToFormat(QImage::Format_ARGB32), image);
        QCOMPARE(CheckMarkData(member, Qt::UserRole), QVariant(member));
        QVERIFY(!CheckMarkData(member, Qt::DisplayRole).isValid() && !CheckMarkData(member, Qt::EditRole).isValid());
    }

    void delegateGeometry_data()
    {
        QTest::addColumn<bool>("withIcon");
        QTest::addColumn<bool>("withWidget");
        QTest::newRow("icon, no widget: the whole cell") << true << false;
        QTest::newRow("no icon, no widget: the same geometry") << false << false;
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
        QCOMPARE(option.decorationPosition, QStyleOptionViewItem::Top);
        QCOMPARE(option.decorationAlignment, Qt::Alignment(Qt::AlignCenter));
        QCOMPARE(option.features.testFlag(QStyleOptionViewItem::HasDecoration), withIcon);
    }
};

QTEST_MAIN(CheckMarkModelsTest)
#include "CheckMarkModelsTest.moc"
