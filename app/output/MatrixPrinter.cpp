#include "output/MatrixPrinter.h"

#include "output/MatrixPage.h"

#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace ProductEditor;

namespace {

// The table's leading columns before one per product (and layout).
QStringList Headings(const RecordMatrix &matrix)
{
    QStringList headings{QStringLiteral("id"), QStringLiteral("title")};
    if (matrix.of == RecordMatrix::Of::Extensions)
        headings << QStringLiteral("ext");
    for (const RecordMatrix::Column &column : matrix.columns)
        headings << MatrixColumnTitle(column);
    return headings;
}

QStringList RowTexts(const RecordMatrix &matrix, const RecordMatrix::Row &row, const QString &mark,
                     const QString &separator)
{
    QStringList texts{row.id, row.title};
    if (matrix.of == RecordMatrix::Of::Extensions)
        texts << row.ext;
    for (const RecordMatrix::Cell &cell : row.cells)
        texts << MatrixCellText(cell, mark, separator);
    return texts;
}

// RFC 4180: a field with a comma, a quote or a line break is quoted, its quotes doubled.
QString CsvField(QString text)
{
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n'))
        && !text.contains(QLatin1Char('\r')))
        return text;
    text.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

void PrintCsv(QTextStream &out, const RecordMatrix &matrix)
{
    const auto line = [&out](const QStringList &fields) {
        QStringList quoted;
        for (const QString &field : fields)
            quoted << CsvField(field);
        out << quoted.join(QLatin1Char(',')) << "\r\n";
    };
    line(Headings(matrix));
    for (const RecordMatrix::Row &row : matrix.rows)
        line(RowTexts(matrix, row, QStringLiteral("x"), QStringLiteral(" ")));
}

QString MarkdownCell(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('|'), QLatin1String("\\|"));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text;
}

void PrintMarkdown(QTextStream &out, const RecordMatrix &matrix)
{
    const auto line = [&out](const QStringList &cells) {
        QStringList escaped;
        for (const QString &cell : cells)
            escaped << MarkdownCell(cell);
        out << "| " << escaped.join(QStringLiteral(" | ")) << " |\n";
    };
    const QStringList headings = Headings(matrix);
    line(headings);
    QStringList rule;
    for (int i = 0; i < headings.size(); ++i)
        rule << (i < (matrix.of == RecordMatrix::Of::Extensions ? 3 : 2) ? QStringLiteral("---")
                                                                         : QStringLiteral(":---:"));
    out << "|" << rule.join(QLatin1Char('|')) << "|\n";
    for (const RecordMatrix::Row &row : matrix.rows)
        line(RowTexts(matrix, row, QStringLiteral("✓"), QStringLiteral(", ")));
}

QJsonObject JsonRow(const RecordMatrix &matrix, const RecordMatrix::Row &row)
{
    QJsonObject object{{QStringLiteral("id"), row.id}, {QStringLiteral("title"), row.title}};
    if (matrix.of == RecordMatrix::Of::Extensions)
        object.insert(QStringLiteral("ext"), row.ext);
    QJsonObject products, layouts;
    for (int i = 0; i < row.cells.size(); ++i) {
        const RecordMatrix::Cell &cell = row.cells.at(i);
        if (cell.has)
            (matrix.columns.at(i).layout ? layouts : products)
                .insert(matrix.columns.at(i).id, QJsonArray::fromStringList(cell.values));
    }
    object.insert(QStringLiteral("products"), products);
    if (matrix.of == RecordMatrix::Of::Extensions)
        object.insert(QStringLiteral("layouts"), layouts);
    return object;
}

void PrintJson(QTextStream &out, const RecordMatrix &matrix, const QString &source)
{
    QJsonArray products, layouts, rows;
    for (const RecordMatrix::Column &column : matrix.columns)
        (column.layout ? layouts : products).append(column.id);
    for (const RecordMatrix::Row &row : matrix.rows)
        rows.append(JsonRow(matrix, row));
    QJsonObject root{{QStringLiteral("version"), 1},
                     {QStringLiteral("of"), RecordMatrix::OfName(matrix.of)},
                     {QStringLiteral("source"), source},
                     {QStringLiteral("products"), products},
                     {QStringLiteral("rows"), rows}};
    if (matrix.of == RecordMatrix::Of::Extensions)
        root.insert(QStringLiteral("layouts"), layouts);
    out << QString::fromUtf8(JsonText(QJsonDocument(root), QJsonDocument::Indented));
}

} // namespace

bool ParseMatrixFormat(const QString &text, MatrixFormat *format)
{
    static const QMap<QString, MatrixFormat> formats = {{QStringLiteral("csv"), MatrixFormat::Csv},
                                                        {QStringLiteral("markdown"), MatrixFormat::Markdown},
                                                        {QStringLiteral("html"), MatrixFormat::Html},
                                                        {QStringLiteral("json"), MatrixFormat::Json}};
    const auto found = formats.constFind(text);
    if (found == formats.cend())
        return false;
    *format = *found;
    return true;
}

QString MatrixCellText(const RecordMatrix::Cell &cell, const QString &mark, const QString &separator)
{
    if (!cell.has)
        return QString();
    return cell.values.isEmpty() ? mark : cell.values.join(separator);
}

QString MatrixColumnTitle(const RecordMatrix::Column &column)
{
    return column.layout ? QStringLiteral("%1 (layout)").arg(column.id) : column.id;
}

void PrintMatrix(QTextStream &out, const RecordMatrix &matrix, MatrixFormat format, const QString &source)
{
    switch (format) {
    case MatrixFormat::Csv: PrintCsv(out, matrix); break;
    case MatrixFormat::Markdown: PrintMarkdown(out, matrix); break;
    case MatrixFormat::Html: out << MatrixPage(matrix, source); break;
    case MatrixFormat::Json: PrintJson(out, matrix, source); break;
    }
}
