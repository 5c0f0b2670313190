#include "json/ConflictMarkers.h"

#include "store/CanonicalDocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QList>

namespace ProductEditor {

namespace {

const QString kId = QStringLiteral("id");
const QChar kMark(0xE000); // private use, so no definition text holds it

QString Placeholder(int index)
{
    return kMark + QString::number(index) + kMark;
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
        ? QJsonDocument(QJsonObject{{last.key, value}}).toJson(QJsonDocument::Indented)
        : QJsonDocument(conflict.elements ? value.toArray() : QJsonArray{value}).toJson(QJsonDocument::Indented);
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
    QJsonValue marked(document);
    for (int i = 0; i < conflicts.size(); ++i) {
        if (!conflicts.at(i).steps.isEmpty())
            marked = Place(marked, conflicts.at(i), 0, Placeholder(i));
    }
    QByteArray bytes = CanonicalDocument::Bytes(marked.toObject());
    for (int i = 0; i < conflicts.size(); ++i) {
        const JsonMergeConflict &conflict = conflicts.at(i);
        const int at = bytes.indexOf(Placeholder(i).toUtf8());
        if (at < 0)
            continue;
        const int start = bytes.lastIndexOf('\n', at) + 1;
        const int end = bytes.indexOf('\n', at);
        const QByteArray line = bytes.mid(start, end - start);
        int indent = 0;
        while (indent < line.size() && line.at(indent) == ' ')
            ++indent;
        const bool comma = line.endsWith(',');
        const QByteArray block = MarkerLine('<', size, oursLabel) + SideLines(conflict, conflict.ours, indent, comma)
            + MarkerLine('|', size, baseLabel) + SideLines(conflict, conflict.base, indent, comma)
            + MarkerLine('=', size, QString()) + SideLines(conflict, conflict.theirs, indent, comma)
            + MarkerLine('>', size, theirsLabel);
        bytes.replace(start, end + 1 - start, block);
    }
    return bytes;
}

} // namespace ProductEditor
