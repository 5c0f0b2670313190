#include "store/TextPosition.h"

#include <QString>

namespace ProductEditor {

TextPosition TextPosition::Of(const QByteArray &bytes, int offset)
{
    const int end = qBound(0, offset, bytes.size());
    const int lineStart = end > 0 ? bytes.lastIndexOf('\n', end - 1) + 1 : 0;
    TextPosition position;
    position.line = int(bytes.left(end).count('\n')) + 1;
    position.column = QString::fromUtf8(bytes.constData() + lineStart, end - lineStart).size() + 1;
    return position;
}

} // namespace ProductEditor
