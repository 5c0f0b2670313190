// The program, run as a process, and its folder opener driven in-process.
#include "commands/CommandRegistry.h"
#include "commands/Usage.h"
#include "host/EditorHost.h"
#include "host/FileAccess.h"
#include "TestHelpers.h"

#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>

using namespace ProductEditor;

namespace {

const QByteArray kProducts = R"({
  "features": {"feature": [{"id": "b", "title": "B", "visual": true}, {"id": "a"}]},
  "products": {"product": [{"id": "p", "licensing": {"base": "Base", "specific": [{"id": "a", "licenses": ["S"]}]},
                            "features": ["b", "a"], "modes": ["main"], "profile_suffix": "x"},
                           {"id": "q", "profile_suffix": "y"}]},
  "extensions": {"extension": [{"id": "stl"}], "lic_coveradge": {"import": [{"id": "stl", "lic": ["Imp"]}]}}
})";

} // namespace

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_root = m_dir->filePath("defs");
        Write(m_root + "/products/products.json", kProducts);
        Write(m_root + "/layouts/main.json", R"({"layouts": {"main": {"features": ["a"]}}})");
        Write(m_dir->filePath("lic.json"), R"({"Base": "Base license"})");
        Write(m_dir->filePath("bad/products/products.json"), "{\"features\": {}");
    }

    void run_data()
    {
        QTest::addColumn<QString>("setup"); // "PATH=BYTES" written below the temporary folder first, "PATH/" a folder
        QTest::addColumn<QStringList>("args"); // TMP: the temporary folder, with "defs" and the broken "bad" in it
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("text"); // found in stdout or stderr

        const QString none;
        const QString defs = "TMP/defs";
        QTest::newRow("check") << none << QStringList{"check", defs} << 0
                               << "features: 2\nproducts: 2\nlayouts: 1\nextensions: 1\nlicenses: 4\n";
        QTest::newRow("catalogue file") << none << QStringList{"check", defs, "--licenses", "TMP/lic.json"} << 0
                                        << "licenses: 1\n";
        QTest::newRow("help") << none << QStringList{"--help"} << 0 << "Usage:\n";
        QTest::newRow("command help") << none << QStringList{"check", "--help"} << 0 << "Usage:\n";
        QTest::newRow("version") << none << QStringList{"--version"} << 0 << "product-editor 1.";
        QTest::newRow("command version") << none << QStringList{"query", "x", "--version"} << 0 << "product-editor 1.";
        QTest::newRow("missing argument") << none << QStringList{"check"} << 2
                                          << "product-editor: check: missing argument\n\nUsage:";
        QTest::newRow("extra argument") << none << QStringList{"check", "a", "b"} << 2 << ": check: unexpected argument 'b'";
        QTest::newRow("unknown option") << none << QStringList{"normalize", "x", "--bogus"} << 2 << ": Unknown option 'bogus'.";
        QTest::newRow("no value") << none << QStringList{"diff", "x", "--format"} << 2 << ": Missing value after '--format'.";
        QTest::newRow("unknown format") << none << QStringList{"diff", "x", "--format", "xml"} << 2 << ": unknown format 'xml'";
        const QString legend = "; - left only, + right only, ~ changed (left -> right)\n";
        QTest::newRow("diff") << none << QStringList{"diff", defs} << 1
                              << "# left: loaded TMP/defs, right: regenerated TMP/defs" + legend + "=== Products\n~ extensions\n";
        QTest::newRow("diff, json") << none << QStringList{"diff", defs, "--format", "json"} << 1
                                    << "{\n  \"Products\": {\"action\":1,\"children\":[";
        QTest::newRow("compare") << none << QStringList{"compare-products", defs, "p", "q"} << 1
                                 << "# left: product p, right: product q" + legend + "=== p / q\n";
        QTest::newRow("same product") << none << QStringList{"compare-products", defs, "p", "p"} << 0
                                      << "=== p / p: no differences\n";
        QTest::newRow("unknown product") << none << QStringList{"compare-products", defs, "p", "nope"} << 2
                                         << "product-editor: compare-products: no product with id 'nope' in TMP/defs\n";
        QTest::newRow("query, whole product name and license") << none
            << QStringList{"query", defs, "--products", "\"P\"", "--licenses", "S"} << 0 << "a\n";
        QTest::newRow("query, any title") << none << QStringList{"query", defs, "--title", "*"} << 0 << "b\n";
        QTest::newRow("query, no match") << none << QStringList{"query", defs, "--products", "\"px\""} << 1 << "";
        // A refused folder is worded alike by every command.
        const QString broken = "product-editor: TMP/bad/products/products.json: not valid JSON: unterminated object at "
                               "offset 15 (line 1, column 16)\n";
        for (const QStringList &args : {QStringList{"check", "TMP/bad"}, {"normalize", "TMP/bad", "--check"},
                                        {"diff", "TMP/bad"}, {"diff", defs, "TMP/bad"},
                                        {"compare-products", "TMP/bad", "p", "q"}, {"query", "TMP/bad"}})
            QTest::addRow("refused: %s", qPrintable(args.join(' '))) << none << args << 2 << broken;
        const QString E = "product-editor: TMP/";
        const QString P = "defs/products/products.json";
        QTest::newRow("no folder") << none << QStringList{"check", "TMP/no"} << 2
                                   << E + "no: the definition folder does not exist\n";
        QTest::newRow("a file") << none << QStringList{"check", "TMP/lic.json"} << 2 << E + "lic.json: not a folder\n";
        QTest::newRow("no products folder") << none << QStringList{"check", "TMP"} << 2
                                            << E + "products: missing \"products\" folder\n";
        QTest::newRow("no products.json") << "x/products/o=" << QStringList{"check", "TMP/x"} << 2
                                          << E + "x/products/products.json: missing \"products.json\"\n";
        QTest::newRow("products.json a folder") << P + "/" << QStringList{"check", defs} << 2
                                                << E + P + ": is a folder, not a file\n";
        QTest::newRow("array") << P + "=[1]" << QStringList{"check", defs} << 2
                               << E + P + ": \"products.json\" is not a JSON object\n";
        QTest::newRow("empty object") << P + "= {} " << QStringList{"check", defs} << 2
                                      << E + P + ": \"products.json\" is an empty JSON object\n";
        // A save that was stopped is finished or undone before any command reads the folder.
        const QString journal = "defs/.product-editor-save=not json";
        const QString damaged = E + "defs/.product-editor-save: cannot finish or undo the interrupted save it records, "
                                    "so nothing was changed (check the files it names, then remove it): not valid JSON: "
                                    "illegal value at offset 1 (line 1, column 2)\n";
        for (const QStringList &args : {QStringList{"check", defs}, {"query", defs}})
            QTest::addRow("journal damaged: %s", qPrintable(args[0])) << journal << args << 2 << damaged;
        QTest::newRow("save stopped before its journal") << "defs/layouts/.main.json.pe-save-AbCd12={}"
            << QStringList{"query", defs} << 0
            << "product-editor: warning: TMP/defs/layouts/.main.json.pe-save-AbCd12: removed, the temporary file of a save";
        // check reports the same as a finding instead (PE011).
        QTest::newRow("skipped layout") << "defs/layouts/bad.json={\n\"layouts\"" << QStringList{"query", defs} << 0
                                        << "product-editor: warning: TMP/defs/layouts/bad.json: skipped, not valid JSON: "
                                           "unterminated string at offset 11 (line 2, column 10)\n";
        QTest::newRow("no catalogue") << none << QStringList{"diff", defs, "--licenses", "TMP/no.json"} << 2
                                      << E + "no.json: cannot be read: no such file\n";
        QTest::newRow("catalogue not an object") << "c.json=[]" << QStringList{"check", defs, "--licenses", "TMP/c.json"}
                                                 << 2 << E + "c.json: the license catalogue must be a JSON object\n";
    }

    void run()
    {
        QFETCH(QString, setup);
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, text);

        const QString path = m_dir->filePath(setup.section('=', 0, 0));
        if (setup.endsWith('/'))
            QVERIFY(QFile::remove(path.chopped(1)) && QDir().mkpath(path));
        else if (!setup.isEmpty())
            Write(path, setup.section('=', 1).toUtf8());
        const Run run = Program(args.replaceInStrings("TMP", m_dir->path()));
        QVERIFY2(run.all().contains(text.replace("TMP", m_dir->path())), qPrintable(run.all()));
        QCOMPARE(run.status, status);
    }

    // A command is known by its entry alone: dispatched, listed in the usage, suggested.
    void registry()
    {
        QStringList names;
        for (const Command *command : CommandRegistry::Commands()) {
            QVERIFY2(!names.contains(command->name), qPrintable(command->name));
            names << command->name;
            QCOMPARE(CommandRegistry::Find(command->name), command);
            QVERIFY(command->synopsis.startsWith("  product-editor " + command->name + " "));
            QVERIFY(command->synopsis.endsWith('\n'));
            QVERIFY(UsageText().contains(command->synopsis));
            QCOMPARE(CommandRegistry::Suggestion(command->name.chopped(1)), command->name);
        }
        QVERIFY(!CommandRegistry::Find("nope"));
    }

    void normalize()
    {
        const Run check = Program({"normalize", m_root, "--check"});
        QCOMPARE(check.all(), m_root + "/products/products.json\n" + m_root + "/layouts/main.json\n");
        QCOMPARE(check.status, 1);
        // Into a folder that does not exist every file would be new, and nothing is created.
        const QString out = m_dir->filePath("out");
        QCOMPARE(Program({"normalize", m_root, "--check", "--out", out}).all(),
                 out + "/products/products.json\n" + out + "/layouts/main.json\n");
        QVERIFY(!QFile::exists(out));

        QCOMPARE(Program({"normalize", m_root, "--out", out}).status, 0);
        QCOMPARE(Read(m_root + "/products/products.json"), kProducts);
        QVERIFY(Read(out + "/products/products.json").contains("\"features\": [\n                    \"a\",\n"));
        QCOMPARE(Program({"normalize", out, "--check"}).status, 0);
        QCOMPARE(Program({"normalize", m_root}).status, 0);
        QCOMPARE(Read(m_root + "/products/products.json"), Read(out + "/products/products.json"));
        QCOMPARE(Program({"normalize", PE_SOURCE_DIR "/examples/definitions", "--check"}).status, 0);
        // Two folders compare their regenerated documents, so the canonical copy matches its source.
        QCOMPARE(Program({"diff", m_root, out, "--format", "json"}).all(), QString("{}\n"));
    }

    void readsEachFileOnce_data()
    {
        QTest::addColumn<bool>("window");
        QTest::addColumn<bool>("catalogue");

        QTest::newRow("check") << false << false;
        QTest::newRow("check --licenses") << false << true;
        QTest::newRow("window") << true << false;
        QTest::newRow("window --licenses") << true << true;
    }

    // Every command opens its folder the way check does.
    void readsEachFileOnce()
    {
        QFETCH(bool, window);
        QFETCH(bool, catalogue);

        QMap<QString, int> reads;
        const Reader counting = [&reads](const QString &path) {
            ++reads[QDir::cleanPath(path)];
            return FileAccess::ReadFile(path);
        };
        const QString licenses = catalogue ? m_dir->filePath("lic.json") : QString();
        QStringList messages;
        if (window)
            QVERIFY(OpenEditorWindow(m_root, licenses, counting, Writer(), &messages));
        else
            QCOMPARE(CommandRegistry::Find("check")->run(QStringList{m_root} + (catalogue ? QStringList{"--licenses", licenses} : QStringList()), counting), 0);
        QMap<QString, int> once{{m_root + "/products/products.json", 1}, {m_root + "/layouts/main.json", 1}};
        if (catalogue)
            once.insert(licenses, 1);
        QCOMPARE(reads, once);
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_root;
};

QTEST_MAIN(CommandLineTest)
#include "CommandLineTest.moc"
