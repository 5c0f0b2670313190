// Comparing the records of two versions of a folder in product terms, against parsing
// its products.json in the same run. Few records differ, as after one edit or on a
// review of a branch: after an edit the two versions share most of their containers
// (an undo step and the store), while two loads of a folder share nothing.

#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "store/ChangeWording.h"
#include "store/RecordComparison.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>

using namespace ProductEditor;

namespace {

const int kScales[] = {2000, 20000, 100000};

// Three features and a product changed as the editor changes them, writing through the containers.
void EditFew(RecordsSnapshot &records)
{
    auto feature = records.features.begin();
    feature.value().title += QStringLiteral(" (edited)");
    std::advance(feature, records.features.size() / 2);
    feature.value().productIds.insert(QStringLiteral("bench_product"));
    std::prev(records.features.end()).value().visual = false;
    records.products.products.last().base = QStringLiteral("bench_license");
}

std::unique_ptr<VantixJsonData> LoadStore(const MemoryDefinitionFolder &memory)
{
    return std::make_unique<VantixJsonData>(memory.root(), memory.reader(), ProductEditor::Writer(),
                                            QMap<QString, QString>());
}

struct Fixture
{
    explicit Fixture(int features)
        : folder(GenerateSyntheticFolder(features))
        , memory(folder)
        , store(LoadStore(memory))
        , other(LoadStore(memory))
        , before(RecordsSnapshot::Take(*store))
        , edited(before)
        , loadedAgain(RecordsSnapshot::Take(*other))
    {
        EditFew(edited);
        EditFew(loadedAgain);
    }

    SyntheticFolder folder;
    MemoryDefinitionFolder memory;
    std::unique_ptr<VantixJsonData> store;
    std::unique_ptr<VantixJsonData> other;
    RecordsSnapshot before;
    RecordsSnapshot edited;      // shares all but the written containers with `before`
    RecordsSnapshot loadedAgain; // the same edits on a second load: nothing shared
};

void Parse(benchmark::State &state)
{
    const Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(fixture.folder.productsJson).object().size());
}

void Compare(benchmark::State &state, bool shared)
{
    const Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    const RecordsSnapshot &after = shared ? fixture.edited : fixture.loadedAgain;
    for (auto _ : state) {
        const RecordChanges changes = CompareRecords(fixture.before, after);
        if (changes.size() != 4)
            state.SkipWithError("the edits were not found");
        benchmark::DoNotOptimize(NameEdit(changes).size());
    }
}

void CompareAfterEdit(benchmark::State &state)
{
    Compare(state, true);
}

void CompareTwoLoads(benchmark::State &state)
{
    Compare(state, false);
}

} // namespace

int main(int argc, char **argv)
{
    for (const auto &entry : {std::make_pair("Parse", &Parse), std::make_pair("CompareAfterEdit", &CompareAfterEdit),
                              std::make_pair("CompareTwoLoads", &CompareTwoLoads)}) {
        auto *benchmark = benchmark::RegisterBenchmark(entry.first, entry.second)->Unit(benchmark::kMillisecond);
        for (int scale : kScales)
            benchmark->Arg(scale);
    }

    BestTimeReporter reporter;
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    std::printf("\n| features | parse ms | compare after an edit ms | / parse | compare two loads ms | / parse |\n"
                "|---:|---:|---:|---:|---:|---:|\n");
    for (int scale : kScales) {
        const double parse = reporter.seconds("Parse", scale);
        const double edit = reporter.seconds("CompareAfterEdit", scale);
        const double loads = reporter.seconds("CompareTwoLoads", scale);
        std::printf("| %d | %.1f | %.2f | %.3fx | %.1f | %.2fx |\n", scale, parse * 1e3, edit * 1e3, edit / parse,
                    loads * 1e3, loads / parse);
    }
    return 0;
}
