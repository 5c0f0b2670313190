#include "store/JsonText.h"

#include <QVariant>

#include <cmath>

namespace ProductEditor {

#if QT_VERSION_MAJOR >= 6
namespace {

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsNumberPart(char c)
{
    return IsDigit(c) || c == '.' || c == 'e' || c == 'E' || c == '+' || c == '-';
}

// Qt 5 writes every number through a double with the fewest digits that read back the
// same: in exponent notation below 1e-4, in fixed notation up to 2^64, and above in
// whichever of the two is shorter, fixed on a tie.
QByteArray Qt5Number(double number)
{
    const double magnitude = std::abs(number);
    if (magnitude != 0 && magnitude < 1e-4)
        return QByteArray::number(number, 'e', QLocale::FloatingPointShortest);
    const QByteArray fixed = QByteArray::number(number, 'f', QLocale::FloatingPointShortest);
    if (magnitude < 18446744073709551616.0)
        return fixed;
    const QByteArray exponent = QByteArray::number(number, 'e', QLocale::FloatingPointShortest);
    return exponent.size() < fixed.size() ? exponent : fixed;
}

// Only numbers of 16 digits or more and numbers in exponent notation can differ.
bool MayDiffer(const QByteArray &text)
{
    int run = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text.at(i);
        if (IsDigit(c)) {
            if (++run >= 16)
                return true;
            continue;
        }
        if (run > 0 && c == 'e' && i + 1 < text.size() && (text.at(i + 1) == '+' || text.at(i + 1) == '-'))
            return true;
        run = 0;
    }
    return false;
}

QByteArray WithQt5Numbers(const QByteArray &text)
{
    QByteArray result;
    result.reserve(text.size() + 64);
    bool inString = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text.at(i);
        if (inString) {
            result += c;
            if (c == '\\' && i + 1 < text.size())
                result += text.at(++i);
            else if (c == '"')
                inString = false;
        } else if (c == '-' || IsDigit(c)) {
            qsizetype end = i + 1;
            while (end < text.size() && IsNumberPart(text.at(end)))
                ++end;
            result += Qt5Number(text.mid(i, end - i).toDouble());
            i = end - 1;
        } else {
            inString = c == '"';
            result += c;
        }
    }
    return result;
}

} // namespace
#endif

QByteArray JsonText(const QJsonDocument &document, QJsonDocument::JsonFormat format)
{
    QByteArray text = document.toJson(format);
#if QT_VERSION_MAJOR >= 6
    if (MayDiffer(text))
        text = WithQt5Numbers(text);
#endif
    return text;
}

QString JsonValueText(const QJsonValue &value)
{
    QString text = value.toVariant().toString();
#if QT_VERSION_MAJOR >= 6
    // Qt 6 shows 0.0008 as 8e-04; Qt 5 keeps fixed notation down to 1e-4.
    if (value.isDouble() && text.endsWith(QLatin1String("e-04"))) {
        const bool negative = text.startsWith(QLatin1Char('-'));
        QString digits = text.left(text.size() - 4).remove(QLatin1Char('-')).remove(QLatin1Char('.'));
        text = (negative ? QStringLiteral("-0.000") : QStringLiteral("0.000")) + digits;
    }
#endif
    return text;
}

} // namespace ProductEditor
