#include "json/DefinitionMerge.h"

#include "store/CanonicalDocument.h"
#include "store/ParsedDocument.h"

#include <QJsonObject>

namespace ProductEditor {

DefinitionMergeResult MergeDefinitionDocuments(const QByteArray &base, const QByteArray &ours,
                                               const QByteArray &theirs, const ConflictMarkers &markers)
{
    DefinitionMergeResult result;
    const QByteArray *inputs[] = {&base, &ours, &theirs};
    QJsonObject canonical[3];
    for (int i = 0; i < 3; ++i) {
        const ParsedDocument parsed = ParseJsonDocument(*inputs[i]);
        if (!parsed.ok()) {
            result.error = {DefinitionMergeError::Input(DefinitionMergeError::Base + i), parsed.line, parsed.column,
                            parsed.error};
            return result;
        }
        canonical[i] = CanonicalDocument::CanonicalObject(parsed.object);
    }
    JsonMergeResult merged = MergeJson(canonical[0], canonical[1], canonical[2]);
    result.conflicts = std::move(merged.conflicts);
    result.bytes = markers.Write(CanonicalDocument::CanonicalObject(merged.merged.toObject()), result.conflicts);
    return result;
}

} // namespace ProductEditor
