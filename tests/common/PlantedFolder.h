#pragma once

// A definition folder with every kind of problem `check` finds planted once.

#include "TestHelpers.h"

#include <QTest>

namespace {

const QByteArray kProducts = R"({
"extensions": {
"extension": [
{"id": "stl", "colour": "red"},
{"id": "stl", "cad_support": "yes"}
],
"lic_coveradge": {"import": [{"id": "obj", "lic": ["Imp"]}]}
},
"features": {"feature": [
{"id": "a", "visual": "no"},
{"id": "a"}
]},
"products": {"product": [
{"id": "p", "features": ["a", "ghost"], "modes": ["main", "nomode"], "licensing": {"base": "Base", "specific": [{"id": "nofeat", "licenses": []}]}, "extensions": {"open": ["nope"]}},
{"id": "p", "modes": [], "modes": []}
],
"extra": 1
}
}
)";
const QByteArray kLayoutA = R"({"layouts": {"main": {"features": ["ghost2"]}}})";
const QByteArray kLayoutB = R"({"layouts": {"main": {"features": []}}, "x": 1})";
const QByteArray kNoLayouts = R"({"other": 1})";
const QByteArray kBroken = "{\n\"layouts\"";

// The planted folder at `root`: products.json, two layout files that both define
// "main", one without "layouts", one that does not parse, and a folder among the layouts.
void WritePlantedFolder(const QString &root)
{
    Write(root + "/products/products.json", kProducts);
    Write(root + "/layouts/a.json", kLayoutA);
    Write(root + "/layouts/b.json", kLayoutB);
    Write(root + "/layouts/none.json", kNoLayouts);
    Write(root + "/layouts/bad.json", kBroken);
    QVERIFY(QDir().mkpath(root + "/layouts/sub"));
}

} // namespace
