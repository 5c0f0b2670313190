// Loads a definition folder made from the input, saves it, loads what was saved
// and saves again: the canonical form must be a fixed point.
#include "FuzzSupport.h"
#include "MemoryFolder.h"

#include "store/VantixJsonData.h"

#include <QJsonDocument>

using namespace ProductEditor;
using FuzzSupport::KeysInOrder;

namespace {

const int kLayoutFiles = 3;

QString LayoutFile(int i)
{
    return QStringLiteral("layouts/%1.json").arg(i);
}

// One folder on disk for the whole process: the store lists it, the bytes come from memory.
MemoryFolder &Folder()
{
    static MemoryFolder *folder = [] {
        auto *made = new MemoryFolder;
        made->addFile(QStringLiteral("products/products.json"), QByteArray());
        for (int i = 0; i < kLayoutFiles; ++i)
            made->addFile(LayoutFile(i), QByteArray());
        return made;
    }();
    return *folder;
}

QByteArray Describe(const QHash<QString, QByteArray> &files)
{
    QMap<QString, QByteArray> sorted;
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        sorted.insert(it.key(), it.value());
    QByteArray text;
    for (auto it = sorted.cbegin(); it != sorted.cend(); ++it)
        text += "== " + it.key().toUtf8() + "\n" + it.value() + "\n";
    return text;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzSupport::SilenceMessages();
    Folder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    MemoryFolder &folder = Folder();
    const QList<QByteArray> parts = FuzzSupport::SplitInput(data, size, 1 + kLayoutFiles);
    folder.files.clear();
    folder.files.insert(folder.path(QStringLiteral("products/products.json")), parts.at(0));
    for (int i = 1; i < parts.size(); ++i)
        folder.files.insert(folder.path(LayoutFile(i - 1)), parts.at(i));

    folder.written.clear();
    VantixJsonData first(folder.root(), folder.reader(), folder.writer(), {});
    if (first.GetProductsOriginalJson().isEmpty())
        return 0;
    first.UpdateResultJsons();
    const QByteArray generated = QJsonDocument(first.GetProductsResultJson()).toJson();
    if (!first.SaveAs(folder.root()))
        FuzzSupport::Fail("first save", "true", "false");
    const QHash<QString, QByteArray> firstGeneration = folder.written;
    const QByteArray savedProducts = firstGeneration.value(folder.path(QStringLiteral("products/products.json")));
    if (savedProducts != generated)
        FuzzSupport::Fail("a save writes what UpdateResultJsons generated", generated, savedProducts);

    bool ordered = KeysInOrder(first.GetProductsOriginalJson());
    for (const QByteArray &part : parts)
        ordered = ordered && KeysInOrder(QJsonDocument::fromJson(part).object());
    if (!ordered)
        return 0;

    // What the first generation wrote is all the second one sees.
    folder.files = firstGeneration;
    folder.written.clear();
    VantixJsonData second(folder.root(), folder.reader(), folder.writer(), {});
    if (second.GetProductsOriginalJson().isEmpty())
        FuzzSupport::Fail("saved products.json loads", savedProducts, QByteArray());
    if (!second.SaveAs(folder.root()))
        FuzzSupport::Fail("second save", "true", "false");
    if (folder.written != firstGeneration)
        FuzzSupport::Fail("canonical output is a fixed point", Describe(firstGeneration), Describe(folder.written));
    return 0;
}
