// The changes command on real git repositories: a branch's edits in product terms.
#include "GitSandbox.h"
#include "TestHelpers.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

QString Products(const QString &features, const QString &p, const QString &q)
{
    return QStringLiteral(R"({"features":{"feature":[%1]},"products":{"product":[{"id":"p","features":[%2]},
        {"id":"q","features":[%3]}]}})").arg(features, p, q);
}

// The changes of a JSON report, one compact object a line.
QString JsonChanges(const QString &out)
{
    const QJsonObject report = QJsonDocument::fromJson(out.toUtf8()).object();
    QString lines = QString("version %1, count %2\n").arg(report["version"].toInt()).arg(report["count"].toInt());
    for (const QJsonValue &change : report["changes"].toArray())
        lines += Compact(change) + "\n";
    return lines;
}

} // namespace

class ChangesCommandTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_repo;

    Run Git(const QStringList &args) { return Start("git", args, m_repo); }
    Run Changes(const QStringList &args) { return Start(PE_PROGRAM, QStringList{"changes"} + args, m_repo); }

    void Commit(const QString &products, const QString &layout, const char *message)
    {
        Write(m_repo + "/defs/products/products.json", products);
        Write(m_repo + "/defs/layouts/main.json", layout);
        QCOMPARE(Start(PE_PROGRAM, {"normalize", "defs"}, m_repo).status, 0);
        Git({"add", "-A"});
        QCOMPARE(Git({"commit", "-q", "-m", message}).status, 0);
    }

private slots:
    void initTestCase()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        IsolateGit(m_dir->path());
        m_repo = m_dir->filePath("repo");
        QVERIFY(InitRepository(m_repo));
        Commit(Products("{\"id\":\"open\",\"title\":\"Open\"},{\"id\":\"save\",\"title\":\"Save\"},{\"id\":\"cut\",\"title\":\"Cut\"}",
                        "\"open\",\"save\"", "\"cut\""),
               "{\"layouts\":{\"main\":{\"features\":[\"open\",\"save\"]}}}", "base");
        // The branch renames open, moves it from p to q, and retitles save.
        Git({"checkout", "-q", "-b", "review"});
        Commit(Products("{\"id\":\"file_open\",\"title\":\"Open\"},{\"id\":\"save\",\"title\":\"Save all\"},{\"id\":\"cut\",\"title\":\"Cut\"}",
                        "\"save\"", "\"cut\",\"file_open\""),
               "{\"layouts\":{\"main\":{\"features\":[\"file_open\",\"save\"]}}}", "review");
    }

    void branchInEveryFormat_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("out");

        QTest::newRow("text") << "text"
                              << "Features:\n"
                                 "  feature renamed open -> file_open\n"
                                 "  feature file_open added to product q\n"
                                 "  feature file_open removed from product p\n"
                                 "  feature save: title \"Save\" -> \"Save all\"\n";
        QTest::newRow("markdown") << "markdown"
                                  << "## Definition changes: defs at main -> defs at review\n\n"
                                     "**4 changes** to 2 features\n\n"
                                     "### Features\n\n"
                                     "- feature renamed open -> file_open\n"
                                     "- feature save: title \"Save\" -> \"Save all\"\n\n"
                                     "### Product `p`\n\n"
                                     "| | Gained | Lost |\n|---|---|---|\n| Features |  | `file_open` |\n\n"
                                     "### Product `q`\n\n"
                                     "| | Gained | Lost |\n|---|---|---|\n| Features | `file_open` |  |\n";
        QTest::newRow("json")
            << "json"
            << "version 1, count 4\n"
               "[{\"after\":\"file_open\",\"id\":\"open\",\"kind\":\"renamed\",\"record\":\"feature\",\"text\":\"feature renamed open -> file_open\"}]"
               "\n"
               "[{\"after\":\"q\",\"field\":\"products\",\"id\":\"file_open\",\"kind\":\"gained\",\"record\":\"feature\",\"text\":\"feature file_open added to product q\"}]"
               "\n"
               "[{\"before\":\"p\",\"field\":\"products\",\"id\":\"file_open\",\"kind\":\"lost\",\"record\":\"feature\",\"text\":\"feature file_open removed from product p\"}]"
               "\n"
               "[{\"after\":\"Save all\",\"before\":\"Save\",\"field\":\"title\",\"id\":\"save\",\"kind\":\"changed\",\"record\":\"feature\",\"text\":\"feature save: title \\\"Save\\\" -> \\\"Save all\\\"\"}]"
               "\n";
    }

    void branchInEveryFormat()
    {
        QFETCH(QString, format);
        QFETCH(QString, out);
        const Run run = Changes({"defs", "--from", "main", "--to", "review", "--format", format});
        QCOMPARE(run.status, 1);
        QCOMPARE(format == "json" ? JsonChanges(run.out) : run.out, out);
    }

    void runs_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("out");

        QTest::newRow("a save of a canonical folder") << QStringList{"defs"} << 0 << "";
        QTest::newRow("a revision against itself") << QStringList{"defs", "--from", "review"} << 0 << "";
        QTest::newRow("no change, as JSON")
            << QStringList{"defs", "--from", "review", "--format", "json"} << 0 << "\"count\": 0,";
        QTest::newRow("two folders") << QStringList{"defs", "defs"} << 0 << "";
        QTest::newRow("unknown format") << QStringList{"defs", "--format", "yaml"} << 2
                                        << "product-editor: unknown format 'yaml' (use text, markdown or json)";
        QTest::newRow("--to alone") << QStringList{"defs", "--to", "main"} << 2 << "changes: --to needs --from";
        QTest::newRow("unknown revision") << QStringList{"defs", "--from", "nope"} << 2 << "nope: not a revision";
        QTest::newRow("no folder") << QStringList{"nowhere"} << 2 << "nowhere";
    }

    void runs()
    {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, out);
        const Run run = Changes(args);
        QCOMPARE(run.status, status);
        QVERIFY2(out.isEmpty() ? run.all().isEmpty() : run.all().contains(out), qPrintable(run.all()));
    }

    // diff's review format is the changes command's Markdown.
    void reviewIsTheMarkdown()
    {
        const QStringList revisions{"defs", "--from", "main", "--to", "review"};
        const Run review = Start(PE_PROGRAM, QStringList{"diff"} + revisions + QStringList{"--format", "review"}, m_repo);
        QCOMPARE(review.status, 1);
        QCOMPARE(review.out, Changes(revisions + QStringList{"--format", "markdown"}).out);
    }
};

QTEST_GUILESS_MAIN(ChangesCommandTest)
#include "ChangesCommandTest.moc"
