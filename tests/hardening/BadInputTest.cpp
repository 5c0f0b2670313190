#include "MemoryFolder.h"

#include "json/QJsonDiffTreeItem.h"
#include "json/QSmartJsonModel.h"
#include "json/VantixFeaturesDiffModel.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace ProductEditor;

namespace {

const QByteArray kBom("\xEF\xBB\xBF");
const QString kAstral = QString::fromUtf8("\xF0\x9F\x98\x80"); // U+1F600, a surrogate pair in UTF-16
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
    return QStringLiteral("%1 features, %2 products, %3 layouts, %4 extensions").arg(store.GetFeatures().size())
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

// Inputs the definition folders may hold after merges by hand and other tools.
class BadInputTest : public QObject
{
    Q_OBJECT

private slots:
    // An empty summary: the folder is refused.
    void productsFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("summary");
        const QString one = QStringLiteral("1 features, 0 products, 1 layouts, 0 extensions");
        const auto unknown = [](const QByteArray &value) {
            return R"({"features":{"feature":[{"id":"a"}]},"x":)" + value + "}";
        };
        QTest::newRow("empty file") << QByteArray() << "";
        QTest::newRow("byte-order mark before the object") << kBom + kValidProducts << one;
        QTest::newRow("byte-order mark only") << kBom << "";
        QTest::newRow("invalid UTF-8 in a string") << QByteArray("{\"x\":\"a\xC3\x28\"}") << "";
        QTest::newRow("UTF-16 surrogate encoded as UTF-8") << QByteArray("{\"x\":\"\xED\xA0\x80\"}") << "";
        QTest::newRow("truncated") << QByteArray(kValidProducts).left(30) << "";
        QTest::newRow("trailing garbage") << QByteArray(kValidProducts) + "}" << "";
        QTest::newRow("top-level string") << QByteArray("\"products\"") << "";
        QTest::newRow("nesting far past the parser's limit") << unknown(Nested(100000)) << "";
        QTest::newRow("nesting just past the parser's limit") << unknown(Nested(1024)) << "";
        QTest::newRow("nesting at the parser's limit is kept") << unknown(Nested(1023)) << one;
        QTest::newRow("10 MB title") << "{\"features\":{\"feature\":[{\"id\":\"a\",\"title\":\"" + QByteArray(10 << 20, 'x') + "\"}]}}"
                                     << one;
        QTest::newRow("numbers where strings belong")
            << QByteArray(R"({"features":{"feature":[{"id":7,"title":8}]},)"
                          R"("products":{"product":[{"id":1,"features":[2,3],"modes":[4]}]}})")
            << "1 features, 1 products, 1 layouts, 0 extensions";
        QTest::newRow("strings where arrays and objects belong")
            << QByteArray(R"({"extensions":"stl","features":{"feature":"a"},"products":{"product":[{"id":"p","features":"a",)"
                          R"("modes":"m","licensing":"base","extensions":"stl"}]}})")
            << "0 features, 1 products, 1 layouts, 0 extensions";
        QTest::newRow("sections of the wrong type")
            << QByteArray(R"({"extensions":[1],"features":[{"id":"a"}],"products":5})") << "0 features, 0 products, 1 layouts, 0 extensions";
        QTest::newRow("duplicate ids everywhere")
            << QByteArray(R"({"extensions":{"extension":[{"id":"e"},{"id":"e"}],"lic_coveradge":{"import":[{"id":"e","lic":["a"]},)"
                          R"({"id":"e","lic":["b","a"]}]}},"features":{"feature":[{"id":"f"},{"id":"f"}]},"products":{"product":[)"
                          R"({"id":"p","features":["f","f"],"licensing":{"specific":[{"id":"s","licenses":["x"]},{"id":"s"}]}},)"
                          R"({"id":"p","features":["g"]}]}})")
            << "2 features, 2 products, 1 layouts, 1 extensions";
        QTest::newRow("100,000 feature ids in a product")
            << R"({"products":{"product":[{"id":"p","features":)" + ManyNames("f") + "}]}}"
            << "100000 features, 1 products, 1 layouts, 0 extensions";
    }
    void productsFile()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, summary);
        MemoryFolder folder;
        folder.addFile(QStringLiteral("products/products.json"), bytes);
        folder.addFile(QStringLiteral("layouts/main.json"), R"({"layouts":{"main":{}}})");
        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
        QCOMPARE(store.GetProductsOriginalJson().isEmpty(), summary.isEmpty());
        QCOMPARE(store.Reload(), !summary.isEmpty());
        if (summary.isEmpty()) {
            QCOMPARE(Summary(store), QStringLiteral("0 features, 0 products, 0 layouts, 0 extensions"));
            return;
        }
        QCOMPARE(Summary(store), summary);
        CheckSaveIsFixedPoint(store, folder);
    }

    void layoutFile_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("layouts");
        const QByteArray valid(R"({"layouts":{"print":{"features":["a"]}}})");
        QTest::newRow("empty file") << QByteArray() << QStringList();
        QTest::newRow("byte-order mark before the object") << kBom + valid << QStringList{"print"};
        QTest::newRow("invalid UTF-8 in a name") << QByteArray("{\"layouts\":{\"pr\xFFint\":{}}}") << QStringList();
        QTest::newRow("truncated") << valid.left(valid.size() - 3) << QStringList();
        QTest::newRow("top-level array") << "[" + valid + "]" << QStringList();
        QTest::newRow("layouts is an array") << QByteArray(R"({"layouts":["print"]})") << QStringList();
        QTest::newRow("a layout that is a number") << QByteArray(R"({"layouts":{"print":5}})") << QStringList{"print"};
        QTest::newRow("nesting far past the parser's limit")
            << R"({"layouts":{"print":{"x":)" + Nested(100000) + "}}}" << QStringList();
        QTest::newRow("numbers where names belong")
            << QByteArray(R"({"layouts":{"print":{"features":[1,true,null],"extensions":{"open":[2]}}}})")
            << QStringList{"print"};
    }
    void layoutFile()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, layouts);
        MemoryFolder folder;
        folder.addFile(QStringLiteral("products/products.json"), kValidProducts);
        folder.addFile(QStringLiteral("layouts/broken.json"), bytes);
        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
        QCOMPARE(store.GetLayouts().keys(), layouts);
        CheckSaveIsFixedPoint(store, folder);
    }

    void astralPlaneNamesSortAsUtf16()
    {
        // U+FFFD sorts after the astral character in UTF-16 although its code point is smaller.
        const QString replacement(QChar(0xFFFD));
        MemoryFolder folder;
        folder.addFile(QStringLiteral("products/products.json"),
                       QStringLiteral(R"({"products":{"product":[{"id":"%1","features":["%2","%1","a"]}]}})")
                           .arg(kAstral, replacement).toUtf8());
        folder.addFile(QStringLiteral("layouts/%1.json").arg(kAstral),
                       QStringLiteral(R"({"layouts":{"%1":{}}})").arg(kAstral).toUtf8());
        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
        QCOMPARE(store.GetFeatures().keys(), (QStringList{"a", kAstral, replacement}));
        QCOMPARE(store.GetFeatures().value(kAstral).productIds, QSet<QString>{kAstral});
        CheckSaveIsFixedPoint(store, folder);
        QVERIFY(folder.written.contains(folder.path(QStringLiteral("layouts/%1.json").arg(kAstral))));
        const QJsonArray written = QJsonDocument::fromJson(folder.written.value(folder.path("products/products.json")))
                                       .object()["products"].toObject()["product"].toArray()[0].toObject()["features"].toArray();
        QCOMPARE(written, (QJsonArray{"a", kAstral, replacement}));
    }

    void jsonModel_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("rows"); // -1: refused
        QTest::newRow("empty") << QByteArray() << -1;
        QTest::newRow("byte-order mark before the object") << kBom + "{\"a\":1}" << 1;
        QTest::newRow("invalid UTF-8") << QByteArray("{\"a\":\"\xC0\xAF\"}") << -1;
        QTest::newRow("truncated") << QByteArray("{\"a\":[1,2") << -1;
        QTest::newRow("nesting far past the parser's limit") << Nested(100000) << -1;
        QTest::newRow("nesting at the parser's limit") << Nested(1024) << 1;
        QTest::newRow("10 MB string") << "{\"s\":\"" + QByteArray(10 << 20, 'x') + "\"}" << 1;
        QTest::newRow("100,000-element array") << ManyNames("n") << 100000;
        QTest::newRow("astral-plane key") << QStringLiteral("{\"%1\":\"%1\"}").arg(kAstral).toUtf8() << 1;
    }
    void jsonModel()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, rows);
        QSmartJsonModel model(QByteArray("{\"before\":true}"));
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QJsonDocument before = model.json();
        if (rows < 0)
            QTest::ignoreMessage(QtDebugMsg, QRegularExpression("cannot load json"));
        QCOMPARE(model.loadJson(bytes), rows >= 0);
        QCOMPARE(model.rowCount(), rows < 0 ? 1 : rows);
        // Every scalar comes back as its text, so a second round trip is exact.
        const QJsonDocument serialised = model.json();
        QCOMPARE(QSmartJsonModel(serialised.toJson(QJsonDocument::Compact)).json(), rows < 0 ? before : serialised);
    }

    void diffEngine_data()
    {
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<QByteArray>("right");
        QTest::addColumn<QString>("topLevel"); // key:diff type of each top-level node
        QTest::newRow("nesting at the parser's limit")
            << QByteArray("{\"d\":").repeated(1024) + "1" + QByteArray(1024, '}')
            << QByteArray("{\"d\":").repeated(1024) + "2" + QByteArray(1024, '}') << "d:1";
        QTest::newRow("10 MB strings that differ at the end")
            << "{\"s\":\"" + QByteArray(10 << 20, 'x') + "a\"}" << "{\"s\":\"" + QByteArray(10 << 20, 'x') + "b\"}"
            << "s:1";
        QTest::newRow("100,000-element arrays, one name differs")
            << "{\"n\":" + ManyNames("n") + "}" << "{\"n\":" + ManyNames("n").replace("\"n99999\"", "\"other\"") + "}"
            << "n:1";
        QTest::newRow("numbers where strings belong") << QByteArray(R"({"x":5,"a":"1"})") << QByteArray(R"({"x":"5","a":1})")
                                                      << "a:1,x:1";
        QTest::newRow("astral-plane keys") << QStringLiteral("{\"%1\":1}").arg(kAstral).toUtf8()
                                           << QByteArray(R"({"\ud83d\ude01":1})")
                                           << kAstral + ":4," + QString::fromUtf8("\xF0\x9F\x98\x81") + ":8";
    }
    void diffEngine()
    {
        QFETCH(QByteArray, left);
        QFETCH(QByteArray, right);
        QFETCH(QString, topLevel);
        const QJsonObject leftObject = QJsonDocument::fromJson(left).object();
        VantixFeaturesDiffModel model;
        QVERIFY(model.Regenerate(leftObject, QJsonDocument::fromJson(right).object()));
        QStringList nodes;
        for (int i = 0; i < model.GetRoot()->childCount(); ++i) {
            const auto *node = static_cast<const QJsonDiffTreeItem *>(model.GetRoot()->child(i));
            nodes << node->key() + QLatin1Char(':') + QString::number(node->diffType());
        }
        QCOMPARE(nodes.join(QLatin1Char(',')), topLevel);
        QJsonObject patched = leftObject;
        model.ApplyPatch(patched);
        QCOMPARE(patched, leftObject);
    }
};

QTEST_GUILESS_MAIN(BadInputTest)
#include "BadInputTest.moc"
