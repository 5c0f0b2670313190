#pragma once

#include "MemoryFolder.h"
#include "store/VantixJsonData.h"

#include <QAbstractItemModel>
#include <QStringList>

#include <algorithm>
#include <memory>

// A small definition folder shared by the model suites.
//   features: Open, exit, my_feat_1, orphan, save (rows in this order)
//   products: Base, Base2, ab
//   layouts: design, print; extensions: obj, stl
//   licence catalogue: 10, 2, B, Lic1
inline const char *DefaultProductsJson()
{
    return R"({
  "extensions": {
    "extension": [
      {"id": "stl", "title": "STL", "ext": ".stl", "cad_support": true},
      {"id": "obj", "title": "OBJ", "ext": ".obj", "slices_support": true}
    ],
    "lic_coveradge": {
      "import": [{"id": "stl", "lic": ["10", "2"]}],
      "export": [{"id": "obj", "lic": ["B"]}]
    }
  },
  "features": {
    "feature": [
      {"id": "Open", "title": "Open file", "tooltip": "Opens", "statustip": "Opening"},
      {"id": "save", "title": "Save", "emergency": true},
      {"id": "my_feat_1"},
      {"id": "orphan", "title": "Orphan", "visual": false},
      {"id": "exit", "title": "Exit"}
    ]
  },
  "products": {
    "product": [
      {"id": "Base", "profile_suffix": "_b", "modes": ["design"],
       "licensing": {"base": "L1", "specific": [{"id": "Open", "licenses": ["Lic1", "2"]}]},
       "extensions": {"import": ["stl"], "open": ["stl", "obj"]},
       "features": ["Open", "save", "my_feat_1"]},
      {"id": "Base2", "profile_suffix": "_b2", "modes": ["design", "print"],
       "licensing": {"base": "L2", "specific": [{"id": "save", "licenses": ["Lic1"]}]},
       "features": ["save", "exit"]},
      {"id": "ab", "licensing": {"base": "L3"}, "features": ["exit"]}
    ]
  }
})";
}

inline const char *DefaultLayoutsJson()
{
    return R"({"layouts": {
  "design": {"extensions": {"export": ["stl"]}, "features": ["Open"]},
  "print": {"extensions": {"import": ["obj"]}, "features": ["save", "exit"]}
}})";
}

inline QMap<QString, QString> DefaultCatalogue()
{
    return {{"10", "Ten"}, {"2", "Two"}, {"B", "Bee"}, {"Lic1", "Licence one"}};
}

class StoreFixture
{
public:
    explicit StoreFixture(const QByteArray &products = DefaultProductsJson(),
                          const QByteArray &layouts = DefaultLayoutsJson(),
                          const QMap<QString, QString> &catalogue = DefaultCatalogue())
    {
        folder.addFile(QStringLiteral("products/products.json"), products);
        if (!layouts.isEmpty())
            folder.addFile(QStringLiteral("layouts/layouts.json"), layouts);
        store = std::make_unique<ProductEditor::VantixJsonData>(folder.root(), folder.reader(),
                                                                folder.writer(), catalogue);
    }

    ProductEditor::VantixJsonData &data() { return *store; }

    MemoryFolder folder;
    std::unique_ptr<ProductEditor::VantixJsonData> store;
};

// Every cell of a row in one role, joined with "|"; invalid cells read "-".
inline QString RowText(const QAbstractItemModel &model, int row, int role = Qt::DisplayRole)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column) {
        const QVariant value = model.index(row, column).data(role);
        cells << (value.isValid() ? value.toString() : QStringLiteral("-"));
    }
    return cells.join(QLatin1Char('|'));
}

// Column 0 (or `column`) of every row, joined with ",".
inline QString ColumnText(const QAbstractItemModel &model, int column = 0,
                          int role = Qt::DisplayRole)
{
    QStringList cells;
    for (int row = 0; row < model.rowCount(); ++row)
        cells << model.index(row, column).data(role).toString();
    return cells.join(QLatin1Char(','));
}

// A joined set in sorted order, so set iteration order does not matter.
inline QString SortedJoin(const QString &joined)
{
    QStringList parts = joined.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    std::sort(parts.begin(), parts.end());
    return parts.join(QLatin1Char(','));
}

inline QString SortedJoin(const QSet<QString> &set)
{
    QStringList parts(set.begin(), set.end());
    std::sort(parts.begin(), parts.end());
    return parts.join(QLatin1Char(','));
}
