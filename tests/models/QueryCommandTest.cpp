#include <QDir>
#include <QFile>
#include <QFileInfo>
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
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

// The empty id sorts first; f_none belongs to no product.
const char *kProducts = R"({
  "features": {"feature": [
    {"id": "f_base", "title": "Alpha"}, {"id": "f_a1b1", "title": "Both"},
    {"id": "", "title": "Nameless"}, {"id": "f_none", "title": "None"}, {"id": "f_plain"}
  ]},
  "products": {"product": [
    {"id": "Base", "modes": ["design"], "features": ["f_base", "", "f_plain"],
     "licensing": {"base": "L", "specific": [{"id": "f_base", "licenses": ["Lic1"]}]}},
    {"id": "a1", "features": ["f_a1b1"]},
    {"id": "b1", "features": ["f_a1b1"]}
  ]}
})";

const char *kLayouts = R"({"layouts": {"design": {"features": ["f_base"]}}})";

} // namespace

class QueryCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        for (const auto &file : {std::make_pair("products/products.json", kProducts),
                                 std::make_pair("layouts/layouts.json", kLayouts)}) {
            const QString path = m_dir->filePath(file.first);
            QDir().mkpath(QFileInfo(path).absolutePath());
            QFile out(path);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(file.second);
        }
    }

    void query_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");
        QTest::newRow("no criterion: every feature, in row order")
            << QStringList() << 0 << "\nf_a1b1\nf_base\nf_none\nf_plain\n";
        QTest::newRow("empty text is no criterion") << QStringList{"--title", ""} << 0
                                                    << "\nf_a1b1\nf_base\nf_none\nf_plain\n";
        QTest::newRow("title wildcard") << QStringList{"--title", "*"} << 0 << "\nf_a1b1\nf_base\n";
        QTest::newRow("keys of one field joined by AND")
            << QStringList{"--products", "a,\"b1\""} << 0 << "f_a1b1\n";
        QTest::newRow("blank after the comma is kept")
            << QStringList{"--products", "a, \"b1\""} << 1 << "";
        QTest::newRow("licences are the query's field") << QStringList{"--licenses", "Lic1"} << 0
                                                        << "f_base\n";
        QTest::newRow("fields joined by AND")
            << QStringList{"--id", "f_", "--layouts", "design", "--title", "alp"} << 0 << "f_base\n";
        QTest::newRow("no match") << QStringList{"--id", "zzz"} << 1 << "";
        QTest::newRow("unknown option") << QStringList{"--bogus", "x"} << 2 << "";
    }
    void query()
    {
        QFETCH(QStringList, options);
        QFETCH(int, status);
        QFETCH(QString, out);
        const Run run = Program(QStringList{"query", m_dir->path()} + options);
        QCOMPARE(run.status, status);
        QCOMPARE(run.out, out);
    }

    void refusedFolderIsAnError()
    {
        const Run run = Program({"query", m_dir->filePath("nowhere"), "--id", "x"});
        QCOMPARE(run.status, 2);
        QVERIFY(run.out.isEmpty());
        QVERIFY2(run.err.contains("nowhere"), qPrintable(run.err));
    }

    void bundledExampleHasTitledFeatures()
    {
        const Run run = Program({"query", PE_SOURCE_DIR "/examples/definitions", "--title", "*"});
        QCOMPARE(run.status, 0);
        QVERIFY(run.out.split('\n', Qt::SkipEmptyParts).size() > 10);
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(QueryCommandTest)
#include "QueryCommandTest.moc"
