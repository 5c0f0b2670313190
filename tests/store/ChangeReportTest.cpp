#include "store/ChangeMarkdown.h"
#include "store/RecordComparison.h"

#include <QTest>

using namespace ProductEditor;

namespace {

RecordsSnapshot WithFeatures(int count, const QString &product)
{
    RecordsSnapshot records;
    records.products.products = {ProductData{"pro", "", "", {}, {}, {}}};
    for (int i = 0; i < count; ++i) {
        VantixFeatureData feature;
        feature.title = QString("T%1").arg(i);
        if (!product.isEmpty())
            feature.productIds = {product};
        records.features.insert(QString("f%1").arg(i, 2, 10, QChar('0')), feature);
    }
    return records;
}

} // namespace

// How the Markdown report folds long lists and keeps what it quotes from acting as markup.
class ChangeReportTest : public QObject
{
    Q_OBJECT

private slots:
    void longListsFold_data()
    {
        QTest::addColumn<int>("features");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QStringList>("absent");

        QTest::newRow("eight names stay in the cell")
            << 8 << QStringList{"| Features | `f00`, `f01`, `f02`, `f03`, `f04`, `f05`, `f06`, `f07` |  |"}
            << QStringList{"<details>"};
        QTest::newRow("nine names fold under the table")
            << 9
            << QStringList{"| Features | 9, listed below |  |",
                           "<details><summary>Features gained by `pro` (9)</summary>\n\n- `f00`\n"}
            << QStringList{"### Features"};
    }

    void longListsFold()
    {
        QFETCH(int, features);
        QFETCH(QStringList, expected);
        QFETCH(QStringList, absent);
        const QString markdown =
            ChangesMarkdown(CompareRecords(WithFeatures(features, ""), WithFeatures(features, "pro")), "a", "b");
        for (const QString &text : expected)
            QVERIFY2(markdown.contains(text), qPrintable(markdown));
        for (const QString &text : absent)
            QVERIFY2(!markdown.contains(text), qPrintable(markdown));
    }

    void longFeatureListFolds()
    {
        const QString markdown = ChangesMarkdown(CompareRecords(WithFeatures(0, ""), WithFeatures(11, "")), "a", "b");
        QVERIFY2(markdown.contains("### Features\n\n<details><summary>11 changes to features</summary>\n\n"
                                   "- feature f00 \"T0\" added\n"),
                 qPrintable(markdown));
    }

    void quotedTextIsNotMarkup()
    {
        RecordsSnapshot before = WithFeatures(1, ""), after = before;
        after.features["f00"].title = "<b>A|B</b> *x*";
        QVERIFY(ChangesMarkdown(CompareRecords(before, after), "a", "b")
                    .contains("- feature f00: title \"T0\" -> \"&lt;b>A\\|B&lt;/b> \\*x\\*\"\n"));
    }
};

QTEST_GUILESS_MAIN(ChangeReportTest)
#include "ChangeReportTest.moc"
