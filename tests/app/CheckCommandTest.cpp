// check on a folder with every kind of problem planted once: its three formats and
// exit statuses, and the command line's other summaries.
#include "PlantedFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

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

    // What SARIF 2.1.0 requires of a log, its tool, rules and results with physical locations.
    void sarifConforms()
    {
        const Run run = Program({"check", m_root, "--format", "sarif"});
        QJsonParseError error;
        const QJsonObject log = QJsonDocument::fromJson(run.out.toUtf8(), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(log["version"].toString() + ' ' + QString::number(log["runs"].toArray().size()), "2.1.0 1");
        const QJsonObject runObject = log["runs"][0].toObject();
        const QJsonObject driver = runObject["tool"]["driver"].toObject();
        QVERIFY(driver["name"].isString() && driver["version"].isString());
        const QJsonArray rules = driver["rules"].toArray();
        for (const QJsonValue rule : rules)
            QVERIFY(rule["id"].isString() && rule["shortDescription"]["text"].isString());
        const QJsonArray results = runObject["results"].toArray();
        QCOMPARE(results.size(), 22);
        for (const QJsonValue result : results) {
            QCOMPARE(rules[result["ruleIndex"].toInt(-1)]["id"], result["ruleId"]);
            QVERIFY(result["message"]["text"].isString());
            QVERIFY(QStringList({"none", "note", "warning", "error"}).contains(result["level"].toString()));
            const QJsonValue location = result["locations"][0]["physicalLocation"];
            QVERIFY(location["artifactLocation"]["uri"].isString());
            QVERIFY(location["region"]["startLine"].toInt() >= 1 && location["region"]["startColumn"].toInt() >= 1);
        }
        QCOMPARE(results[0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"].toString(),
                 QUrl::fromLocalFile(m_root + "/products/products.json").toString());
    }

private:
    QTemporaryDir m_dir;
    QString m_root;
};

QTEST_MAIN(CheckCommandTest)
#include "CheckCommandTest.moc"
