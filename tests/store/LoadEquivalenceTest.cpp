// The store decodes the documents through CBOR views that share the parsed data;
// the records must be those a plain walk over the JSON objects gives, entry by
// entry with the later entry winning.

#include "FolderFiles.h"
#include "MemoryFolder.h"
#include "TestHelpers.h"
#include "SyntheticFolder.h"
#include "store/VantixJsonData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <memory>

using namespace ProductEditor;

namespace {

QString Describe(const VantixFeatureData &f)
{
    return QStringList{f.title, f.tooltip, f.statustip, QString::number(f.visual), QString::number(f.emergency),
                       Sorted(f.productIds), Sorted(f.layoutNames)}
        .join('|');
}

bool BoolOr(const QJsonValue &value, bool fallback) { return value.isBool() ? value.toBool() : fallback; }

QSet<QString> Names(const QJsonValue &array)
{
    QSet<QString> names;
    for (const QJsonValue &name : array.toArray())
        names.insert(name.toString());
    return names;
}

// The feature records as a plain walk over the loaded documents gives them.
QMap<QString, QString> PlainFeatures(VantixJsonData &store)
{
    const QJsonObject products = store.GetProductsOriginalJson();
    QMap<QString, VantixFeatureData> features;
    for (const QJsonValue &value : products["features"].toObject()["feature"].toArray()) {
        const QJsonObject entry = value.toObject();
        VantixFeatureData feature;
        feature.title = entry["title"].toString();
        feature.tooltip = entry["tooltip"].toString();
        feature.statustip = entry["statustip"].toString();
        feature.visual = BoolOr(entry["visual"], true);
        feature.emergency = BoolOr(entry["emergency"], false);
        features.insert(entry["id"].toString(), feature);
    }
    for (const QJsonValue &value : products["products"].toObject()["product"].toArray()) {
        const QJsonObject product = value.toObject();
        for (const QString &id : Names(product["features"]))
            features[id].productIds.insert(product["id"].toString());
    }
    const QMap<QString, QJsonObject> &layouts = store.GetLayoutsOriginalJsons();
    for (auto it = layouts.cbegin(); it != layouts.cend(); ++it) {
        for (const QString &id : Names(it.value()["features"]))
            features[id].layoutNames.insert(it.key());
    }
    QMap<QString, QString> described;
    for (auto it = features.cbegin(); it != features.cend(); ++it)
        described.insert(it.key(), Describe(it.value()));
    return described;
}

QMap<QString, QString> StoreFeatures(VantixJsonData &store)
{
    QMap<QString, QString> described;
    const QMap<QString, VantixFeatureData> &features = store.GetFeatures();
    for (auto it = features.cbegin(); it != features.cend(); ++it)
        described.insert(it.key(), Describe(it.value()));
    return described;
}

// Products and extensions, each field that the plain reading also gives.
QStringList PlainOthers(VantixJsonData &store)
{
    QStringList lines;
    const QJsonObject products = store.GetProductsOriginalJson();
    for (const QJsonValue &value : products["products"].toObject()["product"].toArray()) {
        const QJsonObject product = value.toObject();
        const QJsonObject access = product["extensions"].toObject();
        QStringList line{product["id"].toString(), product["profile_suffix"].toString(),
                         product["licensing"].toObject()["base"].toString(), Sorted(Names(product["modes"]))};
        for (const char *role : {"export", "export_as_project", "import", "import_as_project", "export_as_scene", "open"})
            line << Sorted(Names(access[role]));
        QMap<QString, QSet<QString>> specific;
        for (const QJsonValue &entry : product["licensing"].toObject()["specific"].toArray())
            specific[entry.toObject()["id"].toString()] += Names(entry.toObject()["licenses"]);
        for (auto it = specific.cbegin(); it != specific.cend(); ++it)
            line << it.key() + '=' + Sorted(it.value());
        lines << line.join('|');
    }
    QMap<QString, QString> extensions;
    QMap<QString, QSet<QString>> coverage[2];
    const QJsonObject extensionsObject = products["extensions"].toObject();
    for (const QJsonValue &value : extensionsObject["extension"].toArray()) {
        const QJsonObject entry = value.toObject();
        QString flags;
        for (const char *flag : {"slices_support", "cad_support", "load_as_part", "multiple_parts_support"})
            flags += QString::number(BoolOr(entry[flag], false));
        extensions[entry["id"].toString()] = flags + '|' + entry["title"].toString() + '|' + entry["ext"].toString();
    }
    const QJsonObject covered = extensionsObject["lic_coveradge"].toObject();
    for (int side = 0; side < 2; ++side) {
        for (const QJsonValue &entry : covered[side ? "import" : "export"].toArray()) {
            const QString id = entry.toObject()["id"].toString();
            coverage[side][id] += Names(entry.toObject()["lic"]);
            if (!extensions.contains(id))
                extensions[id] = "0000||";
        }
    }
    for (auto it = extensions.cbegin(); it != extensions.cend(); ++it)
        lines << it.key() + '|' + it.value() + '|' + Sorted(coverage[0].value(it.key())) + '|'
                + Sorted(coverage[1].value(it.key()));
    return lines;
}

QStringList StoreOthers(VantixJsonData &store)
{
    QStringList lines;
    for (const ProductData &product : store.GetProducts().products) {
        const ExtensionAccess &access = product.extensions;
        QStringList line{product.id, product.profile_suffix, product.base, Sorted(product.modes)};
        for (const QSet<QString> *set : {&access.export_, &access.export_as_project, &access.import,
                                         &access.import_as_project, &access.export_as_scene, &access.open})
            line << Sorted(*set);
        for (auto it = product.specificLicenses.cbegin(); it != product.specificLicenses.cend(); ++it)
            line << it.key() + '=' + Sorted(it.value());
        lines << line.join('|');
    }
    const QMap<QString, ExtensionInfo> &extensions = store.GetExtensions();
    for (auto it = extensions.cbegin(); it != extensions.cend(); ++it) {
        const ExtensionInfo &info = it.value();
        lines << QStringList{it.key(), QString::number(info.slices_support) + QString::number(info.cad_support)
                                 + QString::number(info.load_as_part) + QString::number(info.multiple_parts_support),
                             info.title, info.ext, Sorted(info.exportLicenses), Sorted(info.importLicenses)}
                     .join('|');
    }
    return lines;
}

void AddFolder(MemoryFolder &folder, const SyntheticFolder &synthetic)
{
    folder.addFile("products/products.json", synthetic.productsJson);
    for (auto it = synthetic.layoutFiles.cbegin(); it != synthetic.layoutFiles.cend(); ++it)
        folder.addFile("layouts/" + it.key(), it.value());
}

} // namespace

class LoadEquivalenceTest : public QObject
{
    Q_OBJECT

private slots:
    void recordsMatchThePlainReading_data()
    {
        QTest::addColumn<QString>("source");
        QTest::newRow("bundled example") << "example";
        QTest::newRow("synthetic, keys and arrays scrambled") << "synthetic";
        QTest::newRow("synthetic, large enough to be read from its text beside the parse") << "large";
        QTest::newRow("synthetic, saved in canonical form (already in id order)") << "canonical";
        QTest::newRow("repeated ids among others, in and out of order") << "repeats";
        QTest::newRow("owners naming the same features, a product id twice") << "owners";
    }

    void recordsMatchThePlainReading()
    {
        QFETCH(QString, source);
        MemoryFolder folder;
        if (source == "example") {
            const FolderFiles files = ReadFolderFiles(PE_SOURCE_DIR "/examples/definitions");
            for (auto it = files.cbegin(); it != files.cend(); ++it)
                folder.addFile(it.key(), it.value());
        } else if (source == "repeats") {
            folder.addFile("products/products.json", R"({"features": {"feature": [
                {"id": "b", "title": "B1"}, {"id": "a", "title": "A1"}, {"id": "b", "title": "B2", "visual": false},
                {"id": "c"}, {"id": "a", "title": "A2"}, {"id": "b", "title": "B3", "emergency": true},
                {"id": "", "title": "empty"}, {"title": "no id"}, {"id": "d"}, {"id": "d", "tooltip": "D2"}]},
              "products": {"product": [{"id": "p", "features": ["a", "ghost", "b", "a", 3]}]}})");
            folder.addFile("layouts/l.json", R"({"layouts": {"x": {"features": ["ghost", "c", "late"]}}})");
        } else if (source == "owners") {
            folder.addFile("products/products.json", R"({"products": {"product": [
                {"id": "p", "features": ["a", "b", "c"]}, {"id": "q", "features": ["c", "b", "a", "b"]},
                {"id": "p", "features": ["d", "a"]}, {"id": "r", "features": ["d"]}, {"id": "s", "features": ["e"]}]}})");
            folder.addFile("layouts/l.json", R"({"layouts": {"x": {"features": ["a", "d"]}, "y": {"features": ["d", "a"]},
                "z": {"features": ["a"]}}})");
        } else {
            AddFolder(folder, GenerateSyntheticFolder(source == "large" ? 5000 : 2000));
        }
        if (source == "canonical") {
            VantixJsonData scrambled(folder.root(), folder.reader(), folder.writer(), {});
            QVERIFY(scrambled.Save());
            for (auto it = folder.written.cbegin(); it != folder.written.cend(); ++it)
                folder.files[it.key()] = it.value();
        }

        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
        QVERIFY(!store.GetFeatures().isEmpty());
        QCOMPARE(StoreFeatures(store), PlainFeatures(store));
        QCOMPARE(StoreOthers(store), PlainOthers(store));
    }
};

QTEST_GUILESS_MAIN(LoadEquivalenceTest)
#include "LoadEquivalenceTest.moc"
