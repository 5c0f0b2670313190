// check on a folder with every kind of problem planted once: its three formats and
// exit statuses, and the command line's other summaries.
#include "PlantedFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A JSON-schema subset: type, required, properties, items, minItems, minimum, enum.
bool Conforms(const QJsonValue &value, const QJsonObject &schema, const QString &at, QString *why)
{
    static const QMap<QString, QJsonValue::Type> types{{"object", QJsonValue::Object}, {"array", QJsonValue::Array},
                                                       {"string", QJsonValue::String}, {"integer", QJsonValue::Double}};
    const auto fail = [&](const QString &reason) {
        *why = at + ": " + reason;
        return false;
    };
    if (schema.contains("type") && value.type() != types.value(schema["type"].toString()))
        return fail("not " + schema["type"].toString());
    if (schema.contains("enum") && !schema["enum"].toArray().contains(value))
        return fail("not one of the allowed values");
    if (schema.contains("minimum") && value.toDouble() < schema["minimum"].toDouble())
        return fail("below the minimum");
    if (schema.contains("minItems") && value.toArray().size() < schema["minItems"].toInt())
        return fail("too few items");
    for (const QJsonValue &name : schema["required"].toArray()) {
        if (!value.toObject().contains(name.toString()))
            return fail("missing " + name.toString());
    }
    const QJsonObject properties = schema["properties"].toObject();
    for (auto it = properties.begin(); it != properties.end(); ++it) {
        if (value.toObject().contains(it.key())
            && !Conforms(value.toObject()[it.key()], it.value().toObject(), at + "." + it.key(), why))
            return false;
    }
    const QJsonArray items = value.toArray();
    for (int i = 0; schema.contains("items") && i < items.size(); ++i) {
        if (!Conforms(items[i], schema["items"].toObject(), at + QString("[%1]").arg(i), why))
            return false;
    }
    return true;
}

// What SARIF 2.1.0 requires of a log, its tool, rules and results with physical locations.
const char *const kSarifSchema = R"({
  "type": "object", "required": ["version", "runs"],
  "properties": {
    "version": {"enum": ["2.1.0"]},
    "runs": {"type": "array", "minItems": 1, "items": {
      "type": "object", "required": ["tool"],
      "properties": {
        "tool": {"type": "object", "required": ["driver"], "properties": {"driver": {
          "type": "object", "required": ["name"],
          "properties": {"name": {"type": "string"}, "version": {"type": "string"},
            "rules": {"type": "array", "items": {"type": "object", "required": ["id"],
              "properties": {"id": {"type": "string"},
                "shortDescription": {"type": "object", "required": ["text"]}}}}}}}},
        "results": {"type": "array", "items": {
          "type": "object", "required": ["message"],
          "properties": {
            "ruleId": {"type": "string"}, "ruleIndex": {"type": "integer", "minimum": 0},
            "level": {"enum": ["none", "note", "warning", "error"]},
            "message": {"type": "object", "required": ["text"], "properties": {"text": {"type": "string"}}},
            "locations": {"type": "array", "items": {"type": "object", "properties": {
              "physicalLocation": {"type": "object", "required": ["artifactLocation"], "properties": {
                "artifactLocation": {"type": "object", "required": ["uri"], "properties": {"uri": {"type": "string"}}},
                "region": {"type": "object", "properties": {
                  "startLine": {"type": "integer", "minimum": 1},
                  "startColumn": {"type": "integer", "minimum": 1}}}}}}}}}}}}}}}
})";

} // namespace

class CheckCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_root = m_dir.filePath("defs");
        WritePlantedFolder(m_root);
    }

    void program_data()
    {
        QTest::addColumn<QStringList>("args"); // TMP: the temporary folder
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text"); // found in stdout

        const QString defs = "TMP/defs";
        const QString example = PE_SOURCE_DIR "/examples/definitions";
        QTest::newRow("clean") << QStringList{"check", example, "--strict"} << 0 << "licenses: 10\n0 warnings, 0 errors\n";
        QTest::newRow("warnings") << QStringList{"check", defs} << 0
                                  << "TMP/defs/products/products.json:4:15: warning: \"colour\": \"red\" is not a key the "
                                     "editor knows; saving drops it [PE009]\n";
        QTest::newRow("strict") << QStringList{"check", defs, "--strict"} << 1 << "\n22 warnings, 0 errors\n";
        QTest::newRow("json") << QStringList{"check", defs, "--format", "json"} << 0
                              << "\"path\": \"$.products.product[0].features[1]\",\n            \"severity\": \"warning\"";
        QTest::newRow("refused") << QStringList{"check", "TMP/no", "--format", "json"} << 2
                                 << "\"code\": \"PE000\",\n            \"column\": 1,\n            \"file\": \"TMP/no\"";
        QTest::newRow("bad JSON") << QStringList{"check", "TMP/bad"} << 2
                                  << "TMP/bad/products/products.json:2:4: error: not valid JSON: unterminated string at offset 5 ";
        QTest::newRow("did you mean") << QStringList{"chek", defs} << 2 << "";
        QTest::newRow("normalize") << QStringList{"normalize", defs, "--out", "TMP/out", "--verbose"} << 0
                                   << "wrote TMP/out/products/products.json\n";
        QTest::newRow("diff summary") << QStringList{"diff", defs} << 1 << "\n# summary: Products: ";
    }

    void program()
    {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, text);

        Write(m_dir.filePath("bad/products/products.json"), "{\n\"a\"");
        const Run run = Program(args.replaceInStrings("TMP", m_dir.path()));
        QVERIFY2(run.out.contains(text.replace("TMP", m_dir.path())), qPrintable(run.out + run.err));
        QCOMPARE(run.status, status);
        if (QString(QTest::currentDataTag()) == "warnings") // the skipped layout file, once: as PE011
            QVERIFY2(!run.err.contains("bad.json"), qPrintable(run.err));
        if (QString(QTest::currentDataTag()) == "did you mean")
            QVERIFY(run.err.startsWith("product-editor: unknown command 'chek' - did you mean check?\n"));
        if (QString(QTest::currentDataTag()) == "normalize") {
            QVERIFY(run.out.endsWith("wrote 3 files, 0 unchanged\n"));
            QCOMPARE(Program({"normalize", m_dir.filePath("out")}).out, QString("wrote 0 files, 3 unchanged\n"));
        }
    }

    void sarifConforms()
    {
        const Run run = Program({"check", m_root, "--format", "sarif"});
        QJsonParseError error;
        const QJsonDocument log = QJsonDocument::fromJson(run.out.toUtf8(), &error);
        QCOMPARE(error.error, QJsonParseError::NoError);
        QString why;
        QVERIFY2(Conforms(log.object(), QJsonDocument::fromJson(kSarifSchema).object(), "$", &why), qPrintable(why));
        const QJsonObject runObject = log["runs"][0].toObject();
        QCOMPARE(runObject["results"].toArray().size(), 22);
        const QJsonObject first = runObject["results"][0].toObject();
        const QJsonArray rules = runObject["tool"]["driver"]["rules"].toArray();
        QCOMPARE(rules[first["ruleIndex"].toInt()]["id"], first["ruleId"]);
        QCOMPARE(first["locations"][0]["physicalLocation"]["artifactLocation"]["uri"].toString(),
                 QUrl::fromLocalFile(m_root + "/products/products.json").toString());
    }

private:
    QTemporaryDir m_dir;
    QString m_root;
};

QTEST_MAIN(CheckCommandTest)
#include "CheckCommandTest.moc"
