#pragma once

#include "ProductEditorExport.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace ProductEditor {

// The innermost array or object that holds every byte in which two versions of a JSON
// document differ, found by skimming the bytes for their brackets instead of parsing
// them: the value starts at the same byte in both versions, and what follows it is the
// same, so the rest of the two documents reads alike. Valid JSON is assumed; on bytes
// that are not, the span is not found or its bytes do not parse.
class PRODUCT_EDITOR_EXPORT JsonEditSpan
{
public:
    // The bytes of the span's ancestors are kept out to depth `outermost` (0 is the root).
    JsonEditSpan(const QByteArray &before, const QByteArray &after, int outermost = 0);

    bool found() const { return m_start >= 0; }
    // Member keys (raw, as between their quotes) and element indexes from the root to the value.
    const QStringList &path() const { return m_path; }
    // The value's bytes in each version, or those of its ancestor `depth` steps from the
    // root (empty for an ancestor outside `outermost`).
    QByteArray before(int depth = -1) const;
    QByteArray after(int depth = -1) const;

private:
    struct Frame
    {
        int start = 0;
        int endBefore = -1; // one past the closing bracket
        int endAfter = -1;
    };

    QByteArray m_before;
    QByteArray m_after;
    QStringList m_path;
    QVector<Frame> m_frames; // root first, to the span's value
    int m_start = -1;
};

} // namespace ProductEditor
