// Loads a definition folder made from the input, saves it, loads what was saved
// and saves again: the canonical form must be a fixed point. Where the products
// document can be read straight from its text, that reading must give the records
// the parsed document gives.
#include "FuzzFolder.h"
#include "store/DocumentRecords.h"

#include <cstdlib>

using namespace ProductEditor;

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzSupport::SilenceMessages();
    FuzzSupport::Folder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QList<QByteArray> parts = FuzzSupport::SplitInput(data, size, 1 + FuzzSupport::kLayoutFiles);
    FuzzSupport::ServeFolder(parts);
    MemoryFolder &folder = FuzzSupport::Folder();
    VantixJsonData store(folder.root(), folder.reader(), folder.writer(), {});
    if (store.GetProductsOriginalJson().isEmpty())
        return 0;
    const std::optional<RecordsSnapshot> fromText =
        DecodeRecordsFromText(parts.value(0), store.GetLayoutsOriginalJsons(), {});
    if (fromText && !(*fromText == RecordsSnapshot::Take(store)))
        std::abort();
    FuzzSupport::CheckSaveIsFixedPoint(store, parts);
    return 0;
}
