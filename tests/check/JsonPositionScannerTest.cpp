// The position scanner against the parser: where each value is, what it holds, and
// nothing at all for bytes that are not JSON.
#include "check/JsonPositionScanner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace ProductEditor;

namespace {

// The node reached from the root by `steps`: a key for objects, a number for arrays.
int Walk(const JsonPositionScanner &json, const QStringList &steps)
{
    int node = json.root();
    for (const QString &step : steps) {
        bool isIndex = false;
        const int index = step.toInt(&isIndex);
        node = isIndex ? json.child(node, index) : json.member(node, QLatin1String(step.toLatin1()));
    }
    return node;
}

} // namespace

class JsonPositionScannerTest : public QObject
{
    Q_OBJECT

private slots:
    // Defined below the class: moc misreads the escapes in its raw strings.
    void positions_data();

    void positions()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, steps);
        QFETCH(int, line);
        QFETCH(int, column);
        QFETCH(QString, path);
        QFETCH(QString, text);

        QVERIFY(!QJsonDocument::fromJson(bytes).isNull());
        const JsonPositionScanner json(bytes);
        const int node = Walk(json, steps);
        QCOMPARE(json.line(node), line);
        QCOMPARE(json.column(node), column);
        QCOMPARE(json.path(node), path);
        QCOMPARE(json.kind(node) == JsonPositionScanner::Kind::String ? json.string(node) : json.key(node), text);
    }

    void notJson_data()
    {
        QTest::addColumn<QByteArray>("bytes");

        for (const char *bytes : {"", "  ", "{", "{\"a\" 1}", "[1,]", "[1 2]", "{\"a\": tru}", "\"open", "{} {}", "]",
                                  "{\"a\": 1,}", "[\"\\\"]"})
            QTest::addRow("%s", bytes) << QByteArray(bytes);
    }

    void notJson()
    {
        QFETCH(QByteArray, bytes);

        QVERIFY(QJsonDocument::fromJson(bytes).isNull());
        const JsonPositionScanner json(bytes);
        QVERIFY(!json.isValid());
        QCOMPARE(json.root(), -1);
        QCOMPARE(json.childCount(0), 0);
        QCOMPARE(json.member(0, QLatin1String("a")), -1);
        QCOMPARE(json.line(0), 0);
        QCOMPARE(json.path(0), QString());
        QCOMPARE(json.source(0), QByteArray());
    }

    // Cut anywhere, a document is JSON for the scanner exactly when it is for the parser,
    // and whatever the scanner keeps of it matches what the parser reads.
    void everyPrefix()
    {
        const QByteArray bytes = "{\"a\": [1, -2.5e3, true, false, null, \"\\u00e9\\\"\"],\n \"b\": {\"c\": {}}, \"d\": []}";
        for (int length = 0; length <= bytes.size(); ++length) {
            const QByteArray prefix = bytes.left(length);
            const QJsonDocument document = QJsonDocument::fromJson(prefix);
            const JsonPositionScanner json(prefix);
            QCOMPARE(json.isValid(), !document.isNull());
            if (json.isValid()) {
                QCOMPARE(json.childCount(json.root()), document.object().size());
                QCOMPARE(json.string(Walk(json, {"a", "5"})), document["a"][5].toString());
            }
        }
    }
};

void JsonPositionScannerTest::positions_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("text"); // string(), or key() when the value is not a string

    const QByteArray nested = "{\n  \"a\": {\"b\": [1, \"x\",\n    {\"c\": true}]},\n\t\"d e\": null\n}";
    QTest::newRow("root") << nested << QStringList{} << 1 << 1 << "$" << "";
    QTest::newRow("member at its key") << nested << QStringList{"a"} << 2 << 3 << "$.a" << "a";
    QTest::newRow("element at its value") << nested << QStringList{"a", "b", "1"} << 2 << 18 << "$.a.b[1]" << "x";
    QTest::newRow("next line") << nested << QStringList{"a", "b", "2", "c"} << 3 << 6 << "$.a.b[2].c" << "c";
    QTest::newRow("tab, odd key") << nested << QStringList{"d e"} << 4 << 2 << "$[\"d e\"]" << "d e";
    // Columns count UTF-16 units: two-byte letters count one, an astral character two.
    QTest::newRow("after non-ASCII") << QByteArray("{\"é\u00e9\": 1, \"k\": \"\xF0\x9F\x98\x80!\", \"z\": 0}")
                                     << QStringList{"z"} << 1 << 23 << "$.z" << "z";
    QTest::newRow("escapes") << QByteArray(R"({"k\u0041": "a\"b\\c\n\u00e9\ud83d\ude00"})") << QStringList{"kA"} << 1
                             << 2 << "$.kA" << QString::fromUtf8("a\"b\\c\n\u00e9\U0001F600");
    QTest::newRow("repeated key: the last") << QByteArray(R"({"k": 1, "k": "two"})") << QStringList{"k"} << 1 << 10
                                            << "$.k" << "two";
    QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF{\"k\": 1}") << QStringList{"k"} << 1 << 2 << "$.k"
                                     << "k";
    QTest::newRow("no such member") << nested << QStringList{"zz"} << 0 << 0 << "" << "";
    QTest::newRow("past the end") << nested << QStringList{"a", "b", "3"} << 0 << 0 << "" << "";
    QTest::newRow("into a number") << nested << QStringList{"a", "b", "0", "0"} << 0 << 0 << "" << "";
}

QTEST_GUILESS_MAIN(JsonPositionScannerTest)
#include "JsonPositionScannerTest.moc"
