// The two ways the merge avoids work on large documents: telling that a document is
// already canonical without regenerating it, and merging only the records that differ.
// Both must give exactly what regenerating and merging everything gives.

#include "TestHelpers.h"
#include "merge/CanonicalMergedDocument.h"
#include "merge/DefinitionMerge.h"
#include "merge/KeyedArrays.h"
#include "merge/UnchangedEntries.h"
#include "store/CanonicalDocument.h"
#include "store/CanonicalProductsCheck.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>

using namespace ProductEditor;

namespace {

// Small products documents in which every rule of the canonical form can be broken:
// few ids (so they repeat and go missing), default values written out, names unsorted.
class RandomDefinitions
{
public:
    explicit RandomDefinitions(quint32 seed) : m_random(seed) {}

    int Pick(int count) { return int(m_random.bounded(quint32(count))); }
    bool Chance(int percent) { return Pick(100) < percent; }
    QString Name(char prefix, int count) { return QString(QChar(prefix)) + QString::number(Pick(count)); }

    QJsonArray Names(char prefix, int count, int most)
    {
        QJsonArray names;
        for (int i = Pick(most); i > 0; --i)
            names.append(Name(prefix, count));
        return names;
    }

    QJsonObject Feature(const QString &id)
    {
        QJsonObject feature{{"id", id}};
        for (const char *key : {"title", "tooltip", "statustip"}) {
            if (Chance(50))
                feature.insert(key, Chance(85) ? Name('t', 4) : QString());
        }
        if (Chance(25))
            feature.insert("visual", Chance(70));
        if (Chance(15))
            feature.insert("emergency", Chance(70));
        return feature;
    }

    QJsonObject Product(const QString &id)
    {
        QJsonObject access;
        for (const char *key : {"import", "export", "open"})
            access.insert(key, Names('e', 4, 3));
        return QJsonObject{{"id", id},
                           {"features", Names('f', 14, 6)},
                           {"modes", Names('m', 3, 3)},
                           {"profile_suffix", Name('s', 2)},
                           {"licensing", QJsonObject{{"base", Name('l', 2)}, {"specific", QJsonArray()}}},
                           {"extensions", access}};
    }

    QJsonObject Extension(const QString &id)
    {
        return QJsonObject{{"id", id}, {"title", Name('t', 3)}, {"ext", Name('x', 3)}, {"cad_support", Chance(50)}};
    }

    QJsonObject Document()
    {
        QJsonArray features, products, extensions, exports;
        QStringList ids;
        for (int i = 0; i < 12; ++i)
            ids << QStringLiteral("f%1").arg(i);
        const bool sorted = Chance(70); // in id order, as a hand-edited file often still is
        if (sorted)
            ids.sort();
        for (const QString &id : ids)
            features.append(Feature(id));
        for (int i = 0; i < 4; ++i)
            products.append(Product(Chance(5) ? QStringLiteral("p0") : QStringLiteral("p%1").arg(i)));
        for (int i = 0; i < 4; ++i)
            extensions.append(Extension(QStringLiteral("e%1").arg(i)));
        for (int i = 0; i < 5; ++i) {
            if (Chance(60))
                exports.append(Coverage(QStringLiteral("e%1").arg(sorted ? i : Pick(5))));
        }
        QJsonObject document{{"features", QJsonObject{{"feature", features}}},
                             {"products", QJsonObject{{"product", products}}},
                             {"extensions", QJsonObject{{"extension", extensions},
                                                        {"lic_coveradge", QJsonObject{{"export", exports}}}}}};
        return Chance(80) ? CanonicalDocument::RegeneratedObject(document) : document;
    }

    QJsonObject Coverage(const QString &id) { return QJsonObject{{"id", id}, {"lic", Names('l', 3, 3)}}; }

    // A few edits of one side: records changed, added (often under an id the other side
    // adds too), removed, and now and then written in a form that is not canonical.
    QJsonObject Edited(QJsonObject document)
    {
        using namespace KeyedArrays;
        for (int edit = Pick(4); edit >= 0; --edit) {
            const QStringList &path = Paths().at(Pick(Paths().size()));
            QJsonArray entries = ValueAt(document, path).toArray();
            const int at = Pick(entries.size() + 1);
            const QString id = QString(QChar(path.last().at(0))) + QString::number(Pick(16));
            QJsonObject fresh = IsFeatures(path) ? Feature(id) : IsExtensions(path) ? Extension(id)
                                : IsCoverage(path)                                 ? Coverage(Name('e', 5))
                                                                                   : Product(id);
            if (at == entries.size()) {
                entries.append(fresh);
            } else if (Chance(30)) {
                entries.removeAt(at);
            } else {
                if (Chance(50)) // the record changed in place
                    fresh.insert("id", entries.at(at).toObject().value("id"));
                entries[at] = fresh;
            }
            document = WithValueAt(document, path, entries);
        }
        return Chance(75) ? CanonicalDocument::RegeneratedObject(document) : document;
    }

private:
    QRandomGenerator m_random;
};

QByteArray Bytes(const QJsonObject &document)
{
    return QJsonDocument(document).toJson(QJsonDocument::Indented);
}

// The merge done the long way: every version regenerated, all of it merged, the result
// regenerated.
DefinitionMergeResult WholeMerge(const QJsonObject &base, const QJsonObject &ours, const QJsonObject &theirs)
{
    JsonMergeResult merged = MergeJson(CanonicalDocument::RegeneratedObject(base),
                                       CanonicalDocument::RegeneratedObject(ours),
                                       CanonicalDocument::RegeneratedObject(theirs));
    DefinitionMergeResult result;
    result.conflicts = merged.conflicts;
    result.bytes =
        ConflictMarkers().Write(CanonicalDocument::RegeneratedObject(merged.merged.toObject()), result.conflicts);
    return result;
}

QStringList Paths(const QVector<JsonMergeConflict> &conflicts)
{
    QStringList paths;
    for (const JsonMergeConflict &conflict : conflicts)
        paths << conflict.path;
    return paths;
}

} // namespace

class MergeShortcutTest : public QObject
{
    Q_OBJECT

private slots:
    void checkRefusesWhatRegenerationWouldChange_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");

        QTest::newRow("a default written out") << QByteArray(R"("id": "b")") << QByteArray(R"("id": "b", "visual": true)");
        QTest::newRow("an empty title") << QByteArray(R"("id": "b")") << QByteArray(R"("id": "b", "title": "")");
        QTest::newRow("features out of order") << QByteArray(R"("id": "b")") << QByteArray(R"("id": "0")");
        QTest::newRow("a feature id twice") << QByteArray(R"("id": "b")") << QByteArray(R"("id": "a")");
        QTest::newRow("a product naming a missing feature") << QByteArray(R"(["a", "b"])") << QByteArray(R"(["a", "z"])");
        QTest::newRow("product features out of order") << QByteArray(R"(["a", "b"])") << QByteArray(R"(["b", "a"])");
        QTest::newRow("modes repeated") << QByteArray(R"("modes": ["m"])") << QByteArray(R"("modes": ["m", "m"])");
        QTest::newRow("a product member missing") << QByteArray(R"("profile_suffix": "", )") << QByteArray();
        QTest::newRow("a product id twice") << QByteArray(R"("id": "q")") << QByteArray(R"("id": "p")");
        QTest::newRow("coverage for an unknown extension") << QByteArray(R"("id": "e", "lic")") << QByteArray(R"("id": "z", "lic")");
        QTest::newRow("coverage without licenses") << QByteArray(R"(["l"])") << QByteArray("[]");
        QTest::newRow("an extension flag that is no boolean") << QByteArray(R"("cad_support": false)")
                                                             << QByteArray(R"("cad_support": 0)");
    }

    void checkRefusesWhatRegenerationWouldChange()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        const QByteArray canonical = R"({"extensions": {"extension": [{"id": "e", "cad_support": false, "ext": "",
            "load_as_part": false, "multiple_parts_support": false, "slices_support": false, "title": ""}],
            "lic_coveradge": {"export": [{"id": "e", "lic": ["l"]}], "import": []}},
            "features": {"feature": [{"id": "a"}, {"id": "b"}]},
            "products": {"product": [{"id": "p", "profile_suffix": "", "modes": ["m"], "features": ["a", "b"],
            "licensing": {"base": "", "specific": []}, "extensions": {"export": [], "export_as_project": [],
            "export_as_scene": [], "import": [], "import_as_project": [], "open": []}},
            {"id": "q", "profile_suffix": "", "modes": [], "features": [], "licensing": {"base": "", "specific": []},
            "extensions": {"export": [], "export_as_project": [], "export_as_scene": [], "import": [],
            "import_as_project": [], "open": []}}]}})";
        QVERIFY(IsCanonicalProductsDocument(Obj(canonical)));
        QCOMPARE(CanonicalDocument::RegeneratedObject(Obj(canonical)), Obj(canonical));
        QByteArray broken = canonical;
        QVERIFY(broken.contains(from));
        const QJsonObject document = Obj(broken.replace(broken.indexOf(from), from.size(), to));
        QVERIFY(!document.isEmpty());
        QVERIFY(CanonicalDocument::RegeneratedObject(document) != document);
        QVERIFY(!IsCanonicalProductsDocument(document));
    }

    // Never yes where regeneration changes the document; yes for what it makes, unless a
    // product id repeats.
    void checkAgreesWithRegeneration()
    {
        int accepted = 0;
        for (quint32 seed = 1; seed <= 300; ++seed) {
            RandomDefinitions random(seed);
            const QJsonObject document = random.Edited(random.Document());
            const QJsonObject regenerated = CanonicalDocument::RegeneratedObject(document);
            if (IsCanonicalProductsDocument(document)) {
                QCOMPARE(regenerated, document);
                ++accepted;
            }
            QSet<QString> ids;
            const QJsonArray products = regenerated.value("products").toObject().value("product").toArray();
            for (const QJsonValue product : products)
                ids.insert(product.toObject().value("id").toString());
            if (ids.size() == products.size())
                QVERIFY2(IsCanonicalProductsDocument(regenerated), qPrintable(QString::number(seed)));
        }
        QVERIFY(accepted > 100);
    }

    // Random versions, mostly canonical, with overlapping edits: the result, conflicts
    // included, is what the long way gives; and where all versions are canonical, the
    // records no version changed are set aside.
    void mergeOfChangedRecordsEqualsWholeMerge()
    {
        int setAside = 0;
        for (quint32 seed = 1; seed <= 2000; ++seed) {
            RandomDefinitions random(seed);
            const QJsonObject base = random.Document();
            const QJsonObject ours = random.Edited(base);
            const QJsonObject theirs = random.Edited(base);
            const DefinitionMergeResult expected = WholeMerge(base, ours, theirs);
            const DefinitionMergeResult result = MergeDefinitionDocuments(Bytes(base), Bytes(ours), Bytes(theirs));
            QVERIFY2(result.bytes == expected.bytes, qPrintable(QString::number(seed)));
            QCOMPARE(Paths(result.conflicts), Paths(expected.conflicts));

            UnchangedEntries unchanged;
            if (IsCanonicalProductsDocument(base) && IsCanonicalProductsDocument(ours)
                && IsCanonicalProductsDocument(theirs)) {
                QVERIFY(unchanged.Find(base, ours, theirs));
                setAside += unchanged.Without(UnchangedEntries::Ours, ours) != ours;
            }
        }
        QVERIFY(setAside > 100);
    }

    // Records that look unchanged but whose versions regenerate differently around them.
    void recordsThatMustStayInTheMerge_data()
    {
        QTest::addColumn<QByteArray>("base");
        QTest::addColumn<QByteArray>("ours");
        QTest::addColumn<QByteArray>("theirs");
        QTest::addColumn<bool>("canonical"); // the inputs regenerated first

        const auto doc = [](const char *features, const char *products, const char *extensions = "") {
            return QByteArray(R"({"features": {"feature": [)") + features + R"(]}, "products": {"product": [)" + products
                + R"(]}, "extensions": {)" + extensions + "}}";
        };
        // In canonical form, so that only theirs, which names a feature it lacks, is not.
        const char *named = R"({"id": "p", "features": ["a", "b"], "modes": [], "profile_suffix": "",
            "licensing": {"base": "", "specific": []}, "extensions": {"export": [], "export_as_project": [],
            "export_as_scene": [], "import": [], "import_as_project": [], "open": []}})";
        QTest::newRow("a named feature removed on one side, changed on the other")
            << doc(R"({"id": "a"}, {"id": "b", "title": "B"})", named)
            << doc(R"({"id": "a"}, {"id": "b", "title": "B2", "tooltip": "T"})", named) << doc(R"({"id": "a"})", named)
            << false;
        QTest::newRow("coverage of an extension one version lacks")
            << doc("", "", R"("lic_coveradge": {"export": [{"id": "e", "lic": ["l"]}]})")
            << doc("", "", R"("extension": [{"id": "e", "title": ""}], "lic_coveradge": {"export": [{"id": "e", "lic": ["l"]}]})")
            << doc("", "", R"("extension": [{"id": "e", "title": "E"}], "lic_coveradge": {"export": [{"id": "e", "lic": ["l"]}]})")
            << false;
        QTest::newRow("products taken whole from theirs") << doc("", R"({"id": "p"}, {"id": "q"}, {"id": "r"})")
                                                          << doc("", R"({"id": "p"}, {"id": "q"}, {"id": "r"})")
                                                          << doc("", R"({"id": "p"}, {"id": "s"}, {"id": "r"})") << true;
    }

    void recordsThatMustStayInTheMerge()
    {
        QFETCH(QByteArray, base);
        QFETCH(QByteArray, ours);
        QFETCH(QByteArray, theirs);
        QFETCH(bool, canonical);
        for (QByteArray *version : {&base, &ours, &theirs}) {
            if (canonical)
                *version = Bytes(CanonicalDocument::RegeneratedObject(Obj(*version)));
        }
        const DefinitionMergeResult expected = WholeMerge(Obj(base), Obj(ours), Obj(theirs));
        const DefinitionMergeResult result = MergeDefinitionDocuments(base, ours, theirs);
        QCOMPARE(result.bytes, expected.bytes);
        QCOMPARE(Paths(result.conflicts), Paths(expected.conflicts));
    }
};

QTEST_GUILESS_MAIN(MergeShortcutTest)
#include "MergeShortcutTest.moc"
