#include "MemoryFolder.h"


#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace ProductEditor;

namespace {

const QByteArray kBom("\xEF\xBB\xBF");
const char *kValidProducts = R"({"features":{"feature":[{"id":"a"}]}})";

QByteArray Nested(int depth)
{
    return QByteArray(depth, '[') + "1" + QByteArray(depth, ']');
}

QByteArray ManyNames(const QString &prefix)
{
    QJsonArray names;
    for (int i = 0; i < 100000; ++i)
        names.append(prefix + QString::number(i));
    return QJsonDocument(names).toJson(QJsonDocument::Compact);
}

QString Summary(VantixJsonData &store)
{
    return QStringLiteral("%1 %2 %3 %4").arg(store.GetFeatures().size())
        .arg(store.GetProducts().products.size()).arg(store.GetLayouts().size()).arg(store.GetExtensions().size());
}

// Whatever loads must save in a form that loads and saves back to the same bytes.
void CheckSaveIsFixedPoint(VantixJsonData &store, MemoryFolder &folder)
{
    folder.written.clear();
    QVERIFY(store.SaveAs(folder.root()));
    const QHash<QString, QByteArray> first = folder.written;
    folder.files = first;
    folder.written.clear();
    VantixJsonData reloaded(folder.root(), folder.reader(), folder.writer(), {});
    QCOMPARE(Summary(reloaded), Summary(store));
    QVERIFY(reloaded.SaveAs(folder.root()));
    QCOMPARE(folder.written, first);
}

} // namespace

// Inputs the definition folders may hold after merges by hand and other tools; odd documents
// for the JSON tree model and the diff engine are in their own suites.
class BadInputTest : public QObject
{
    Q_OBJECT

private slots:
    // A summary "features products layouts extensions"; an empty one: the folder is refused.
    void definitionFolder_data()
    {
        QTest::addColumn<QByteArray>("products");
        QTest::addColumn<QByteArray>("layout");
        QTest::addColumn<QString>("summary");
        const QByteArray layout(R"({"layouts":{"l":{"features":["a"]}}})");
        const auto row = [&layout](const char *name, const QByteArray &products, const char *summary) {
            QTest::newRow(name) << products << layout << QString(summary);
        };
        const auto unknown = [](const QByteArray &value) { return R"({"features":{"feature":[{"id":"a"}]},"x":)" + value + "}"; };
        row("empty file", QByteArray(), "");
        row("byte-order mark before the object", kBom + kValidProducts, "1 0 1 0");
        row("invalid UTF-8 in a string", "{\"x\":\"a\xC3\x28\"}", "");
        row("nesting far past the parser's limit", unknown(Nested(100000)), "");
        row("nesting at the parser's limit is kept", unknown(Nested(1023)), "1 0 1 0");
        row("numbers where strings belong",
            R"({"features":{"feature":[{"id":7,"title":8}]},"products":{"product":[{"id":1,"features":[2,3],"modes":[4]}]}})",
            "2 1 1 0");
        row("100,000 feature ids in a product", R"({"products":{"product":[{"id":"p","features":)" + ManyNames("f") + "}]}}",
            "100001 1 1 0");
        const auto layoutRow = [](const char *name, const QByteArray &layout, const char *summary) {
            QTest::newRow(name) << QByteArray(kValidProducts) << layout << QString(summary);
        };
        layoutRow("layout: empty file", QByteArray(), "1 0 0 0");
        layoutRow("layout: byte-order mark before the object", kBom + layout, "1 0 1 0");
    }
    void definitionFolder()
    {
        QFETCH(QByteArray, products);
        QFETCH(QByteArray, layout);
        QFETCH(QString, summary);
        MemoryFolder folder;
        folder.addFile(QStringLiteral("products/products.json"), products);
        folder.addFile(QStringLiteral("layouts/l.json"), layout);
        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
        QCOMPARE(store.Reload(), !summary.isEmpty());
        QCOMPARE(Summary(store), summary.isEmpty() ? "0 0 0 0" : summary);
        if (!summary.isEmpty())
            CheckSaveIsFixedPoint(store, folder);
    }

};

QTEST_GUILESS_MAIN(BadInputTest)
#include "BadInputTest.moc"
