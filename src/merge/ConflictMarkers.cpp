#include "merge/ConflictMarkers.h"

#include "store/CanonicalDocument.h"
#include "store/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QList>

#include <algorithm>

namespace ProductEditor {

namespace {

const QString kId = QStringLiteral("id");
// A character of the private use area that neither the written document nor the names
// on the way to a conflict hold, to mark the places of conflicts with; definition texts
// hardly ever hold one, but they may.
QByteArray MarkNotIn(const QByteArray &written, const QVector<JsonMergeConflict> &conflicts)
{
    QByteArray names;
    for (const JsonMergeConflict &conflict : conflicts) {
        for (const JsonMergeStep &step : conflict.steps)
            names += step.key.toUtf8() + JsonText(QJsonDocument(QJsonArray{step.identity}), QJsonDocument::Compact);
    }
    for (ushort code = 0xE000; code < 0xF8FF; ++code) {
        const QByteArray mark = QString(QChar(code)).toUtf8();
        if (!written.contains(mark) && !names.contains(mark))
            return mark;
    }
    return QByteArray(); // every one of them: no place can be marked
}

QString Placeholder(const QByteArray &mark, int index)
{
    const QString text = QString::fromUtf8(mark);
    return text + QString::number(index) + text;
}

// The conflict a line stands for, or -1.
int PlaceholderIndex(const QByteArray &line, const QByteArray &mark)
{
    const int first = line.indexOf(mark);
    const int second = first < 0 ? -1 : line.indexOf(mark, first + mark.size());
    if (second < 0)
        return -1;
    bool number = false;
    const int index = line.mid(first + mark.size(), second - first - mark.size()).toInt(&number);
    return number ? index : -1;
}

bool Matches(const QJsonValue &element, const JsonMergeStep &step)
{
    if (step.kind == JsonMergeStep::ValueElement)
        return !element.isObject() && element == step.identity;
    if (!element.isObject())
        return false;
    const QJsonValue id = element.toObject().value(kId);
    return (id.isUndefined() ? QJsonValue() : id) == step.identity;
}

// Where a missing element goes: in id order when the array is in id order, else last.
int InsertPosition(const QJsonArray &array, const JsonMergeStep &step)
{
    if (!step.identity.isString())
        return array.size();
    const QString id = step.identity.toString();
    int position = array.size();
    QString previous;
    for (int p = 0; p < array.size(); ++p) {
        const QJsonValue current = array.at(p).toObject().value(kId);
        if (!current.isString() || (p > 0 && current.toString() < previous))
            return array.size();
        previous = current.toString();
        if (position == array.size() && previous > id)
            position = p;
    }
    return position;
}

// `node` with the value at `steps` (from `at` on) replaced by `mark`; the places on the
// way are made when the document lacks them. A duplicated identity becomes one place.
QJsonValue Place(const QJsonValue &node, const JsonMergeConflict &conflict, int at, const QJsonValue &mark)
{
    if (at == conflict.steps.size())
        return mark;
    const JsonMergeStep &step = conflict.steps.at(at);
    if (step.kind == JsonMergeStep::Member) {
        QJsonObject object = node.toObject();
        object.insert(step.key, Place(object.value(step.key), conflict, at + 1, mark));
        return object;
    }
    QJsonArray array = node.toArray();
    int found = -1;
    for (int p = 0; p < array.size();) {
        if (!Matches(array.at(p), step)) {
            ++p;
        } else if (found < 0) {
            found = p++;
        } else {
            array.removeAt(p);
        }
    }
    if (found < 0) {
        found = InsertPosition(array, step);
        array.insert(found, step.kind == JsonMergeStep::ObjectElement ? QJsonValue(QJsonObject{{kId, step.identity}})
                                                                     : step.identity);
    }
    array[found] = Place(array.at(found), conflict, at + 1, mark);
    return array;
}

// The lines of a member or of elements as the writer indents them at `indent`.
QByteArray SideLines(const JsonMergeConflict &conflict, const QJsonValue &value, int indent, bool comma)
{
    if (value.isUndefined() || (conflict.elements && value.toArray().isEmpty()))
        return QByteArray();
    const JsonMergeStep &last = conflict.steps.last();
    const QByteArray text = last.kind == JsonMergeStep::Member
        ? JsonText(QJsonDocument(QJsonObject{{last.key, value}}), QJsonDocument::Indented)
        : JsonText(QJsonDocument(conflict.elements ? value.toArray() : QJsonArray{value}), QJsonDocument::Indented);
    // Drop the wrapper's first and last lines; its members sit at four spaces.
    QList<QByteArray> lines = text.split('\n');
    lines = lines.mid(1, lines.size() - 3);
    QByteArray out;
    const QByteArray prefix(qMax(0, indent - 4), ' ');
    for (int i = 0; i < lines.size(); ++i)
        out += prefix + lines.at(i) + (comma && i == lines.size() - 1 ? ",\n" : "\n");
    return out;
}

QByteArray MarkerLine(char sign, int size, const QString &label)
{
    return QByteArray(size, sign) + (label.isEmpty() ? QByteArray() : ' ' + label.toUtf8()) + '\n';
}

} // namespace

QByteArray ConflictMarkers::Write(const QJsonObject &document, const QVector<JsonMergeConflict> &conflicts) const
{
    const QByteArray plain = CanonicalDocument::Bytes(document);
    const QByteArray mark = conflicts.isEmpty() ? QByteArray() : MarkNotIn(plain, conflicts);
    if (mark.isEmpty())
        return plain;
    QJsonValue marked(document);
    for (int i = 0; i < conflicts.size(); ++i) {
        if (!conflicts.at(i).steps.isEmpty())
            marked = Place(marked, conflicts.at(i), 0, Placeholder(mark, i));
    }
    const QByteArray written = CanonicalDocument::Bytes(marked.toObject());
    // The lines that stand for conflicts, in the order they come; the rest is copied.
    QByteArray bytes;
    QVector<const JsonMergeConflict *> run; // places on consecutive lines make one block
    int copied = 0;
    for (int at = written.indexOf(mark); at >= 0;) {
        const int start = written.lastIndexOf('\n', at) + 1;
        const int end = written.indexOf('\n', at);
        const QByteArray line = written.mid(start, end - start);
        const int index = PlaceholderIndex(line, mark);
        at = written.indexOf(mark, end);
        if (index < 0 || index >= conflicts.size())
            continue;
        if (run.isEmpty())
            bytes += written.mid(copied, start - copied);
        run.append(&conflicts.at(index));
        copied = end + 1;
        const int next = at < 0 ? -1 : written.lastIndexOf('\n', at) + 1;
        if (next == copied && PlaceholderIndex(written.mid(next, written.indexOf('\n', next) - next), mark) >= 0)
            continue;
        _WriteBlock(bytes, run, line);
        run.clear();
    }
    return bytes + written.mid(copied);
}

// Appends the block for places on consecutive lines, `last` being the line of the last
// one. Each side keeps the lines' commas, so that keeping any one side leaves valid JSON.
// When the run ends its object or array and a side lacks the last value, that side drops
// the comma it would end with; if it holds nothing at all, the line before the block ends
// in a comma only the other sides may keep, so that line goes into the block too.
void ConflictMarkers::_WriteBlock(QByteArray &bytes, const QVector<const JsonMergeConflict *> &run,
                                  const QByteArray &last) const
{
    int indent = 0;
    while (indent < last.size() && last.at(indent) == ' ')
        ++indent;
    QByteArray sides[3];
    for (int place = 0; place < run.size(); ++place) {
        const JsonMergeConflict &conflict = *run.at(place);
        const bool comma = place + 1 < run.size() || last.endsWith(',');
        sides[0] += SideLines(conflict, conflict.ours, indent, comma);
        sides[1] += SideLines(conflict, conflict.base, indent, comma);
        sides[2] += SideLines(conflict, conflict.theirs, indent, comma);
    }
    if (!last.endsWith(',')) {
        for (QByteArray &lines : sides) {
            if (lines.endsWith(",\n"))
                lines.remove(lines.size() - 2, 1);
        }
        const int before = bytes.lastIndexOf('\n', bytes.size() - 2) + 1;
        const QByteArray previous = bytes.mid(before, bytes.size() - 1 - before);
        const bool someEmpty = std::any_of(sides, sides + 3, [](const QByteArray &lines) { return lines.isEmpty(); });
        if (someEmpty && previous.endsWith(',') && !previous.startsWith(QByteArray(size, '>'))) {
            for (QByteArray &lines : sides)
                lines.prepend((lines.isEmpty() ? previous.chopped(1) : previous) + '\n');
            bytes.truncate(before);
        }
    }
    bytes += MarkerLine('<', size, oursLabel) + sides[0] + MarkerLine('|', size, baseLabel) + sides[1]
        + MarkerLine('=', size, QString()) + sides[2] + MarkerLine('>', size, theirsLabel);
}

} // namespace ProductEditor
