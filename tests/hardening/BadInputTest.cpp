#include "MemoryFolder.h"

#include "json/QJsonDiffTreeItem.h"
#include "json/QSmartJsonModel.h"
#include "json/VantixFeaturesDiffModel.h"
#include "store/VantixJsonData.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace ProductEditor;

namespace {

const QByteArray kBom("\xEF\xBB\xBF");
const QString kAstral = QString::fromUtf8("\xF0\x9F\x98\x80"); // U+1F600, a surrogate pair in UTF-16
const int kTenMegabytes = 10 * 1024 * 1024;
const int kManyNames = 100000;

QByteArray Nested(int depth, const QByteArray &leaf = "1")
{
    return QByteArray(depth, '[') + leaf + QByteArray(depth, ']');
}

QByteArray NestedObjects(int depth, const QByteArray &leaf)
{
    QByteArray text;
    for (int i = 0; i < depth; ++i)
        text += "{\"d\":";
    return text + leaf + QByteArray(depth, '}');
}

QByteArray WithUnknownKey(const QByteArray &value)
{
    return "{\"features\":{\"feature\":[{\"id\":\"a\"}]},\"deep\":" + value + "}";
}

QByteArray ManyNamesArray(const QString &prefix)
{
    QJsonArray names;
    for (int i = 0; i < kManyNames; ++i)
        names.append(prefix + QString::number(i));
    return QJsonDocument(names).toJson(QJsonDocument::Compact);
}

QString Summary(VantixJsonData &store)
{
    return QStringLiteral("features %1, products %2, layouts %3, extensions %4")
        .arg(store.GetFeatures().size())
        .arg(store.GetProducts().products.size())
        .arg(store.GetLayouts().size())
        .arg(store.GetExtensions().size());
}

QString DiskFolderSummary(const QString &root, QStringList *layoutNames)
{
    const Reader reader = [](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    VantixJsonData store(root, reader, Writer(), {});
    *layoutNames = store.GetLayouts().keys();
    return Summary(store);
}

const char *kValidProducts = "{\"features\":{\"feature\":[{\"id\":\"a\"}]}}";

} // namespace

// Inputs the definition folders may hold after merges by hand and other tools.
// Every case states what loading makes of it; nothing may crash, and whatever
// loads saves in a form that loads back to the same output.
class BadInputTest : public QObject
{
    Q_OBJECT

private slots:
    void productsFile_data();
    void productsFile();
    void layoutFile_data();
    void layoutFile();
    void wrongTypesReadAsDefaults();
    void hugeValuesSurviveSaving();
    void duplicateIdsEverywhere();
    void layoutEntriesThatAreNotFiles();
    void unreadableLayoutFile();
    void astralPlaneNames();
    void jsonModel_data();
    void jsonModel();
    void diffEngine_data();
    void diffEngine();

private:
    // Saves the store into `folder`'s hash and loads that output into a new store.
    static QHash<QString, QByteArray> SaveToMemory(VantixJsonData &store, MemoryFolder &folder);
};

QHash<QString, QByteArray> BadInputTest::SaveToMemory(VantixJsonData &store, MemoryFolder &folder)
{
    folder.written.clear();
    if (!store.SaveAs(folder.root()))
        return {};
    return folder.written;
}

void BadInputTest::productsFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("loads");
    QTest::addColumn<QString>("summary");

    const QString nothing = QStringLiteral("features 0, products 0, layouts 0, extensions 0");
    const QString oneFeature = QStringLiteral("features 1, products 0, layouts 1, extensions 0");
    const QString noRecords = QStringLiteral("features 0, products 0, layouts 1, extensions 0");
    QTest::newRow("empty file") << QByteArray() << false << nothing;
    QTest::newRow("only white space") << QByteArray(" \n\t") << false << nothing;
    QTest::newRow("byte-order mark before the object") << kBom + kValidProducts << true << oneFeature;
    QTest::newRow("byte-order mark only") << kBom << false << nothing;
    QTest::newRow("invalid UTF-8 in a string")
        << QByteArray("{\"features\":{\"feature\":[{\"id\":\"a\xC3\x28\"}]}}") << false << nothing;
    QTest::newRow("UTF-16 surrogate encoded as UTF-8")
        << QByteArray("{\"features\":{\"feature\":[{\"id\":\"\xED\xA0\x80\"}]}}") << false << nothing;
    QTest::newRow("truncated") << QByteArray(kValidProducts).left(30) << false << nothing;
    QTest::newRow("trailing garbage") << QByteArray(kValidProducts) + "}" << false << nothing;
    QTest::newRow("top-level array") << QByteArray("[{\"features\":{}}]") << false << nothing;
    QTest::newRow("top-level string") << QByteArray("\"products\"") << false << nothing;
    QTest::newRow("empty object") << QByteArray("{}") << false << nothing;
    QTest::newRow("nesting far past the parser's limit") << WithUnknownKey(Nested(100000)) << false << nothing;
    QTest::newRow("nesting just past the parser's limit") << WithUnknownKey(Nested(1024)) << false << nothing;
    QTest::newRow("nesting at the parser's limit is kept") << WithUnknownKey(Nested(1023)) << true << oneFeature;
    QTest::newRow("numbers where strings belong")
        << QByteArray("{\"features\":{\"feature\":[{\"id\":7,\"title\":8}]},"
                      "\"products\":{\"product\":[{\"id\":1,\"features\":[2,3],\"modes\":[4]}]}}")
        << true << QStringLiteral("features 1, products 1, layouts 1, extensions 0");
    QTest::newRow("strings where arrays and objects belong")
        << QByteArray("{\"extensions\":\"stl\",\"features\":{\"feature\":\"a\"},"
                      "\"products\":{\"product\":[{\"id\":\"p\",\"features\":\"a\",\"modes\":\"m\","
                      "\"licensing\":\"base\",\"extensions\":\"stl\"}]}}")
        << true << QStringLiteral("features 0, products 1, layouts 1, extensions 0");
    QTest::newRow("sections of the wrong type")
        << QByteArray("{\"extensions\":[1],\"features\":[{\"id\":\"a\"}],\"products\":5}") << true << noRecords;
    QTest::newRow("100,000 feature ids in a product")
        << "{\"products\":{\"product\":[{\"id\":\"p\",\"features\":" + ManyNamesArray(QStringLiteral("f")) + "}]}}"
        << true << QStringLiteral("features 100000, products 1, layouts 1, extensions 0");
    QTest::newRow("100,000 licenses of an extension")
        << "{\"extensions\":{\"lic_coveradge\":{\"import\":[{\"id\":\"stl\",\"lic\":"
               + ManyNamesArray(QStringLiteral("l")) + "}]}}}"
        << true << QStringLiteral("features 0, products 0, layouts 1, extensions 1");
}

void BadInputTest::productsFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, loads);
    QFETCH(QString, summary);

    MemoryFolder folder;
    folder.addFile(QStringLiteral("products/products.json"), bytes);
    folder.addFile(QStringLiteral("layouts/main.json"), "{\"layouts\":{\"main\":{}}}");
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    QCOMPARE(store.GetProductsOriginalJson().isEmpty(), !loads);
    if (!loads) {
        QCOMPARE(Summary(store), summary);
        QVERIFY(!store.Reload());
        return;
    }
    QCOMPARE(Summary(store), summary);

    const QHash<QString, QByteArray> first = SaveToMemory(store, folder);
    QVERIFY(!first.isEmpty());
    folder.files = first;
    VantixJsonData reloaded(folder.root(), folder.reader(), folder.writer(), {});
    QVERIFY(!reloaded.GetProductsOriginalJson().isEmpty());
    QCOMPARE(SaveToMemory(reloaded, folder), first);
}

void BadInputTest::layoutFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("layouts");

    const QStringList none;
    const QStringList print{QStringLiteral("print")};
    const QByteArray valid("{\"layouts\":{\"print\":{\"features\":[\"a\"]}}}");
    QTest::newRow("empty file") << QByteArray() << none;
    QTest::newRow("byte-order mark before the object") << kBom + valid << print;
    QTest::newRow("invalid UTF-8 in a name") << QByteArray("{\"layouts\":{\"pr\xFFint\":{}}}") << none;
    QTest::newRow("truncated") << valid.left(valid.size() - 3) << none;
    QTest::newRow("top-level array") << "[" + valid + "]" << none;
    QTest::newRow("empty object") << QByteArray("{}") << none;
    QTest::newRow("no layouts key") << QByteArray("{\"print\":{}}") << none;
    QTest::newRow("layouts is an array") << QByteArray("{\"layouts\":[\"print\"]}") << none;
    QTest::newRow("a layout that is a number") << QByteArray("{\"layouts\":{\"print\":5}}") << print;
    QTest::newRow("nesting far past the parser's limit")
        << "{\"layouts\":{\"print\":{\"x\":" + Nested(100000) + "}}}" << none;
    QTest::newRow("numbers where names belong")
        << QByteArray("{\"layouts\":{\"print\":{\"features\":[1,true,null],\"extensions\":{\"open\":[2]}}}}") << print;
}

void BadInputTest::layoutFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, layouts);

    MemoryFolder folder;
    folder.addFile(QStringLiteral("products/products.json"), kValidProducts);
    folder.addFile(QStringLiteral("layouts/broken.json"), bytes);
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    QVERIFY(!store.GetProductsOriginalJson().isEmpty());
    QCOMPARE(store.GetLayouts().keys(), layouts);

    const QHash<QString, QByteArray> first = SaveToMemory(store, folder);
    QVERIFY(!first.isEmpty());
    folder.files = first;
    VantixJsonData reloaded(folder.root(), folder.reader(), folder.writer(), {});
    QCOMPARE(reloaded.GetLayouts().keys(), layouts);
    QCOMPARE(SaveToMemory(reloaded, folder), first);
}

void BadInputTest::wrongTypesReadAsDefaults()
{
    MemoryFolder folder;
    folder.addFile(QStringLiteral("products/products.json"),
                   "{\"extensions\":{\"extension\":[{\"id\":\"stl\",\"cad_support\":\"true\",\"ext\":5,"
                   "\"title\":[\"STL\"]}]},"
                   "\"features\":{\"feature\":[{\"id\":\"a\",\"visual\":\"false\",\"emergency\":1,"
                   "\"title\":{\"en\":\"A\"},\"tooltip\":null}]},"
                   "\"products\":{\"product\":[{\"id\":\"p\",\"profile_suffix\":3,\"features\":[\"a\",7],"
                   "\"licensing\":{\"base\":false,\"specific\":[{\"id\":9,\"licenses\":[\"l\",10]}]},"
                   "\"extensions\":{\"open\":[\"stl\",11],\"export\":\"stl\"}}]}}");
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});

    const ExtensionInfo stl = store.GetExtensions().value(QStringLiteral("stl"));
    QCOMPARE(stl.cad_support, false);
    QCOMPARE(stl.ext, QString());
    QCOMPARE(stl.title, QString());

    const VantixFeatureData a = store.GetFeatures().value(QStringLiteral("a"));
    QCOMPARE(a.visual, true);
    QCOMPARE(a.emergency, false);
    QCOMPARE(a.title, QString());
    QCOMPARE(a.tooltip, QString());
    // The number in the product's list is the empty name, and so a feature.
    QCOMPARE(store.GetFeatures().keys(), (QStringList{QString(), QStringLiteral("a")}));
    QCOMPARE(store.GetFeatures().value(QString()).productIds, QSet<QString>{QStringLiteral("p")});

    const ProductData product = store.GetProducts().products.value(0);
    QCOMPARE(product.profile_suffix, QString());
    QCOMPARE(product.base, QString());
    QCOMPARE(product.specificLicenses.value(QString()), (QSet<QString>{QStringLiteral("l"), QString()}));
    QCOMPARE(product.extensions.open, (QSet<QString>{QStringLiteral("stl"), QString()}));
    QVERIFY(product.extensions.export_.isEmpty());
}

void BadInputTest::hugeValuesSurviveSaving()
{
    const QString huge(kTenMegabytes, QLatin1Char('x'));
    QJsonObject products{
        {QStringLiteral("features"),
         QJsonObject{{QStringLiteral("feature"),
                      QJsonArray{QJsonObject{{QStringLiteral("id"), huge}, {QStringLiteral("title"), huge}}}}}}};
    MemoryFolder folder;
    folder.addFile(QStringLiteral("products/products.json"), QJsonDocument(products).toJson());
    folder.addFile(QStringLiteral("layouts/l.json"),
                   "{\"layouts\":{\"l\":{\"features\":" + ManyNamesArray(QStringLiteral("g")) + "}}}");
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    QCOMPARE(store.GetFeatures().size(), kManyNames + 1);
    QCOMPARE(store.GetFeatures().value(huge).title.size(), kTenMegabytes);

    const QHash<QString, QByteArray> written = SaveToMemory(store, folder);
    const QJsonObject saved =
        QJsonDocument::fromJson(written.value(folder.path(QStringLiteral("products/products.json")))).object();
    const QJsonArray features = saved.value(QStringLiteral("features")).toObject().value(QStringLiteral("feature")).toArray();
    QCOMPARE(features.size(), kManyNames + 1);
    QCOMPARE(features.last().toObject().value(QStringLiteral("title")).toString().size(), kTenMegabytes);
    const QJsonObject layout = QJsonDocument::fromJson(written.value(folder.path(QStringLiteral("layouts/l.json"))))
                                   .object().value(QStringLiteral("layouts")).toObject().value(QStringLiteral("l")).toObject();
    const QJsonArray layoutFeatures = layout.value(QStringLiteral("features")).toArray();
    QCOMPARE(layoutFeatures.size(), kManyNames);
    // Sorted as strings: "g10" comes before "g2".
    QCOMPARE(layoutFeatures.at(1).toString(), QStringLiteral("g1"));
    QCOMPARE(layoutFeatures.at(2).toString(), QStringLiteral("g10"));
}

void BadInputTest::duplicateIdsEverywhere()
{
    MemoryFolder folder;
    folder.addFile(QStringLiteral("products/products.json"),
                   "{\"extensions\":{\"extension\":[{\"id\":\"stl\",\"title\":\"first\"},{\"id\":\"stl\",\"title\":\"second\"}],"
                   "\"lic_coveradge\":{\"import\":[{\"id\":\"stl\",\"lic\":[\"a\"]},{\"id\":\"stl\",\"lic\":[\"b\",\"a\"]}]}},"
                   "\"features\":{\"feature\":[{\"id\":\"f\",\"title\":\"first\"},{\"id\":\"f\",\"tooltip\":\"second\"}]},"
                   "\"products\":{\"product\":["
                   "{\"id\":\"p\",\"features\":[\"f\",\"f\"],\"modes\":[\"m\",\"m\"],"
                   "\"licensing\":{\"specific\":[{\"id\":\"s\",\"licenses\":[\"x\"]},{\"id\":\"s\",\"licenses\":[\"y\"]}]}},"
                   "{\"id\":\"p\",\"features\":[\"g\"]}]}}");
    folder.addFile(QStringLiteral("layouts/1.json"), "{\"layouts\":{\"l\":{\"features\":[\"f\"]}}}");
    folder.addFile(QStringLiteral("layouts/2.json"), "{\"layouts\":{\"l\":{\"features\":[\"g\",\"g\"]}}}");
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});

    QCOMPARE(store.GetExtensions().size(), 1);
    QCOMPARE(store.GetExtensions().value(QStringLiteral("stl")).title, QStringLiteral("second"));
    QCOMPARE(store.GetExtensions().value(QStringLiteral("stl")).importLicenses,
             (QSet<QString>{QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(store.GetFeatures().value(QStringLiteral("f")).title, QString());
    QCOMPARE(store.GetFeatures().value(QStringLiteral("f")).tooltip, QStringLiteral("second"));
    QCOMPARE(store.GetFeatures().value(QStringLiteral("f")).productIds, QSet<QString>{QStringLiteral("p")});
    QCOMPARE(store.GetProducts().products.size(), 2);
    QCOMPARE(store.GetProducts().products.at(0).specificLicenses.value(QStringLiteral("s")),
             (QSet<QString>{QStringLiteral("x"), QStringLiteral("y")}));
    QCOMPARE(store.GetLayouts().keys(), QStringList{QStringLiteral("l")});
    QCOMPARE(store.GetLayoutFiles().size(), 2);

    // Both products of the same id list every feature of that id; both files get the one layout.
    const QHash<QString, QByteArray> written = SaveToMemory(store, folder);
    const QJsonArray products = QJsonDocument::fromJson(written.value(folder.path(QStringLiteral("products/products.json"))))
                                    .object().value(QStringLiteral("products")).toObject().value(QStringLiteral("product")).toArray();
    QCOMPARE(products.size(), 2);
    const QJsonArray both{QStringLiteral("f"), QStringLiteral("g")};
    QCOMPARE(products.at(0).toObject().value(QStringLiteral("features")).toArray(), both);
    QCOMPARE(products.at(1).toObject().value(QStringLiteral("features")).toArray(), both);
    QCOMPARE(written.value(folder.path(QStringLiteral("layouts/1.json"))),
             written.value(folder.path(QStringLiteral("layouts/2.json"))));
}

void BadInputTest::layoutEntriesThatAreNotFiles()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QDir root(dir.path());
    QVERIFY(root.mkpath(QStringLiteral("products")));
    QVERIFY(root.mkpath(QStringLiteral("layouts/folder.json")));
    QVERIFY(root.mkpath(QStringLiteral("elsewhere/inner")));
    const auto write = [&root](const QString &relative, const QByteArray &bytes) {
        QFile file(root.filePath(relative));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(write(QStringLiteral("products/products.json"), kValidProducts));
    QVERIFY(write(QStringLiteral("layouts/folder.json/inside.json"), "{\"layouts\":{\"inside\":{}}}"));
    QVERIFY(write(QStringLiteral("layouts/plain.json"), "{\"layouts\":{\"plain\":{}}}"));
    QVERIFY(write(QStringLiteral("elsewhere/target.json"), "{\"layouts\":{\"linked\":{}}}"));
    QVERIFY(write(QStringLiteral("elsewhere/inner/deep.json"), "{\"layouts\":{\"deep\":{}}}"));
    QVERIFY(QFile::link(root.filePath(QStringLiteral("elsewhere/target.json")),
                        root.filePath(QStringLiteral("layouts/link.json"))));
    QVERIFY(QFile::link(root.filePath(QStringLiteral("elsewhere/missing.json")),
                        root.filePath(QStringLiteral("layouts/dangling.json"))));
    QVERIFY(QFile::link(root.filePath(QStringLiteral("elsewhere/inner")),
                        root.filePath(QStringLiteral("layouts/folderlink.json"))));
    QVERIFY(QFile::link(root.filePath(QStringLiteral("layouts")),
                        root.filePath(QStringLiteral("layouts/loop.json"))));

    // A link to a file is read as that file; folders, links to folders and dangling links are passed over.
    QStringList layouts;
    QCOMPARE(DiskFolderSummary(dir.path(), &layouts), QStringLiteral("features 1, products 0, layouts 2, extensions 0"));
    QCOMPARE(layouts, (QStringList{QStringLiteral("linked"), QStringLiteral("plain")}));
}

void BadInputTest::unreadableLayoutFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QDir root(dir.path());
    QVERIFY(root.mkpath(QStringLiteral("products")));
    QVERIFY(root.mkpath(QStringLiteral("layouts")));
    const auto write = [&root](const QString &relative, const QByteArray &bytes) {
        QFile file(root.filePath(relative));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(write(QStringLiteral("products/products.json"), kValidProducts));
    QVERIFY(write(QStringLiteral("layouts/locked.json"), "{\"layouts\":{\"locked\":{}}}"));
    QVERIFY(write(QStringLiteral("layouts/open.json"), "{\"layouts\":{\"open\":{}}}"));
    QFile locked(root.filePath(QStringLiteral("layouts/locked.json")));
    QVERIFY(locked.setPermissions(QFileDevice::WriteOwner));
    if (locked.open(QIODevice::ReadOnly)) {
        QTest::qSkip("Permissions do not stop this user from reading (running as root)", __FILE__, __LINE__);
        return;
    }

    QStringList layouts;
    QCOMPARE(DiskFolderSummary(dir.path(), &layouts), QStringLiteral("features 1, products 0, layouts 1, extensions 0"));
    QCOMPARE(layouts, QStringList{QStringLiteral("open")});
}

void BadInputTest::astralPlaneNames()
{
    // U+FFFD sorts after the astral character in UTF-16 although its code point is smaller.
    const QString replacement(QChar(0xFFFD));
    const QString layoutFile = kAstral + QStringLiteral(".json");
    MemoryFolder folder;
    folder.addFile(QStringLiteral("products/products.json"),
                   QStringLiteral("{\"features\":{\"feature\":[{\"id\":\"%1\",\"title\":\"%2 %2\"},{\"id\":\"\\ud83d\\ude01\"},"
                                  "{\"id\":\"a\"}]},\"products\":{\"product\":[{\"id\":\"%2\",\"features\":[\"%2\",\"%1\",\"a\"]}]}}")
                       .arg(replacement, kAstral)
                       .toUtf8());
    folder.addFile(QStringLiteral("layouts/") + layoutFile,
                   QStringLiteral("{\"layouts\":{\"%1\":{\"features\":[\"%1\"]}}}").arg(kAstral).toUtf8());
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});

    const QString escaped = QString::fromUtf8("\xF0\x9F\x98\x81");
    QCOMPARE(store.GetFeatures().keys(), (QStringList{QStringLiteral("a"), kAstral, escaped, replacement}));
    QCOMPARE(store.GetFeatures().value(kAstral).productIds, QSet<QString>{kAstral});
    QCOMPARE(store.GetFeatures().value(kAstral).layoutNames, QSet<QString>{kAstral});
    QCOMPARE(store.GetLayouts().keys(), QStringList{kAstral});

    const QHash<QString, QByteArray> written = SaveToMemory(store, folder);
    QVERIFY(written.contains(folder.path(QStringLiteral("layouts/") + layoutFile)));
    const QByteArray products = written.value(folder.path(QStringLiteral("products/products.json")));
    QVERIFY(products.contains("\xF0\x9F\x98\x80 \xF0\x9F\x98\x80"));
    const QJsonArray productFeatures = QJsonDocument::fromJson(products).object().value(QStringLiteral("products"))
                                           .toObject().value(QStringLiteral("product")).toArray()
                                           .at(0).toObject().value(QStringLiteral("features")).toArray();
    QCOMPARE(productFeatures, (QJsonArray{QStringLiteral("a"), kAstral, replacement}));
}

void BadInputTest::jsonModel_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("loads");
    QTest::addColumn<int>("rows");

    QTest::newRow("empty") << QByteArray() << false << 0;
    QTest::newRow("byte-order mark before the object") << kBom + "{\"a\":1}" << true << 1;
    QTest::newRow("invalid UTF-8") << QByteArray("{\"a\":\"\xC0\xAF\"}") << false << 0;
    QTest::newRow("truncated") << QByteArray("{\"a\":[1,2") << false << 0;
    QTest::newRow("top-level array") << QByteArray("[1,\"x\",{}]") << true << 3;
    QTest::newRow("nesting far past the parser's limit") << Nested(100000) << false << 0;
    QTest::newRow("nesting at the parser's limit") << Nested(1024) << true << 1;
    QTest::newRow("10 MB string")
        << "{\"s\":\"" + QByteArray(kTenMegabytes, 'x') + "\"}" << true << 1;
    QTest::newRow("100,000-element array") << ManyNamesArray(QStringLiteral("n")) << true << kManyNames;
    QTest::newRow("astral-plane key") << QStringLiteral("{\"%1\":\"%1\"}").arg(kAstral).toUtf8() << true << 1;
}

void BadInputTest::jsonModel()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, loads);
    QFETCH(int, rows);

    QSmartJsonModel model(QByteArray("{\"before\":true}"));
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QJsonDocument before = model.json();
    QCOMPARE(model.loadJson(bytes), loads);
    if (!loads) {
        QCOMPARE(model.json(), before);
        return;
    }
    QCOMPARE(model.rowCount(), rows);
    // Every scalar comes back as its text, so a second round trip is exact.
    const QJsonDocument serialised = model.json();
    QSmartJsonModel again(serialised.toJson(QJsonDocument::Compact));
    QCOMPARE(again.json(), serialised);
}

void BadInputTest::diffEngine_data()
{
    QTest::addColumn<QByteArray>("left");
    QTest::addColumn<QByteArray>("right");
    QTest::addColumn<QString>("topLevel"); // key:diff type of each top-level node

    QTest::newRow("nesting at the parser's limit")
        << NestedObjects(1024, "1") << NestedObjects(1024, "2") << QStringLiteral("d:1");
    QTest::newRow("10 MB strings that differ at the end")
        << "{\"s\":\"" + QByteArray(kTenMegabytes, 'x') + "a\"}" << "{\"s\":\"" + QByteArray(kTenMegabytes, 'x') + "b\"}"
        << QStringLiteral("s:1");
    QTest::newRow("100,000-element arrays, one name differs")
        << "{\"n\":" + ManyNamesArray(QStringLiteral("n")) + "}"
        << "{\"n\":" + ManyNamesArray(QStringLiteral("n")).replace("\"n99999\"", "\"other\"") + "}"
        << QStringLiteral("n:1");
    QTest::newRow("duplicate ids on the left")
        << QByteArray("{\"a\":[{\"id\":\"x\",\"v\":1},{\"id\":\"x\",\"v\":2}]}")
        << QByteArray("{\"a\":[{\"id\":\"x\",\"v\":1}]}") << QStringLiteral("a:1");
    QTest::newRow("numbers where strings belong")
        << QByteArray("{\"x\":5,\"a\":\"1\"}") << QByteArray("{\"x\":\"5\",\"a\":1}") << QStringLiteral("a:1,x:1");
    QTest::newRow("astral-plane keys")
        << QStringLiteral("{\"%1\":1}").arg(kAstral).toUtf8() << QByteArray("{\"\\ud83d\\ude01\":1}")
        << kAstral + QStringLiteral(":4,") + QString::fromUtf8("\xF0\x9F\x98\x81") + QStringLiteral(":8");
}

void BadInputTest::diffEngine()
{
    QFETCH(QByteArray, left);
    QFETCH(QByteArray, right);
    QFETCH(QString, topLevel);

    const QJsonObject leftObject = QJsonDocument::fromJson(left).object();
    const QJsonObject rightObject = QJsonDocument::fromJson(right).object();
    QVERIFY(!leftObject.isEmpty());
    QVERIFY(!rightObject.isEmpty());

    VantixFeaturesDiffModel model;
    QVERIFY(model.Regenerate(leftObject, rightObject));
    QStringList nodes;
    for (int i = 0; i < model.GetRoot()->childCount(); ++i) {
        const auto *node = static_cast<const QJsonDiffTreeItem *>(model.GetRoot()->child(i));
        nodes << node->key() + QLatin1Char(':') + QString::number(node->diffType());
    }
    QCOMPARE(nodes.join(QLatin1Char(',')), topLevel);

    QJsonObject patched = leftObject;
    model.ApplyPatch(patched);
    if (QTest::currentDataTag() == QByteArray("duplicate ids on the left")) {
        // The second element's difference is matched by id, so it lands on the first element too.
        QCOMPARE(QJsonDocument(patched).toJson(QJsonDocument::Compact),
                 QByteArray("{\"a\":[{\"id\":\"x\",\"v\":2},{\"id\":\"x\",\"v\":2}]}"));
        return;
    }
    QCOMPARE(patched, leftObject);
}

QTEST_GUILESS_MAIN(BadInputTest)
#include "BadInputTest.moc"
