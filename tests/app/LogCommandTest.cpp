// `log` on real git repositories: which commits it lists for one entry, across a rename.
#include "GitSandbox.h"
#include "TestHelpers.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

// The definitions of the test history, changed step by step.
struct Definitions
{
    QString open = "open";
    QString openTitle = "Open";
    QString saveTitle = "Save";
    QString cutTooltip;
    QStringList p{"open", "save"};
    QStringList q{"save", "cut"};
    QStringList main{"open", "cut"};

    void Write(const QString &folder) const
    {
        const auto feature = [](const QString &id, const QString &title, const QString &tooltip = QString()) {
            QJsonObject object{{"id", id}, {"title", title}};
            if (!tooltip.isEmpty())
                object.insert("tooltip", tooltip);
            return object;
        };
        const auto product = [](const QString &id, const QStringList &features) {
            return QJsonObject{{"id", id}, {"features", QJsonArray::fromStringList(features)},
                               {"modes", QJsonArray{"main"}}};
        };
        const QJsonObject products{
            {"features", QJsonObject{{"feature", QJsonArray{feature(open, openTitle), feature("save", saveTitle),
                                                            feature("cut", "Cut", cutTooltip)}}}},
            {"products", QJsonObject{{"product", QJsonArray{product("p", p), product("q", q)}}}}};
        const QJsonObject layouts{
            {"layouts", QJsonObject{{"main", QJsonObject{{"features", QJsonArray::fromStringList(main)}}}}}};
        Write(folder + "/products/products.json", QJsonDocument(products).toJson());
        Write(folder + "/layouts/main.json", QJsonDocument(layouts).toJson());
    }

    static void Write(const QString &path, const QByteArray &bytes) { ::Write(path, bytes); }
};

QStringList Rename(QStringList names, const QString &from, const QString &to)
{
    names.replaceInStrings(QRegularExpression("^" + from + "$"), to);
    return names;
}

} // namespace

class LogCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        IsolateGit(m_dir->path());
        m_repo = m_dir->filePath("repo");
        QVERIFY(InitRepository(m_repo));

        Definitions defs;
        Commit(defs, "Add features");
        defs.saveTitle = "Save all";
        Commit(defs, "Retitle save");
        defs.openTitle = "Open file";
        Commit(defs, "Retitle open");
        Write(m_repo + "/README", "notes");
        Commit(defs, "Touch the readme");
        defs.q << "open";
        Commit(defs, "Open joins q");
        defs.p = Rename(defs.p, "open", "load");
        defs.q = Rename(defs.q, "open", "load");
        defs.main = Rename(defs.main, "open", "load");
        defs.open = "load";
        Commit(defs, "Rename open to load");
        defs.main.removeAll("load");
        Commit(defs, "Load leaves main");
        defs.cutTooltip = "Cuts";
        Commit(defs, "Tooltip of cut");
    }

    void commitsOfOneEntry_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QStringList>("subjects");

        QTest::newRow("a feature across its rename")
            << QStringList{"load"}
            << QStringList{"Load leaves main", "Rename open to load", "Open joins q", "Retitle open", "Add features"};
        QTest::newRow("a feature changed once") << QStringList{"save"} << QStringList{"Retitle save", "Add features"};
        QTest::newRow("the first N") << QStringList{"load", "--max-count", "2"}
                                     << QStringList{"Load leaves main", "Rename open to load"};
        QTest::newRow("a product its features join")
            << QStringList{"q", "--kind", "product"} << QStringList{"Open joins q", "Add features"};
        QTest::newRow("a product no commit changed since") << QStringList{"p", "--kind", "product"}
                                                           << QStringList{"Add features"};
        QTest::newRow("a layout") << QStringList{"main", "--kind", "layout"}
                                  << QStringList{"Load leaves main", "Add features"};
        QTest::newRow("an id that never was") << QStringList{"paste"} << QStringList{};
    }

    void commitsOfOneEntry()
    {
        QFETCH(QStringList, args);
        QFETCH(QStringList, subjects);
        const Run run = Program(QStringList{"log", m_repo + "/defs"} + args + QStringList{"--format", "json"});
        QCOMPARE(run.status, subjects.isEmpty() ? 1 : 0);
        QStringList listed;
        for (const QJsonValue &commit : Obj(run.out.toUtf8()).value("commits").toArray())
            listed << commit.toObject().value("subject").toString();
        QCOMPARE(listed, subjects);
    }

    void changesInProductTerms()
    {
        const Run run = Program({"log", m_repo + "/defs", "load", "-n", "4"});
        QCOMPARE(run.status, 0);
        for (const char *line : {"    Rename open to load\n\n    feature renamed open -> load\n",
                                 "    feature load removed from layout main\n", "    feature open added to product q\n",
                                 "    feature open: title \"Open\" -> \"Open file\"\n"})
            QVERIFY2(run.out.contains(line), line);
        QVERIFY(run.out.startsWith("commit "));
    }

    void mergesByFirstParentOrAll()
    {
        QTemporaryDir clone;
        const QString repo = clone.filePath("repo");
        QCOMPARE(Start("git", {"clone", "-q", m_repo, repo}).status, 0);
        const auto git = [&repo](const QStringList &args) { return Start("git", QStringList{"-C", repo} + args).status; };
        git({"config", "user.name", "Tester"});
        git({"config", "user.email", "tester@example.org"});
        git({"checkout", "-q", "-b", "side"});
        Definitions defs;
        defs.open = "load";
        defs.openTitle = "Open file";
        defs.saveTitle = "Save all";
        defs.q = QStringList{"save", "cut", "load"};
        defs.p = QStringList{"load", "save"};
        defs.main = QStringList{"cut"};
        defs.cutTooltip = "Cuts everything";
        defs.Write(repo + "/defs");
        QCOMPARE(git({"commit", "-q", "-am", "Longer cut tooltip"}), 0);
        git({"checkout", "-q", "main"});
        QCOMPARE(git({"merge", "-q", "--no-ff", "-m", "Merge side", "side"}), 0);

        const auto subjects = [&repo](const QStringList &options) {
            QStringList listed;
            const Run run = Program(QStringList{"log", repo + "/defs", "cut", "--format", "json"} + options);
            for (const QJsonValue &commit : Obj(run.out.toUtf8()).value("commits").toArray())
                listed << commit.toObject().value("subject").toString();
            return listed;
        };
        QCOMPARE(subjects({}), (QStringList{"Merge side", "Tooltip of cut", "Add features"}));
        QCOMPARE(subjects({"--all-parents"}), (QStringList{"Longer cut tooltip", "Tooltip of cut", "Add features"}));
    }

    void refusals_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("message");
        QTest::newRow("unknown kind") << QStringList{"open", "--kind", "mode"} << "unknown --kind 'mode'";
        QTest::newRow("bad count") << QStringList{"open", "-n", "many"} << "--max-count takes a number";
        QTest::newRow("no repository") << QStringList{"open"} << "not a git repository";
    }

    void refusals()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, message);
        QTemporaryDir outside;
        const QString folder = QTest::currentDataTag() == QByteArray("no repository") ? outside.path() : m_repo + "/defs";
        const Run run = Program(QStringList{"log", folder} + args);
        QCOMPARE(run.status, 2);
        QVERIFY2(run.err.contains(message, Qt::CaseInsensitive), qPrintable(run.err));
    }

private:
    int Git(const QStringList &args) { return Start("git", QStringList{"-C", m_repo} + args).status; }

    void Commit(const Definitions &defs, const QString &subject)
    {
        defs.Write(m_repo + "/defs");
        QCOMPARE(Git({"add", "-A"}), 0);
        QCOMPARE(Git({"commit", "-q", "-m", subject}), 0);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_repo;
};

QTEST_GUILESS_MAIN(LogCommandTest)
#include "LogCommandTest.moc"
