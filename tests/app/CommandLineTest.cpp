#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Run
{
    int status = -1;
    QString out;
    QString err;
};

Run Program(const QStringList &args)
{
    QProcess process;
    process.start(PE_PROGRAM, args);
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()), QString::fromUtf8(process.readAllStandardError())};
}

void Write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray Read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QByteArray kProducts = R"({
  "features": {"feature": [{"id": "b", "title": "B", "visual": true}, {"id": "a"}]},
  "products": {"product": [{"id": "p", "licensing": {"base": "Base", "specific": [{"id": "a", "licenses": ["S"]}]},
                            "features": ["b", "a"], "modes": ["main"]}]},
  "extensions": {"extension": [{"id": "stl"}], "lic_coveradge": {"import": [{"id": "stl", "lic": ["Imp"]}]}}
})";

const QByteArray kLayout = R"({"layouts": {"main": {"features": ["a"]}}})";

} // namespace

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void checkPrintsCounts();
    void checkExplainsARefusedFolder_data();
    void checkExplainsARefusedFolder();
    void checkWarnsAboutSkippedLayouts();
    void licenseCatalogueOption();
    void normalizeRewritesInCanonicalForm();
    void normalizeCheckWritesNothing();
    void bundledExampleIsCanonical();
    void usageErrors_data();
    void usageErrors();
    void diffReportsWhatRegenerationChanges();
    void compareProducts();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_root;
};

void CommandLineTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_root = m_dir->filePath("defs");
    Write(m_root + "/products/products.json", kProducts);
    Write(m_root + "/layouts/main.json", kLayout);
}

void CommandLineTest::checkPrintsCounts()
{
    const Run run = Program({"check", m_root});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, QString("features: 2\nproducts: 1\nlayouts: 1\nextensions: 1\nlicenses: 3\n"));
    QCOMPARE(run.err, QString());
}

void CommandLineTest::checkExplainsARefusedFolder_data()
{
    QTest::addColumn<QString>("breakage");
    QTest::addColumn<QString>("message");

    QTest::newRow("missing folder") << "folder" << "the definition folder does not exist";
    QTest::newRow("missing products folder") << "products-folder" << "missing \"products\" folder";
    QTest::newRow("missing products.json") << "products-json" << "missing \"products.json\"";
    QTest::newRow("broken json") << "broken" << "not valid JSON: unterminated object at offset";
    QTest::newRow("array") << "array" << "\"products.json\" is not a JSON object";
}

void CommandLineTest::checkExplainsARefusedFolder()
{
    QFETCH(QString, breakage);
    QFETCH(QString, message);

    QString target = m_root;
    if (breakage == "folder")
        target = m_dir->filePath("nowhere");
    else if (breakage == "products-folder")
        QVERIFY(QDir(m_root + "/products").removeRecursively());
    else if (breakage == "products-json")
        QVERIFY(QFile::remove(m_root + "/products/products.json"));
    else if (breakage == "broken")
        Write(m_root + "/products/products.json", "{\"features\": {}");
    else if (breakage == "array")
        Write(m_root + "/products/products.json", "[1, 2]");

    for (const QString &command : {"check", "normalize", "diff", "query"}) {
        const Run run = Program({command, target});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.err.contains(message), qPrintable(command + ": " + run.err));
        QVERIFY2(run.err.contains(QDir::cleanPath(target).section('/', -1)), qPrintable(run.err));
    }
}

void CommandLineTest::checkWarnsAboutSkippedLayouts()
{
    Write(m_root + "/layouts/broken.json", "{\"layouts\": [");
    const Run run = Program({"check", m_root});
    QCOMPARE(run.status, 0);
    QVERIFY2(run.err.contains("broken.json: skipped"), qPrintable(run.err));
    QVERIFY(run.out.contains("layouts: 1\n"));
}

void CommandLineTest::licenseCatalogueOption()
{
    const QString catalogue = m_dir->filePath("licenses.json");
    Write(catalogue, R"({"Base": "Base license"})");
    QCOMPARE(Program({"check", m_root, "--licenses", catalogue}).out.section('\n', 4, 4), QString("licenses: 1"));

    Write(catalogue, "[]");
    const Run refused = Program({"check", m_root, "--licenses", catalogue});
    QCOMPARE(refused.status, 2);
    QVERIFY(refused.err.contains("licenses.json"));
}

void CommandLineTest::normalizeRewritesInCanonicalForm()
{
    const QString out = m_dir->filePath("out");
    QCOMPARE(Program({"normalize", m_root, "--out", out}).status, 0);
    QCOMPARE(Read(m_root + "/products/products.json"), kProducts);
    QVERIFY(Read(out + "/products/products.json").contains("\"features\": [\n                    \"a\",\n"));
    QVERIFY(QFile::exists(out + "/layouts/main.json"));
    QCOMPARE(Program({"normalize", out, "--check"}).status, 0);

    QCOMPARE(Program({"normalize", m_root}).status, 0);
    QCOMPARE(Read(m_root + "/products/products.json"), Read(out + "/products/products.json"));
    QCOMPARE(Read(m_root + "/layouts/main.json"), Read(out + "/layouts/main.json"));
}

void CommandLineTest::normalizeCheckWritesNothing()
{
    const Run run = Program({"normalize", m_root, "--check"});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.out.split('\n', Qt::SkipEmptyParts).size(), 2);
    QVERIFY(run.out.contains("products.json"));
    QCOMPARE(Read(m_root + "/products/products.json"), kProducts);

    // Into a folder that does not exist every file would be new, and nothing is created.
    const QString fresh = m_dir->filePath("fresh");
    const Run intoNew = Program({"normalize", m_root, "--check", "--out", fresh});
    QCOMPARE(intoNew.status, 1);
    QCOMPARE(intoNew.out, QString(fresh + "/products/products.json\n" + fresh + "/layouts/main.json\n"));
    QVERIFY(!QFile::exists(fresh));
}

void CommandLineTest::bundledExampleIsCanonical()
{
    const QString example = QStringLiteral(PE_SOURCE_DIR) + "/examples/definitions";
    if (!QFile::exists(example + "/products/products.json"))
        QSKIP("the bundled example is not present");
    const Run run = Program({"normalize", example, "--check"});
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 0);
}

void CommandLineTest::usageErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");

    QTest::newRow("help") << QStringList{"--help"} << 0 << "Usage:";
    QTest::newRow("command help") << QStringList{"check", "--help"} << 0 << "Usage:";
    QTest::newRow("version") << QStringList{"--version"} << 0 << "product-editor ";
    QTest::newRow("missing argument") << QStringList{"check"} << 2 << "missing argument";
    QTest::newRow("extra argument") << QStringList{"check", "a", "b"} << 2 << "unexpected argument 'b'";
    QTest::newRow("unknown option") << QStringList{"normalize", "x", "--bogus"} << 2 << "Unknown option 'bogus'";
    QTest::newRow("option without value") << QStringList{"normalize", "x", "--out"} << 2 << "Missing value after '--out'";
}

void CommandLineTest::usageErrors()
{
    QFETCH(QStringList, args);
    QFETCH(int, status);
    QFETCH(QString, text);

    const Run run = Program(args);
    QCOMPARE(run.status, status);
    QVERIFY2((status == 0 ? run.out : run.err).contains(text), qPrintable(run.out + run.err));
}

void CommandLineTest::diffReportsWhatRegenerationChanges()
{
    const Run text = Program({"diff", m_root});
    QCOMPARE(text.status, 1);
    QVERIFY2(text.out.contains("=== Products") && text.out.contains("- visual: true"), qPrintable(text.out));

    const Run json = Program({"diff", m_root, "--format", "json"});
    QCOMPARE(json.status, 1);
    const QJsonObject trees = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(trees.keys(), QStringList({"Products", "main"}));
    const QJsonObject root = trees.value("Products").toObject();
    QCOMPARE(root.value("key").toString(), QString("root"));
    QCOMPARE(root.value("type").toString(), QString("Object"));
    QVERIFY(!root.value("children").toArray().isEmpty());

    const QString out = m_dir->filePath("out");
    QCOMPARE(Program({"normalize", m_root, "--out", out}).status, 0);
    QCOMPARE(Program({"diff", out}).status, 0);
    // Two folders compare their regenerated documents, so the canonical copy matches its source.
    QCOMPARE(Program({"diff", m_root, out}).status, 0);
    QCOMPARE(Program({"diff", m_root, m_dir->filePath("nowhere")}).status, 2);
}

void CommandLineTest::compareProducts()
{
    Write(m_root + "/products/products.json", R"({"products": {"product": [
        {"id": "a", "profile_suffix": "x", "features": ["f"]}, {"id": "b", "profile_suffix": "y"}]}})");
    const Run run = Program({"compare-products", m_root, "a", "b", "--format", "json"});
    QCOMPARE(run.status, 1);
    const QJsonObject trees = QJsonDocument::fromJson(run.out.toUtf8()).object();
    QCOMPARE(trees.keys(), QStringList({"a / b"}));
    QVERIFY(run.out.contains("profile_suffix"));

    QCOMPARE(Program({"compare-products", m_root, "a", "a"}).status, 0);
    const Run unknown = Program({"compare-products", m_root, "a", "nope"});
    QCOMPARE(unknown.status, 2);
    QVERIFY(unknown.err.contains("nope"));
}

QTEST_GUILESS_MAIN(CommandLineTest)
#include "CommandLineTest.moc"
