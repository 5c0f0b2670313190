// A large products document is read straight from its text beside the parse; the
// records must be exactly those the parsed document gives, and whatever the text
// reading cannot take exactly it must leave to the parsed document.

#include "FolderFiles.h"
#include "SyntheticFolder.h"
#include "TestHelpers.h"
#include "store/DocumentRecords.h"

#include <QJsonDocument>
#include <QTest>

using namespace ProductEditor;

namespace {

QByteArray ExampleProducts()
{
    return ReadFolderFiles(PE_SOURCE_DIR "/examples/definitions").value("products/products.json");
}

// A feature entry with `fields` inside an otherwise plain document.
QByteArray WithFeature(const QByteArray &fields)
{
    return R"({"features": {"feature": [{"id": "a", "title": "A"}, {)" + fields
           + R"(}]}, "products": {"product": [{"id": "p", "features": ["a", "b"]}]}})";
}

} // namespace

class TextReadingTest : public QObject
{
    Q_OBJECT

private slots:
    void sameRecordsAsTheParsedDocument_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("readFromText");

        QTest::newRow("bundled example") << ExampleProducts() << true;
        QTest::newRow("synthetic, keys and arrays scrambled") << GenerateSyntheticFolder(2000).productsJson << true;
        QTest::newRow("empty object") << QByteArray("{}") << true;
        QTest::newRow("sections and keys in reverse order") << QByteArray(R"({
            "products": {"product": [{"features": ["b", "ghost", "b"], "id": "p"}, {"id": "p", "features": ["c"]}]},
            "features": {"feature": [{"title": "B", "id": "b"}, {"id": "c"}, {"id": "b", "visual": false}]},
            "extensions": {"lic_coveradge": {"import": [{"lic": ["l2"], "id": "e"}], "export": [{"id": "x", "lic": ["l1"]}]},
                           "extension": [{"id": "e", "title": "E", "cad_support": true}]}})") << true;
        QTest::newRow("wrong types read as defaults") << QByteArray(R"({
            "extensions": {"extension": [5, {"id": "e", "cad_support": "yes", "title": 3}], "lic_coveradge": []},
            "features": {"feature": [null, {"id": "f", "visual": 0, "emergency": "true", "title": ["t"]}, "g"]},
            "products": {"product": [7, {"id": "p", "licensing": [], "modes": "m", "extensions": 5,
                                         "features": ["f", 1, {"x": "f"}, null, [], "h"]},
                                     {"id": "q", "licensing": {"base": 1, "specific": [3, {"id": "f", "licenses": [2, "l"]}]},
                                      "extensions": {"open": ["e", false], "import": {}}}]}})") << true;
        QTest::newRow("long ids alike in their first sixteen characters") << QByteArray(R"({
            "features": {"feature": [{"id": "abcdefghijklmnopq"}, {"id": "abcdefghijklmnop"}, {"id": "abcdefghijklmnopqr"}]},
            "products": {"product": [{"id": "p", "features": ["abcdefghijklmnopqr", "abcdefghijklmnopqz", "abcdefghijklmnop"]}]}})")
                                                                            << true;
        QTest::newRow("escapes and nesting in skipped values") << WithFeature("\"id\": \"b\", \"x_note\": \"say \\\"hi\\\" \\\\ \\u00e9\", "
                        "\"deep\": [[[{\"a\": [\"]\", \"}\", \"\\\"{\"]}]]], \"n\": -1.5e3, \"t\": true") << true;
        QTest::newRow("non-ASCII in a skipped value and key") << WithFeature(R"("id": "b", "notiz_é": "größer")") << true;
        QTest::newRow("escape in a wanted string") << WithFeature("\"id\": \"b\", \"title\": \"A \\\"quoted\\\" title\"") << false;
        QTest::newRow("escape spelling a wanted key") << WithFeature("\"\\u0069d\": \"b\"") << false;
        QTest::newRow("non-ASCII in a wanted string") << WithFeature(R"("id": "b", "tooltip": "Größe")") << false;
        QTest::newRow("non-ASCII late in a long wanted string") << WithFeature(R"("id": "b", "title": "Shows the parts größer")")
                                                                << false;
        QTest::newRow("a wanted key twice") << WithFeature(R"("id": "b", "title": "one", "title": "two")") << false;
        QTest::newRow("an unknown key twice") << WithFeature(R"("id": "b", "x": 1, "x": 2)") << true;
        QTest::newRow("a section twice") << QByteArray(R"({"features": {"feature": []}, "features": {"feature": [{"id": "a"}]}})")
                                         << false;
        QTest::newRow("not an object") << QByteArray(R"([{"features": {}}])") << false;
    }

    void sameRecordsAsTheParsedDocument()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, readFromText);
        const QMap<QString, QJsonObject> layouts{
            {"l1", Obj(R"({"features": ["a", "b", "only-in-layout"], "extensions": {"open": ["e"]}})")},
            {"l2", Obj(R"({"features": ["a"]})")}};
        const std::optional<RecordsSnapshot> fromText = DecodeRecordsFromText(text, layouts, {});
        QCOMPARE(fromText.has_value(), readFromText);
        if (fromText)
            QVERIFY(*fromText == DecodeRecords(QJsonDocument::fromJson(text).object(), layouts, {}));
    }
};

QTEST_GUILESS_MAIN(TextReadingTest)
#include "TextReadingTest.moc"
