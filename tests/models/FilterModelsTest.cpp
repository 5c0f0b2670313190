// The quick search and the query.
#include "ModelsFixture.h"

class FilterModelsTest : public ModelsFixture
{
    Q_OBJECT

private slots:
    // --- the quick search and the query

    void quickSearch_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rows");
        QTest::newRow("empty") << "" << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("blanks only") << "   " << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("blanks around are trimmed") << "  ex " << "exit";
        QTest::newRow("upper case finds lower case") << "FEAT" << "my_feat_1";
        QTest::newRow("lower case finds upper case") << "open" << "Open";
        QTest::newRow("title") << "FILE" << "Open";
        QTest::newRow("several rows") << "t" << "exit,my_feat_1";
        QTest::newRow("no query syntax") << "ex,save" << "";
        QTest::newRow("quotes are plain text") << "\"exit\"" << "";
    }
    void quickSearch()
    {
        QFETCH(QString, text);
        QFETCH(QString, rows);
        QAbstractItemModel *filter = m_model->GetFeaturesModel();
        const auto tester = Tester(filter);
        QCOMPARE(ColumnText(*filter), ColumnText(*m_features));
        m_model->SetFilter(text);
        QCOMPARE(ColumnText(*filter), rows);
        QCOMPARE(filter->columnCount(), 9);
        QCOMPARE(m_features->rowCount(), 5);
        // The text is matched again on every change of the source.
        QVERIFY(m_features->setData(m_features->index(4, 1), QStringLiteral("Store it")));
        QVERIFY(m_features->setData(m_features->index(2, 0), QStringLiteral("Alpha")));
        if (text == "t")
            QCOMPARE(ColumnText(*filter), QStringLiteral("exit,save"));
    }

    // What the query rows below do not reach.
    void matchKeys_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<bool>("match");
        QTest::newRow("no keys, no values") << QStringList() << QStringList() << true;
        QTest::newRow("a key, no values") << QStringList{"a"} << QStringList() << false;
        QTest::newRow("key is trimmed") << QStringList{"  as "} << QStringList{"Base"} << true;
        QTest::newRow("quoted part of a word") << QStringList{"\"bas\""} << QStringList{"base"} << false;
        QTest::newRow("quotes kept in the fallback") << QStringList{"\"as\""} << QStringList{"b\"as\"e"} << true;
        QTest::newRow("duplicate keys collapse") << QStringList{"a", "a"} << QStringList{"a1"} << true;
    }
    void matchKeys()
    {
        QFETCH(QStringList, keys);
        QFETCH(QStringList, values);
        QFETCH(bool, match);
        QCOMPARE(QueryFilterFeatureModel::MatchKeys(keys, QSet<QString>(values.begin(), values.end())), match);
    }

    // Fields: ids|titles|products|layouts|licenses; an empty field is no criterion.
    void query_data()
    {
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("accepted");
        QTest::newRow("nothing asked: every feature") << "||||" << "f_a1b1,f_ab,f_base,f_base2,f_none";
        QTest::newRow("id substring") << "F_BASE||||" << "f_base,f_base2";
        QTest::newRow("two ids never match") << "f_base,f_ab||||" << "";
        QTest::newRow("a feature without products never matches") << "f_none||||" << "";
        QTest::newRow("title wildcard") << "|*|||" << "f_a1b1,f_ab,f_base";
        QTest::newRow("wildcard first decides") << "|*,zzz|||" << "f_a1b1,f_ab,f_base";
        QTest::newRow("wildcard second never matches") << "|Alpha,*|||" << "";
        QTest::newRow("title substring") << "|alp|||" << "f_base";
        QTest::newRow("empty keys match empty titles") << "|,|||" << "f_a1b1,f_ab,f_base,f_base2";
        QTest::newRow("a trailing comma adds an empty key") << "|Alpha,|||" << "";
        QTest::newRow("quoted product is a whole word") << "||\"base\"||" << "f_base";
        QTest::newRow("product substring") << "||base||" << "f_base,f_base2";
        QTest::newRow("each product key needs its own product") << "||a,b||" << "f_a1b1";
        QTest::newRow("quoted key after comma") << "||a,\"b1\"||" << "f_a1b1";
        QTest::newRow("blank before a quoted key") << "||a, \"b1\"||" << "";
        QTest::newRow("layout in feature and product") << "|||design|" << "f_a1b1,f_base";
        QTest::newRow("licence exact") << "||||Lic1" << "f_base";
        QTest::newRow("licence is case sensitive") << "||||lic1" << "";
        QTest::newRow("every licence key") << "||||Lic2,Lic1" << "f_base";
        QTest::newRow("a licence key missing") << "||||Lic1,Lic3" << "";
        QTest::newRow("fields are joined by AND") << "|o|1||" << "f_a1b1";
    }
    void query()
    {
        QFETCH(QString, fields);
        QFETCH(QString, accepted);
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(*fixture.store);
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        const auto tester = Tester(&filter);
        QCOMPARE(filter.rowCount(), 0);
        const QStringList texts = fields.split('|');
        const FeatureQuery query{FeatureQuery::Keys(texts.at(0)), FeatureQuery::Keys(texts.at(1)),
                                 FeatureQuery::Keys(texts.at(2)), FeatureQuery::Keys(texts.at(3)),
                                 FeatureQuery::Keys(texts.at(4))};
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(SortedJoin(ColumnText(filter).replace(',', ", ")), accepted);
        QCOMPARE(SortedJoin(filter.AcceptedIds()), accepted);
        if (fields != "F_BASE||||")
            return;
        QCOMPARE(HeaderText(filter), QStringLiteral("Id|Title|Products|Layouts|Licenses"));
        // f_base and f_base2 are source rows 2 and 3: the numbers run over the visible rows.
        QCOMPARE(HeaderText(filter, Qt::Vertical), QStringLiteral("1|2"));
        QCOMPARE(RowText(filter, 0).section('|', 0, 3), QStringLiteral("f_base|Alpha|Base|design"));
        QCOMPARE(SortedJoin(filter.index(0, 4).data().toString()), QStringLiteral("Lic1,Lic2"));
    }

    void queryEdges()
    {
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(*fixture.store);
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        FeatureQuery query;
        query.ids = QStringList(); // present but empty: still needs a product
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(ColumnText(filter), QStringLiteral("f_a1b1,f_ab,f_base,f_base2"));
        // The accepted ids are a snapshot: a new feature waits for the next query.
        QVERIFY(source.insertRows(0, 1));
        fixture.store->GetFeatures()["New_Feature"].productIds = {"ghost"};
        fixture.store->GetFeatures()["New_Feature"].layoutNames = {"design"};
        QCOMPARE(filter.rowCount(), 4);
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(ColumnText(filter), QStringLiteral("New_Feature,f_a1b1,f_ab,f_base,f_base2"));
        // A product without a record fails every product field.
        query.layouts = FeatureQuery::Keys("design");
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(ColumnText(filter), QStringLiteral("f_a1b1,f_base"));
    }
};

QTEST_MAIN(FilterModelsTest)
#include "FilterModelsTest.moc"
