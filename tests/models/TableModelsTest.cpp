// Features, extensions and products tables: data, edits, renames, inserts and removals.
#include "ModelsFixture.h"

class TableModelsTest : public ModelsFixture
{
    Q_OBJECT

private slots:
    // --- features, extensions and products tables

    void tables()
    {
        QAbstractItemModel &layouts = *m_model->GetLayoutsModel();
        QAbstractItemModel &licenses = *m_model->GetLicensesModel();
        const auto testers = {Tester(m_features), Tester(m_extensions), Tester(m_products), Tester(&layouts),
                              Tester(&licenses)};
        QCOMPARE(ColumnText(*m_features), QStringLiteral("Open,exit,my_feat_1,orphan,save"));
        QCOMPARE(HeaderText(*m_features),
                 QStringLiteral("Id|Title|Tooltip|Statustip|Visible|Emergrncy|Products|Layouts|Licenses"));
        QCOMPARE(m_features->headerData(9, Qt::Horizontal), QVariant(QString()));
        QVERIFY(!m_features->headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(m_features->headerData(2, Qt::Vertical).toInt(), 3);
        QCOMPARE(m_features->index(0, 4).data().userType(), int(QMetaType::Bool));
        QCOMPARE(RowText(*m_features, 0).section('|', 0, 7),
                 QStringLiteral("Open|Open file|Opens|Opening|true|false|Base|design"));
        QCOMPARE(SortedJoin(m_features->index(0, 8).data().toString()), QStringLiteral("2,Lic1")); // Base grants both
        QCOMPARE(RowText(*m_features, 0, Qt::ToolTipRole), RowText(*m_features, 0));
        // The joined lists are not editable, so a mapped editor shows them empty.
        QCOMPARE(RowText(*m_features, 0, Qt::EditRole),
                 QStringLiteral("Open|Open file|Opens|Opening|true|false|-|-|-"));
        QCOMPARE(RowText(*m_features, 0, Qt::DecorationRole), QStringLiteral("-|-|-|-|-|-|-|-|-"));
        // "save": products Base and Base2 in set order, licences of Base2 only; "orphan": none.
        QVERIFY(QStringList({"Base, Base2", "Base2, Base"}).contains(m_features->index(4, 6).data().toString()));
        QCOMPARE(m_features->index(4, 8).data(), QVariant("Lic1"));
        QCOMPARE(m_features->index(3, 6).data(), QVariant(QString()));
        QVERIFY(!m_features->data(QModelIndex()).isValid());
        QVERIFY(!m_features->setData(QModelIndex(), QStringLiteral("x")));

        QCOMPARE(HeaderText(*m_extensions),
                 QStringLiteral("Id|Title|Extension|Cad support|Multiple parts support|Slices support|Load as part"));
        QCOMPARE(TableText(*m_extensions),
                 QStringLiteral("obj|OBJ|.obj|false|false|true|false;stl|STL|.stl|true|false|false|false"));
        QCOMPARE(TableText(*m_extensions, Qt::EditRole), TableText(*m_extensions));
        QCOMPARE(TableText(*m_extensions, Qt::ToolTipRole), TableText(*m_extensions));
        QCOMPARE(RowText(*m_extensions, 1, Qt::DecorationRole), QStringLiteral("-|-|-|-|-|-|-"));
        QCOMPARE(m_extensions->index(1, 3).data().userType(), int(QMetaType::Bool));

        QCOMPARE(TableText(*m_products), QStringLiteral("-|Base|_b|L1;-|Base2|_b2|L2;-|ab||L3"));
        QCOMPARE(RowText(*m_products, 1, Qt::EditRole), QStringLiteral("-|-|_b2|L2"));
        QCOMPARE(RowText(*m_products, 1, Qt::ToolTipRole), QStringLiteral("-|-|-|-"));
        // The same words beside the rows, kept as they are.
        QCOMPARE(HeaderText(*m_products), QStringLiteral("-|Product|Suffix|Base lic"));
        QCOMPARE(HeaderText(*m_products, Qt::Vertical), QStringLiteral("-|Product|Suffix"));
        QVERIFY(!m_products->headerData(1, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QString editable;
        for (int column = 0; column < 4; ++column)
            editable += m_products->flags(m_products->index(0, column)).testFlag(Qt::ItemIsEditable) ? 'e' : '-';
        QCOMPARE(editable, QStringLiteral("--ee"));

        QCOMPARE(TableText(layouts), QStringLiteral("-|-|design;-|-|print"));
        QCOMPARE(RowText(layouts, 1, Qt::EditRole), QStringLiteral("-|-|-"));
        QCOMPARE(HeaderText(layouts), QStringLiteral("Current\nFeature|Current\nProduct|Name"));
        QCOMPARE(layouts.headerData(7, Qt::Horizontal), QVariant("Name"));
        QCOMPARE(HeaderText(layouts, Qt::Vertical), QStringLiteral("-|-"));
        QVERIFY(!layouts.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(TableText(licenses), QStringLiteral("-|10|Ten;-|2|Two;-|B|Bee;-|Lic1|Licence one"));
        QCOMPARE(RowText(licenses, 3, Qt::ToolTipRole), QStringLiteral("-|-|-"));
        QCOMPARE(HeaderText(licenses), QStringLiteral("1|2|3"));
    }

    // An empty row means refused: the row keeps its text and nothing is announced.
    void edits_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("row");
        const auto row = [](const char *name, const char *model, int column, const QVariant &value,
                            const char *text, int role = Qt::EditRole) {
            QTest::newRow(name) << QString(model) << column << value << role << QString(text);
        };
        row("feature title", "features", 1, "T", "my_feat_1|T|||true|false|Base||");
        row("feature tooltip", "features", 2, "T", "my_feat_1||T||true|false|Base||");
        row("feature status tip", "features", 3, "T", "my_feat_1|||T|true|false|Base||");
        row("feature visible from text", "features", 4, "false", "my_feat_1||||false|false|Base||");
        row("feature emergency from int", "features", 5, 1, "my_feat_1||||true|true|Base||");
        row("feature products accept and keep", "features", 6, "x", "my_feat_1||||true|false|Base||");
        row("feature title equal to the own id", "features", 1, "my_feat_1", "");
        row("feature display role", "features", 1, "T", "", Qt::DisplayRole);
        row("extension title", "extensions", 1, "T", "obj|T|.obj|false|false|true|false");
        row("extension pattern", "extensions", 2, "*.o", "obj|OBJ|*.o|false|false|true|false");
        row("extension cad", "extensions", 3, true, "obj|OBJ|.obj|true|false|true|false");
        row("extension multiple parts", "extensions", 4, true, "obj|OBJ|.obj|false|true|true|false");
        row("extension slices", "extensions", 5, false, "obj|OBJ|.obj|false|false|false|false");
        row("extension load as part", "extensions", 6, true, "obj|OBJ|.obj|false|false|true|true");
        row("extension pattern equal to the own id", "extensions", 2, "obj", "");
        row("extension display role", "extensions", 1, "T", "", Qt::DisplayRole);
        row("product suffix", "products", 2, "T", "-|Base|T|L1");
        row("product base", "products", 3, "T", "-|Base|_b|T");
        row("product id, written straight", "products", 1, "T", "-|T|_b|L1");
        row("product column 0 accepts and keeps", "products", 0, "T", "-|Base|_b|L1");
        row("product display role", "products", 2, "T", "", Qt::DisplayRole);
    }
    void edits()
    {
        QFETCH(QString, model);
        QFETCH(int, column);
        QFETCH(QVariant, value);
        QFETCH(int, role);
        QFETCH(QString, row);
        QAbstractItemModel *table = model == "features" ? m_features : model == "products" ? m_products : m_extensions;
        const int rowNumber = model == "features" ? 2 : 0;
        const auto tester = Tester(table);
        const QString before = RowText(*table, rowNumber);
        QSignalSpy changed(table, &QAbstractItemModel::dataChanged);
        QCOMPARE(table->setData(table->index(rowNumber, column), value, role), !row.isEmpty());
        QCOMPARE(RowText(*table, rowNumber), row.isEmpty() ? before : row);
        QCOMPARE(Emissions(changed), row.isEmpty() ? "" : QString("%1,%2 %1,%2 []").arg(rowNumber).arg(column));
        // A renamed product keeps its old id in the features.
        QCOMPARE(SortedJoin(m_fixture->store->GetFeatures().value("Open").productIds), QStringLiteral("Base"));
    }

    // A rename is a removal and an insertion; the change is reported at the old row.
    void rename_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature to the front") << "features" << 4 << "Alpha" << "- 4 4/- 0 0"
                                              << "Alpha,Open,exit,my_feat_1,orphan";
        QTest::newRow("feature in place") << "features" << 0 << "Apen" << "- 0 0/- 0 0"
                                          << "Apen,exit,my_feat_1,orphan,save";
        QTest::newRow("feature to an existing id") << "features" << 4 << "exit" << "/"
                                                   << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("extension to the back") << "extensions" << 0 << "zip" << "- 0 0/- 1 1" << "stl,zip";
        QTest::newRow("extension to an existing id") << "extensions" << 1 << "obj" << "/" << "obj,stl";
    }
    void rename()
    {
        QFETCH(QString, model);
        QFETCH(int, row);
        QFETCH(QString, id);
        QFETCH(QString, moves);
        QFETCH(QString, ids);
        QAbstractItemModel *table = model == "features" ? m_features : m_extensions;
        const auto tester = Tester(table);
        QSignalSpy removed(table, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(table, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(table, &QAbstractItemModel::dataChanged);
        const QString fields = RowText(*table, row).section('|', 1, 7);
        const bool accepted = moves != "/";
        QCOMPARE(table->setData(table->index(row, 0), id), accepted);
        QCOMPARE(Emissions(removed) + '/' + Emissions(inserted), moves);
        QCOMPARE(Emissions(changed), accepted ? QString("%1,0 %1,0 []").arg(row) : "");
        QCOMPARE(ColumnText(*table), ids);
        if (accepted) {
            QCOMPARE(RowText(*table, ids.split(',').indexOf(id)).section('|', 1, 7), fields);
        } else {
            QCOMPARE(QToolTip::text(), QStringLiteral("This ID is already exist"));
            QToolTip::hideText();
        }
        // Licences granted under the old id stay where they were.
        QCOMPARE(m_fixture->store->GetProducts().products.at(1).specificLicenses.keys(), QStringList{"save"});
    }

    // No tester: a second insertion announces a row that is not added.
    void insertAddsOneUnnumberedRow_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("row");
        QTest::newRow("feature kept as it is") << "features" << "New_Feature||changed||true|false|||";
        QTest::newRow("extension pattern written again")
            << "extensions" << "extension||.extension|false|false|false|false";
    }
    void insertAddsOneUnnumberedRow()
    {
        QFETCH(QString, model);
        QFETCH(QString, row);
        QAbstractItemModel *table = model == "features" ? m_features : m_extensions;
        const int count = table->rowCount();
        QSignalSpy inserted(table, &QAbstractItemModel::rowsInserted);
        QVERIFY(table->insertRows(3, 7));
        QVERIFY(table->setData(table->index(0, 2), QStringLiteral("changed")));
        QVERIFY(table->insertRows(0, 1));
        QCOMPARE(Emissions(inserted), QStringLiteral("- 0 0;- 0 0"));
        QCOMPARE(RowText(*table, 0), row);
        QCOMPARE(table->rowCount(), count + 1);
    }

    // Features and extensions answer false even after removing; one row goes whatever the count.
    void removeTakesOneRow_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature") << "features" << 3 << false << "Open,exit,my_feat_1,save";
        QTest::newRow("extension") << "extensions" << 1 << false << "obj";
        QTest::newRow("product") << "products" << 2 << true << "Base,Base2";
    }
    void removeTakesOneRow()
    {
        QFETCH(QString, model);
        QFETCH(int, row);
        QFETCH(bool, result);
        QFETCH(QString, ids);
        QAbstractItemModel *table = model == "features" ? m_features : model == "products" ? m_products : m_extensions;
        const auto tester = Tester(table);
        QSignalSpy removed(table, &QAbstractItemModel::rowsRemoved);
        QCOMPARE(table->removeRows(row, 5), result);
        QVERIFY(!table->removeRows(-1, 1) && !table->removeRows(table->rowCount(), 1));
        QCOMPARE(Emissions(removed), QString("- %1 %1").arg(row));
        QCOMPARE(ColumnText(*table, model == "products" ? 1 : 0), ids);
        VantixJsonData &data = *m_fixture->store;
        // The store drops the references to a removed product or extension.
        QCOMPARE(SortedJoin(data.GetFeatures().value("exit").productIds), model == "products" ? "Base2" : "Base2,ab");
        const bool stl = model != "extensions";
        QCOMPARE(Holding(data.GetProducts().products.at(0).extensions, "stl"), stl ? "import,open" : "");
        QCOMPARE(Holding(data.GetLayouts()["design"], "stl"), stl ? "export" : "");
    }

    void storeChangesResetTheTables()
    {
        QSignalSpy features(m_features, &QAbstractItemModel::modelReset);
        QSignalSpy products(m_products, &QAbstractItemModel::modelReset);
        QSignalSpy layouts(m_productLayouts, &QAbstractItemModel::modelReset);
        QSignalSpy licenses(m_model->GetLicensesModel(), &QAbstractItemModel::modelReset);
        QVERIFY(m_fixture->store->DuplicateProductFrom("ab", "ab2"));
        QCOMPARE(ColumnText(*m_products, 1), QStringLiteral("Base,Base2,ab,ab2"));
        QVERIFY(m_fixture->store->DuplicateFeatureFrom("exit", "exit2"));
        QCOMPARE(ColumnText(*m_features), QStringLiteral("Open,exit,exit2,my_feat_1,orphan,save"));
        QCOMPARE(QString("%1 %2 %3 %4").arg(features.count()).arg(products.count()).arg(layouts.count())
                     .arg(licenses.count()), QStringLiteral("1 2 1 1"));
        m_model.reset(); // the models let go of the store's signals
        QVERIFY(m_fixture->store->DuplicateFeatureFrom("exit", "exit3"));
    }

    void modelsSeeEachOthersRenamesAndStoreEdits()
    {
        FeaturesModel second(*m_fixture->store);
        QCOMPARE(second.index(3, 0).data().toString(), QStringLiteral("orphan"));
        // Same size afterwards: only the announcement tells the other model.
        QVERIFY(m_features->setData(m_features->index(0, 0), QStringLiteral("pen")));
        QCOMPARE(ColumnText(second), QStringLiteral("exit,my_feat_1,orphan,pen,save"));
        m_fixture->store->GetFeatures().insert(QStringLiteral("Aaa"), VantixFeatureData());
        QCOMPARE(ColumnText(second), QStringLiteral("Aaa,exit,my_feat_1,orphan,pen,save"));
        const QModelIndex last = second.index(5, 1);
        m_fixture->store->GetFeatures().remove(QStringLiteral("exit"));
        m_fixture->store->GetFeatures().remove(QStringLiteral("save"));
        QCOMPARE(second.index(2, 0).data().toString(), QStringLiteral("orphan"));
        // An index kept from before now points past the end.
        QVERIFY(!last.data().isValid() && !second.setData(last, QStringLiteral("x")));
        QVERIFY(!second.removeRows(last.row(), 1));
        QCOMPARE(second.rowCount(), 4);
    }
};

QTEST_MAIN(TableModelsTest)
#include "TableModelsTest.moc"
