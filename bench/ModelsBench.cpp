// Item-model speed at three sizes, each against a floor: the same work done by
// a plain loop over the store's records, without any model in between.
// After the runs a table of times, ratios to the floors and growth per tenfold
// size is printed.

#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "models/ExtensionsLicenseModel.h"
#include "models/ExtensionsLicenseProxyModel.h"
#include "models/FeaturesModel.h"
#include "models/FilterFeatureModel.h"
#include "models/LicenseProxyModel.h"
#include "models/LicensesModel.h"
#include "models/ProductLicensesModel.h"
#include "models/QueryFilterFeatureModel.h"
#include "store/VantixJsonData.h"

#include <QCoreApplication>
#include <QVariant>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace ProductEditor;

namespace {

const int kScales[] = {2000, 20000, 100000};

// Two texts a user types one keystroke apart; alternating them makes every
// pass a full one.
const QString kSearches[] = {QStringLiteral("cmd1"), QStringLiteral("cmd12")};

QMap<QString, QString> Catalogue(VantixJsonData &store)
{
    QMap<QString, QString> catalogue;
    for (const ProductData &product : store.GetProducts().products) {
        catalogue.insert(product.base, product.base);
        for (const QSet<QString> &names : product.specificLicenses)
            for (const QString &name : names)
                catalogue.insert(name, name);
    }
    for (const ExtensionInfo &info : store.GetExtensions()) {
        for (const QString &name : info.importLicenses + info.exportLicenses)
            catalogue.insert(name, name);
    }
    return catalogue;
}

struct Fixture
{
    explicit Fixture(int features)
        : memory(GenerateSyntheticFolder(features))
        , store(memory.root(), memory.reader(), memory.writer(), QMap<QString, QString>())
        , featuresModel(store)
    {
        store.GetLicenses() = Catalogue(store);
    }

    MemoryDefinitionFolder memory;
    VantixJsonData store;
    FeaturesModel featuresModel;
};

// --- quick search

void QuickSearch(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    FilterFeatureModel filter;
    filter.setSourceModel(&fixture.featuresModel);
    int keystroke = 0;
    for (auto _ : state) {
        filter.SetFilter(kSearches[keystroke++ % 2]);
        benchmark::DoNotOptimize(filter.rowCount());
    }
}

void QuickSearchFloor(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    const QMap<QString, VantixFeatureData> &features = fixture.store.GetFeatures();
    int keystroke = 0;
    for (auto _ : state) {
        const QString text = kSearches[keystroke++ % 2].toLower();
        int accepted = 0;
        for (auto it = features.constBegin(); it != features.constEnd(); ++it) {
            if (it.key().toLower().contains(text) || it.value().title.toLower().contains(text))
                ++accepted;
        }
        benchmark::DoNotOptimize(accepted);
    }
}

// --- every cell of the features table

void ReadAllCells(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    const FeaturesModel &model = fixture.featuresModel;
    for (auto _ : state) {
        const int rows = model.rowCount();
        const int columns = model.columnCount();
        qint64 size = 0;
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column)
                size += model.data(model.index(row, column), Qt::DisplayRole).toString().size();
        }
        benchmark::DoNotOptimize(size);
    }
}

// The same without the licence column, whose union runs over every product.
void ReadCellsButLicences(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    const FeaturesModel &model = fixture.featuresModel;
    for (auto _ : state) {
        const int rows = model.rowCount();
        qint64 size = 0;
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < 8; ++column)
                size += model.data(model.index(row, column), Qt::DisplayRole).toString().size();
        }
        benchmark::DoNotOptimize(size);
    }
}

void ReadAllCellsFloor(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    const QMap<QString, VantixFeatureData> &features = fixture.store.GetFeatures();
    const QVector<ProductData> &products = fixture.store.GetProducts().products;
    const auto join = [](const QSet<QString> &set) {
        return QStringList(set.begin(), set.end()).join(QStringLiteral(", "));
    };
    for (auto _ : state) {
        qint64 size = 0;
        for (auto it = features.constBegin(); it != features.constEnd(); ++it) {
            const VantixFeatureData &feature = it.value();
            QSet<QString> licenses;
            for (const ProductData &product : products) {
                const auto entry = product.specificLicenses.constFind(it.key());
                if (entry != product.specificLicenses.constEnd())
                    licenses.unite(entry.value());
            }
            const QVariant cells[] = {it.key(),           feature.title,   feature.tooltip,
                                      feature.statustip,  feature.visual,  feature.emergency,
                                      join(feature.productIds), join(feature.layoutNames),
                                      join(licenses)};
            for (const QVariant &cell : cells)
                size += cell.toString().size();
        }
        benchmark::DoNotOptimize(size);
    }
}

// --- query, one kind of field at a time

enum QueryKind { Ids, Titles, TitleWildcard, Products, QuotedProduct, Layouts, Licenses, QueryKinds };
const char *const kQueryNames[] = {"ids",      "titles",         "title *",  "products",
                                   "\"product\"", "layouts", "licenses"};

FeatureQuery QueryOf(int kind)
{
    FeatureQuery query;
    switch (kind) {
    case Ids:
        query.ids = FeatureQuery::Keys(QStringLiteral("cmd12"));
        break;
    case Titles:
        query.titles = FeatureQuery::Keys(QStringLiteral("open"));
        break;
    case TitleWildcard:
        query.titles = FeatureQuery::Keys(QStringLiteral("*"));
        break;
    case Products:
        query.products = FeatureQuery::Keys(QStringLiteral("edition_1,edition_2"));
        break;
    case QuotedProduct:
        query.products = FeatureQuery::Keys(QStringLiteral("\"edition_7\""));
        break;
    case Layouts:
        query.layouts = FeatureQuery::Keys(QStringLiteral("layout_1"));
        break;
    case Licenses:
        query.licenses = FeatureQuery::Keys(QStringLiteral("lic.3"));
        break;
    }
    return query;
}

void ApplyQuery(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    QueryFilterFeatureModel filter;
    filter.setSourceModel(&fixture.featuresModel);
    const FeatureQuery query = QueryOf(int(state.range(1)));
    for (auto _ : state) {
        filter.ApplyQuery(query, fixture.store);
        benchmark::DoNotOptimize(filter.rowCount());
    }
    state.counters["accepted"] = filter.rowCount();
}

// --- licence sorts

void SortProductLicenses(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    LicensesModel licenses(fixture.store);
    ProductLicensesModel productLicenses(fixture.store);
    productLicenses.setSourceModel(&licenses);
    LicenseProxyModel proxy;
    proxy.setSourceModel(&productLicenses);
    const ProductData &product = fixture.store.GetProducts().products.first();
    productLicenses.UpdateFeature(product.specificLicenses.firstKey());
    productLicenses.UpdateData(product.id);
    proxy.sort(0);
    for (auto _ : state) {
        proxy.invalidate();
        benchmark::DoNotOptimize(proxy.rowCount());
    }
    state.counters["licences"] = licenses.rowCount();
}

void SortExtensionLicenses(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    ExtensionsLicenseModel licenses(fixture.store);
    ExtensionsLicenseProxyModel proxy;
    proxy.setSourceModel(&licenses);
    licenses.SetCurrentExtension(fixture.store.GetExtensions().firstKey());
    proxy.sort(0);
    for (auto _ : state) {
        proxy.invalidate();
        benchmark::DoNotOptimize(proxy.rowCount());
    }
    state.counters["licences"] = licenses.rowCount();
}

// The same order from keys read straight from the records.
void SortFloor(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    const QMap<QString, QString> &catalogue = fixture.store.GetLicenses();
    const ExtensionInfo &info = fixture.store.GetExtensions().first();
    for (auto _ : state) {
        struct Row
        {
            int import;
            int exportUse;
            int number;
        };
        std::vector<Row> rows;
        rows.reserve(size_t(catalogue.size()));
        for (auto it = catalogue.constBegin(); it != catalogue.constEnd(); ++it)
            rows.push_back({int(info.importLicenses.contains(it.key())),
                            int(info.exportLicenses.contains(it.key())), QVariant(it.key()).toInt()});
        std::stable_sort(rows.begin(), rows.end(), [](const Row &l, const Row &r) {
            if (l.import != r.import)
                return l.import > r.import;
            if (l.exportUse != r.exportUse)
                return l.exportUse > r.exportUse;
            return l.number < r.number;
        });
        benchmark::DoNotOptimize(rows.data());
    }
}

// Milliseconds of `name` at `scale`, for the query `kind` when there is one.
double Ms(const BestTimeReporter &times, const std::string &name, int scale, int kind = -1)
{
    const std::string args = std::to_string(scale) + (kind >= 0 ? "/" + std::to_string(kind) : std::string());
    return times.seconds(name, args) * 1e3;
}

void PrintRow(const BestTimeReporter &times, const std::string &label, const std::string &name,
              const std::string &floor, int kind = -1)
{
    std::printf("| %s |", label.c_str());
    for (const int scale : kScales)
        std::printf(" %.3f |", Ms(times, name, scale, kind));
    std::printf(" %.2fx | %.1fx | %.1fx |\n", Ms(times, name, 20000, kind) / Ms(times, floor, 20000),
                PerTenfold(Ms(times, name, 2000, kind), Ms(times, name, 20000, kind), 2000, 20000),
                PerTenfold(Ms(times, name, 20000, kind), Ms(times, name, 100000, kind), 20000, 100000));
}

void PrintSummary(const BestTimeReporter &times)
{
    std::printf("\n| operation | 2k ms | 20k ms | 100k ms | / floor at 20k | per tenfold 2k->20k "
                "| per tenfold 20k->100k |\n");
    std::printf("|---|---:|---:|---:|---:|---:|---:|\n");
    PrintRow(times, "floor: search walk over the records", "QuickSearchFloor", "QuickSearchFloor");
    PrintRow(times, "floor: cell walk over the records", "ReadAllCellsFloor", "ReadAllCellsFloor");
    PrintRow(times, "floor: licence sort of plain keys", "SortFloor", "SortFloor");
    PrintRow(times, "quick search pass", "QuickSearch", "QuickSearchFloor");
    PrintRow(times, "read every features cell", "ReadAllCells", "ReadAllCellsFloor");
    PrintRow(times, "read every cell but the licences", "ReadCellsButLicences", "ReadAllCellsFloor");
    for (int kind = 0; kind < QueryKinds; ++kind)
        PrintRow(times, std::string("ApplyQuery, ") + kQueryNames[kind], "ApplyQuery",
                 "QuickSearchFloor", kind);
    PrintRow(times, "sort product licences", "SortProductLicenses", "SortFloor");
    PrintRow(times, "sort extension licences", "SortExtensionLicenses", "SortFloor");
    std::printf("\nApplyQuery is compared with the search walk (one lower-cased match per feature).\n");
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    for (const int scale : kScales) {
        benchmark::RegisterBenchmark("QuickSearchFloor", QuickSearchFloor)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("QuickSearch", QuickSearch)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ReadAllCellsFloor", ReadAllCellsFloor)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ReadAllCells", ReadAllCells)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ReadCellsButLicences", ReadCellsButLicences)->Arg(scale)->Unit(benchmark::kMillisecond);
        for (int kind = 0; kind < QueryKinds; ++kind)
            benchmark::RegisterBenchmark("ApplyQuery", ApplyQuery)->Args({scale, kind})->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("SortFloor", SortFloor)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("SortProductLicenses", SortProductLicenses)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("SortExtensionLicenses", SortExtensionLicenses)->Arg(scale)->Unit(benchmark::kMillisecond);
    }
    BestTimeReporter reporter;
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    PrintSummary(reporter);
    return 0;
}
