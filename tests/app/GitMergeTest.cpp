// The git commands against real repositories, with the driver pointed at the built program.
#include "GitSandbox.h"
#include "TestHelpers.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

const QString kOpen = R"({"id":"open","title":"Open"})";
const QString kSave = R"({"id":"save","title":"Save","tooltip":"Saves"})";
const QString kCut = R"({"id":"cut","title":"Cut"})";
const QString kPaste = R"({"id":"paste","title":"Paste"})";

QString Products(const QString &features, const QString &p, const QString &q = R"("open")")
{
    return QStringLiteral(R"({"features":{"feature":[%1]},"products":{"product":[{"id":"p","features":[%2],
        "modes":["main"]},{"id":"q","features":[%3],"modes":["main"]}]}})").arg(features, p, q);
}

QString Layout(const QString &features, const QString &extensions = QString())
{
    return QStringLiteral(R"({"layouts":{"main":{"features":[%1]%2}}})").arg(features, extensions);
}

} // namespace

class GitMergeTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        IsolateGit(m_dir->path());
    }

    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_repo = m_dir->filePath("repo");
        QVERIFY(InitRepository(m_repo));
        Write(m_repo + "/defs/products/products.json", Products(kOpen + "," + kSave, R"("open","save")"));
        Write(m_repo + "/defs/layouts/main.json", Layout(R"("open","save")"));
        QCOMPARE(Program({"normalize", "defs"}).status, 0);
    }

    void cleanMerge_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QStringList>("ours");
        QTest::addColumn<QStringList>("theirs");
        QTest::addColumn<QStringList>("both");

        const QString importStl = R"(,"extensions":{"import":["stl"]})", openObj = R"(,"extensions":{"open":["obj"]})";
        const QStringList added[3] = {
            {Products(kOpen + "," + kSave + "," + kCut, R"("open","save","cut")"), Layout(R"("open","save","cut")")},
            {Products(kPaste + "," + kOpen + "," + kSave, R"("open","save")", R"("open","paste")"),
             Layout(R"("open","paste","save")")},
            {Products(kOpen + "," + kSave + "," + kCut + "," + kPaste, R"("open","save","cut")", R"("open","paste")"),
             Layout(R"("open","save","cut","paste")")}};
        for (const char *how : {"merge", "rebase", "resolve"})
            QTest::newRow(qPrintable(QString("features added, ") + how)) << QString(how) << added[0] << added[1] << added[2];
        QTest::newRow("fields of one feature, merge")
            << "merge" << QStringList{Products(kOpen + R"(,{"id":"save","title":"Save all","tooltip":"Saves"})",
                                               R"("open","save")"), Layout(R"("open","save")", importStl)}
            << QStringList{Products(kOpen + R"(,{"id":"save","title":"Save","tooltip":"Writes"})", R"("open","save")"),
                           Layout(R"("open","save")", openObj)}
            << QStringList{Products(kOpen + R"(,{"id":"save","title":"Save all","tooltip":"Writes"})",
                                    R"("open","save")"),
                           Layout(R"("open","save")", R"(,"extensions":{"import":["stl"],"open":["obj"]})")};
        QTest::newRow("reordered arrays, merge")
            << "merge" << QStringList{Products(kSave + R"(,{"id":"open","title":"Open..."})", R"("save","open")",
                                               R"("open")"), Layout(R"("save","open")")}
            << QStringList{Products(kOpen + R"(,{"id":"save","title":"Save all","tooltip":"Saves"})",
                                    R"("open","save")"), Layout(R"("open","save")", openObj)}
            << QStringList{Products(R"({"id":"open","title":"Open..."},{"id":"save","title":"Save all","tooltip":"Saves"})",
                                    R"("open","save")"), Layout(R"("open","save")", openObj)};
    }

    void cleanMerge()
    {
        QFETCH(QString, how);
        QFETCH(QStringList, ours);
        QFETCH(QStringList, theirs);
        QFETCH(QStringList, both);

        Branches(how != "resolve", ours, theirs);
        if (how == "rebase") {
            Git({"checkout", "-q", "theirs"});
            const Run rebase = Git({"rebase", "main"});
            QVERIFY2(rebase.status == 0, qPrintable(rebase.all()));
        } else {
            const Run merge = Git({"merge", "--no-edit", "theirs"});
            QCOMPARE(merge.status, how == "merge" ? 0 : 1);
        }
        if (how == "resolve") {
            const Run resolve = Program({"resolve"});
            QCOMPARE(resolve.status, 0);
            QVERIFY(resolve.all().contains("resolved defs/products/products.json\n"));
            QCOMPARE(Git({"ls-files", "-u"}).all(), QString());
        }
        for (const QString file : {"products/products.json", "layouts/main.json"})
            QCOMPARE(Read(m_repo + "/defs/" + file), Normalized(both.at(0), both.at(1), file));
    }

    void conflict_data()
    {
        QTest::addColumn<bool>("driver");
        QTest::newRow("driver") << true;
        QTest::newRow("resolve after a plain merge") << false;
    }

    void conflict()
    {
        QFETCH(bool, driver);

        const QString layout = Layout(R"("open","save")");
        Branches(driver, {Products(R"({"id":"open","title":"Open A"},)" + kSave, R"("open","save")"), layout},
                 {Products(R"({"id":"open","title":"Open B"},)" + kSave, R"("open","save")"), layout});
        QCOMPARE(Git({"merge", "--no-edit", "theirs"}).status, 1);
        if (!driver) {
            const Run resolve = Program({"resolve", "defs"});
            QCOMPARE(resolve.status, 1);
            QCOMPARE(resolve.all(), QString("defs/products/products.json: 1 conflict\n  features/feature[id=open]/title\n"));
        }
        const QByteArray merged = Read(m_repo + "/defs/products/products.json");
        QCOMPARE(merged.count("<<<<<<<"), 1);
        QVERIFY2(merged.contains("            {\n                \"id\": \"open\",\n"
                                 "<<<<<<< ours\n                \"title\": \"Open A\"\n"
                                 "||||||| base\n                \"title\": \"Open\"\n"
                                 "=======\n                \"title\": \"Open B\"\n>>>>>>> theirs\n            },\n"),
                 merged.constData());
        QVERIFY(Git({"ls-files", "-u"}).all().contains("defs/products/products.json"));
    }

    void commandRun_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");

        const QString change = "    ~ open\n      ~ title: \"Open\" -> \"Open A\"\n";
        const QString products = "defs/products/products.json";
        QTest::newRow("diff to the working tree") << QStringList{"diff", "defs", "--from", "HEAD~1"} << 1 << change;
        QTest::newRow("diff, no change") << QStringList{"diff", "defs", "--from", "HEAD"} << 0 << "";
        QTest::newRow("diff, unknown revision")
            << QStringList{"diff", "defs", "--from", "nope"} << 2 << "product-editor: nope: not a revision";
        QTest::newRow("diff, --to alone") << QStringList{"diff", "defs", "--to", "HEAD"} << 2 << "diff: --to needs --from";
        QTest::newRow("diff for review between revisions")
            << QStringList{"diff", "defs", "--from", "HEAD~1", "--to", "HEAD", "--format", "review"} << 1
            << "## Definition changes: defs at HEAD~1 -> defs at HEAD\n\n**1 change** to 1 feature\n\n"
               "### Features\n\n- feature open: title \"Open\" -> \"Open A\"\n";
        QTest::newRow("diff for review, no change")
            << QStringList{"diff", "defs", "--from", "HEAD", "--format", "review"} << 0 << "";
        QTest::newRow("diff for review of one version")
            << QStringList{"diff", "defs", "--format", "review"} << 2
            << "diff: --format review compares two versions: give OTHER or --from";
        QTest::newRow("merge-file, unparsable input")
            << QStringList{"merge-file", products, products, "bad.json"} << 2
            << "product-editor: bad.json:2:1: unterminated array";
        QTest::newRow("merge-file, unreadable input")
            << QStringList{"merge-file", "none.json", products, products} << 2 << "product-editor: none.json: cannot read";
        QTest::newRow("resolve, nothing to do") << QStringList{"resolve"} << 0 << "no conflicted definition files\n";
    }

    void commandRun()
    {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, out);

        Git({"add", "-A"});
        Git({"commit", "-q", "-m", "base"});
        Commit(Products(R"({"id":"open","title":"Open A"},)" + kSave, R"("open","save")"), Layout(R"("open","save")"));
        Write(m_repo + "/bad.json", "{\"a\": [1,\n");
        const Run run = Program(args);
        QCOMPARE(run.status, status);
        QVERIFY2(run.all().contains(out), qPrintable(run.all()));
    }

    void mergeFolders()
    {
        const QString base = m_repo + "/defs", ours = m_dir->filePath("ours"), theirs = m_dir->filePath("theirs");
        Write(ours + "/products/products.json", Products(kOpen + "," + kSave + "," + kCut, R"("open","save","cut")"));
        Write(theirs + "/products/products.json", Products(kOpen + "," + kSave, R"("open","save")", R"("open","save")"));
        Write(theirs + "/layouts/main.json", Layout(R"("save","open")"));
        Write(theirs + "/layouts/extra.json", R"({"layouts":{"extra":{}}})");
        const Run merge = Program({"merge", base, ours, theirs, "--out", m_dir->filePath("out")});
        QVERIFY2(merge.status == 0, qPrintable(merge.all()));
        QCOMPARE(QDir(m_dir->filePath("out/layouts")).entryList(QDir::Files), QStringList{"extra.json"});
        QCOMPARE(Read(m_dir->filePath("out/products/products.json")),
                 Normalized(Products(kOpen + "," + kSave + "," + kCut, R"("open","save","cut")", R"("open","save")"),
                            Layout(""), "products/products.json"));
    }

private:
    Run Git(const QStringList &args) { return Start(QStringLiteral("git"), args, m_repo); }
    Run Program(const QStringList &args) { return Start(PE_PROGRAM, args, m_repo); }

    void Commit(const QString &products, const QString &layout)
    {
        Write(m_repo + "/defs/products/products.json", products);
        Write(m_repo + "/defs/layouts/main.json", layout);
        QCOMPARE(Git({"commit", "-q", "-a", "-m", "edit"}).status, 0);
    }

    // main holds ours, branch "theirs" theirs, both made from one base commit.
    void Branches(bool driver, const QStringList &ours, const QStringList &theirs)
    {
        if (driver) {
            const Run setup = Program({"git-setup"});
            QVERIFY2(setup.status == 0, qPrintable(setup.all()));
            QCOMPARE(Read(m_repo + "/.gitattributes"),
                     QByteArray("defs/layouts/* merge=product-definitions\n"
                                "defs/products/products.json merge=product-definitions\n"));
        }
        Git({"add", "-A"});
        QCOMPARE(Git({"commit", "-q", "-m", "base"}).status, 0);
        Git({"checkout", "-q", "-b", "theirs"});
        Commit(theirs.at(0), theirs.at(1));
        Git({"checkout", "-q", "main"});
        Commit(ours.at(0), ours.at(1));
    }
    // What normalize writes for a folder that holds these documents.

    QByteArray Normalized(const QString &products, const QString &layout, const QString &file)
    {
        const QString folder = m_dir->filePath("expected");
        Write(folder + "/products/products.json", products);
        Write(folder + "/layouts/main.json", layout);
        return Program({"normalize", folder}).status == 0 ? Read(folder + "/" + file) : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_repo;
};

QTEST_GUILESS_MAIN(GitMergeTest)
#include "GitMergeTest.moc"
