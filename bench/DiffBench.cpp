// Diff speed on the products document (loaded original against regenerated result)
// at three sizes, against the floor of parsing both documents, with the plain
// quadratic comparison beside it at the two smaller sizes. A table of ratios
// follows the runs.

#include "QuadraticDiff.h"
#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "diff/VantixFeaturesDiffModel.h"
#include "json/QJsonDiffTreeItem.h"
#include "store/VantixJsonData.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

using ProductEditor::QJsonDiffTreeItem;
using ProductEditor::VantixFeaturesDiffModel;
using ProductEditor::VantixJsonData;

namespace {

const int kScales[] = {2000, 20000, 100000};
const int kQuadraticScales[] = {2000, 20000};

int CountNodes(const ProductEditor::QJsonTreeItem *node)
{
    int count = 1;
    for (int i = 0; i < node->childCount(); ++i)
        count += CountNodes(node->child(i));
    return count;
}

// The two documents of one scale, built outside every timed region.
struct Fixture
{
    explicit Fixture(int features)
        : folder(GenerateSyntheticFolder(features))
        , memory(folder)
    {
        VantixJsonData store(memory.root(), memory.reader(), memory.writer(), QMap<QString, QString>());
        store.UpdateResultJsons();
        left = store.GetProductsOriginalJson();
        right = store.GetProductsResultJson();
        leftBytes = folder.productsJson;
        rightBytes = QJsonDocument(right).toJson(QJsonDocument::Indented);
        model.Regenerate(left, right);
        nodes = CountNodes(model.GetRoot());
    }

    SyntheticFolder folder;
    MemoryDefinitionFolder memory;
    QJsonObject left;
    QJsonObject right;
    QByteArray leftBytes;
    QByteArray rightBytes;
    VantixFeaturesDiffModel model; // regenerated once, for the patch runs
    int nodes = 0;
};

void ParseBoth(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        QJsonDocument left = QJsonDocument::fromJson(fixture.leftBytes);
        QJsonDocument right = QJsonDocument::fromJson(fixture.rightBytes);
        benchmark::DoNotOptimize(left);
        benchmark::DoNotOptimize(right);
        state.PauseTiming();
        left = QJsonDocument();
        right = QJsonDocument();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * (fixture.leftBytes.size() + fixture.rightBytes.size()));
}

// The previous tree is deleted inside Regenerate, as in the editor.
void Regenerate(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    VantixFeaturesDiffModel model;
    for (auto _ : state) {
        const bool different = model.Regenerate(fixture.left, fixture.right);
        benchmark::DoNotOptimize(different);
    }
    state.counters["nodes"] = fixture.nodes;
}

void RegenerateQuadratic(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    std::unique_ptr<QJsonDiffTreeItem> root;
    for (auto _ : state) {
        root = std::make_unique<QJsonDiffTreeItem>(nullptr);
        root->setKey(QStringLiteral("root"));
        root->setType(QJsonValue::Object);
        const bool different = QuadraticDiff::BuildDiff(QJsonValue(fixture.left), QJsonValue(fixture.right), root.get());
        benchmark::DoNotOptimize(different);
    }
    if (root && CountNodes(root.get()) != fixture.nodes)
        state.SkipWithError("the quadratic tree differs in size");
}

void ApplyPatch(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        QJsonObject target = fixture.left;
        fixture.model.ApplyPatch(target);
        benchmark::DoNotOptimize(target);
    }
}

void PrintSummary(const BestTimeReporter &times)
{
    std::printf("\n| features | diff nodes | parse both ms | Regenerate ms | Regenerate / parse | quadratic ms "
                "| quadratic / Regenerate | ApplyPatch ms | ApplyPatch / parse |\n");
    std::printf("|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    for (const int scale : kScales) {
        const double parse = times.seconds("ParseBoth", scale);
        const double regenerate = times.seconds("Regenerate", scale);
        const double quadratic = times.seconds("RegenerateQuadratic", scale);
        const double patch = times.seconds("ApplyPatch", scale);
        if (std::isnan(parse) && std::isnan(regenerate))
            continue;
        std::printf("| %d | %d | %.2f | %.2f | %.2fx | %.1f | %.0fx | %.2f | %.2fx |\n", scale,
                    FixtureFor<Fixture>(scale).nodes, parse * 1e3, regenerate * 1e3, regenerate / parse, quadratic * 1e3,
                    quadratic / regenerate, patch * 1e3, patch / parse);
    }
    std::printf("\n| operation | time x per tenfold, 2k -> 20k | time x per tenfold, 20k -> 100k |\n");
    std::printf("|---|---:|---:|\n");
    for (const char *name : {"ParseBoth", "Regenerate", "ApplyPatch", "RegenerateQuadratic"}) {
        std::printf("| %s | %.1fx | %.1fx |\n", name,
                    PerTenfold(times.seconds(name, kScales[0]), times.seconds(name, kScales[1]), kScales[0], kScales[1]),
                    PerTenfold(times.seconds(name, kScales[1]), times.seconds(name, kScales[2]), kScales[1], kScales[2]));
    }
}

} // namespace

int main(int argc, char **argv)
{
    // Scale by scale, so each operation runs next to its floor; the slow quadratic runs
    // last, so that the heap it leaves behind does not weigh on the other figures.
    for (const int scale : kScales) {
        benchmark::RegisterBenchmark("ParseBoth", &ParseBoth)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("Regenerate", &Regenerate)->Arg(scale)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("ApplyPatch", &ApplyPatch)->Arg(scale)->Unit(benchmark::kMillisecond);
    }
    for (const int scale : kQuadraticScales) {
        benchmark::RegisterBenchmark("RegenerateQuadratic", &RegenerateQuadratic)
            ->Arg(scale)
            ->Unit(benchmark::kMillisecond);
    }

    BestTimeReporter reporter;
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    PrintSummary(reporter);
    return 0;
}
