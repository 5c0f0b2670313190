#include "MemoryFolder.h"
#include "TestHelpers.h"
#include "store/VantixJsonData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace ProductEditor;

namespace {

const char *kProducts = R"({"top": {"kept": true},
  "extensions": {"other": "kept",
    "extension": [{"id": "stl", "title": "STL", "ext": ".stl", "cad_support": "yes", "load_as_part": true, "junk": 1},
                  {"id": "obj", "title": "OBJ", "ext": ".obj", "slices_support": true}],
    "lic_coveradge": {"export": [{"id": "stl", "lic": ["B", "A"]}, {"id": "only_in_coverage", "lic": ["C"]}],
                      "import": [{"id": "obj", "lic": ["A"]}], "note": "kept"}},
  "features": {"kept": [1],
    "feature": [{"id": "open", "title": "Open", "tooltip": "Opens", "statustip": "", "visual": true, "extra": 1},
                {"id": "save", "title": 5, "visual": false, "emergency": true}, {"id": "open", "title": "Open again"}]},
  "products": {"dropped": true, "product": [
    {"id": "pro", "profile_suffix": "_pro", "extra": 1, "modes": ["print", "design"], "features": ["save", "open", "open", "ghost"],
     "licensing": {"base": "Base", "specific": [{"id": "open", "licenses": ["S2", "S1"]}, {"id": "open", "licenses": ["S3"]}]},
     "extensions": {"import": ["stl", "obj"], "open": ["stl"]}},
    {"id": "lite", "licensing": {"base": "Lite"}, "features": ["open", 7]}]}})";
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
        // "" comes from a number in a list of names; "ghost" only from a product's list.
        const auto &features = m_store->GetFeatures();
        QCOMPARE(features.keys(), QStringList({"", "ghost", "open", "save"}));
        const auto text = [&features](const char *id) {
            const VantixFeatureData &f = features[id];
            return QStringList{f.title, f.tooltip, f.statustip, QString::number(f.visual), QString::number(f.emergency),
                               Sorted(f.productIds), Sorted(f.layoutNames)}.join('|');
        };
        QCOMPARE(text("open"), QString("Open again|||1|0|lite,pro|design,print")); // the later entry wins
        QCOMPARE(text("save") + '/' + text("ghost") + '/' + text(""), "|||0|1|pro|print/|||1|0|pro|/|||1|0|lite|");

        const auto &products = m_store->GetProducts().products;
        const ProductData &pro = products[0];
        QCOMPARE(QStringList({pro.id, pro.base, pro.profile_suffix, Sorted(pro.modes), Sorted(pro.specificLicenses["open"]),
                              Sorted(pro.extensions.import), Sorted(pro.extensions.open), Sorted(pro.extensions.export_)}),
                 QStringList({"pro", "Base", "_pro", "design,print", "S1,S2,S3", "obj,stl", "stl", ""}));
        QVERIFY(products.size() == 2 && products[1].specificLicenses.isEmpty());

        const auto &extensions = m_store->GetExtensions();
        QCOMPARE(extensions.keys(), QStringList({"obj", "only_in_coverage", "stl"}));
        QVERIFY(!extensions["stl"].cad_support && extensions["stl"].load_as_part); // "yes" is not a boolean
        QCOMPARE(Sorted(extensions["stl"].exportLicenses) + '/' + Sorted(extensions["obj"].importLicenses), QString("A,B/A"));
        QCOMPARE(m_store->GetLayouts().keys(), QStringList({"design", "print", "view"}));
        QCOMPARE(m_store->GetProductsResultJson(), m_store->GetProductsOriginalJson());
    }

    void reloadMergesExtensionsAndGrowsLayoutFiles()
    {
        QSignalSpy aboutToReset(m_store.get(), &VantixJsonData::featuresDataAboutToBeReset);
        QSignalSpy reset(m_store.get(), &VantixJsonData::featuresDataReseted);
        m_store->GetFeatures()["open"].title = "edited";
        m_folder->files[m_folder->path("products/products.json")] = R"({
          "extensions": {"extension": [{"id": "stl", "title": "STL 2"}]}, "features": {"feature": [{"id": "open"}]}})";
        m_folder->files[m_folder->path("layouts/a.json")] = R"({"layouts": {"print": {}}})";
        QVERIFY(m_store->Reload());
        QCOMPARE(aboutToReset.count() + reset.count(), 2);
        QVERIFY(m_store->GetFeatures()["open"].title.isEmpty() && m_store->GetProducts().products.isEmpty());
        // A vanished extension keeps its record; a reread one loses its coverage.
        QCOMPARE(m_store->GetExtensions().keys(), QStringList({"obj", "only_in_coverage", "stl"}));
        QVERIFY(m_store->GetExtensions()["stl"].title == "STL 2" && m_store->GetExtensions()["stl"].exportLicenses.isEmpty());
        QCOMPARE(Sorted(m_store->GetExtensions()["obj"].importLicenses), QString("A"));
        // Layouts read before stay among the originals, and each file lists its names again.
        QCOMPARE(m_store->GetLayoutsOriginalJsons().keys(), QStringList({"design", "print", "view"}));
        QCOMPARE(m_store->GetLayoutFiles().first(), QStringList({"design", "print", "print"}));
    }

    void generationKeepsOnlyWhatTheEditorDoesNotModel()
    {
        m_store->GetFeatures()["ghost"].productIds.clear(); // still a feature entry
        m_store->GetLayouts().remove("view");
        m_store->GetLayoutsResultJsons()["view"] = QJsonObject{{"mark", 1}}; // left as it is
        m_store->UpdateResultJsons();
        QCOMPARE(m_store->GetLayoutsResultJsons().value("view"), QJsonObject({{"mark", 1}}));
        QJsonObject result = m_store->GetProductsResultJson();
        const QJsonObject extensions = result.take("extensions").toObject();
        const QJsonObject features = result.take("features").toObject();
        const QJsonObject productsObject = result.take("products").toObject();
        const QJsonArray products = productsObject["product"].toArray();
        QVERIFY(productsObject.size() == 1 && result == Obj(R"({"top": {"kept": true}})")); // "dropped" is gone
        QCOMPARE(extensions["other"].toString() + extensions["lic_coveradge"].toObject()["note"].toString(), "keptkept");
        QCOMPARE(extensions["extension"].toArray()[2].toObject(), Obj(R"({"id": "stl", "title": "STL", "ext": ".stl",
            "cad_support": false, "load_as_part": true, "multiple_parts_support": false, "slices_support": false})"));
        QCOMPARE(extensions["lic_coveradge"].toObject()["export"].toArray(), Obj(R"({"a": [
            {"id": "only_in_coverage", "lic": ["C"]}, {"id": "stl", "lic": ["A", "B"]}]})")["a"].toArray());
        QCOMPARE(features, Obj(R"({"kept": [1], "feature": [{"id": ""}, {"id": "ghost"},
            {"id": "open", "title": "Open again"}, {"id": "save", "visual": false, "emergency": true}]})"));
        QCOMPARE(products[0].toObject(), Obj(R"({"id": "pro", "profile_suffix": "_pro", "modes": ["design", "print"],
          "licensing": {"base": "Base", "specific": [{"id": "open", "licenses": ["S1", "S2", "S3"]}]},
          "extensions": {"export": [], "export_as_project": [], "import": ["obj", "stl"], "import_as_project": [],
                         "export_as_scene": [], "open": ["stl"]}, "features": ["open", "save"]})"));
        QCOMPARE(m_store->GetLayoutsResultJsons().value("design"), Obj(R"({"features": ["open"], "extensions": {"export": ["stl"],
          "export_as_project": [], "import": [], "import_as_project": [], "export_as_scene": [], "open": []}})"));
    }

    void saveAsIntoEmptyFolderCreatesBothFolders()
    {
        MemoryFolder target;
        QVERIFY(m_store->SaveAs(target.root()));
        QVERIFY(QFileInfo(target.path("products")).isDir() && QFileInfo(target.path("layouts")).isDir());
        QVERIFY(m_folder->written.size() == 3 && m_folder->written.contains(target.path("layouts/b.json")));
        QVERIFY(m_folder->written.value(target.path("products/products.json")).startsWith("{\n    \"extensions\": {\n"));
        QCOMPARE(Obj(m_folder->written.value(target.path("layouts/a.json")))["layouts"].toObject().keys(),
                 QStringList({"design", "print"}));
        // The store keeps its own folder.
        m_folder->written.clear();
        QVERIFY(m_store->Save());
        QVERIFY(m_folder->written.contains(m_folder->path("layouts/b.json")));
    }

    void saveAsReportsAFolderItCannotCreate()
    {
        MemoryFolder target;
        target.addFile("file", "x");
        QTest::ignoreMessage(QtWarningMsg, "Couldn't create Products folder.");
        QVERIFY(!m_store->SaveAs(target.path("file")));
        // The layouts folder gets the same message.
        target.addFolder("root/products");
        QVERIFY(QFile::link(target.path("missing-target"), target.path("root/layouts")));
        QTest::ignoreMessage(QtWarningMsg, "Couldn't create Products folder.");
        QVERIFY(!m_store->SaveAs(target.path("root")));
        QVERIFY(m_folder->written.isEmpty());
        // A plain file named "products" passes the existence check; the writes go through the writer.
        target.addFile("plain/products", "not a folder");
        QVERIFY(m_store->SaveAs(target.path("plain")));
        QVERIFY(m_folder->written.contains(target.path("plain/products/products.json")));
    }

    void duplicates()
    {
        QSignalSpy aboutToReset(m_store.get(), &VantixJsonData::featuresDataAboutToBeReset);
        QSignalSpy reset(m_store.get(), &VantixJsonData::featuresDataReseted);
        QVERIFY(!m_store->DuplicateFeatureFrom("open", "save") && !m_store->DuplicateFeatureFrom("open", "open"));
        QVERIFY(!m_store->DuplicateFeatureFrom("missing", "new") && m_store->DuplicateFeatureFrom("open", "open2"));
        QCOMPARE(aboutToReset.count() * 10 + reset.count(), 11);
        const VantixFeatureData &copy = m_store->GetFeatures()["open2"];
        QCOMPARE(QStringList({copy.title, Sorted(copy.productIds), Sorted(copy.layoutNames)}),
                 QStringList({"Open again", "lite,pro", "design,print"}));

        QSignalSpy aboutToUpdate(m_store.get(), &VantixJsonData::productsDataAboutToBeUpdate);
        QSignalSpy updated(m_store.get(), &VantixJsonData::productsDataUpdated);
        QVERIFY(!m_store->DuplicateProductFrom("pro", "lite") && !m_store->DuplicateProductFrom("missing", "new"));
        QVERIFY(m_store->DuplicateProductFrom("pro", "pro2"));
        QCOMPARE(aboutToUpdate.count() * 10 + updated.count(), 11);
        const auto &products = m_store->GetProducts().products;
        QCOMPARE(products.size() == 3 ? products.last().id + products.last().base : QString(), QString("pro2Base"));
        QVERIFY(products.last().specificLicenses == products[0].specificLicenses && products.last().modes == products[0].modes);
        QCOMPARE(Sorted(m_store->GetFeatures()["ghost"].productIds) + '/' + Sorted(m_store->GetFeatures()[""].productIds),
                 "pro,pro2/lite");
    }

    void removals()
    {
        m_store->GetLayouts()["print"].open.insert("stl");
        m_store->RemoveExtension("stl");
        QCOMPARE(Sorted(m_store->GetProducts().products[0].extensions.import), QString("obj"));
        QVERIFY(!m_store->GetExtensions().contains("stl") && m_store->GetLayouts()["design"].export_.isEmpty()
                && m_store->GetLayouts()["print"].open.isEmpty());
        // An id that is not an extension is still removed from every set.
        m_store->RemoveExtension("obj");
        m_store->RemoveExtension("obj");
        QVERIFY(m_store->GetProducts().products[0].extensions.import.isEmpty());

        m_store->GetProducts().products.append(m_store->GetProducts().products[0]);
        m_store->RemoveProduct("missing");
        m_store->RemoveProduct("pro");
        const auto &products = m_store->GetProducts().products;
        QCOMPARE(products[0].id + products[1].id, QString("litepro")); // the later duplicate stays
        QVERIFY(m_store->GetFeatures().contains("save") && m_store->GetFeatures()["save"].productIds.isEmpty());
        QCOMPARE(Sorted(m_store->GetFeatures()["open"].productIds), QString("lite"));
    }

    void productSettersAndBasicLicense()
    {
        m_store->GetProducts().products.append(m_store->GetProducts().products[0]);
        m_store->SetBaseLicenseToProduct("pro", "Gold");
        m_store->SetSuffixToProduct("pro", "_gold");
        const auto &products = m_store->GetProducts().products;
        QCOMPARE(products[0].base + products[0].profile_suffix + products[2].base, QString("Gold_goldBase"));
        QVERIFY(m_store->IsLicenseBasic("Gold") && m_store->IsLicenseBasic("Lite") && !m_store->IsLicenseBasic("gold"));
        QVERIFY(!m_store->IsLicenseBasic("S1") && !m_store->IsLicenseBasic(""));
        m_store->SetBaseLicenseToProduct("lite", "");
        QVERIFY(m_store->IsLicenseBasic(""));
        m_store->GetProducts().products.clear();
        QVERIFY(!m_store->IsLicenseBasic("Gold"));
    }

private:
    std::unique_ptr<MemoryFolder> m_folder;
    std::unique_ptr<VantixJsonData> m_store;
};

QTEST_GUILESS_MAIN(VantixJsonDataTest)
#include "VantixJsonDataTest.moc"
