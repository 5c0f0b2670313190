#include "store/JsonByteScanner.h"

#include <cstring>

namespace ProductEditor {

namespace {

bool IsSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

const quint64 kOnes = 0x0101010101010101ULL;
const quint64 kHighs = 0x8080808080808080ULL;

quint64 Load8(const char *at)
{
    quint64 word;
    std::memcpy(&word, at, 8);
    return word;
}

// Whether any of the eight bytes of `word` is `c`.
bool HasByte(quint64 word, unsigned char c)
{
    const quint64 x = word ^ (kOnes * c);
    return ((x - kOnes) & ~x & kHighs) != 0;
}

// Whether the eight bytes may end or spoil a plain string: a quote, an escape, a
// control character or a byte outside ASCII. May say so wrongly, never the other way.
bool MayStop(quint64 word)
{
    return HasByte(word, '"') || HasByte(word, '\\') || ((word - kOnes * 0x20) & kHighs) != 0 || (word & kHighs) != 0;
}

bool EndsToken(char c) { return IsSpace(c) || c == ',' || c == '}' || c == ']'; }

} // namespace

JsonByteScanner::JsonByteScanner(const char *begin, const char *end)
    : m_at(begin)
    , m_end(end)
{
}

char JsonByteScanner::peek()
{
    // Indentation comes in runs of spaces.
    while (m_end - m_at >= 8 && Load8(m_at) == kOnes * ' ')
        m_at += 8;
    while (m_at < m_end && IsSpace(*m_at))
        ++m_at;
    return m_failed || m_at == m_end ? 0 : *m_at;
}

bool JsonByteScanner::enter(char open)
{
    if (peek() != open) {
        fail();
        return false;
    }
    ++m_at;
    m_first = true;
    return true;
}

bool JsonByteScanner::enterObject() { return enter('{'); }

bool JsonByteScanner::enterArray() { return enter('['); }

// Steps over the comma before the next member, or over `close` and answers false.
bool JsonByteScanner::nextMember(char close)
{
    const char c = peek();
    if (c == close) {
        ++m_at;
        m_first = false;
        return false;
    }
    if (!m_first) {
        if (c != ',') {
            fail();
            return false;
        }
        ++m_at;
    }
    m_first = false;
    if (peek() == 0) {
        fail();
        return false;
    }
    return true;
}

bool JsonByteScanner::nextKey(const char *&key, int &length)
{
    if (!nextMember('}'))
        return false;
    // A key may hold any character but an escape, which could spell a known key.
    if (peek() != '"' || !plainString(key, length, true) || peek() != ':') {
        fail();
        return false;
    }
    ++m_at;
    return true;
}

bool JsonByteScanner::nextElement() { return nextMember(']'); }

bool JsonByteScanner::plainString(const char *&text, int &length, bool anyByte)
{
    const char *at = m_at + 1;
    while (m_end - at >= 8 && !MayStop(Load8(at)))
        at += 8;
    while (at < m_end) {
        const unsigned char c = static_cast<unsigned char>(*at);
        if (c == '"') {
            text = m_at + 1;
            length = int(at - text);
            m_at = at + 1;
            return true;
        }
        if (c == '\\' || c < 0x20 || (c >= 0x80 && !anyByte))
            return false;
        ++at;
    }
    return false;
}

void JsonByteScanner::skipString()
{
    for (const char *at = m_at + 1; at < m_end; ++at) {
        while (m_end - at >= 8 && !HasByte(Load8(at), '"') && !HasByte(Load8(at), '\\'))
            at += 8;
        if (at == m_end)
            break;
        if (*at == '\\') {
            if (++at == m_end)
                break;
        } else if (*at == '"') {
            m_at = at + 1;
            return;
        }
    }
    fail();
}

// Counting brackets is enough: what the parser accepts has them matched.
void JsonByteScanner::skipContainer()
{
    int depth = 0;
    while (m_at < m_end) {
        const char c = *m_at;
        if (c == '"') {
            skipString();
            if (m_failed)
                return;
            continue;
        }
        ++m_at;
        if (c == '{' || c == '[') {
            ++depth;
        } else if (c == '}' || c == ']') {
            if (--depth == 0)
                return;
        }
    }
    fail();
}

void JsonByteScanner::skipValue()
{
    const char c = peek();
    if (c == '"') {
        skipString();
    } else if (c == '{' || c == '[') {
        skipContainer();
    } else if (c == 0 || EndsToken(c)) {
        fail();
    } else {
        while (m_at < m_end && !EndsToken(*m_at))
            ++m_at;
    }
}

bool JsonByteScanner::literal(const char *word, int length)
{
    if (m_end - m_at < length || std::memcmp(m_at, word, size_t(length)) != 0
        || (m_end - m_at > length && !EndsToken(m_at[length]))) {
        fail();
        return false;
    }
    m_at += length;
    return true;
}

QLatin1String JsonByteScanner::readName()
{
    if (peek() != '"') {
        skipValue();
        return QLatin1String();
    }
    const char *text = nullptr;
    int length = 0;
    if (!plainString(text, length, false)) {
        fail();
        return QLatin1String();
    }
    return QLatin1String(text, length);
}

QString JsonByteScanner::readText()
{
    const QLatin1String text = readName();
    return text.data() ? QString(text) : QString();
}

bool JsonByteScanner::readFlag(bool fallback)
{
    const char c = peek();
    if (c == 't')
        return literal("true", 4) ? true : fallback;
    if (c == 'f')
        return literal("false", 5) ? false : fallback;
    skipValue();
    return fallback;
}

} // namespace ProductEditor
