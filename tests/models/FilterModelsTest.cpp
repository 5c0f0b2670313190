// The quick search and the query.
#include "ModelsFixture.h"
#include "models/QueryFilterFeatureModel.h"

namespace {

// f_base {Base} "Alpha", Base grants {Lic1, Lic2}; f_base2 {Base2} untitled; f_a1b1 {a1, b1} "Both";
// f_ab {ab} "Ab"; f_none in no product. Layout design holds f_base, f_base2 and f_a1b1; only Base and a1 offer it.
const char *kQueryProducts = R"({
  "features": {"feature": [{"id": "f_base", "title": "Alpha"}, {"id": "f_base2"},
    {"id": "f_a1b1", "title": "Both"}, {"id": "f_ab", "title": "Ab"}, {"id": "f_none", "title": "None"}]},
  "products": {"product": [
    {"id": "Base", "modes": ["design"], "features": ["f_base"],
     "licensing": {"base": "L", "specific": [{"id": "f_base", "licenses": ["Lic1", "Lic2"]}]}},
    {"id": "Base2", "features": ["f_base2"]}, {"id": "a1", "modes": ["design"], "features": ["f_a1b1"]},
    {"id": "b1", "features": ["f_a1b1"]}, {"id": "ab", "features": ["f_ab"]}]}})";
const char *kQueryLayouts = R"({"layouts": {"design": {"features": ["f_base", "f_base2", "f_a1b1"]}}})";

} // namespace

class FilterModelsTest : public ModelsFixture
{
    Q_OBJECT

private slots:
    void quickSearch_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rows");
        QTest::newRow("blanks only") << "   " << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("blanks around are trimmed") << "  ex " << "exit";
        QTest::newRow("upper case finds lower case") << "FEAT" << "my_feat_1";
        QTest::newRow("title") << "FILE" << "Open";
        QTest::newRow("no query syntax") << "ex,save" << "";
    }
    void quickSearch()
    {
        QFETCH(QString, text);
        QFETCH(QString, rows);
        QAbstractItemModel *filter = m_model->GetFeaturesModel();
        const auto tester = Tester(filter);
        m_model->SetFilter(text);
        QCOMPARE(Text(*filter, Qt::DisplayRole, 0), rows);
        QCOMPARE(filter->columnCount(), 9);
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
        QTest::newRow("empty keys match empty titles") << "|,|||" << "f_a1b1,f_ab,f_base,f_base2";
        QTest::newRow("quoted product is a whole word") << "||\"base\"||" << "f_base";
        QTest::newRow("product substring") << "||base||" << "f_base,f_base2";
        QTest::newRow("each product key needs its own product") << "||a,b||" << "f_a1b1";
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
        const QStringList texts = fields.split('|');
        filter.ApplyQuery({FeatureQuery::Keys(texts[0]), FeatureQuery::Keys(texts[1]), FeatureQuery::Keys(texts[2]),
                           FeatureQuery::Keys(texts[3]), FeatureQuery::Keys(texts[4])}, *fixture.store);
        QCOMPARE(Text(filter, Qt::DisplayRole, 0), accepted);
        if (fields != "F_BASE||||")
            return;
        QCOMPARE(HeaderText(filter), QStringLiteral("Id|Title|Products|Layouts|Licenses"));
        // f_base and f_base2 are source rows 2 and 3: the numbers run over the visible rows.
        QCOMPARE(HeaderText(filter, Qt::Vertical), QStringLiteral("1|2"));
        QCOMPARE(Text(filter, Qt::DisplayRole, -1, 0).section('|', 0, 3), QStringLiteral("f_base|Alpha|Base|design"));
        // The accepted ids are a snapshot: a new feature waits for the next query.
        QVERIFY(source.insertRows(0, 1));
        fixture.store->GetFeatures()["New_Feature"].productIds = {"ghost"};
        QCOMPARE(filter.rowCount(), 2);
        filter.ApplyQuery({FeatureQuery::Keys("_"), {}, {}, {}, {}}, *fixture.store);
        QCOMPARE(Text(filter, Qt::DisplayRole, 0), QStringLiteral("New_Feature,f_a1b1,f_ab,f_base,f_base2"));
    }
};

QTEST_MAIN(FilterModelsTest)
#include "FilterModelsTest.moc"
