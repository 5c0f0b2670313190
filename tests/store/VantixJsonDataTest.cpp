#include "MemoryFolder.h"
#include "store/VantixJsonData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace ProductEditor;

namespace {

QJsonObject Object(const QByteArray &bytes)
{
    return QJsonDocument::fromJson(bytes).object();
}

QString Sorted(const QSet<QString> &set)
{
    QStringList list(set.cbegin(), set.cend());
    list.sort();
    return list.join(',');
}

const char *kProducts = R"({
  "top": {"kept": true},
  "extensions": {
    "extension": [{"id": "stl", "title": "STL", "ext": ".stl", "cad_support": "yes", "load_as_part": true, "junk": 1},
                  {"id": "obj", "title": "OBJ", "ext": ".obj", "slices_support": true}],
    "lic_coveradge": {"export": [{"id": "stl", "lic": ["B", "A"]}, {"id": "only_in_coverage", "lic": ["C"]}],
                      "import": [{"id": "obj", "lic": ["A"]}], "note": "kept"},
    "other": "kept"},
  "features": {
    "feature": [{"id": "open", "title": "Open", "tooltip": "Opens", "statustip": "", "visual": true, "extra": 1},
                {"id": "save", "title": 5, "visual": false, "emergency": true},
                {"id": "open", "title": "Open again"}],
    "kept": [1]},
  "products": {
    "product": [
      {"id": "pro", "profile_suffix": "_pro", "extra": 1, "modes": ["print", "design"],
       "licensing": {"base": "Base", "specific": [{"id": "open", "licenses": ["S2", "S1"]}, {"id": "open", "licenses": ["S3"]}]},
       "extensions": {"import": ["stl", "obj"], "open": ["stl"]},
       "features": ["save", "open", "open", "ghost"]},
      {"id": "lite", "licensing": {"base": "Lite"}, "features": ["open", 7]}],
    "dropped": true}
})";

const char *kLayoutsA = R"({"layouts": {"design": {"extensions": {"export": ["stl"]}, "features": ["open"], "extra": 1},
                                        "print": {"features": ["save", "open"]}}})";

} // namespace

class VantixJsonDataTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<MemoryFolder>();
        m_folder->addFile("products/products.json", kProducts);
        m_folder->addFile("layouts/a.json", kLayoutsA);
        m_folder->addFile("layouts/b.json", R"({"layouts": {"view": {"features": []}}})");
        m_store = std::make_unique<VantixJsonData>(m_folder->root(), m_folder->reader(), m_folder->writer(),
                                                   QMap<QString, QString>{{"Base", "Base license"}});
    }

    void refusesFolders_data()
    {
        QTest::addColumn<QString>("productsFile"); // empty: no products folder at all
        QTest::addColumn<QByteArray>("productsJson");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("valid") << "products/products.json" << QByteArray(R"({"features": {}})") << true;
        QTest::newRow("no products folder") << "" << QByteArray() << false;
        QTest::newRow("products folder without products.json") << "products/other.json" << QByteArray("{}") << false;
        QTest::newRow("empty object") << "products/products.json" << QByteArray("{}") << false;
    }
    void refusesFolders()
    {
        QFETCH(QString, productsFile);
        QFETCH(QByteArray, productsJson);
        QFETCH(bool, accepted);
        MemoryFolder folder;
        if (!productsFile.isEmpty())
            folder.addFile(productsFile, productsJson);
        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
        QCOMPARE(!store.GetProductsOriginalJson().isEmpty(), accepted);
        QVERIFY(store.Reload() == accepted && store.Save() == accepted && folder.written.isEmpty() != accepted);
    }

    void loadWithoutProductsFolderLooksInTheFolderItself()
    {
        MemoryFolder folder;
        folder.addFile("products.json", R"({"features": {"feature": [{"id": "f"}]}})");
        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
        QVERIFY(store.GetFeatures().isEmpty()); // Init still asks for the "products" folder
        QVERIFY(store.Load(folder.root()));
        QCOMPARE(store.GetFeatures().keys(), QStringList{"f"});
    }

    void loadsRecordsWithDefaults()
    {
        VantixJsonData &store = *m_store;
        QCOMPARE(store.GetLicenses().value("Base"), QString("Base license"));
        // "" comes from a number in a list of names; "ghost" only from a product's list.
        const auto &features = store.GetFeatures();
        QCOMPARE(features.keys(), QStringList({"", "ghost", "open", "save"}));
        const auto text = [&features](const char *id) {
            const VantixFeatureData &f = features[id];
            return QStringList{f.title, f.tooltip, f.statustip, QString::number(f.visual), QString::number(f.emergency),
                               Sorted(f.productIds), Sorted(f.layoutNames)}.join('|');
        };
        QCOMPARE(text("open"), QString("Open again|||1|0|lite,pro|design,print")); // the later entry wins
        QCOMPARE(text("save"), QString("|||0|1|pro|print"));
        QCOMPARE(text("ghost") + '/' + text(""), QString("|||1|0|pro|/|||1|0|lite|"));

        const auto &products = store.GetProducts().products;
        const ProductData &pro = products[0];
        QCOMPARE(QStringList({pro.id, pro.base, pro.profile_suffix, Sorted(pro.modes), Sorted(pro.specificLicenses["open"]),
                              Sorted(pro.extensions.import), Sorted(pro.extensions.open), Sorted(pro.extensions.export_)}),
                 QStringList({"pro", "Base", "_pro", "design,print", "S1,S2,S3", "obj,stl", "stl", ""}));
        QVERIFY(products.size() == 2 && products[1].specificLicenses.isEmpty());

        const auto &extensions = store.GetExtensions();
        QCOMPARE(extensions.keys(), QStringList({"obj", "only_in_coverage", "stl"}));
        QVERIFY(!extensions["stl"].cad_support && extensions["stl"].load_as_part); // "yes" is not a boolean
        QCOMPARE(Sorted(extensions["stl"].exportLicenses) + '/' + Sorted(extensions["obj"].importLicenses), QString("A,B/A"));
        QCOMPARE(extensions["only_in_coverage"].title + extensions["only_in_coverage"].ext, QString());

        QCOMPARE(store.GetLayouts().keys(), QStringList({"design", "print", "view"}));
        QCOMPARE(store.GetProductsResultJson(), store.GetProductsOriginalJson());
    }

    void reloadMergesExtensionsAndGrowsLayoutFiles()
    {
        VantixJsonData &store = *m_store;
        QSignalSpy aboutToReset(&store, &VantixJsonData::featuresDataAboutToBeReset);
        QSignalSpy reset(&store, &VantixJsonData::featuresDataReseted);
        store.GetFeatures()["open"].title = "edited";
        m_folder->files[m_folder->path("products/products.json")] = R"({
          "extensions": {"extension": [{"id": "stl", "title": "STL 2"}]}, "features": {"feature": [{"id": "open"}]}})";
        m_folder->files[m_folder->path("layouts/a.json")] = R"({"layouts": {"print": {}}})";
        QVERIFY(store.Reload());
        QCOMPARE(aboutToReset.count() + reset.count(), 2);
        QVERIFY(store.GetFeatures()["open"].title.isEmpty() && store.GetProducts().products.isEmpty());
        // A vanished extension keeps its record; a reread one loses its coverage.
        QCOMPARE(store.GetExtensions().keys(), QStringList({"obj", "only_in_coverage", "stl"}));
        QVERIFY(store.GetExtensions()["stl"].title == "STL 2" && store.GetExtensions()["stl"].exportLicenses.isEmpty());
        QCOMPARE(Sorted(store.GetExtensions()["obj"].importLicenses), QString("A"));
        // Layouts read before stay among the originals, and each file lists its names again.
        QCOMPARE(store.GetLayoutsOriginalJsons().keys(), QStringList({"design", "print", "view"}));
        QCOMPARE(store.GetLayoutFiles().first(), QStringList({"design", "print", "print"}));
    }

    void generationKeepsOnlyWhatTheEditorDoesNotModel()
    {
        VantixJsonData &store = *m_store;
        store.GetFeatures()["ghost"].productIds.clear(); // still a feature entry
        store.GetLayouts().remove("view");
        store.GetLayoutsResultJsons()["view"] = QJsonObject{{"mark", 1}}; // left as it is
        store.UpdateResultJsons();
        QCOMPARE(store.GetLayoutsResultJsons().value("view"), QJsonObject({{"mark", 1}}));
        QJsonObject result = store.GetProductsResultJson();
        const QJsonObject extensions = result.take("extensions").toObject();
        const QJsonObject features = result.take("features").toObject();
        const QJsonObject productsObject = result.take("products").toObject();
        QCOMPARE(productsObject.keys(), QStringList{"product"}); // "dropped" is gone
        const QJsonArray products = productsObject["product"].toArray();
        QCOMPARE(result, Object(R"({"top": {"kept": true}})"));
        QCOMPARE(extensions["other"].toString() + extensions["lic_coveradge"].toObject()["note"].toString(), "keptkept");
        QCOMPARE(extensions["extension"].toArray()[2].toObject(), Object(R"({"id": "stl", "title": "STL", "ext": ".stl",
            "cad_support": false, "load_as_part": true, "multiple_parts_support": false, "slices_support": false})"));
        QCOMPARE(extensions["lic_coveradge"].toObject()["export"].toArray(), Object(R"({"a": [
            {"id": "only_in_coverage", "lic": ["C"]}, {"id": "stl", "lic": ["A", "B"]}]})")["a"].toArray());
        QCOMPARE(features, Object(R"({"kept": [1], "feature": [{"id": ""}, {"id": "ghost"},
            {"id": "open", "title": "Open again"}, {"id": "save", "visual": false, "emergency": true}]})"));
        QCOMPARE(products[0].toObject(), Object(R"({
          "id": "pro", "profile_suffix": "_pro", "modes": ["design", "print"],
          "licensing": {"base": "Base", "specific": [{"id": "open", "licenses": ["S1", "S2", "S3"]}]},
          "extensions": {"export": [], "export_as_project": [], "import": ["obj", "stl"], "import_as_project": [],
                         "export_as_scene": [], "open": ["stl"]},
          "features": ["open", "save"]})"));
        QCOMPARE(store.GetLayoutsResultJsons().value("design"), Object(R"({
          "extensions": {"export": ["stl"], "export_as_project": [], "import": [], "import_as_project": [],
                         "export_as_scene": [], "open": []},
          "features": ["open"]})"));
    }

    void saveAsIntoEmptyFolderCreatesBothFolders()
    {
        VantixJsonData &store = *m_store;
        MemoryFolder target;
        QVERIFY(store.SaveAs(target.root()));
        QVERIFY(QFileInfo(target.path("products")).isDir() && QFileInfo(target.path("layouts")).isDir());
        QCOMPARE(m_folder->written.size(), 3);
        QVERIFY(m_folder->written.contains(target.path("layouts/b.json")));
        QVERIFY(m_folder->written.value(target.path("products/products.json")).startsWith("{\n    \"extensions\": {\n"));
        QCOMPARE(Object(m_folder->written.value(target.path("layouts/a.json")))["layouts"].toObject().keys(),
                 QStringList({"design", "print"}));
        // The store keeps its own folder.
        m_folder->written.clear();
        QVERIFY(store.Save());
        QVERIFY(m_folder->written.contains(m_folder->path("layouts/b.json")));
    }

    void saveAsReportsAFolderItCannotCreate()
    {
        VantixJsonData &store = *m_store;
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
        // A plain file named "products" passes the existence check; the writes go through the writer.
        target.addFile("plain/products", "not a folder");
        QVERIFY(store.SaveAs(target.path("plain")));
        QVERIFY(m_folder->written.contains(target.path("plain/products/products.json")));
    }

    void duplicates()
    {
        VantixJsonData &store = *m_store;
        QSignalSpy aboutToReset(&store, &VantixJsonData::featuresDataAboutToBeReset);
        QSignalSpy reset(&store, &VantixJsonData::featuresDataReseted);
        QVERIFY(!store.DuplicateFeatureFrom("open", "save") && !store.DuplicateFeatureFrom("open", "open"));
        QVERIFY(!store.DuplicateFeatureFrom("missing", "new") && aboutToReset.isEmpty());
        QVERIFY(store.DuplicateFeatureFrom("open", "open2"));
        QCOMPARE(aboutToReset.count() + reset.count(), 2);
        const VantixFeatureData &copy = store.GetFeatures()["open2"];
        QCOMPARE(QStringList({copy.title, Sorted(copy.productIds), Sorted(copy.layoutNames)}),
                 QStringList({"Open again", "lite,pro", "design,print"}));

        QSignalSpy aboutToUpdate(&store, &VantixJsonData::productsDataAboutToBeUpdate);
        QSignalSpy updated(&store, &VantixJsonData::productsDataUpdated);
        QVERIFY(!store.DuplicateProductFrom("pro", "lite") && !store.DuplicateProductFrom("missing", "new"));
        QVERIFY(aboutToUpdate.isEmpty());
        QVERIFY(store.DuplicateProductFrom("pro", "pro2"));
        QCOMPARE(aboutToUpdate.count() + updated.count(), 2);
        const auto &products = store.GetProducts().products;
        QCOMPARE(products.size() == 3 ? products.last().id + products.last().base : QString(), QString("pro2Base"));
        QVERIFY(products.last().specificLicenses == products[0].specificLicenses && products.last().modes == products[0].modes);
        for (const char *id : {"open", "save", "ghost"})
            QVERIFY2(store.GetFeatures()[id].productIds.contains("pro2"), id);
        QVERIFY(!store.GetFeatures()[""].productIds.contains("pro2"));
    }

    void removals()
    {
        VantixJsonData &store = *m_store;
        store.GetLayouts()["print"].open.insert("stl");
        store.RemoveExtension("stl");
        const ExtensionAccess &pro = store.GetProducts().products[0].extensions;
        QCOMPARE(Sorted(pro.import) + '/' + Sorted(pro.open), QString("obj/"));
        QVERIFY(!store.GetExtensions().contains("stl") && store.GetLayouts()["design"].export_.isEmpty()
                && store.GetLayouts()["print"].open.isEmpty());
        // An id that is not an extension is still removed from every set.
        store.RemoveExtension("obj");
        store.RemoveExtension("obj");
        QVERIFY(store.GetProducts().products[0].extensions.import.isEmpty());

        store.GetProducts().products.append(store.GetProducts().products[0]);
        store.RemoveProduct("missing");
        store.RemoveProduct("pro");
        const auto &products = store.GetProducts().products;
        QCOMPARE(products[0].id + products[1].id, QString("litepro")); // the later duplicate stays
        QVERIFY(store.GetFeatures().contains("save") && store.GetFeatures()["save"].productIds.isEmpty());
        QCOMPARE(Sorted(store.GetFeatures()["open"].productIds), QString("lite"));
    }

    void productSettersAndBasicLicense()
    {
        VantixJsonData &store = *m_store;
        store.GetProducts().products.append(store.GetProducts().products[0]);
        store.SetBaseLicenseToProduct("pro", "Gold");
        store.SetSuffixToProduct("pro", "_gold");
        const auto &products = store.GetProducts().products;
        QCOMPARE(products[0].base + products[0].profile_suffix + products[2].base, QString("Gold_goldBase"));
        QVERIFY(store.IsLicenseBasic("Gold") && store.IsLicenseBasic("Lite"));
        QVERIFY(!store.IsLicenseBasic("gold") && !store.IsLicenseBasic("S1") && !store.IsLicenseBasic(""));
        store.SetBaseLicenseToProduct("lite", "");
        QVERIFY(store.IsLicenseBasic(""));
        store.GetProducts().products.clear();
        QVERIFY(!store.IsLicenseBasic("Gold"));
    }

private:
    std::unique_ptr<MemoryFolder> m_folder;
    std::unique_ptr<VantixJsonData> m_store;
};

QTEST_GUILESS_MAIN(VantixJsonDataTest)
#include "VantixJsonDataTest.moc"
