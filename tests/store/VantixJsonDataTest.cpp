#include "MemoryFolder.h"
#include "store/VantixJsonData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace ProductEditor;

namespace {

QByteArray Json(const char *text)
{
    return QByteArray(text);
}

QJsonObject Object(const QByteArray &bytes)
{
    return QJsonDocument::fromJson(bytes).object();
}

QStringList Sorted(const QSet<QString> &set)
{
    QStringList list(set.cbegin(), set.cend());
    list.sort();
    return list;
}

const char *kProducts = R"({
  "top": {"kept": true},
  "extensions": {
    "extension": [
      {"id": "stl", "title": "STL", "ext": ".stl", "cad_support": "yes", "load_as_part": true, "junk": 1},
      {"id": "obj", "title": "OBJ", "ext": ".obj", "slices_support": true}
    ],
    "lic_coveradge": {
      "export": [{"id": "stl", "lic": ["B", "A"]}, {"id": "only_in_coverage", "lic": ["C"]}],
      "import": [{"id": "obj", "lic": ["A"]}],
      "note": "kept"
    },
    "other": "kept"
  },
  "features": {
    "feature": [
      {"id": "open", "title": "Open", "tooltip": "Opens", "statustip": "", "visual": true, "extra": 1},
      {"id": "save", "title": 5, "visual": false, "emergency": true},
      {"id": "open", "title": "Open again"}
    ],
    "kept": [1]
  },
  "products": {
    "product": [
      {"id": "pro", "profile_suffix": "_pro", "extra": 1,
       "licensing": {"base": "Base", "specific": [{"id": "open", "licenses": ["S2", "S1"]}, {"id": "open", "licenses": ["S3"]}]},
       "modes": ["design", "print"],
       "extensions": {"import": ["stl", "obj"], "open": ["stl"]},
       "features": ["save", "open", "open", "ghost"]},
      {"id": "lite", "licensing": {"base": "Lite"}, "features": ["open", 7]}
    ],
    "dropped": true
  }
})";

const char *kLayoutsA = R"({"layouts": {
  "design": {"extensions": {"export": ["stl"]}, "features": ["open"], "extra": 1},
  "print": {"features": ["save", "open"]}
}})";

const char *kLayoutsB = R"({"layouts": {"view": {"features": []}}})";

} // namespace

class VantixJsonDataTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void refusesFolders_data();
    void refusesFolders();
    void loadWithoutProductsFolderLooksInTheFolderItself();
    void loadsRecordsWithDefaults();
    void unreadableLayoutFilesAreSkipped();
    void reloadMergesExtensionsAndGrowsLayoutFiles();

    void generationKeepsOnlyWhatTheEditorDoesNotModel();
    void generationIsCanonicalAndAFixedPoint();
    void generationFollowsRecordEdits();

    void saveAsIntoEmptyFolderCreatesBothFolders();
    void saveAsOverAPlainProductsFileStillWrites();
    void saveAsReportsAFolderItCannotCreate();
    void saveWritesToTheLoadedFolder();
    void saveWithoutLoadedFolderWritesNothing();

    void duplicateFeature();
    void duplicateProduct();
    void removeExtension();
    void removeProduct();
    void productSettersAndBasicLicense();

private:
    VantixJsonData &load();

    std::unique_ptr<MemoryFolder> m_folder;
    std::unique_ptr<VantixJsonData> m_store;
};

void VantixJsonDataTest::init()
{
    m_store.reset();
    m_folder = std::make_unique<MemoryFolder>();
    m_folder->addFile("products/products.json", Json(kProducts));
    m_folder->addFile("layouts/a.json", Json(kLayoutsA));
    m_folder->addFile("layouts/b.json", Json(kLayoutsB));
}

VantixJsonData &VantixJsonDataTest::load()
{
    m_store = std::make_unique<VantixJsonData>(m_folder->root(), m_folder->reader(), m_folder->writer(),
                                               QMap<QString, QString>{{"Base", "Base license"}});
    return *m_store;
}

void VantixJsonDataTest::refusesFolders_data()
{
    QTest::addColumn<QString>("productsFolder");
    QTest::addColumn<QByteArray>("productsJson");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("valid") << "products" << Json(R"({"features": {}})") << true;
    QTest::newRow("no products folder") << "" << QByteArray() << false;
    QTest::newRow("products folder without products.json") << "products-folder-only" << QByteArray() << false;
    QTest::newRow("empty object") << "products" << Json("{}") << false;
    QTest::newRow("top-level array") << "products" << Json(R"([{"a": 1}])") << false;
    QTest::newRow("not json") << "products" << Json("{\"a\": ") << false;
    QTest::newRow("empty file") << "products" << QByteArray() << false;
}

void VantixJsonDataTest::refusesFolders()
{
    QFETCH(QString, productsFolder);
    QFETCH(QByteArray, productsJson);
    QFETCH(bool, accepted);

    MemoryFolder folder;
    if (productsFolder == "products")
        folder.addFile("products/products.json", productsJson);
    else if (!productsFolder.isEmpty())
        folder.addFolder("products");

    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    QCOMPARE(!store.GetProductsOriginalJson().isEmpty(), accepted);
    QCOMPARE(store.Reload(), accepted);
    if (!accepted) {
        QVERIFY(store.GetFeatures().isEmpty());
        QVERIFY(!store.Save());
        QVERIFY(folder.written.isEmpty());
    }

    VantixJsonData missing(folder.path("nowhere"), folder.reader(), folder.writer(), {});
    QVERIFY(missing.GetProductsOriginalJson().isEmpty());
}

void VantixJsonDataTest::loadWithoutProductsFolderLooksInTheFolderItself()
{
    MemoryFolder folder;
    folder.addFile("products.json", Json(R"({"features": {"feature": [{"id": "f"}]}})"));
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    QVERIFY(store.GetFeatures().isEmpty()); // Init still asks for the "products" folder
    QVERIFY(store.Load(folder.root()));
    QCOMPARE(store.GetFeatures().keys(), QStringList{"f"});
}

void VantixJsonDataTest::loadsRecordsWithDefaults()
{
    VantixJsonData &store = load();

    QCOMPARE(store.GetLicenses().value("Base"), QString("Base license"));

    const auto &features = store.GetFeatures();
    QCOMPARE(features.keys(), QStringList({"", "ghost", "open", "save"}));
    // The later entry of a repeated id wins.
    QCOMPARE(features["open"].title, QString("Open again"));
    QCOMPARE(features["open"].tooltip, QString());
    QVERIFY(features["open"].visual);
    QCOMPARE(features["save"].title, QString()); // a number where a string belongs
    QVERIFY(!features["save"].visual);
    QVERIFY(features["save"].emergency);
    QCOMPARE(Sorted(features["open"].productIds), QStringList({"lite", "pro"}));
    QCOMPARE(Sorted(features["open"].layoutNames), QStringList({"design", "print"}));
    QCOMPARE(Sorted(features["ghost"].productIds), QStringList({"pro"}));
    QCOMPARE(Sorted(features[""].productIds), QStringList({"lite"})); // a non-string name reads as ""

    const auto &products = store.GetProducts().products;
    QCOMPARE(products.size(), 2);
    QCOMPARE(products[0].id, QString("pro"));
    QCOMPARE(products[0].base, QString("Base"));
    QCOMPARE(products[0].profile_suffix, QString("_pro"));
    QCOMPARE(Sorted(products[0].specificLicenses.value("open")), QStringList({"S1", "S2", "S3"}));
    QCOMPARE(Sorted(products[0].modes), QStringList({"design", "print"}));
    QCOMPARE(Sorted(products[0].extensions.import), QStringList({"obj", "stl"}));
    QCOMPARE(Sorted(products[0].extensions.open), QStringList({"stl"}));
    QVERIFY(products[0].extensions.export_.isEmpty());
    QCOMPARE(products[1].profile_suffix, QString());
    QVERIFY(products[1].specificLicenses.isEmpty());

    const auto &extensions = store.GetExtensions();
    QCOMPARE(extensions.keys(), QStringList({"obj", "only_in_coverage", "stl"}));
    QVERIFY(!extensions["stl"].cad_support); // "yes" is not a boolean
    QVERIFY(extensions["stl"].load_as_part);
    QCOMPARE(Sorted(extensions["stl"].exportLicenses), QStringList({"A", "B"}));
    QCOMPARE(Sorted(extensions["obj"].importLicenses), QStringList({"A"}));
    QVERIFY(extensions["obj"].slices_support);
    QCOMPARE(extensions["only_in_coverage"].title, QString());

    QCOMPARE(store.GetLayouts().keys(), QStringList({"design", "print", "view"}));
    QCOMPARE(Sorted(store.GetLayouts()["design"].export_), QStringList({"stl"}));
    QCOMPARE(store.GetLayoutsOriginalJsons().value("design").value("extra").toInt(), 1);
    QCOMPARE(store.GetProductsResultJson(), store.GetProductsOriginalJson());
}

void VantixJsonDataTest::unreadableLayoutFilesAreSkipped()
{
    m_folder->addFile("layouts/broken.json", Json("{\"layouts\": "));
    m_folder->addFile("layouts/empty.json", Json("{}"));
    m_folder->addFile("layouts/nolayouts.json", Json(R"({"other": {"x": {}}})"));
    QDir().mkpath(m_folder->path("layouts/subfolder"));

    VantixJsonData &store = load();
    QCOMPARE(store.GetLayouts().keys(), QStringList({"design", "print", "view"}));
    const auto files = store.GetLayoutFiles();
    QVERIFY(!files.contains(m_folder->path("layouts/broken.json")));
    QVERIFY(!files.contains(m_folder->path("layouts/empty.json")));
    QVERIFY(!files.contains(m_folder->path("layouts/nolayouts.json"))); // nothing to write back
    QCOMPARE(files.value(m_folder->path("layouts/a.json")), QStringList({"design", "print"}));
}

void VantixJsonDataTest::reloadMergesExtensionsAndGrowsLayoutFiles()
{
    VantixJsonData &store = load();
    QSignalSpy aboutToReset(&store, &VantixJsonData::featuresDataAboutToBeReset);
    QSignalSpy reset(&store, &VantixJsonData::featuresDataReseted);
    QVERIFY(aboutToReset.isValid() && reset.isValid());

    store.GetFeatures()["open"].title = "edited";
    m_folder->files[m_folder->path("products/products.json")] = Json(R"({
      "extensions": {"extension": [{"id": "stl", "title": "STL 2"}]},
      "features": {"feature": [{"id": "open"}]}})");
    m_folder->files[m_folder->path("layouts/a.json")] = Json(R"({"layouts": {"print": {}}})");

    QVERIFY(store.Reload());
    QCOMPARE(aboutToReset.count(), 1);
    QCOMPARE(reset.count(), 1);

    QCOMPARE(store.GetFeatures()["open"].title, QString());
    // Extensions merge: a vanished extension keeps its record; a reread one loses its coverage.
    QCOMPARE(store.GetExtensions().keys(), QStringList({"obj", "only_in_coverage", "stl"}));
    QCOMPARE(store.GetExtensions()["stl"].title, QString("STL 2"));
    QVERIFY(store.GetExtensions()["stl"].exportLicenses.isEmpty());
    QCOMPARE(Sorted(store.GetExtensions()["obj"].importLicenses), QStringList({"A"}));
    // Layouts read before stay among the originals, and each file lists its names again.
    QCOMPARE(store.GetLayoutsOriginalJsons().keys(), QStringList({"design", "print", "view"}));
    QCOMPARE(store.GetLayoutFiles().value(m_folder->path("layouts/a.json")),
             QStringList({"design", "print", "print"}));
    QCOMPARE(store.GetProducts().products.size(), 0);
}

void VantixJsonDataTest::generationKeepsOnlyWhatTheEditorDoesNotModel()
{
    VantixJsonData &store = load();
    store.UpdateResultJsons();
    const QJsonObject result = store.GetProductsResultJson();

    QCOMPARE(result.value("top").toObject().value("kept").toBool(), true);
    const QJsonObject extensions = result.value("extensions").toObject();
    QCOMPARE(extensions.value("other").toString(), QString("kept"));
    QCOMPARE(extensions.value("lic_coveradge").toObject().value("note").toString(), QString("kept"));
    QCOMPARE(result.value("features").toObject().value("kept").toArray(), QJsonArray({1}));
    QCOMPARE(result.value("products").toObject().keys(), QStringList({"product"}));

    const QJsonObject stl = extensions.value("extension").toArray().at(2).toObject();
    QCOMPARE(stl.keys(), QStringList({"cad_support", "ext", "id", "load_as_part", "multiple_parts_support",
                                      "slices_support", "title"}));
    const QJsonArray exportCoverage = extensions.value("lic_coveradge").toObject().value("export").toArray();
    QCOMPARE(exportCoverage.size(), 2);
    QCOMPARE(exportCoverage.at(0).toObject().value("id").toString(), QString("only_in_coverage"));
    QCOMPARE(exportCoverage.at(1).toObject().value("lic").toArray(), QJsonArray({"A", "B"}));

    const QJsonArray features = result.value("features").toObject().value("feature").toArray();
    QCOMPARE(features.at(1).toObject(), Object(R"({"id": "ghost"})"));
    QCOMPARE(features.at(2).toObject(), Object(R"({"id": "open", "title": "Open again"})"));
    QCOMPARE(features.at(3).toObject(), Object(R"({"id": "save", "visual": false, "emergency": true})"));

    const QJsonArray products = result.value("products").toObject().value("product").toArray();
    QCOMPARE(products.at(0).toObject(), Object(R"({
      "id": "pro", "profile_suffix": "_pro", "modes": ["design", "print"],
      "licensing": {"base": "Base", "specific": [{"id": "open", "licenses": ["S1", "S2", "S3"]}]},
      "extensions": {"export": [], "export_as_project": [], "import": ["obj", "stl"], "import_as_project": [],
                     "export_as_scene": [], "open": ["stl"]},
      "features": ["ghost", "open", "save"]})"));
    QCOMPARE(products.at(1).toObject().value("licensing").toObject().value("specific").toArray(), QJsonArray());

    QCOMPARE(store.GetLayoutsResultJsons().value("design"), Object(R"({
      "extensions": {"export": ["stl"], "export_as_project": [], "import": [], "import_as_project": [],
                     "export_as_scene": [], "open": []},
      "features": ["open"]})"));
    QCOMPARE(store.GetLayoutsResultJsons().value("view").value("features").toArray(), QJsonArray());
}

void VantixJsonDataTest::generationIsCanonicalAndAFixedPoint()
{
    VantixJsonData &store = load();
    QVERIFY(store.SaveAs(m_folder->root()));
    QCOMPARE(m_folder->written.size(), 3);

    MemoryFolder second;
    for (auto it = m_folder->written.cbegin(); it != m_folder->written.cend(); ++it)
        second.addFile(QDir(m_folder->root()).relativeFilePath(it.key()), it.value());
    VantixJsonData reread(second.root(), second.reader(), second.writer(), {});
    QVERIFY(reread.SaveAs(second.root()));
    for (auto it = second.written.cbegin(); it != second.written.cend(); ++it)
        QCOMPARE(it.value(), second.files.value(it.key()));

    const QByteArray products = second.written.value(second.path("products/products.json"));
    QVERIFY(products.startsWith("{\n    \"extensions\": {\n"));
}

void VantixJsonDataTest::generationFollowsRecordEdits()
{
    VantixJsonData &store = load();
    store.GetFeatures()["open"].productIds.clear();
    store.GetFeatures()["open"].title.clear();
    store.GetFeatures()["save"].visual = true;
    store.GetExtensions()["stl"].exportLicenses.clear();
    store.GetLayouts().remove("view");
    store.UpdateResultJsons();

    const QJsonObject result = store.GetProductsResultJson();
    const QJsonArray products = result.value("products").toObject().value("product").toArray();
    QCOMPARE(products.at(0).toObject().value("features").toArray(), QJsonArray({"ghost", "save"}));
    QCOMPARE(products.at(1).toObject().value("features").toArray(), QJsonArray({""}));
    const QJsonArray features = result.value("features").toObject().value("feature").toArray();
    QCOMPARE(features.at(2).toObject(), Object(R"({"id": "open"})"));
    QCOMPARE(features.at(3).toObject(), Object(R"({"id": "save", "emergency": true})"));
    QCOMPARE(result.value("extensions").toObject().value("lic_coveradge").toObject().value("export").toArray().size(), 1);
    // A layout that left the records keeps its last result object.
    QVERIFY(store.GetLayoutsResultJsons().contains("view"));
}

void VantixJsonDataTest::saveAsIntoEmptyFolderCreatesBothFolders()
{
    VantixJsonData &store = load();
    MemoryFolder target;
    QVERIFY(store.SaveAs(target.root()));
    QVERIFY(QFileInfo(target.path("products")).isDir());
    QVERIFY(QFileInfo(target.path("layouts")).isDir());
    QStringList written = m_folder->written.keys();
    written.sort();
    QCOMPARE(written, QStringList({target.path("layouts/a.json"), target.path("layouts/b.json"),
                                   target.path("products/products.json")}));
    const QJsonObject a = Object(m_folder->written.value(target.path("layouts/a.json")));
    QCOMPARE(a.value("layouts").toObject().keys(), QStringList({"design", "print"}));
    // The store keeps its own folder.
    QCOMPARE(store.GetFolder().absolutePath(), QDir(m_folder->root()).absolutePath());
}

void VantixJsonDataTest::saveAsOverAPlainProductsFileStillWrites()
{
    VantixJsonData &store = load();
    MemoryFolder target;
    target.addFile("products", "not a folder");
    QVERIFY(store.SaveAs(target.root()));
    QVERIFY(m_folder->written.contains(target.path("products/products.json")));
}

void VantixJsonDataTest::saveAsReportsAFolderItCannotCreate()
{
    VantixJsonData &store = load();
    MemoryFolder target;
    target.addFile("file", "x");
    QTest::ignoreMessage(QtWarningMsg, "Couldn't create Products folder.");
    QVERIFY(!store.SaveAs(target.path("file")));

    // The layouts folder gets the same message.
    target.addFolder("root/products");
    QVERIFY(QFile::link(target.path("missing-target"), target.path("root/layouts")));
    QTest::ignoreMessage(QtWarningMsg, "Couldn't create Products folder.");
    QVERIFY(!store.SaveAs(target.path("root")));
    QVERIFY(m_folder->written.isEmpty());
}

void VantixJsonDataTest::saveWritesToTheLoadedFolder()
{
    VantixJsonData &store = load();
    QVERIFY(store.Save());
    QVERIFY(m_folder->written.contains(m_folder->path("products/products.json")));
    QVERIFY(m_folder->written.contains(m_folder->path("layouts/b.json")));
}

void VantixJsonDataTest::saveWithoutLoadedFolderWritesNothing()
{
    MemoryFolder empty;
    VantixJsonData store(empty.path("nowhere"), empty.reader(), empty.writer(), {});
    QVERIFY(!store.Save());
    QVERIFY(!store.Reload());
    QVERIFY(empty.written.isEmpty());
}

void VantixJsonDataTest::duplicateFeature()
{
    VantixJsonData &store = load();
    QSignalSpy aboutToReset(&store, &VantixJsonData::featuresDataAboutToBeReset);
    QSignalSpy reset(&store, &VantixJsonData::featuresDataReseted);

    QVERIFY(!store.DuplicateFeatureFrom("open", "save"));
    QVERIFY(!store.DuplicateFeatureFrom("open", "open"));
    QVERIFY(!store.DuplicateFeatureFrom("missing", "new"));
    QCOMPARE(aboutToReset.count(), 0);

    QVERIFY(store.DuplicateFeatureFrom("open", "open2"));
    QCOMPARE(aboutToReset.count(), 1);
    QCOMPARE(reset.count(), 1);
    const VantixFeatureData &copy = store.GetFeatures()["open2"];
    QCOMPARE(copy.title, QString("Open again"));
    QCOMPARE(Sorted(copy.productIds), QStringList({"lite", "pro"}));
    QCOMPARE(Sorted(copy.layoutNames), QStringList({"design", "print"}));
}

void VantixJsonDataTest::duplicateProduct()
{
    VantixJsonData &store = load();
    QSignalSpy aboutToUpdate(&store, &VantixJsonData::productsDataAboutToBeUpdate);
    QSignalSpy updated(&store, &VantixJsonData::productsDataUpdated);

    QVERIFY(!store.DuplicateProductFrom("pro", "lite"));
    QVERIFY(!store.DuplicateProductFrom("missing", "new"));
    QCOMPARE(aboutToUpdate.count(), 0);

    QVERIFY(store.DuplicateProductFrom("pro", "pro2"));
    QCOMPARE(aboutToUpdate.count(), 1);
    QCOMPARE(updated.count(), 1);
    const auto &products = store.GetProducts().products;
    QCOMPARE(products.size(), 3);
    QCOMPARE(products.last().id, QString("pro2"));
    QCOMPARE(products.last().base, QString("Base"));
    QCOMPARE(products.last().specificLicenses, products.first().specificLicenses);
    QCOMPARE(products.last().modes, products.first().modes);
    for (const char *id : {"open", "save", "ghost"})
        QVERIFY2(store.GetFeatures()[id].productIds.contains("pro2"), qPrintable(id));
    QVERIFY(!store.GetFeatures()[""].productIds.contains("pro2"));

    store.UpdateResultJsons();
    const QJsonArray result = store.GetProductsResultJson()["products"].toObject()["product"].toArray();
    QCOMPARE(result.last().toObject().value("id").toString(), QString("pro2"));
}

void VantixJsonDataTest::removeExtension()
{
    VantixJsonData &store = load();
    store.GetLayouts()["print"].open.insert("stl");
    store.RemoveExtension("stl");
    QVERIFY(!store.GetExtensions().contains("stl"));
    QCOMPARE(Sorted(store.GetProducts().products[0].extensions.import), QStringList({"obj"}));
    QVERIFY(store.GetProducts().products[0].extensions.open.isEmpty());
    QVERIFY(store.GetLayouts()["design"].export_.isEmpty());
    QVERIFY(store.GetLayouts()["print"].open.isEmpty());

    // An id that is not an extension is still removed from every set.
    store.RemoveExtension("obj");
    store.RemoveExtension("obj");
    QVERIFY(store.GetProducts().products[0].extensions.import.isEmpty());
}

void VantixJsonDataTest::removeProduct()
{
    VantixJsonData &store = load();
    QVERIFY(store.DuplicateProductFrom("lite", "twin"));
    store.GetProducts().products.append(store.GetProducts().products[0]);

    store.RemoveProduct("missing");
    QCOMPARE(store.GetProducts().products.size(), 4);

    store.RemoveProduct("pro");
    const auto &products = store.GetProducts().products;
    QCOMPARE(products.size(), 3);
    QCOMPARE(products[0].id, QString("lite"));
    QCOMPARE(products[2].id, QString("pro")); // the later duplicate stays
    QVERIFY(store.GetFeatures().contains("save"));
    QVERIFY(store.GetFeatures()["save"].productIds.isEmpty());
    QVERIFY(!store.GetFeatures()["open"].productIds.contains("pro"));
}

void VantixJsonDataTest::productSettersAndBasicLicense()
{
    VantixJsonData &store = load();
    store.GetProducts().products.append(store.GetProducts().products[0]);
    store.SetBaseLicenseToProduct("pro", "Gold");
    store.SetSuffixToProduct("pro", "_gold");
    store.SetSuffixToProduct("missing", "x");
    QCOMPARE(store.GetProducts().products[0].base, QString("Gold"));
    QCOMPARE(store.GetProducts().products[0].profile_suffix, QString("_gold"));
    QCOMPARE(store.GetProducts().products[2].base, QString("Base"));

    QVERIFY(store.IsLicenseBasic("Gold"));
    QVERIFY(store.IsLicenseBasic("Lite"));
    QVERIFY(!store.IsLicenseBasic("gold"));
    QVERIFY(!store.IsLicenseBasic("S1"));
    QVERIFY(!store.IsLicenseBasic(""));
    store.SetBaseLicenseToProduct("lite", "");
    QVERIFY(store.IsLicenseBasic(""));
    store.GetProducts().products.clear();
    QVERIFY(!store.IsLicenseBasic("Gold"));
}

QTEST_GUILESS_MAIN(VantixJsonDataTest)
#include "VantixJsonDataTest.moc"
