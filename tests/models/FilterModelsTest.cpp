#include "ModelsFixture.h"
#include "models/FeaturesModel.h"
#include "models/FilterFeatureModel.h"
#include "models/QueryFilterFeatureModel.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>

using namespace ProductEditor;

namespace {

// Features and their products:
//   f_base {Base}, title "Alpha", layout design, Base grants {Lic1, Lic2}
//   f_base2 {Base2}, no title, layout design (Base2 offers no layout)
//   f_a1b1 {a1, b1}, title "Both", layout design (a1 offers design)
//   f_ab {ab}, title "Ab"
//   f_none, no product, title "None"
const char *kQueryProducts = R"({
  "features": {"feature": [
    {"id": "f_base", "title": "Alpha"}, {"id": "f_base2"}, {"id": "f_a1b1", "title": "Both"},
    {"id": "f_ab", "title": "Ab"}, {"id": "f_none", "title": "None"}
  ]},
  "products": {"product": [
    {"id": "Base", "modes": ["design"], "features": ["f_base"],
     "licensing": {"base": "L", "specific": [{"id": "f_base", "licenses": ["Lic1", "Lic2"]}]}},
    {"id": "Base2", "features": ["f_base2"]},
    {"id": "a1", "modes": ["design"], "features": ["f_a1b1"]},
    {"id": "b1", "features": ["f_a1b1"]},
    {"id": "ab", "features": ["f_ab"]}
  ]}
})";

const char *kQueryLayouts = R"({"layouts": {
  "design": {"features": ["f_base", "f_base2", "f_a1b1"]}
}})";

QString SortedColumn(const QAbstractItemModel &model)
{
    QStringList ids = ColumnText(model).split(',', Qt::SkipEmptyParts);
    std::sort(ids.begin(), ids.end());
    return ids.join(',');
}

} // namespace

class FilterModelsTest : public QObject
{
    Q_OBJECT

private slots:
    // --- quick search

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
        StoreFixture fixture;
        FeaturesModel source(fixture.data());
        FilterFeatureModel filter;
        filter.setSourceModel(&source);
        QAbstractItemModelTester tester(&filter,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        filter.SetFilter(text);
        QCOMPARE(filter.Filter(), text.trimmed());
        QCOMPARE(ColumnText(filter), rows);
        QCOMPARE(filter.columnCount(), 9);
    }

    void quickSearchFollowsEdits()
    {
        StoreFixture fixture;
        FeaturesModel source(fixture.data());
        FilterFeatureModel filter;
        filter.setSourceModel(&source);
        QAbstractItemModelTester tester(&filter,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        filter.SetFilter(QStringLiteral("exi"));
        QVERIFY(source.setData(source.index(4, 1), QStringLiteral("Exit too")));
        QCOMPARE(ColumnText(filter), QStringLiteral("exit,save"));
        QVERIFY(source.setData(source.index(4, 0), QStringLiteral("Alpha")));
        QCOMPARE(ColumnText(filter), QStringLiteral("Alpha,exit"));
    }

    // --- query

    void keysOfAField_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("present");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("empty text is no criterion") << "" << false << QStringList();
        QTest::newRow("one key") << "a" << true << QStringList{"a"};
        QTest::newRow("blank after comma kept") << "a, b" << true << QStringList{"a", " b"};
        QTest::newRow("empty parts kept") << "a,,b," << true << QStringList{"a", "", "b", ""};
        QTest::newRow("a lone blank") << " " << true << QStringList{" "};
    }
    void keysOfAField()
    {
        QFETCH(QString, text);
        QFETCH(bool, present);
        QFETCH(QStringList, keys);
        const std::optional<QStringList> parsed = FeatureQuery::Keys(text);
        QCOMPARE(parsed.has_value(), present);
        if (present)
            QCOMPARE(*parsed, keys);
    }

    void matchKeys_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<bool>("match");
        QTest::newRow("no keys, no values") << QStringList() << QStringList() << true;
        QTest::newRow("a key, no values") << QStringList{"a"} << QStringList() << false;
        QTest::newRow("empty key, empty value") << QStringList{""} << QStringList{""} << true;
        QTest::newRow("substring ignores case") << QStringList{"AS"} << QStringList{"Base"} << true;
        QTest::newRow("key is trimmed") << QStringList{"  as "} << QStringList{"Base"} << true;
        QTest::newRow("quoted whole word ignores case") << QStringList{"\"BASE\""}
                                                        << QStringList{"base"} << true;
        QTest::newRow("quoted part of a word") << QStringList{"\"bas\""} << QStringList{"base"}
                                               << false;
        QTest::newRow("quotes kept in the fallback") << QStringList{"\"as\""}
                                                     << QStringList{"b\"as\"e"} << true;
        QTest::newRow("blank before the quote") << QStringList{" \"base\""}
                                                << QStringList{"base"} << false;
        QTest::newRow("every key needs its own value") << QStringList{"a", "b"}
                                                       << QStringList{"ab"} << false;
        QTest::newRow("two values for two keys") << QStringList{"a", "b"}
                                                 << QStringList{"a1", "b1"} << true;
        QTest::newRow("duplicate keys collapse") << QStringList{"a", "a"} << QStringList{"a1"}
                                                 << true;
    }
    void matchKeys()
    {
        QFETCH(QStringList, keys);
        QFETCH(QStringList, values);
        QFETCH(bool, match);
        QCOMPARE(QueryFilterFeatureModel::MatchKeys(keys, QSet<QString>(values.begin(), values.end())),
                 match);
    }

    void query_data()
    {
        QTest::addColumn<QString>("ids");
        QTest::addColumn<QString>("titles");
        QTest::addColumn<QString>("products");
        QTest::addColumn<QString>("layouts");
        QTest::addColumn<QString>("licenses");
        QTest::addColumn<QString>("accepted");
        const QString none;
        QTest::newRow("nothing asked: every feature") << none << none << none << none << none
                                                      << "f_a1b1,f_ab,f_base,f_base2,f_none";
        QTest::newRow("id substring") << "F_BASE" << none << none << none << none
                                      << "f_base,f_base2";
        QTest::newRow("two ids never match") << "f_base,f_ab" << none << none << none << none << "";
        QTest::newRow("a feature without products never matches")
            << "f_none" << none << none << none << none << "";
        QTest::newRow("title wildcard") << none << "*" << none << none << none
                                        << "f_a1b1,f_ab,f_base";
        QTest::newRow("wildcard first decides") << none << "*,zzz" << none << none << none
                                                << "f_a1b1,f_ab,f_base";
        QTest::newRow("wildcard second never matches") << none << "Alpha,*" << none << none << none
                                                       << "";
        QTest::newRow("title substring") << none << "alp" << none << none << none << "f_base";
        QTest::newRow("empty keys match empty titles") << none << "," << none << none << none
                                                       << "f_a1b1,f_ab,f_base,f_base2";
        QTest::newRow("quoted product is a whole word") << none << none << "\"base\"" << none << none
                                                        << "f_base";
        QTest::newRow("product substring") << none << none << "base" << none << none
                                           << "f_base,f_base2";
        QTest::newRow("each product key needs its own product")
            << none << none << "a,b" << none << none << "f_a1b1";
        QTest::newRow("quoted key after comma") << none << none << "a,\"b1\"" << none << none
                                                << "f_a1b1";
        QTest::newRow("blank before a quoted key") << none << none << "a, \"b1\"" << none << none
                                                   << "";
        QTest::newRow("layout in feature and product") << none << none << none << "design" << none
                                                       << "f_a1b1,f_base";
        QTest::newRow("licence exact") << none << none << none << none << "Lic1" << "f_base";
        QTest::newRow("licence is case sensitive") << none << none << none << none << "lic1" << "";
        QTest::newRow("every licence key") << none << none << none << none << "Lic2,Lic1"
                                           << "f_base";
        QTest::newRow("a licence key missing") << none << none << none << none << "Lic1,Lic3" << "";
        QTest::newRow("fields are joined by AND") << none << "o" << "1" << none << none << "f_a1b1";
        QTest::newRow("AND that fails") << "f_base" << none << none << none << "Lic3" << "";
    }
    void query()
    {
        QFETCH(QString, ids);
        QFETCH(QString, titles);
        QFETCH(QString, products);
        QFETCH(QString, layouts);
        QFETCH(QString, licenses);
        QFETCH(QString, accepted);
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(fixture.data());
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        QAbstractItemModelTester tester(&filter,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(filter.rowCount(), 0);
        FeatureQuery query;
        query.ids = FeatureQuery::Keys(ids);
        query.titles = FeatureQuery::Keys(titles);
        query.products = FeatureQuery::Keys(products);
        query.layouts = FeatureQuery::Keys(layouts);
        query.licenses = FeatureQuery::Keys(licenses);
        filter.ApplyQuery(query, fixture.data());
        QCOMPARE(SortedColumn(filter), accepted);
        QCOMPARE(SortedJoin(filter.AcceptedIds()), accepted);
    }

    void presentEmptyFieldDiffersFromAbsent()
    {
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(fixture.data());
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        FeatureQuery query;
        query.ids = QStringList();
        filter.ApplyQuery(query, fixture.data());
        QCOMPARE(SortedColumn(filter), QStringLiteral("f_a1b1,f_ab,f_base,f_base2"));
    }

    void productWithoutRecordFailsProductFields()
    {
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        fixture.data().GetFeatures()["f_ghost"].productIds = {"ghost"};
        fixture.data().GetFeatures()["f_ghost"].layoutNames = {"design"};
        FeaturesModel source(fixture.data());
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        FeatureQuery query;
        query.ids = FeatureQuery::Keys("ghost");
        filter.ApplyQuery(query, fixture.data());
        QCOMPARE(ColumnText(filter), QStringLiteral("f_ghost"));
        query.layouts = FeatureQuery::Keys("design");
        filter.ApplyQuery(query, fixture.data());
        QCOMPARE(ColumnText(filter), QString());
    }

    void queryViewShowsItsColumnsAndNumbersRows()
    {
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(fixture.data());
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        FeatureQuery query;
        query.titles = FeatureQuery::Keys("*");
        filter.ApplyQuery(query, fixture.data());
        QStringList headers;
        for (int section = 0; section < filter.columnCount(); ++section)
            headers << filter.headerData(section, Qt::Horizontal).toString();
        QCOMPARE(headers.join(','), QStringLiteral("Id,Title,Products,Layouts,Licenses"));
        // f_a1b1, f_ab and f_base are source rows 0, 1 and 2 of five; f_base is row 2 here too
        // but the query shows it third: the numbers run over the visible rows.
        QCOMPARE(ColumnText(filter), QStringLiteral("f_a1b1,f_ab,f_base"));
        QCOMPARE(filter.headerData(2, Qt::Vertical).toInt(), 3);
        QCOMPARE(RowText(filter, 2), QStringLiteral("f_base|Alpha|Base|design|") +
                                         filter.index(2, 4).data().toString());
        QCOMPARE(SortedJoin(filter.index(2, 4).data().toString()), QStringLiteral("Lic1,Lic2"));
    }

    void acceptedIdsAreASnapshot()
    {
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(fixture.data());
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        filter.ApplyQuery(FeatureQuery(), fixture.data());
        QCOMPARE(filter.rowCount(), 5);
        QVERIFY(source.insertRows(0, 1));
        QCOMPARE(filter.rowCount(), 5);
        filter.ApplyQuery(FeatureQuery(), fixture.data());
        QCOMPARE(filter.rowCount(), 6);
    }
};

QTEST_MAIN(FilterModelsTest)
#include "FilterModelsTest.moc"
