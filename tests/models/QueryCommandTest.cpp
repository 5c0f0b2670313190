#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

// The empty id sorts first; f_none belongs to no product.
const char *kProducts = R"({
  "features": {"feature": [{"id": "f_base", "title": "Alpha"}, {"id": "f_a1b1", "title": "Both"},
    {"id": "", "title": "Nameless"}, {"id": "f_none", "title": "None"}, {"id": "f_plain"}]},
  "products": {"product": [
    {"id": "Base", "modes": ["design"], "features": ["f_base", "", "f_plain"],
     "licensing": {"base": "L", "specific": [{"id": "f_base", "licenses": ["Lic1"]}]}},
    {"id": "a1", "features": ["f_a1b1"]}, {"id": "b1", "features": ["f_a1b1"]}]}})";
const char *kLayouts = R"({"layouts": {"design": {"features": ["f_base"]}}})";

} // namespace

class QueryCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const auto &file : {std::make_pair("products", kProducts), std::make_pair("layouts", kLayouts)}) {
            QVERIFY(QDir(m_dir.path()).mkpath(file.first));
            QFile out(m_dir.filePath(QStringLiteral("%1/%1.json").arg(file.first)));
            QVERIFY(out.open(QIODevice::WriteOnly) && out.write(file.second) > 0);
        }
    }

    // "DIR" stands for the definition folder; errors are reported exactly when the status is 2.
    void query_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");
        const QString all = "\nf_a1b1\nf_base\nf_none\nf_plain\n";
        QTest::newRow("no criterion: every feature, in row order") << QStringList{"DIR"} << 0 << all;
        QTest::newRow("products") << QStringList{"DIR", "--products", "a,\"b1\""} << 0 << "f_a1b1\n";
        QTest::newRow("id, layouts and title")
            << QStringList{"DIR", "--id", "f_", "--layouts", "design", "--title", "alp"} << 0 << "f_base\n";
        QTest::newRow("no match") << QStringList{"DIR", "--id", "zzz"} << 1 << "";
        QTest::newRow("refused folder") << QStringList{"DIR/nowhere", "--id", "x"} << 2 << "";
        QTest::newRow("bundled example, whole word")
            << QStringList{PE_SOURCE_DIR "/examples/definitions", "--id", "\"file_open\""} << 0 << "file_open\n";
    }
    void query()
    {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, out);
        args.replaceInStrings(QRegularExpression("^DIR"), m_dir.path()).prepend("query");
        QProcess process;
        process.start(PE_PROGRAM, args);
        QVERIFY(process.waitForFinished(120000));
        const QString err = QString::fromUtf8(process.readAllStandardError());
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()), out);
        QCOMPARE(process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, status);
        QVERIFY2(err.isEmpty() != (status == 2), qPrintable(err));
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(QueryCommandTest)
#include "QueryCommandTest.moc"
