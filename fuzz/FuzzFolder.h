#pragma once

#include "FuzzSupport.h"
#include "MemoryFolder.h"

#include "store/VantixJsonData.h"

#include <QJsonDocument>
#include <QMap>

// The definition folder the store fuzz targets load: products.json and a few
// layout files whose bytes come from the input.
namespace FuzzSupport {

const int kLayoutFiles = 3;

inline QString LayoutFile(int i)
{
    return QStringLiteral("layouts/%1.json").arg(i);
}

// One folder on disk for the whole process: the store lists it, the bytes come from memory.
inline MemoryFolder &Folder()
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

// Serves the first part as products.json and the next ones as the layout files.
inline void ServeFolder(const QList<QByteArray> &parts)
{
    MemoryFolder &folder = Folder();
    folder.files.clear();
    folder.written.clear();
    folder.files.insert(folder.path(QStringLiteral("products/products.json")), parts.value(0));
    for (int i = 1; i < parts.size() && i <= kLayoutFiles; ++i)
        folder.files.insert(folder.path(LayoutFile(i - 1)), parts.at(i));
}

inline QByteArray Describe(const QHash<QString, QByteArray> &files)
{
    QMap<QString, QByteArray> sorted;
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        sorted.insert(it.key(), it.value());
    QByteArray text;
    for (auto it = sorted.cbegin(); it != sorted.cend(); ++it)
        text += "== " + it.key().toUtf8() + "\n" + it.value() + "\n";
    return text;
}

// Saves `store`, loads what it wrote into a new store and saves that: the
// canonical output must be a fixed point. `served` are the documents the store
// was loaded from.
inline void CheckSaveIsFixedPoint(ProductEditor::VantixJsonData &store, const QList<QByteArray> &served)
{
    MemoryFolder &folder = Folder();
    folder.written.clear();
    store.UpdateResultJsons();
    const QByteArray generated = QJsonDocument(store.GetProductsResultJson()).toJson();
    if (!store.SaveAs(folder.root()))
        Fail("first save", "true", "false");
    const QHash<QString, QByteArray> firstGeneration = folder.written;
    const QByteArray savedProducts = firstGeneration.value(folder.path(QStringLiteral("products/products.json")));
    if (savedProducts != generated)
        Fail("a save writes what UpdateResultJsons generated", generated, savedProducts);

    // Two flaws of Qt's JSON round trip, not of the store, would break the
    // fixed point: see KeysInOrder and HasStringStartingWithBom.
    bool roundTrips = true;
    for (const QByteArray &document : served) {
        roundTrips = roundTrips && KeysInOrder(QJsonDocument::fromJson(document).object())
            && !HasStringStartingWithBom(document);
    }
    for (const QByteArray &written : firstGeneration)
        roundTrips = roundTrips && !HasStringStartingWithBom(written);
    if (!roundTrips)
        return;

    // What the first generation wrote is all the second one sees.
    folder.files = firstGeneration;
    folder.written.clear();
    ProductEditor::VantixJsonData second(folder.root(), folder.reader(), folder.writer(), {});
    if (second.GetProductsOriginalJson().isEmpty())
        Fail("saved products.json loads", savedProducts, QByteArray());
    if (!second.SaveAs(folder.root()))
        Fail("second save", "true", "false");
    if (folder.written != firstGeneration)
        Fail("canonical output is a fixed point", Describe(firstGeneration), Describe(folder.written));
}

} // namespace FuzzSupport
