#include "models/RowCursor.h"

namespace ProductEditor {

namespace {
quint64 rowEpoch = 1;
}

quint64 RowEpoch()
{
    return rowEpoch;
}

void BumpRowEpoch()
{
    ++rowEpoch;
}

} // namespace ProductEditor
