#include "output/MatrixPage.h"

#include "output/MatrixPrinter.h"

using namespace ProductEditor;

namespace {

const char kStyle[] = R"(body{font:14px system-ui,sans-serif;margin:0;color:#222}
header{padding:12px 16px}h1{font-size:18px;margin:0 0 8px}
#filter{font:inherit;padding:4px 8px;width:320px}#count{margin-left:12px;color:#666}
.scroll{overflow:auto;height:calc(100vh - 92px);border-top:1px solid #ccc}
table{border-collapse:separate;border-spacing:0}
th,td{padding:3px 8px;border-right:1px solid #e4e4e4;border-bottom:1px solid #e4e4e4;white-space:nowrap;background:#fff}
thead th{position:sticky;top:0;z-index:2;background:#f1f3f6;text-align:center}
tbody th{position:sticky;left:0;z-index:1;text-align:left;font-weight:normal;font-family:monospace;background:#fafafa}
thead th:first-child{left:0;z-index:3}
td{text-align:center}td.text{text-align:left;color:#555}td.has{background:#e9f6ec}td.licensed{background:#e3edfb}
tbody tr:hover td,tbody tr:hover th{background:#fff7d6})";

const char kScript[] = R"(var box=document.getElementById('filter'),rows=document.querySelectorAll('tbody tr'),
count=document.getElementById('count');
function filter(){var words=box.value.toLowerCase().split(/\s+/).filter(Boolean),shown=0;
rows.forEach(function(row){var text=row.getAttribute('data-key'),keep=words.every(function(w){return text.indexOf(w)>=0});
row.style.display=keep?'':'none';if(keep)shown++});count.textContent=shown+' of '+rows.length+' rows'}
box.addEventListener('input',filter);filter();)";

QString Cell(const QString &tag, const QString &text, const QString &cls = QString())
{
    const QString attribute = cls.isEmpty() ? QString() : QStringLiteral(" class=\"%1\"").arg(cls);
    return QStringLiteral("<%1%2>%3</%1>").arg(tag, attribute, text.toHtmlEscaped());
}

QString HeadRow(const RecordMatrix &matrix)
{
    QString row = Cell(QStringLiteral("th"), QStringLiteral("id")) + Cell(QStringLiteral("th"), QStringLiteral("title"));
    if (matrix.of == RecordMatrix::Of::Extensions)
        row += Cell(QStringLiteral("th"), QStringLiteral("ext"));
    for (const RecordMatrix::Column &column : matrix.columns)
        row += Cell(QStringLiteral("th"), MatrixColumnTitle(column));
    return QStringLiteral("<tr>%1</tr>\n").arg(row);
}

QString BodyRow(const RecordMatrix &matrix, const RecordMatrix::Row &row)
{
    QString cells = Cell(QStringLiteral("th"), row.id) + Cell(QStringLiteral("td"), row.title, QStringLiteral("text"));
    if (matrix.of == RecordMatrix::Of::Extensions)
        cells += Cell(QStringLiteral("td"), row.ext, QStringLiteral("text"));
    // Features with specific licenses stand out from the plain marks.
    const bool features = matrix.of == RecordMatrix::Of::Features;
    for (const RecordMatrix::Cell &cell : row.cells) {
        const QString cls = !cell.has                                  ? QString()
                            : features && !cell.values.isEmpty()        ? QStringLiteral("has licensed")
                                                                        : QStringLiteral("has");
        cells += Cell(QStringLiteral("td"), MatrixCellText(cell, QStringLiteral("\u2713"), QStringLiteral(", ")), cls);
    }
    const QString key = (row.id + QLatin1Char(' ') + row.title).toLower().toHtmlEscaped();
    return QStringLiteral("<tr data-key=\"%1\">%2</tr>\n").arg(key, cells);
}

} // namespace

QString MatrixPage(const RecordMatrix &matrix, const QString &source)
{
    const QString heading = matrix.of == RecordMatrix::Of::Features ? QStringLiteral("Features by product")
                                                                     : QStringLiteral("Extensions by product and layout");
    QString page = QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                                  "<title>%1 - %2</title>\n<style>\n%3\n</style>\n</head>\n<body>\n<header>\n"
                                  "<h1>%1 <small>%2</small></h1>\n"
                                  "<input id=\"filter\" type=\"search\" placeholder=\"Filter by id or title\" "
                                  "autofocus><span id=\"count\"></span>\n</header>\n"
                                  "<div class=\"scroll\">\n<table>\n<thead>\n")
                       .arg(heading.toHtmlEscaped(), source.toHtmlEscaped(), QString::fromLatin1(kStyle));
    page += HeadRow(matrix);
    page += QStringLiteral("</thead>\n<tbody>\n");
    for (const RecordMatrix::Row &row : matrix.rows)
        page += BodyRow(matrix, row);
    page += QStringLiteral("</tbody>\n</table>\n</div>\n<script>\n%1\n</script>\n</body>\n</html>\n")
                .arg(QString::fromLatin1(kScript));
    return page;
}
