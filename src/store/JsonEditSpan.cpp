#include "store/JsonEditSpan.h"

#include <QVector>

#include <cstring>

namespace ProductEditor {

namespace {

struct Open
{
    int start = 0;
    bool object = false;
    bool expectKey = false; // objects: the next string is a key
    int index = 0;          // arrays: the element being read
    QByteArray key;         // objects: the key of the member being read
    QString name;           // its place in its parent: a key or an index
};

// Walks JSON bytes token by token, keeping the containers open at the current byte.
class Skimmer
{
public:
    explicit Skimmer(const QByteArray &bytes)
        : m_data(bytes.constData())
        , m_size(bytes.size())
    {
    }

    // Reads the tokens that end by `until`; stops before one that runs past it, so
    // that the state holds for any bytes from there on. False on bytes that are not JSON.
    bool SkimTo(int until)
    {
        while (m_pos < until) {
            if (m_data[m_pos] != '"') {
                if (!Step())
                    return false;
                continue;
            }
            const int at = m_pos;
            const QByteArray key = m_stack.isEmpty() ? QByteArray() : m_stack.last().key;
            if (!String())
                return false;
            if (m_pos > until) {
                m_pos = at;
                if (!m_stack.isEmpty())
                    m_stack.last().key = key;
                return true;
            }
        }
        return true;
    }

    // Reads on until the container at `depth` closes; returns one past its bracket.
    int CloseOf(int depth)
    {
        while (m_stack.size() > depth) {
            if (m_pos >= m_size || !Step())
                return -1;
        }
        return m_pos;
    }

    QVector<Open> m_stack;
    int m_pos = 0;

private:
    bool Step()
    {
        const char c = m_data[m_pos];
        switch (c) {
        case '{':
        case '[': {
            Open open;
            open.start = m_pos;
            open.object = c == '{';
            open.expectKey = open.object;
            if (!m_stack.isEmpty())
                open.name = m_stack.last().object ? QString::fromUtf8(m_stack.last().key)
                                                  : QString::number(m_stack.last().index);
            m_stack.append(open);
            ++m_pos;
            return true;
        }
        case '}':
        case ']':
            if (m_stack.isEmpty() || m_stack.last().object != (c == '}'))
                return false;
            m_stack.removeLast();
            ++m_pos;
            return true;
        case ',':
            if (m_stack.isEmpty())
                return false;
            if (m_stack.last().object)
                m_stack.last().expectKey = true;
            else
                ++m_stack.last().index;
            ++m_pos;
            return true;
        case ':':
            if (m_stack.isEmpty() || !m_stack.last().object)
                return false;
            m_stack.last().expectKey = false;
            ++m_pos;
            return true;
        case '"': return String();
        default: ++m_pos; return true; // white space, numbers and literals hold no brackets
        }
    }

    bool String()
    {
        const int begin = ++m_pos;
        for (;;) {
            const void *quote = std::memchr(m_data + m_pos, '"', size_t(m_size - m_pos));
            if (!quote)
                return false;
            int at = int(static_cast<const char *>(quote) - m_data);
            // A quote after an odd run of backslashes is part of the string.
            int backslashes = 0;
            while (at - 1 - backslashes >= begin && m_data[at - 1 - backslashes] == '\\')
                ++backslashes;
            m_pos = at + 1;
            if (backslashes % 2 == 0) {
                if (!m_stack.isEmpty() && m_stack.last().object && m_stack.last().expectKey)
                    m_stack.last().key = QByteArray(m_data + begin, at - begin);
                return true;
            }
        }
    }

    const char *m_data;
    int m_size;
};

int CommonPrefix(const char *a, const char *b, int size)
{
    constexpr int block = 4096;
    int at = 0;
    while (at + block <= size && std::memcmp(a + at, b + at, block) == 0)
        at += block;
    while (at < size && a[at] == b[at])
        ++at;
    return at;
}

int CommonSuffix(const char *aEnd, const char *bEnd, int size)
{
    constexpr int block = 4096;
    int at = 0;
    while (at + block <= size && std::memcmp(aEnd - at - block, bEnd - at - block, block) == 0)
        at += block;
    while (at < size && aEnd[-at - 1] == bEnd[-at - 1])
        ++at;
    return at;
}

} // namespace

JsonEditSpan::JsonEditSpan(const QByteArray &before, const QByteArray &after, int outermost)
    : m_before(before)
    , m_after(after)
{
    const int shorter = int(std::min(before.size(), after.size()));
    const int prefix = CommonPrefix(before.constData(), after.constData(), shorter);
    const int suffix = CommonSuffix(before.constData() + before.size(), after.constData() + after.size(),
                                    shorter - prefix);
    if (prefix == before.size() && prefix == after.size())
        return;

    // The bytes before `prefix` are the same, so both versions have the same containers
    // open there. The span's value is the innermost that closes in the common tail at the
    // same distance from the end in both; only the containers out to it (and to
    // `outermost`) are read to their end, so an edit deep in a large document costs a
    // skim up to the edit and little more.
    Skimmer head(before);
    if (!head.SkimTo(prefix))
        return;
    const QVector<Open> open = head.m_stack;
    Skimmer restBefore = head;
    Skimmer restAfter(after);
    restAfter.m_stack = open;
    restAfter.m_pos = head.m_pos;
    QVector<Frame> frames(open.size());
    int span = -1;
    for (int depth = open.size() - 1; depth >= 0 && (span < 0 || depth >= outermost); --depth) {
        Frame &frame = frames[depth];
        frame.start = open.at(depth).start;
        frame.endBefore = restBefore.CloseOf(depth);
        frame.endAfter = restAfter.CloseOf(depth);
        if (frame.endBefore < 0 || frame.endAfter < 0)
            return;
        if (span < 0 && frame.endBefore >= before.size() - suffix && frame.endAfter >= after.size() - suffix
            && before.size() - frame.endBefore == after.size() - frame.endAfter)
            span = depth;
    }
    if (span < 0)
        return;
    m_frames = frames.mid(0, span + 1);
    for (int i = 1; i <= span; ++i)
        m_path << open.at(i).name;
    m_start = frames.at(span).start;
}

QByteArray JsonEditSpan::before(int depth) const
{
    if (!found())
        return QByteArray();
    if (depth >= 0 && (depth >= m_frames.size() || m_frames.at(depth).endBefore < 0))
        return QByteArray();
    const Frame &frame = depth < 0 ? m_frames.last() : m_frames.at(depth);
    return m_before.mid(frame.start, frame.endBefore - frame.start);
}

QByteArray JsonEditSpan::after(int depth) const
{
    if (!found())
        return QByteArray();
    if (depth >= 0 && (depth >= m_frames.size() || m_frames.at(depth).endAfter < 0))
        return QByteArray();
    const Frame &frame = depth < 0 ? m_frames.last() : m_frames.at(depth);
    return m_after.mid(frame.start, frame.endAfter - frame.start);
}

} // namespace ProductEditor
