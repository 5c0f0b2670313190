// Features, extensions and products tables: data, edits, renames, inserts and removals.
#include "ModelsFixture.h"
#include "models/RowCursor.h"

#include <QToolTip>

class TableModelsTest : public ModelsFixture
{
    Q_OBJECT

private slots:
    void tables()
    {
        QAbstractItemModel &layouts = *m_model->GetLayoutsModel();
        QAbstractItemModel &licenses = *m_model->GetLicensesModel();
        const auto testers = {Tester(m_features), Tester(m_extensions), Tester(m_products), Tester(&layouts),
                              Tester(&licenses)};
        QCOMPARE(HeaderText(*m_features), "Id|Title|Tooltip|Statustip|Visible|Emergrncy|Products|Layouts|Licenses");
        QCOMPARE(m_features->headerData(9, Qt::Horizontal), QVariant(QString()));
        QCOMPARE(Text(*m_features, Qt::DisplayRole, -1, 0).section('|', 0, 7),
                 QStringLiteral("Open|Open file|Opens|Opening|true|false|Base|design"));
        QVERIFY(QStringList({"2, Lic1", "Lic1, 2"}).contains(m_features->index(0, 8).data().toString()));
        QCOMPARE(Text(*m_features, Qt::ToolTipRole), Text(*m_features));
        // The joined lists are not editable, so a mapped editor shows them empty.
        QCOMPARE(Text(*m_features, Qt::EditRole, -1, 0), QStringLiteral("Open|Open file|Opens|Opening|true|false|-|-|-"));
        QCOMPARE(Text(*m_features, Qt::DecorationRole, -1, 0), QStringLiteral("-|-|-|-|-|-|-|-|-"));
        QCOMPARE(Text(*m_features, Qt::DisplayRole, 6, 3), QString()); // no products: an empty text

        QCOMPARE(HeaderText(*m_extensions), "Id|Title|Extension|Cad support|Multiple parts support|Slices support|Load as part");
        QCOMPARE(Text(*m_extensions), QStringLiteral("obj|OBJ|.obj|false|false|true|false;stl|STL|.stl|true|false|false|false"));
        QCOMPARE(Text(*m_extensions, Qt::EditRole), Text(*m_extensions, Qt::ToolTipRole));
        QCOMPARE(Text(*m_extensions, Qt::DecorationRole, -1, 1), QStringLiteral("-|-|-|-|-|-|-"));

        QCOMPARE(Text(*m_products), QStringLiteral("-|Base|_b|L1;-|Base2|_b2|L2;-|ab||L3"));
        QCOMPARE(Text(*m_products, Qt::EditRole, -1, 1), QStringLiteral("-|-|_b2|L2"));
        // The same words beside the rows, kept as they are.
        QCOMPARE(HeaderText(*m_products) + '/' + HeaderText(*m_products, Qt::Vertical), "-|Product|Suffix|Base lic/-|Product|Suffix");
        QVERIFY(!(m_products->flags(m_products->index(0, 1)) & Qt::ItemIsEditable));
        QVERIFY(m_products->flags(m_products->index(0, 2)) & m_products->flags(m_products->index(0, 3)) & Qt::ItemIsEditable);

        QCOMPARE(Text(layouts), QStringLiteral("-|-|design;-|-|print"));
        QCOMPARE(HeaderText(layouts), QStringLiteral("Current\nFeature|Current\nProduct|Name"));
        QCOMPARE(Text(licenses), QStringLiteral("-|10|Ten;-|2|Two;-|B|Bee;-|Lic1|Licence one"));
    }

    // An empty text means refused: the row keeps its text and nothing is announced.
    void edits_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("row");
        const auto row = [](const char *name, const char *model, int column, const QVariant &value, const char *text,
                            int role = Qt::EditRole) {
            QTest::newRow(name) << QString(model) << column << value << role << QString(text);
        };
        row("feature status tip", "features", 3, "T", "my_feat_1|||T|true|false|Base||");
        row("feature visible from text", "features", 4, "false", "my_feat_1||||false|false|Base||");
        row("feature emergency from int", "features", 5, 1, "my_feat_1||||true|true|Base||");
        row("feature products accept and keep", "features", 6, "x", "my_feat_1||||true|false|Base||");
        row("feature title equal to the own id", "features", 1, "my_feat_1", "");
        row("feature display role", "features", 1, "T", "", Qt::DisplayRole);
        row("extension pattern", "extensions", 2, "*.o", "obj|OBJ|*.o|false|false|true|false");
        row("extension multiple parts", "extensions", 4, true, "obj|OBJ|.obj|false|true|true|false");
        row("extension load as part", "extensions", 6, true, "obj|OBJ|.obj|false|false|true|true");
        row("extension pattern equal to the own id", "extensions", 2, "obj", "");
        row("product base", "products", 3, "T", "-|Base|_b|T");
        row("product id, written straight", "products", 1, "T", "-|T|_b|L1");
        row("product column 0 accepts and keeps", "products", 0, "T", "-|Base|_b|L1");
    }
    void edits()
    {
        QFETCH(QString, model);
        QFETCH(int, column);
        QFETCH(QVariant, value);
        QFETCH(int, role);
        QFETCH(QString, row);
        QAbstractItemModel *table = model == "features" ? m_features : model == "products" ? m_products : m_extensions;
        const int r = model == "features" ? 2 : 0;
        const auto tester = Tester(table);
        const QString before = Text(*table, Qt::DisplayRole, -1, r);
        QSignalSpy changed(table, &QAbstractItemModel::dataChanged);
        QCOMPARE(table->setData(table->index(r, column), value, role), !row.isEmpty());
        QCOMPARE(Text(*table, Qt::DisplayRole, -1, r), row.isEmpty() ? before : row);
        QCOMPARE(Emissions(changed), row.isEmpty() ? "" : QString("%1,%2 %1,%2 []").arg(r).arg(column));
        // A renamed product keeps its old id in the features.
        QCOMPARE(SortedJoin(store().GetFeatures().value("Open").productIds), QStringLiteral("Base"));
    }

    // A rename is a removal and an insertion; the change is reported at the old row.
    void rename_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature to the front") << "features" << 4 << "Alpha" << "- 4 4/- 0 0" << "Alpha,Open,exit,my_feat_1,orphan";
        QTest::newRow("feature in place") << "features" << 0 << "Apen" << "- 0 0/- 0 0" << "Apen,exit,my_feat_1,orphan,save";
        QTest::newRow("feature to an existing id") << "features" << 4 << "exit" << "/" << "Open,exit,my_feat_1,orphan,save";
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
        const QString fields = Text(*table, Qt::DisplayRole, -1, row).section('|', 1, 7);
        const bool accepted = moves != "/";
        QCOMPARE(table->setData(table->index(row, 0), id), accepted);
        QCOMPARE(Emissions(removed) + '/' + Emissions(inserted), moves);
        QCOMPARE(Emissions(changed), accepted ? QString("%1,0 %1,0 []").arg(row) : "");
        QCOMPARE(Text(*table, Qt::DisplayRole, 0), ids);
        if (accepted)
            QCOMPARE(Text(*table, Qt::DisplayRole, -1, ids.split(',').indexOf(id)).section('|', 1, 7), fields);
        else
            QCOMPARE(QToolTip::text(), QStringLiteral("This ID is already exist"));
        QToolTip::hideText();
        // Licences granted under the old id stay where they were.
        QCOMPARE(store().GetProducts().products.at(1).specificLicenses.keys(), QStringList{"save"});
    }

    // No tester: a second insertion announces a row that is not added.
    void insertAddsOneUnnumberedRow_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("row");
        QTest::newRow("feature kept as it is") << "features" << "New_Feature||changed||true|false|||";
        QTest::newRow("extension pattern written again") << "extensions" << "extension||.extension|false|false|false|false";
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
        QCOMPARE(Text(*table, Qt::DisplayRole, -1, 0), row);
        QCOMPARE(table->rowCount(), count + 1);
    }

    // Features and extensions answer false even after removing; one row goes whatever the count.
    void removeTakesOneRow_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature") << "features" << 3 << "Open,exit,my_feat_1,save";
        QTest::newRow("extension") << "extensions" << 1 << "obj";
        QTest::newRow("product") << "products" << 2 << "Base,Base2";
    }
    void removeTakesOneRow()
    {
        QFETCH(QString, model);
        QFETCH(int, row);
        QFETCH(QString, ids);
        QAbstractItemModel *table = model == "features" ? m_features : model == "products" ? m_products : m_extensions;
        const auto tester = Tester(table);
        QSignalSpy removed(table, &QAbstractItemModel::rowsRemoved);
        QCOMPARE(table->removeRows(row, 5), model == "products");
        QCOMPARE(Emissions(removed), QString("- %1 %1").arg(row));
        QCOMPARE(Text(*table, Qt::DisplayRole, model == "products" ? 1 : 0), ids);
        // The store drops the references to a removed product or extension.
        QCOMPARE(SortedJoin(store().GetFeatures().value("exit").productIds), model == "products" ? "Base2" : "Base2,ab");
        QCOMPARE(store().GetProducts().products.at(0).extensions.open.contains("stl"), model != "extensions");
    }

    void storeChangesResetTheTables()
    {
        QSignalSpy features(m_features, &QAbstractItemModel::modelReset);
        QSignalSpy products(m_products, &QAbstractItemModel::modelReset);
        QSignalSpy layouts(m_productLayouts, &QAbstractItemModel::modelReset);
        QVERIFY(store().DuplicateProductFrom("ab", "ab2"));
        QCOMPARE(Text(*m_products, Qt::DisplayRole, 1), QStringLiteral("Base,Base2,ab,ab2"));
        QVERIFY(store().DuplicateFeatureFrom("exit", "exit2"));
        QCOMPARE(Text(*m_features, Qt::DisplayRole, 0), QStringLiteral("Open,exit,exit2,my_feat_1,orphan,save"));
        QCOMPARE(QString("%1 %2 %3").arg(features.count()).arg(products.count()).arg(layouts.count()), "1 2 1");
        m_model.reset(); // the models let go of the store's signals
        QVERIFY(store().DuplicateFeatureFrom("exit", "exit3"));
    }

    // Rows are found through a remembered cursor, which must notice every change of the map.
    void rowsFollowChangesOfTheMap()
    {
        FeaturesModel second(store());
        QCOMPARE(second.index(3, 0).data().toString(), QStringLiteral("orphan"));
        QVERIFY(m_features->setData(m_features->index(0, 0), QStringLiteral("pen"))); // same size, announced
        QCOMPARE(Text(second, Qt::DisplayRole, 0), QStringLiteral("exit,my_feat_1,orphan,pen,save"));
        auto &features = store().GetFeatures();
        const auto copy = features; // detached: the same size, other nodes
        features.remove("exit");
        features.insert("zz", {});
        QCOMPARE(Text(second, Qt::DisplayRole, 0), QStringLiteral("my_feat_1,orphan,pen,save,zz"));
        const QModelIndex last = second.index(4, 1);
        features.remove("save");
        QVERIFY(!last.data().isValid() && !second.setData(last, "x")); // now past the end

        QMap<QString, int> map{{"a", 0}, {"b", 1}, {"c", 2}};
        MapRowCursor<QString, int> cursor;
        QCOMPARE(cursor.At(map, 2).key(), QStringLiteral("c"));
        map.remove("b");
        map.insert("d", 3); // a key swap that only a model announces
        BumpRowEpoch();
        QCOMPARE(cursor.At(map, 1).key() + cursor.At(map, 2).key(), QStringLiteral("cd"));
        QVERIFY(cursor.At(map, 3) == map.constEnd() && cursor.At(map, -1) == map.constEnd());
    }
};

QTEST_MAIN(TableModelsTest)
#include "TableModelsTest.moc"
