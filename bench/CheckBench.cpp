// `check` against the load it starts with: the whole check of a folder (load, scan,
// every diagnostic, the comparison with a canonical save), the scan alone and one
// save, each over the store's Load of the same bytes. A table of ratios is printed after the runs.

#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "check/FolderChecker.h"
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
}

} // namespace

int main(int argc, char **argv)
{
    const std::pair<const char *, void (*)(benchmark::State &)> operations[] = {
        {"Load", &Load}, {"Scan", &Scan}, {"SaveAs", &SaveAs}, {"Check", &Check}};
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
