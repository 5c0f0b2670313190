#include "merge/DefinitionMerge.h"

#include "merge/CanonicalMergedDocument.h"
#include "merge/UnchangedEntries.h"
#include "store/CanonicalDocument.h"
#include "store/CanonicalProductsCheck.h"
#include "store/ParsedDocument.h"

#include <QJsonObject>

namespace ProductEditor {

namespace {

// Three versions, each as the merge compares them.
struct MergeSides
{
    QJsonObject version[3];
};

// The merged document in canonical form, with ours' side where the versions conflict.
QJsonObject MergeCanonical(const MergeSides &sides, MergeInputs inputs, QVector<JsonMergeConflict> &conflicts)
{
    QJsonObject canonical[3];
    for (int i = 0; i < 3; ++i)
        canonical[i] = inputs == MergeInputs::Canonical ? sides.version[i]
                                                        : CanonicalDocument::CanonicalObject(sides.version[i]);
    JsonMergeResult merged = MergeJson(canonical[0], canonical[1], canonical[2]);
    conflicts = std::move(merged.conflicts);
    return CanonicalMergedDocument(merged.merged.toObject(), canonical[1]);
}

// Large products documents mostly hold the same records in all three versions; only the
// others are merged, and the result is checked before it is trusted. Empty when that
// does not apply, or when the result is not canonical and the whole merge must decide.
QJsonObject MergeChangedRecords(const MergeSides &sides, MergeInputs inputs, QVector<JsonMergeConflict> &conflicts)
{
    UnchangedEntries unchanged;
    for (const QJsonObject &version : sides.version) {
        if (CanonicalDocument::KindOf(version) != CanonicalDocument::Products)
            return QJsonObject();
    }
    if (!unchanged.Find(sides.version[0], sides.version[1], sides.version[2]))
        return QJsonObject();
    MergeSides reduced;
    for (int i = 0; i < 3; ++i)
        reduced.version[i] = unchanged.Without(UnchangedEntries::Side(i), sides.version[i]);
    const QJsonObject whole = unchanged.With(MergeCanonical(reduced, inputs, conflicts));
    if (inputs == MergeInputs::Any && !IsCanonicalProductsDocument(whole))
        return QJsonObject();
    return whole;
}

} // namespace

DefinitionMergeResult MergeDefinitionDocuments(const QByteArray &base, const QByteArray &ours,
                                               const QByteArray &theirs, const ConflictMarkers &markers,
                                               MergeInputs inputs)
{
    DefinitionMergeResult result;
    const QByteArray *documents[] = {&base, &ours, &theirs};
    MergeSides sides;
    for (int i = 0; i < 3; ++i) {
        const ParsedDocument parsed = ParseJsonDocument(*documents[i]);
        if (!parsed.ok()) {
            result.error = {DefinitionMergeError::Input(DefinitionMergeError::Base + i), parsed.line, parsed.column,
                            parsed.error};
            return result;
        }
        sides.version[i] = parsed.object;
    }
    QJsonObject merged = MergeChangedRecords(sides, inputs, result.conflicts);
    if (merged.isEmpty())
        merged = MergeCanonical(sides, inputs, result.conflicts);
    result.bytes = markers.Write(merged, result.conflicts);
    return result;
}

} // namespace ProductEditor
