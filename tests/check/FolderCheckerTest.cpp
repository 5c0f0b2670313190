// What the checks find in a folder with every kind of problem planted once, and where.
#include "PlantedFolder.h"

#include "check/FolderChecker.h"
#include "check/LiveFindings.h"
#include "check/RecordsCheck.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ProductEditor;

namespace {

// 1-based column of `token` on line `line` of `bytes` (ASCII lines only).
int ColumnOf(const QByteArray &bytes, int line, const QByteArray &token)
{
    return bytes.split('\n').value(line - 1).indexOf(token) + 1;
}

} // namespace

class FolderCheckerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_root = m_dir.filePath("defs");
        WritePlantedFolder(m_root);
        Write(m_dir.filePath("lic.json"), R"({"Base": "B"})");
        // The loader visits the files in listing order, which the file system decides.
        for (const QFileInfo &file : QDir(m_root + "/layouts").entryInfoList(QDir::Files, QDir::Unsorted)) {
            if (file.fileName() == "a.json" || file.fileName() == "b.json")
                m_laterLayout = file.fileName();
        }
    }

    void planted_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("path");

        const QString P = "products/products.json";
        const auto row = [&](const char *code, const QString &file, const QByteArray &bytes, int line,
                             const QByteArray &token, const QString &path) {
            QTest::addRow("%s %s %s", code, qPrintable(file), qPrintable(path)) << code << file << line << ColumnOf(bytes, line, token) << path;
        };
        row("PE001", P, kProducts, 14, "\"ghost\"", "$.products.product[0].features[1]");
        row("PE001", "layouts/a.json", kLayoutA, 1, "\"ghost2\"", "$.layouts.main.features[0]");
        row("PE002", P, kProducts, 11, "\"id\"", "$.features.feature[1].id");
        row("PE003", P, kProducts, 5, "\"id\"", "$.extensions.extension[1].id");
        row("PE004", P, kProducts, 15, "\"id\"", "$.products.product[1].id");
        row("PE005", P, kProducts, 14, "\"nomode\"", "$.products.product[0].modes[1]");
        row("PE006", P, kProducts, 14, "\"id\": \"nofeat\"", "$.products.product[0].licensing.specific[0].id");
        row("PE007", P, kProducts, 7, "\"id\"", "$.extensions.lic_coveradge.import[0].id");
        row("PE007", P, kProducts, 14, "\"nope\"", "$.products.product[0].extensions.open[0]");
        row("PE008", P, kProducts, 7, "\"Imp\"", "$.extensions.lic_coveradge.import[0].lic[0]");
        row("PE009", P, kProducts, 4, "\"colour\"", "$.extensions.extension[0].colour");
        row("PE009", P, kProducts, 17, "\"extra\"", "$.products.extra");
        row("PE009", "layouts/b.json", kLayoutB, 1, "\"x\"", "$.x");
        row("PE010", P, kProducts, 5, "\"cad_support\"", "$.extensions.extension[1].cad_support");
        row("PE010", P, kProducts, 10, "\"visual\"", "$.features.feature[0].visual");
        QTest::newRow("PE011 parse error") << "PE011" << "layouts/bad.json" << 2 << 10 << "$";
        row("PE011", "layouts/none.json", kNoLayouts, 1, "{", "$");
        QTest::newRow("PE012") << "PE012" << "layouts/sub" << 1 << 1 << "$";
        const QByteArray earlier = m_laterLayout == "a.json" ? kLayoutB : kLayoutA;
        row("PE013", "layouts/" + QString(m_laterLayout == "a.json" ? "b.json" : "a.json"), earlier, 1, "\"main\"",
            "$.layouts.main");
        row("PE015", P, kProducts, 15, "\"modes\"", "$.products.product[1].modes");
        // Where a save first changes each file: the canonical form indents by four spaces.
        row("PE014", P, kProducts, 2, "\"extensions\"", "$");
        row("PE014", "layouts/a.json", kLayoutA, 1, "\"layouts\"", "$");
        row("PE014", "layouts/b.json", kLayoutB, 1, "\"layouts\"", "$");
    }

    void planted()
    {
        QFETCH(QString, code);
        QFETCH(QString, file);
        QFETCH(int, line);
        QFETCH(int, column);
        QFETCH(QString, path);

        const CheckResult result = CheckPlanted();
        QVERIFY(result.store);
        QStringList found;
        for (const Diagnostic &diagnostic : result.diagnostics) {
            if (diagnostic.code == code && diagnostic.file == m_root + "/" + file && diagnostic.path == path
                && diagnostic.line == line) {
                QCOMPARE(diagnostic.column, column);
                QCOMPARE(diagnostic.severity, Diagnostic::Severity::Warning);
                QVERIFY(!diagnostic.message.isEmpty());
                return;
            }
            found << QString("%1 %2:%3:%4 %5").arg(diagnostic.code, diagnostic.file).arg(diagnostic.line).arg(diagnostic.column).arg(diagnostic.path);
        }
        QFAIL(qPrintable("not found among:\n" + found.join('\n')));
    }

    // Every diagnostic is one of the planted ones.
    void nothingElse()
    {
        QCOMPARE(CheckPlanted().diagnostics.size(), 23);
    }

    // The window's findings of a folder just loaded are the command line's, place for place.
    void liveMatchesCheck()
    {
        CheckResult checked = CheckPlanted();
        QVERIFY(checked.store);
        const LiveFindings live = LiveFindings::Run(&Read, m_root, RecordsSnapshot::Take(*checked.store),
                                                    checked.store->GetLayoutFiles(), nullptr);
        const auto text = [](const Diagnostics &diagnostics) {
            QStringList lines;
            for (const Diagnostic &d : diagnostics)
                lines << QString("%1 %2:%3:%4 %5 %6").arg(d.code, d.file).arg(d.line).arg(d.column).arg(d.path, d.message);
            return lines;
        };
        QCOMPARE(text(live.all), text(checked.diagnostics));
    }

    // What edits can leave in the records, each found with the record it is about.
    void records_data()
    {
        QTest::addColumn<QString>("edit");
        QTest::addColumn<QStringList>("found"); // code, path and subject of each finding

        QTest::newRow("none") << "" << QStringList();
        QTest::newRow("licensed feature removed") << "feature" << QStringList{"PE006 $.products.product[0].licensing.specific p"};
        QTest::newRow("extension removed") << "extension"
                                           << QStringList{"PE007 $.products.product[0].extensions.open p",
                                                          "PE007 $.layouts.main.extensions.import "};
        QTest::newRow("layout removed") << "layout" << QStringList{"PE005 $.products.product[0].modes p"};
        QTest::newRow("license left the catalogue")
            << "license" << QStringList{"PE008 $.products.product[0].licensing.base p",
                                        "PE008 $.products.product[0].licensing.specific p",
                                        "PE008 $.extensions.lic_coveradge.import stl"};
        QTest::newRow("product id repeated") << "product" << QStringList{"PE004 $.products.product[1].id p"};
    }

    void records()
    {
        QFETCH(QString, edit);
        QFETCH(QStringList, found);

        RecordsSnapshot records;
        records.features.insert("a", {});
        records.licenses.insert("L", "License");
        records.extensions["stl"].importLicenses = {"L"};
        LayoutData main;
        main.import = {"stl"};
        records.layouts.insert("main", main);
        ProductData product;
        product.id = "p";
        product.base = "L";
        product.modes = {"main"};
        product.specificLicenses.insert("a", {"L"});
        product.extensions.open = {"stl"};
        records.products.products = {product, ProductData()};
        records.products.products[1].id = "q";

        if (edit == "feature")
            records.features.remove("a");
        else if (edit == "extension")
            records.extensions.remove("stl");
        else if (edit == "layout")
            records.layouts.remove("main");
        else if (edit == "license")
            records.licenses.clear();
        else if (edit == "product")
            records.products.products[1].id = "p";
        QStringList actual;
        for (const Diagnostic &d : CheckRecords(records, "products.json", {{"layouts/main.json", {"main"}}}))
            actual << QString("%1 %2 %3").arg(d.code, d.path, d.subjectId);
        QCOMPARE(actual, found);
    }

private:
    CheckResult CheckPlanted()
    {
        FolderChecker checker(&Read, m_dir.filePath("lic.json"));
        return checker.Check(m_root);
    }

    QTemporaryDir m_dir;
    QString m_root;
    QString m_laterLayout; // of a.json and b.json, the one the loader reads last
};

QTEST_MAIN(FolderCheckerTest)
#include "FolderCheckerTest.moc"
