#include "json/DefinitionMerge.h"

#include "json/CanonicalMergedDocument.h"
#include "store/CanonicalDocument.h"
#include "store/ParsedDocument.h"

#include <QJsonObject>

namespace ProductEditor {

DefinitionMergeResult MergeDefinitionDocuments(const QByteArray &base, const QByteArray &ours,
                                               const QByteArray &theirs, const ConflictMarkers &markers,
                                               MergeInputs inputs)
{
    DefinitionMergeResult result;
    const QByteArray *documents[] = {&base, &ours, &theirs};
    QJsonObject canonical[3];
    for (int i = 0; i < 3; ++i) {
        const ParsedDocument parsed = ParseJsonDocument(*documents[i]);
        if (!parsed.ok()) {
            result.error = {DefinitionMergeError::Input(DefinitionMergeError::Base + i), parsed.line, parsed.column,
                            parsed.error};
            return result;
        }
        canonical[i] =
            inputs == MergeInputs::Canonical ? parsed.object : CanonicalDocument::CanonicalObject(parsed.object);
    }
    JsonMergeResult merged = MergeJson(canonical[0], canonical[1], canonical[2]);
    result.conflicts = std::move(merged.conflicts);
    result.bytes = markers.Write(CanonicalMergedDocument(merged.merged.toObject(), canonical[1]), result.conflicts);
    return result;
}

} // namespace ProductEditor
