#include "TestHelpers.h"
#include "MemoryFolder.h"

#include "merge/DefinitionMerge.h"
#include "merge/JsonMerge.h"
#include "store/CanonicalDocument.h"
#include "store/VantixJsonData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

using namespace ProductEditor;

namespace {

// Each conflict as "path: base | ours | theirs".
QStringList ConflictTexts(const QVector<JsonMergeConflict> &conflicts)
{
    QStringList texts;
    for (const JsonMergeConflict &c : conflicts)
        texts << c.path + QStringLiteral(": ") + JsonMergeSideText(c.base) + QStringLiteral(" | ")
                + JsonMergeSideText(c.ours) + QStringLiteral(" | ") + JsonMergeSideText(c.theirs);
    return texts;
}

std::unique_ptr<VantixJsonData> StoreOf(const QJsonObject &document)
{
    auto store = std::make_unique<VantixJsonData>(QString(), [](const QString &) { return QByteArray(); }, Writer(),
                                                  QMap<QString, QString>());
    store->GetProductsOriginalJson() = document;
    store->UpdateData();
    return store;
}

QByteArray Written(VantixJsonData &store)
{
    store.UpdateResultJsons();
    return CanonicalDocument::Bytes(store.GetProductsResultJson());
}

// Random edits of the records one side owns: the features, products and extensions
// of the base whose position has the side's parity, and the records it adds.
void EditSide(VantixJsonData &store, const QJsonObject &base, int side, quint32 seed)
{
    QRandomGenerator random(seed);
    const QString tag = side ? QStringLiteral("theirs") : QStringLiteral("ours");
    const int productCount = base.value("products").toObject().value("product").toArray().size();
    const auto pick = [&](int count) { return 2 * int(random.bounded(quint32(count / 2))) + side; };
    for (int edit = 0; edit < 12; ++edit) {
        const QString featureId = QStringLiteral("f%1").arg(pick(20), 2, 10, QLatin1Char('0'));
        ProductData &product = store.GetProducts().products[pick(productCount)];
        const QString productId = QStringLiteral("p%1").arg(random.bounded(productCount));
        ExtensionInfo &extension = store.GetExtensions()[QStringLiteral("e%1").arg(pick(6))];
        const bool present = store.GetFeatures().contains(featureId);
        VantixFeatureData &feature = store.GetFeatures()[featureId];
        switch (random.bounded(9)) {
        case 0: feature.title = tag + QString::number(edit); break;
        case 1: feature.visual = !feature.visual; break;
        case 2: feature.productIds.contains(productId) ? void(feature.productIds.remove(productId))
                                                      : void(feature.productIds.insert(productId)); break;
        case 3: store.GetFeatures()[tag + QString::number(edit)].productIds.insert(productId); break;
        case 4: product.profile_suffix = tag + QString::number(edit); break;
        case 5: product.modes.insert(tag); product.extensions.import.remove(QStringLiteral("e1")); break;
        case 6: extension.title = tag + QString::number(edit); extension.importLicenses.insert(tag); break;
        case 7: store.GetProducts().products.append(ProductData{tag + QString::number(edit), tag, {}, {}, {}, {}});
                break;
        default: store.GetFeatures().remove(featureId); continue;
        }
        if (!present) // a removed feature stays removed
            store.GetFeatures().remove(featureId);
    }
}

QJsonObject BaseDocument()
{
    QJsonArray features, products, extensions;
    for (int f = 0; f < 20; ++f)
        features.append(QJsonObject{{"id", QStringLiteral("f%1").arg(f, 2, 10, QLatin1Char('0'))},
                                    {"title", QStringLiteral("Feature %1").arg(f)}});
    for (int p = 0; p < 4; ++p) {
        QJsonArray own;
        for (int f = p; f < 20; f += 3)
            own.append(QStringLiteral("f%1").arg(f, 2, 10, QLatin1Char('0')));
        products.append(QJsonObject{{"id", QStringLiteral("p%1").arg(p)}, {"features", own},
                                    {"extensions", QJsonObject{{"import", QJsonArray{"e1", "e2"}}}}});
    }
    for (int e = 0; e < 6; ++e)
        extensions.append(QJsonObject{{"id", QStringLiteral("e%1").arg(e)}, {"title", QStringLiteral("E%1").arg(e)}});
    return CanonicalDocument::CanonicalObject(QJsonObject{{"features", QJsonObject{{"feature", features}}},
                                                          {"products", QJsonObject{{"product", products}}},
                                                          {"extensions", QJsonObject{{"extension", extensions}}}});
}

} // namespace

class JsonMergeTest : public QObject
{
    Q_OBJECT

private slots:
    void mergeRules_data()
    {
        QTest::addColumn<QByteArray>("base");
        QTest::addColumn<QByteArray>("ours");
        QTest::addColumn<QByteArray>("theirs");
        QTest::addColumn<QByteArray>("merged");
        QTest::addColumn<QStringList>("conflicts");

        QTest::newRow("a member changed on one side takes that side")
            << QByteArray(R"({"a":1,"b":1})") << QByteArray(R"({"a":2,"b":1})") << QByteArray(R"({"a":1,"b":3})")
            << QByteArray(R"({"a":2,"b":3})") << QStringList();
        QTest::newRow("changed the same way on both")
            << QByteArray(R"({"a":1})") << QByteArray(R"({"a":2})") << QByteArray(R"({"a":2})")
            << QByteArray(R"({"a":2})") << QStringList();
        QTest::newRow("removed on one side, unchanged on the other")
            << QByteArray(R"({"a":1,"b":1})") << QByteArray(R"({"a":1})") << QByteArray(R"({"a":1,"b":1,"c":1})")
            << QByteArray(R"({"a":1,"c":1})") << QStringList();
        QTest::newRow("changed differently")
            << QByteArray(R"({"a":{"t":"x"}})") << QByteArray(R"({"a":{"t":"y"}})") << QByteArray(R"({"a":{"t":"z"}})")
            << QByteArray(R"({"a":{"t":"y"}})") << QStringList{R"(a/t: "x" | "y" | "z")"};
        QTest::newRow("removed on one side, changed on the other")
            << QByteArray(R"({"a":1})") << QByteArray(R"({})") << QByteArray(R"({"a":2})")
            << QByteArray(R"({})") << QStringList{"a: 1 | absent | 2"};
        QTest::newRow("objects added on both sides merge")
            << QByteArray(R"({})") << QByteArray(R"({"a":{"x":1}})") << QByteArray(R"({"a":{"y":2}})")
            << QByteArray(R"({"a":{"x":1,"y":2}})") << QStringList();
        QTest::newRow("elements matched by id merge member by member")
            << QByteArray(R"({"e":[{"id":"a","t":1,"u":1},{"id":"b"}]})")
            << QByteArray(R"({"e":[{"id":"b"},{"id":"a","t":2,"u":1}]})")
            << QByteArray(R"({"e":[{"id":"a","t":1,"u":2},{"id":"b"}]})")
            << QByteArray(R"({"e":[{"id":"b"},{"id":"a","t":2,"u":2}]})") << QStringList();
        QTest::newRow("element removed on one side, changed on the other")
            << QByteArray(R"({"e":[{"id":"a","t":1}]})") << QByteArray(R"({"e":[]})")
            << QByteArray(R"({"e":[{"id":"a","t":2}]})") << QByteArray(R"({"e":[]})")
            << QStringList{R"(e[id=a]: {"id":"a","t":1} | absent | {"id":"a","t":2})"};
        QTest::newRow("element added on both sides with different contents")
            << QByteArray(R"({"e":[]})") << QByteArray(R"({"e":[{"id":"n","t":1,"u":1}]})")
            << QByteArray(R"({"e":[{"id":"n","t":2,"v":1}]})") << QByteArray(R"({"e":[{"id":"n","t":1,"u":1,"v":1}]})")
            << QStringList{"e[id=n]/t: absent | 1 | 2"};
        QTest::newRow("products keep ours' order, theirs' new ones after")
            << QByteArray(R"({"product":[{"id":"a"},{"id":"b"},{"id":"c"}]})")
            << QByteArray(R"({"product":[{"id":"c"},{"id":"x"},{"id":"a"}]})")
            << QByteArray(R"({"product":[{"id":"z"},{"id":"a"},{"id":"b"},{"id":"y"}]})")
            << QByteArray(R"({"product":[{"id":"x"},{"id":"a"},{"id":"z"},{"id":"y"}]})") << QStringList();
        QTest::newRow("name arrays are sets")
            << QByteArray(R"({"features":["a","b","c"],"modes":["m"],"lic":["l"]})")
            << QByteArray(R"({"features":["c","b","x","x"],"modes":[],"lic":["l","k"]})")
            << QByteArray(R"({"features":["y","a","b"],"modes":["m","n"],"lic":["j"]})")
            << QByteArray(R"({"features":["b","x","y"],"lic":["k","j"],"modes":["n"]})") << QStringList();
        QTest::newRow("an access list of objects is not a set")
            << QByteArray(R"({"import":[{"id":"e","lic":["a"]}]})") << QByteArray(R"({"import":[{"id":"e","lic":["b"]}]})")
            << QByteArray(R"({"import":[{"id":"e","lic":["a","c"]}]})")
            << QByteArray(R"({"import":[{"id":"e","lic":["b","c"]}]})") << QStringList();
        QTest::newRow("duplicate ids are a conflict unless all sides agree")
            << QByteArray(R"({"e":[{"id":"d","v":1},{"id":"d","v":2},{"id":"s","v":1}]})")
            << QByteArray(R"({"e":[{"id":"d","v":1},{"id":"d","v":3},{"id":"s","v":1}]})")
            << QByteArray(R"({"e":[{"id":"d","v":1},{"id":"d","v":2},{"id":"s","v":2}]})")
            << QByteArray(R"({"e":[{"id":"d","v":1},{"id":"d","v":3},{"id":"s","v":2}]})")
            << QStringList{R"(e[id=d]: [{"id":"d","v":1},{"id":"d","v":2}] | [{"id":"d","v":1},{"id":"d","v":3}] )"
                           R"(| [{"id":"d","v":1},{"id":"d","v":2}])"};
        QTest::newRow("duplicate ids on which all sides agree")
            << QByteArray(R"({"e":[{"v":1},{"v":2}],"f":1})") << QByteArray(R"({"e":[{"v":1},{"v":2}],"f":2})")
            << QByteArray(R"({"e":[{"v":1},{"v":2}],"f":1})") << QByteArray(R"({"e":[{"v":1},{"v":2}],"f":2})")
            << QStringList();
    }

    void mergeRules()
    {
        QFETCH(QByteArray, base);
        QFETCH(QByteArray, ours);
        QFETCH(QByteArray, theirs);
        QFETCH(QByteArray, merged);
        QFETCH(QStringList, conflicts);

        const JsonMergeResult result = MergeJson(Obj(base), Obj(ours), Obj(theirs));
        QCOMPARE(Compact(result.merged.toObject()), Compact(Obj(merged)));
        QCOMPARE(ConflictTexts(result.conflicts), conflicts);
    }

    // Defined below the class: moc misreads the escapes in their raw strings.
    void conflictBlock();
    void keepingAnySideIsValidJson_data();

    // Each side of a block, kept alone, must give a document that parses: what a person
    // does when resolving by hand, and what `git checkout --ours` style tools do.
    void keepingAnySideIsValidJson()
    {
        QFETCH(QByteArray, base);
        QFETCH(QByteArray, ours);
        QFETCH(QByteArray, theirs);
        const DefinitionMergeResult result = MergeDefinitionDocuments(base, ours, theirs);
        QVERIFY(!result.conflicts.isEmpty());
        for (const char keep : {'<', '|', '='}) {
            QByteArray kept;
            char section = 0; // inside a block: the marker that opened the current side
            for (const QByteArray &line : result.bytes.split('\n')) {
                const bool marker = line.size() >= 7 && QByteArray("<|=>").contains(line.at(0))
                    && line.startsWith(QByteArray(7, line.at(0)));
                if (marker)
                    section = line.at(0) == '>' ? 0 : line.at(0);
                else if (section == 0 || section == keep)
                    kept += line + '\n';
            }
            QJsonParseError error;
            QJsonDocument::fromJson(kept, &error);
            QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(QString(keep) + ": " + error.errorString()));
            // The merged document holds ours' side where the sides conflict.
            if (keep == '<')
                QCOMPARE(kept.chopped(1), CanonicalDocument::Bytes(CanonicalDocument::RegeneratedObject(
                                              MergeJson(CanonicalDocument::RegeneratedObject(Obj(base)),
                                                        CanonicalDocument::RegeneratedObject(Obj(ours)),
                                                        CanonicalDocument::RegeneratedObject(Obj(theirs)))
                                                  .merged.toObject())));
        }
    }

    void canonicalFormIsWhatNormalizeWrites()
    {
        MemoryFolder folder;
        folder.addFile("products/products.json", R"({"top":1,"features":{"feature":[{"id":"b","visual":true},{"id":"a",
            "title":"A","junk":2}]},"products":{"product":[{"id":"p","features":["b","a","a"],"modes":["z","m"]}]}})");
        folder.addFile("layouts/main.json", R"({"layouts":{"one":{"features":["a"],"x":1},"two":{}}})");
        VantixJsonData store(folder.root(), folder.reader(), folder.writer(), QMap<QString, QString>());
        QVERIFY(store.SaveAs(folder.root()));
        for (const QString &file : {QStringLiteral("products/products.json"), QStringLiteral("layouts/main.json")}) {
            const CanonicalDocument canonical = CanonicalizeDefinitionDocument(folder.files.value(folder.path(file)));
            QVERIFY(canonical.ok());
            QCOMPARE(canonical.bytes, folder.written.value(folder.path(file)));
            QCOMPARE(CanonicalizeDefinitionDocument(canonical.bytes).bytes, canonical.bytes);
        }
    }

    // Edits of disjoint records on the two sides merge into the document with both edit sets.
    void disjointRandomEditsMergeCleanly()
    {
        const QJsonObject base = BaseDocument();
        const QByteArray baseBytes = CanonicalDocument::Bytes(base);
        for (quint32 seed = 1; seed <= 60; ++seed) {
            auto ours = StoreOf(base);
            auto theirs = StoreOf(base);
            auto both = StoreOf(base);
            EditSide(*ours, base, 0, seed);
            EditSide(*theirs, base, 1, seed + 1000);
            EditSide(*both, base, 0, seed);
            EditSide(*both, base, 1, seed + 1000);
            for (const MergeInputs inputs : {MergeInputs::Any, MergeInputs::Canonical}) {
                const DefinitionMergeResult result =
                    MergeDefinitionDocuments(baseBytes, Written(*ours), Written(*theirs), ConflictMarkers(), inputs);
                QVERIFY2(result.clean(), qPrintable(ConflictTexts(result.conflicts).join('\n')));
                QCOMPARE(result.bytes, Written(*both));
            }
        }
    }
};

void JsonMergeTest::conflictBlock()
{
    const auto document = [](const char *title) {
        return QByteArray(R"({"features":{"feature":[{"id":"new"},{"id":"open","title":")") + title
            + R"(","tooltip":"Opens"}]}})";
    };
    ConflictMarkers markers{QStringLiteral("ours"), QStringLiteral("base"), QStringLiteral("theirs"), 7};
    const DefinitionMergeResult result =
        MergeDefinitionDocuments(document("Open"), document("Open..."), document("Open file"), markers);
    QVERIFY(result.ok());
    QCOMPARE(ConflictTexts(result.conflicts),
             QStringList{R"(features/feature[id=open]/title: "Open" | "Open..." | "Open file")"});
    // The rest of the document is ours' canonical form.
    QByteArray expected = CanonicalizeDefinitionDocument(document("Open...")).bytes;
    expected.replace("                \"title\": \"Open...\",\n",
                     "<<<<<<< ours\n"
                     "                \"title\": \"Open...\",\n"
                     "||||||| base\n"
                     "                \"title\": \"Open\",\n"
                     "=======\n"
                     "                \"title\": \"Open file\",\n"
                     ">>>>>>> theirs\n");
    QCOMPARE(result.bytes, expected);
}

void JsonMergeTest::keepingAnySideIsValidJson_data()
{
    QTest::addColumn<QByteArray>("base");
    QTest::addColumn<QByteArray>("ours");
    QTest::addColumn<QByteArray>("theirs");

    const auto feature = [](const char *members) {
        return QByteArray(R"({"features":{"feature":[{"id":"a"},{"id":"open",)") + members + "}]}}";
    };
    QTest::newRow("the last member removed on one side") << feature(R"("title":"T","tooltip":"x")")
                                                         << feature(R"("title":"T")")
                                                         << feature(R"("title":"T","tooltip":"y")");
    QTest::newRow("a middle member removed on one side") << feature(R"("title":"T","tooltip":"x")")
                                                         << feature(R"("tooltip":"x")")
                                                         << feature(R"("title":"U","tooltip":"x")");
    QTest::newRow("the only member added differently") << feature(R"("title":"T")") << feature(R"("title":"U")")
                                                       << feature(R"("title":"V")");
    QTest::newRow("the last element removed on one side")
        << QByteArray(R"({"features":{"feature":[{"id":"a"},{"id":"b","title":"T"}]}})")
        << QByteArray(R"({"features":{"feature":[{"id":"a"}]}})")
        << QByteArray(R"({"features":{"feature":[{"id":"a"},{"id":"b","title":"U"}]}})");
    QTest::newRow("two conflicts in one record") << feature(R"("title":"T","tooltip":"x")")
                                                 << feature(R"("title":"U")")
                                                 << feature(R"("title":"V","tooltip":"y")");
    // A text that looks like the mark of a conflict's place stays text.
    const QByteArray marked = feature(R"("title":"T","tooltip":"\ue0000\ue000")");
    QTest::newRow("a text like a place mark") << marked << QByteArray(marked).replace("\"T\"", "\"U\"")
                                              << QByteArray(marked).replace("\"T\"", "\"V\"");
}

QTEST_GUILESS_MAIN(JsonMergeTest)
#include "JsonMergeTest.moc"
