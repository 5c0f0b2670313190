// Comparing the records of two versions of a folder in product terms, against parsing
// its products.json in the same run. Few records differ, as after one edit or on a
// review of a branch: after an edit the two versions share most of their containers
// (an undo step and the store), while two loads of a folder share nothing.
//
// The changes command between two folders, against loading both: the comparison and
// its three reports, for a few edits and for a branch that retitles one feature in a
// hundred and moves one in a hundred to another product.

#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "store/ChangeJson.h"
#include "store/ChangeMarkdown.h"
#include "store/ChangeText.h"
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

// A branch's worth of edits: every hundredth feature retitled, every hundredth (offset
// by half) moved to another product.
void EditMany(RecordsSnapshot &records)
{
    int index = 0;
    for (auto feature = records.features.begin(); feature != records.features.end(); ++feature, ++index) {
        if (index % 100 == 0)
            feature.value().title += QStringLiteral(" (renamed)");
        else if (index % 100 == 50)
            feature.value().productIds = {QStringLiteral("bench_product")};
    }
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
        , branch(RecordsSnapshot::Take(*other))
    {
        EditFew(edited);
        EditFew(loadedAgain);
        EditMany(branch);
    }

    SyntheticFolder folder;
    MemoryDefinitionFolder memory;
    std::unique_ptr<VantixJsonData> store;
    std::unique_ptr<VantixJsonData> other;
    RecordsSnapshot before;
    RecordsSnapshot edited;      // shares all but the written containers with `before`
    RecordsSnapshot loadedAgain; // the same edits on a second load: nothing shared
    RecordsSnapshot branch;      // many edits on the second load
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

// Loading both folders, as the changes command does before comparing.
void LoadBoth(benchmark::State &state)
{
    const Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        const auto left = LoadStore(fixture.memory), right = LoadStore(fixture.memory);
        benchmark::DoNotOptimize(left->GetFeatures().size() + right->GetFeatures().size());
    }
}

// What the changes command adds to the loads: the comparison and one report of each format.
void Report(benchmark::State &state, const RecordsSnapshot &after)
{
    const Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        const RecordChanges changes = CompareRecords(fixture.before, after);
        const QString left = QStringLiteral("left"), right = QStringLiteral("right");
        benchmark::DoNotOptimize(ChangesText(changes).size() + ChangesMarkdown(changes, left, right).size()
                                 + QJsonDocument(ChangesReportJson(changes, left, right)).toJson().size());
    }
}

void ReportFewEdits(benchmark::State &state)
{
    Report(state, FixtureFor<Fixture>(int(state.range(0))).loadedAgain);
}

void ReportBranch(benchmark::State &state)
{
    Report(state, FixtureFor<Fixture>(int(state.range(0))).branch);
}

} // namespace

int main(int argc, char **argv)
{
    for (const auto &entry : {std::make_pair("Parse", &Parse), std::make_pair("CompareAfterEdit", &CompareAfterEdit),
                              std::make_pair("CompareTwoLoads", &CompareTwoLoads), std::make_pair("LoadBoth", &LoadBoth),
                              std::make_pair("ReportFewEdits", &ReportFewEdits),
                              std::make_pair("ReportBranch", &ReportBranch)}) {
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
    std::printf("\n| features | load both ms | compare and report, few edits ms | whole / load both | "
                "compare and report, branch ms | whole / load both |\n|---:|---:|---:|---:|---:|---:|\n");
    for (int scale : kScales) {
        const double load = reporter.seconds("LoadBoth", scale);
        const double few = reporter.seconds("ReportFewEdits", scale);
        const double branch = reporter.seconds("ReportBranch", scale);
        std::printf("| %d | %.0f | %.1f | %.2fx | %.1f | %.2fx |\n", scale, load * 1e3, few * 1e3, (load + few) / load,
                    branch * 1e3, (load + branch) / load);
    }
    return 0;
}
