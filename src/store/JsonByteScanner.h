#pragma once

#include <QByteArray>
#include <QLatin1String>
#include <QString>

namespace ProductEditor {

// Walks the text of a JSON document without building it, for readers that want a
// few values out of a large document. It takes only what it can read exactly as the
// JSON parser would: a string with an escape or a byte outside ASCII, where a key or
// a value is wanted, makes it give up (failed()), and the caller reads the parsed
// document instead. Skipped values may hold anything. Whether the text is valid JSON
// at all is the parser's to say.
class JsonByteScanner
{
public:
    JsonByteScanner(const char *begin, const char *end);

    bool failed() const { return m_failed; }
    void fail() { m_failed = true; }
    // The next significant character, or 0 at the end or after a failure.
    char peek();

    // '{' then keys: nextKey() gives each key until the closing '}', leaving the
    // scanner on the key's value, which the caller reads or skips.
    bool enterObject();
    bool nextKey(const char *&key, int &length);
    // '[' then elements: nextElement() is true before each element.
    bool enterArray();
    bool nextElement();

    void skipValue();
    // A string value; anything else is skipped and reads as "".
    QString readText();
    // The same as a view of the text, valid while the text is.
    QLatin1String readName();
    // true or false; anything else is skipped and reads as `fallback`.
    bool readFlag(bool fallback);

private:
    bool enter(char open);
    bool nextMember(char close);
    bool plainString(const char *&text, int &length, bool anyByte);
    void skipString();
    void skipContainer();
    bool literal(const char *word, int length);

    const char *m_at;
    const char *m_end;
    bool m_failed = false;
    bool m_first = false; // the next key or element is the first of its container
};

} // namespace ProductEditor
