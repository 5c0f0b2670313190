// The matrix command on the bundled example: key cells read back out of each format.
#include "TestHelpers.h"

#include <QRegularExpression>
#include <QTest>

namespace {

const QString kExample = QStringLiteral(PE_SOURCE_DIR "/examples/definitions");

using Table = QMap<QString, QMap<QString, QString>>; // row id -> column heading -> cell

// Cells in the one spelling the expectations use: "✓" for a plain mark, lists joined by ", ".
Table FromCsv(const QString &text)
{
    Table table;
    const QStringList lines = text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    const QStringList headings = lines.value(0).split(',');
    for (const QString &line : lines.mid(1)) {
        const QStringList cells = line.split(',');
        for (int i = 2; i < cells.size(); ++i)
            table[cells.at(0)][headings.value(i)] =
                cells.at(i) == "x" ? QStringLiteral("✓") : cells.at(i).split(' ').join(", ");
    }
    return table;
}

Table FromMarkdown(const QString &text)
{
    Table table;
    const QStringList lines = text.split('\n', Qt::SkipEmptyParts);
    const auto cells = [](QString line) { return line.mid(2, line.size() - 4).split(" | "); };
    const QStringList headings = cells(lines.value(0));
    for (const QString &line : lines.mid(2)) {
        const QStringList row = cells(line);
        for (int i = 2; i < row.size(); ++i)
            table[row.at(0)][headings.value(i)] = row.at(i);
    }
    return table;
}

Table FromHtml(const QString &text)
{
    Table table;
    const QRegularExpression rowPattern("<tr[^>]*>(.*)</tr>"), cellPattern("<t[hd][^>]*>([^<]*)</t[hd]>");
    QStringList headings;
    for (auto rows = rowPattern.globalMatch(text); rows.hasNext();) {
        QStringList cells;
        for (auto found = cellPattern.globalMatch(rows.next().captured(1)); found.hasNext();)
            cells << found.next().captured(1).replace("&amp;", "&");
        if (headings.isEmpty()) {
            headings = cells;
            continue;
        }
        for (int i = 2; i < cells.size(); ++i)
            table[cells.at(0)][headings.value(i)] = cells.at(i);
    }
    return table;
}

Table FromJson(const QString &text)
{
    Table table;
    const QJsonObject root = Obj(text.toUtf8());
    for (const QJsonValue &row : root.value("rows").toArray()) {
        for (const QString &side : {QStringLiteral("products"), QStringLiteral("layouts")}) {
            const QJsonObject cells = row.toObject().value(side).toObject();
            for (auto it = cells.begin(); it != cells.end(); ++it) {
                QStringList values;
                for (const QJsonValue &value : it.value().toArray())
                    values << value.toString();
                const QString column = side == "layouts" ? it.key() + " (layout)" : it.key();
                table[row.toObject().value("id").toString()][column] =
                    values.isEmpty() ? QStringLiteral("✓") : values.join(", ");
            }
        }
    }
    return table;
}

Table Read(const QString &format, const QString &text)
{
    if (format == "csv")
        return FromCsv(text);
    if (format == "markdown")
        return FromMarkdown(text);
    return format == "html" ? FromHtml(text) : FromJson(text);
}

} // namespace

class MatrixCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void keyCells_data()
    {
        QTest::addColumn<QString>("of");
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("cell");

        QTest::newRow("a feature the product has") << "features" << "edit_delete" << "essentials" << "✓";
        QTest::newRow("a feature the product lacks") << "features" << "edit_delete" << "viewer" << "";
        QTest::newRow("one specific license") << "features" << "help_send_diagnostics" << "viewer" << "lic_viewer";
        QTest::newRow("two specific licenses")
            << "features" << "mesh_boolean" << "professional" << "addon_repair, lic_professional";
        QTest::newRow("licensed elsewhere, plain here") << "features" << "mesh_boolean" << "studio" << "✓";
        QTest::newRow("product roles") << "extensions" << "stl" << "essentials" << "open, import, export";
        QTest::newRow("no access") << "extensions" << "step" << "viewer" << "";
        QTest::newRow("a scene role") << "extensions" << "vxs" << "professional" << "open, import, export_as_scene";
        QTest::newRow("layout roles") << "extensions" << "step" << "modeling (layout)" << "import, export";
    }

    void keyCells()
    {
        QFETCH(QString, of);
        QFETCH(QString, row);
        QFETCH(QString, column);
        QFETCH(QString, cell);
        for (const QString format : {"csv", "markdown", "html", "json"}) {
            const Run run = Program({"matrix", kExample, "--of", of, "--format", format});
            QCOMPARE(run.status, 0);
            const Table table = Read(format, run.out);
            QVERIFY2(table.contains(row), qPrintable(format));
            QCOMPARE(table.value(row).value(column), cell);
        }
    }

    void htmlPageIsSelfContained()
    {
        const Run run = Program({"matrix", kExample, "--format", "html"});
        QCOMPARE(run.status, 0);
        QVERIFY(run.out.contains("position:sticky"));
        QVERIFY(run.out.contains("<input id=\"filter\""));
        QVERIFY(!run.out.contains(QRegularExpression("<(script|link|img)[^>]*(src|href)=")));
    }

    void jsonNamesItsSchema()
    {
        const QJsonObject root = Obj(Program({"matrix", kExample, "--of", "extensions", "--format", "json"}).out.toUtf8());
        QCOMPARE(root.value("version").toInt(), 1);
        QCOMPARE(root.value("of").toString(), "extensions");
        QCOMPARE(Compact(root.value("products")), R"([["viewer","essentials","professional","studio","campus"]])");
        QCOMPARE(Compact(root.value("layouts")), R"([["basic","inspection","modeling","slicing"]])");
    }

    void refusals_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("message");
        QTest::newRow("unknown format") << QStringList{"--format", "pdf"} << "unknown format 'pdf'";
        QTest::newRow("unknown rows") << QStringList{"--of", "layouts"} << "unknown --of 'layouts'";
    }

    void refusals()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, message);
        const Run run = Program(QStringList{"matrix", kExample} + args);
        QCOMPARE(run.status, 2);
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
    }
};

QTEST_GUILESS_MAIN(MatrixCommandTest)
#include "MatrixCommandTest.moc"
