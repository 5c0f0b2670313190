#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QtGlobal>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Helpers shared by the fuzz targets.
namespace FuzzSupport {

// One fuzz input carries several documents separated by this line.
inline const QByteArray &Separator()
{
    static const QByteArray separator("\n#next\n");
    return separator;
}

// Splits the input at the first `maxParts - 1` separators; missing parts are absent.
inline QList<QByteArray> SplitInput(const uint8_t *data, size_t size, int maxParts)
{
    const QByteArray input = QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    QList<QByteArray> parts;
    int from = 0;
    while (parts.size() < maxParts - 1) {
        const int at = input.indexOf(Separator(), from);
        if (at < 0)
            break;
        parts << QByteArray(input.constData() + from, at - from);
        from = at + Separator().size();
    }
    parts << QByteArray(input.constData() + from, input.size() - from);
    return parts;
}

// Whether every object below `value` keeps its keys in ascending order. Qt's
// parser orders keys by their UTF-8 bytes and then decodes them as
// QString::fromUtf8 does, which drops a leading U+FEFF: such a key leaves the
// object out of order, lookups miss, and a serialise-and-parse round trip
// changes it. Properties about round trips only hold for ordered objects.
inline bool KeysInOrder(const QJsonValue &value)
{
    if (value.isArray()) {
        for (const QJsonValue &element : value.toArray()) {
            if (!KeysInOrder(element))
                return false;
        }
        return true;
    }
    if (!value.isObject())
        return true;
    const QJsonObject object = value.toObject();
    QString previous;
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        if ((it != object.constBegin() && !(previous < it.key())) || !KeysInOrder(it.value()))
            return false;
        previous = it.key();
    }
    return true;
}

// Whether serialised JSON holds a string that starts with U+FEFF. The writer
// puts the character out as raw UTF-8 and the parser drops it from the start
// of a string, so such a string does not survive the next parse; as a key it
// is also looked up by the bytes it was read with, so reads of that key miss.
inline bool HasStringStartingWithBom(const QByteArray &json)
{
    return json.contains("\"\xEF\xBB\xBF");
}

// The library's warnings and debug lines would only slow the runs down; a
// fatal message (a model tester's verdict) is printed before Qt aborts.
inline void SilenceMessages()
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "FATAL: %s\n", qPrintable(message));
    });
}

// Reports a broken property with both sides and stops, so libFuzzer keeps the input.
[[noreturn]] inline void Fail(const char *what, const QByteArray &expected, const QByteArray &actual)
{
    std::fprintf(stderr, "PROPERTY FAILED: %s\n--- expected ---\n%s\n--- actual ---\n%s\n", what,
                 expected.constData(), actual.constData());
    std::abort();
}

} // namespace FuzzSupport
