#pragma once

#include "ProductEditorExport.h"
#include "store/VantixJsonData.h"

#include <QByteArray>
#include <QHash>
#include <QString>

namespace ProductEditor {

// The bytes of the files a store last read or wrote, so that the files can be checked
// again without reading them a second time. Wrapped callbacks behave as the host's.
class PRODUCT_EDITOR_EXPORT RecordedFiles
{
public:
    Reader Wrap(Reader reader);
    Writer Wrap(Writer writer);
    // A reader over the recorded bytes alone, safe to hand to another thread.
    Reader Memory() const;

private:
    static QString Key(const QString &path);

    QHash<QString, QByteArray> m_bytes; // by clean absolute path
};

} // namespace ProductEditor
