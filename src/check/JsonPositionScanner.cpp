#include "check/JsonPositionScanner.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace ProductEditor {

namespace {

int HexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool IsNumberByte(char c)
{
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

} // namespace

JsonPositionScanner::JsonPositionScanner(QByteArray bytes)
    : m_bytes(std::move(bytes))
{
    if (scan()) {
        linkChildren();
    } else {
        m_nodes.clear();
        m_children.clear();
    }
}

bool JsonPositionScanner::scan()
{
    if (m_bytes.startsWith("\xEF\xBB\xBF"))
        m_pos = m_lineStart = 3;
    skipSpace();
    // Every value but the first follows a comma or an opening bracket; reserving for
    // all of them saves the copies of a growing table.
    int separators = 0;
    for (const char c : m_bytes)
        separators += (c == ',') | (c == '[') | (c == '{');
    m_nodes.reserve(size_t(separators) + 1);
    QVector<int> open; // the containers not yet closed, innermost last
    int next = addNode(-1, m_pos, -1);
    for (;;) {
        if (next >= 0) {
            if (!scanValue(next))
                return false;
            const Kind kind = m_nodes[next].kind;
            if (kind == Kind::Object || kind == Kind::Array)
                open.append(next);
            next = -1;
        }
        skipSpace();
        if (open.isEmpty())
            return m_pos == m_bytes.size();
        if (m_pos >= m_bytes.size())
            return false;
        const int container = open.last();
        const bool object = m_nodes[container].kind == Kind::Object;
        const char c = m_bytes.at(m_pos);
        if (c == (object ? '}' : ']')) {
            m_nodes[container].end = ++m_pos;
            open.removeLast();
            continue;
        }
        if (m_nodes[container].childCount > 0) {
            if (c != ',')
                return false;
            ++m_pos;
            skipSpace();
        }
        if (!object) {
            next = addNode(container, m_pos, -1);
            continue;
        }
        const int keyStart = m_pos;
        const int line = m_line;
        const int column = m_pos - m_lineStart + 1;
        if (m_pos >= m_bytes.size() || m_bytes.at(m_pos) != '"' || !scanString())
            return false;
        const int keyEnd = m_pos;
        skipSpace();
        if (m_pos >= m_bytes.size() || m_bytes.at(m_pos) != ':')
            return false;
        ++m_pos;
        skipSpace();
        // The member's position is its key's, taken before the scan moved on.
        next = addNode(container, keyStart, keyEnd - keyStart - 2);
        m_nodes[next].line = line;
        m_nodes[next].column = column;
    }
}

bool JsonPositionScanner::scanValue(int node)
{
    if (m_pos >= m_bytes.size())
        return false;
    m_nodes[node].value = m_pos;
    const char c = m_bytes.at(m_pos);
    Kind kind = Kind::Number;
    if (c == '{' || c == '[') {
        m_nodes[node].kind = c == '{' ? Kind::Object : Kind::Array;
        ++m_pos;
        return true; // closed by scan()
    }
    if (c == '"') {
        kind = Kind::String;
        if (!scanString())
            return false;
    } else if (c == 't' || c == 'f' || c == 'n') {
        kind = c == 'n' ? Kind::Null : Kind::Bool;
        if (!scanLiteral())
            return false;
    } else {
        const int start = m_pos;
        while (m_pos < m_bytes.size() && IsNumberByte(m_bytes.at(m_pos)))
            ++m_pos;
        if (m_pos == start)
            return false;
    }
    m_nodes[node].kind = kind;
    m_nodes[node].end = m_pos;
    return true;
}

bool JsonPositionScanner::scanString()
{
    const uchar *data = reinterpret_cast<const uchar *>(m_bytes.constData());
    const int size = m_bytes.size();
    int pos = m_pos + 1;
    while (pos < size) {
        const uchar c = data[pos];
        if (c == '"') {
            m_pos = pos + 1;
            return true;
        }
        if (c == '\\') {
            pos += 2;
            continue;
        }
        // Columns count UTF-16 units: continuation bytes add none, a four-byte
        // sequence two.
        if (c >= 0x80) {
            if ((c & 0xC0) == 0x80)
                ++m_lineStart;
            else if (c >= 0xF0)
                --m_lineStart;
        }
        ++pos;
    }
    return false;
}

bool JsonPositionScanner::scanLiteral()
{
    for (const char *literal : {"true", "false", "null"}) {
        const int length = int(std::strlen(literal));
        if (m_bytes.size() - m_pos >= length && std::memcmp(m_bytes.constData() + m_pos, literal, length) == 0) {
            m_pos += length;
            return true;
        }
    }
    return false;
}

void JsonPositionScanner::skipSpace()
{
    const char *data = m_bytes.constData();
    const int size = m_bytes.size();
    while (m_pos < size) {
        const char c = data[m_pos];
        if (c == '\n') {
            ++m_line;
            m_lineStart = m_pos + 1;
        } else if (c != ' ' && c != '\t' && c != '\r') {
            return;
        }
        ++m_pos;
    }
}

int JsonPositionScanner::addNode(int parent, int start, int keyLength)
{
    Node node;
    node.start = start;
    node.value = start;
    node.keyLength = keyLength;
    node.line = m_line;
    node.column = start - m_lineStart + 1;
    node.parent = parent;
    if (parent >= 0)
        ++m_nodes[parent].childCount;
    m_nodes.push_back(node);
    return int(m_nodes.size()) - 1;
}

void JsonPositionScanner::linkChildren()
{
    // Children follow their parent in document order, so one pass over the
    // counts places every container's children in one contiguous run.
    int total = 0;
    for (Node &node : m_nodes) {
        node.firstChild = total;
        total += node.childCount;
    }
    m_children.resize(size_t(total));
    std::vector<int> filled(m_nodes.size(), 0);
    for (size_t i = 1; i < m_nodes.size(); ++i) {
        const int parent = m_nodes[i].parent;
        m_children[size_t(m_nodes[parent].firstChild + filled[size_t(parent)]++)] = int(i);
    }
}

JsonPositionScanner::Kind JsonPositionScanner::kind(int node) const
{
    return valid(node) ? m_nodes[node].kind : Kind::Null;
}

int JsonPositionScanner::childCount(int node) const
{
    return valid(node) ? m_nodes[node].childCount : 0;
}

int JsonPositionScanner::child(int node, int index) const
{
    if (!valid(node) || index < 0 || index >= m_nodes[node].childCount)
        return -1;
    return m_children[m_nodes[node].firstChild + index];
}

int JsonPositionScanner::member(int object, QLatin1String key) const
{
    if (kind(object) != Kind::Object)
        return -1;
    for (int i = m_nodes[object].childCount - 1; i >= 0; --i) {
        const int node = m_children[m_nodes[object].firstChild + i];
        if (hasKey(node, key))
            return node;
    }
    return -1;
}

bool JsonPositionScanner::hasKey(int node, QLatin1String key) const
{
    if (!valid(node) || m_nodes[node].keyLength < 0)
        return false;
    const int length = m_nodes[node].keyLength;
    const char *raw = m_bytes.constData() + m_nodes[node].start + 1;
    if (length == key.size() && std::memcmp(raw, key.data(), size_t(length)) == 0)
        return true;
    return std::memchr(raw, '\\', size_t(length)) && decode(raw, raw + length) == key;
}

bool JsonPositionScanner::sameKey(int a, int b) const
{
    if (!isMember(a) || !isMember(b))
        return false;
    const Node &first = m_nodes[size_t(a)];
    const Node &second = m_nodes[size_t(b)];
    const char *rawA = m_bytes.constData() + first.start + 1;
    const char *rawB = m_bytes.constData() + second.start + 1;
    if (first.keyLength == second.keyLength && std::memcmp(rawA, rawB, size_t(first.keyLength)) == 0)
        return true;
    const bool escaped = std::memchr(rawA, '\\', size_t(first.keyLength)) || std::memchr(rawB, '\\', size_t(second.keyLength));
    return escaped && key(a) == key(b);
}

int JsonPositionScanner::indexInParent(int node) const
{
    // A container's children are numbered in ascending order.
    const Node &parent = m_nodes[m_nodes[node].parent];
    const int *first = m_children.data() + parent.firstChild;
    return int(std::lower_bound(first, first + parent.childCount, node) - first);
}

QString JsonPositionScanner::path(int node) const
{
    if (!valid(node))
        return QString();
    QStringList steps;
    for (int at = node; m_nodes[at].parent >= 0; at = m_nodes[at].parent) {
        if (m_nodes[at].keyLength < 0) {
            steps << QStringLiteral("[%1]").arg(indexInParent(at));
            continue;
        }
        const QString name = key(at);
        static const QRegularExpression plain(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
        if (plain.match(name).hasMatch()) {
            steps << QLatin1Char('.') + name;
        } else {
            const QByteArray quoted = m_bytes.mid(m_nodes[at].start, m_nodes[at].keyLength + 2);
            steps << QLatin1Char('[') + QString::fromUtf8(quoted) + QLatin1Char(']');
        }
    }
    std::reverse(steps.begin(), steps.end());
    return QLatin1Char('$') + steps.join(QString());
}

QString JsonPositionScanner::key(int node) const
{
    if (!valid(node) || m_nodes[node].keyLength < 0)
        return QString();
    const char *raw = m_bytes.constData() + m_nodes[node].start + 1;
    return decode(raw, raw + m_nodes[node].keyLength);
}

QString JsonPositionScanner::string(int node) const
{
    if (kind(node) != Kind::String)
        return QString();
    const Node &n = m_nodes[node];
    return decode(m_bytes.constData() + n.value + 1, m_bytes.constData() + n.end - 1);
}

bool JsonPositionScanner::boolean(int node) const
{
    return kind(node) == Kind::Bool && m_bytes.at(m_nodes[node].value) == 't';
}

QByteArray JsonPositionScanner::source(int node, int limit) const
{
    if (!valid(node))
        return QByteArray();
    const Node &n = m_nodes[node];
    return m_bytes.mid(n.value, qMin(n.end - n.value, qMax(0, limit)));
}

int JsonPositionScanner::line(int node) const
{
    return valid(node) ? m_nodes[node].line : 0;
}

int JsonPositionScanner::column(int node) const
{
    return valid(node) ? m_nodes[node].column : 0;
}

QString JsonPositionScanner::decode(const char *begin, const char *end)
{
    if (!std::memchr(begin, '\\', size_t(end - begin)))
        return QString::fromUtf8(begin, int(end - begin));
    QByteArray plain; // the UTF-8 with every escape but \u undone
    QString text;
    const auto flush = [&plain, &text]() {
        text += QString::fromUtf8(plain);
        plain.clear();
    };
    for (const char *p = begin; p < end; ++p) {
        if (*p != '\\' || p + 1 >= end) {
            plain += *p;
            continue;
        }
        const char escaped = *++p;
        switch (escaped) {
        case 'b': plain += '\b'; break;
        case 'f': plain += '\f'; break;
        case 'n': plain += '\n'; break;
        case 'r': plain += '\r'; break;
        case 't': plain += '\t'; break;
        case 'u': {
            int unit = 0;
            int digits = 0;
            for (; digits < 4 && p + digits + 1 < end && HexValue(p[digits + 1]) >= 0; ++digits)
                unit = unit * 16 + HexValue(p[digits + 1]);
            if (digits < 4)
                break;
            flush();
            text += QChar(ushort(unit));
            p += 4;
            break;
        }
        default: plain += escaped; break;
        }
    }
    flush();
    return text;
}

} // namespace ProductEditor
