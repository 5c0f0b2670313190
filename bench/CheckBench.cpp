// `check` against the load it starts with: the whole check of a folder (load, scan,
// every diagnostic, the comparison with a canonical save), the scan alone and one
// save, each over the store's Load of the same bytes; and the window's check after an
// edit: the records alone, and with the save they would make. A table of ratios is
// printed after the runs.

#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "check/FolderChecker.h"
#include "check/LiveFindings.h"
#include "check/RecordsCheck.h"
#include "check/JsonPositionScanner.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>

using ProductEditor::JsonPositionScanner;
using ProductEditor::VantixJsonData;
using ProductEditor::CheckResult;
using ProductEditor::FolderChecker;
using ProductEditor::LiveFindings;
using ProductEditor::RecordsSnapshot;

namespace {

const int kScales[] = {2000, 20000, 100000};

struct Fixture
{
    explicit Fixture(int features)
        : folder(GenerateSyntheticFolder(features))
        , memory(folder)
    {
    }

    SyntheticFolder folder;
    MemoryDefinitionFolder memory;
};

void Load(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        auto store = std::make_unique<VantixJsonData>(fixture.memory.root(), fixture.memory.reader(),
                                                      fixture.memory.writer(), QMap<QString, QString>());
        benchmark::DoNotOptimize(store.get());
        state.PauseTiming();
        store.reset();
        state.ResumeTiming();
    }
}

void Scan(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        JsonPositionScanner products(fixture.folder.productsJson);
        for (const QByteArray &layout : fixture.folder.layoutFiles) {
            JsonPositionScanner scanned(layout);
            benchmark::DoNotOptimize(scanned.isValid());
        }
        benchmark::DoNotOptimize(products.isValid());
    }
}

// The canonical-form comparison inside Check costs one save of the loaded store.
void SaveAs(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    VantixJsonData store(fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(),
                         QMap<QString, QString>());
    QTemporaryDir target;
    for (auto _ : state)
        benchmark::DoNotOptimize(store.SaveAs(target.path()));
}

void Check(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    int diagnostics = 0;
    for (auto _ : state) {
        FolderChecker checker(fixture.memory.reader(), QString());
        CheckResult result = checker.Check(fixture.memory.root());
        diagnostics = result.diagnostics.size();
        state.PauseTiming();
        if (!result.store)
            state.SkipWithError("the synthetic folder did not load");
        result = CheckResult();
        state.ResumeTiming();
    }
    state.counters["diagnostics"] = diagnostics;
}

// After an edit the Problems panel checks the records as they are now; names and ids
// first, then the save they would make, against the files' findings of the load.
void Records(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    VantixJsonData store(fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(),
                         QMap<QString, QString>());
    const RecordsSnapshot records = RecordsSnapshot::Take(store);
    const QString products = QDir(fixture.memory.root()).filePath(QStringLiteral("products/products.json"));
    for (auto _ : state)
        benchmark::DoNotOptimize(CheckRecords(records, products, store.GetLayoutFiles()));
}

void RecordsAndSave(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    VantixJsonData store(fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(),
                         QMap<QString, QString>());
    const RecordsSnapshot records = RecordsSnapshot::Take(store);
    const LiveFindings loaded = LiveFindings::Run(fixture.memory.reader(), fixture.memory.root(), records,
                                                  store.GetLayoutFiles(), nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(LiveFindings::Run(fixture.memory.reader(), fixture.memory.root(), records,
                                                   store.GetLayoutFiles(), &loaded));
}

void PrintSummary(const BestTimeReporter &times)
{
    std::printf("\n| features | Load ms | Check ms | Check / Load | (Check - Load) / Load | scan / Load | SaveAs / Load |\n");
    std::printf("|---:|---:|---:|---:|---:|---:|---:|\n");
    for (const int scale : kScales) {
        const double load = times.seconds("Load", scale);
        const double check = times.seconds("Check", scale);
        const double scan = times.seconds("Scan", scale);
        const double save = times.seconds("SaveAs", scale);
        std::printf("| %d | %.1f | %.1f | %.2fx | %.2fx | %.2fx | %.2fx |\n", scale, load * 1e3, check * 1e3,
                    check / load, (check - load) / load, scan / load, save / load);
    }
    std::printf("\n| features | records ms | records / Load | records and save ms | records and save / Load |\n");
    std::printf("|---:|---:|---:|---:|---:|\n");
    for (const int scale : kScales) {
        const double load = times.seconds("Load", scale);
        const double records = times.seconds("Records", scale);
        const double both = times.seconds("RecordsAndSave", scale);
        std::printf("| %d | %.1f | %.2fx | %.1f | %.2fx |\n", scale, records * 1e3, records / load, both * 1e3,
                    both / load);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const std::pair<const char *, void (*)(benchmark::State &)> operations[] = {
        {"Load", &Load},
        {"Scan", &Scan},
        {"SaveAs", &SaveAs},
        {"Check", &Check},
        {"Records", &Records},
        {"RecordsAndSave", &RecordsAndSave}};
    for (const int scale : kScales) {
        for (const auto &operation : operations)
            benchmark::RegisterBenchmark(operation.first, operation.second)->Arg(scale)->Unit(benchmark::kMillisecond);
    }
    BestTimeReporter reporter;
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    PrintSummary(reporter);
    return 0;
}
