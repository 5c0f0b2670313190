// The three-way merge of a 100,000-feature products document against parsing its
// three versions, measured in the same run. The versions are canonical, as the
// editor and normalize write them; ours and theirs edit disjoint records.

#include "BestTimeReporter.h"
#include "SyntheticFolder.h"

#include "json/DefinitionMerge.h"
#include "json/JsonMerge.h"
#include "store/CanonicalDocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace ProductEditor;

namespace {

const int kFeatures = 100000;

// Every `step`-th feature from `first` on gets a new title; `added` new features.
QJsonObject Edited(QJsonObject document, int first, int step, const QString &tag, int added)
{
    QJsonObject features = document.value(QStringLiteral("features")).toObject();
    QJsonArray entries = features.value(QStringLiteral("feature")).toArray();
    for (int i = first; i < entries.size(); i += step) {
        QJsonObject entry = entries.at(i).toObject();
        entry.insert(QStringLiteral("title"), tag + QString::number(i));
        entries[i] = entry;
    }
    for (int i = 0; i < added; ++i)
        entries.append(QJsonObject{{QStringLiteral("id"), tag + QStringLiteral("_new_%1").arg(i)}});
    features.insert(QStringLiteral("feature"), entries);
    document.insert(QStringLiteral("features"), features);
    return CanonicalDocument::CanonicalObject(document);
}

struct Fixture
{
    Fixture()
    {
        const QJsonObject read = QJsonDocument::fromJson(GenerateSyntheticFolder(kFeatures).productsJson).object();
        const QJsonObject base = CanonicalDocument::CanonicalObject(read);
        bytes[0] = CanonicalDocument::Bytes(base);
        bytes[1] = CanonicalDocument::Bytes(Edited(base, 0, 100, QStringLiteral("ours"), 50));
        bytes[2] = CanonicalDocument::Bytes(Edited(base, 50, 100, QStringLiteral("theirs"), 50));
    }

    QByteArray bytes[3];
};

const Fixture &TheFixture()
{
    static const Fixture fixture;
    return fixture;
}

void ParseThree(benchmark::State &state)
{
    const Fixture &fixture = TheFixture();
    for (auto _ : state) {
        for (const QByteArray &bytes : fixture.bytes)
            benchmark::DoNotOptimize(QJsonDocument::fromJson(bytes).object().size());
    }
}

void MergeDocuments(benchmark::State &state)
{
    const Fixture &fixture = TheFixture();
    const MergeInputs inputs = state.range(0) ? MergeInputs::Any : MergeInputs::Canonical;
    for (auto _ : state) {
        const DefinitionMergeResult result =
            MergeDefinitionDocuments(fixture.bytes[0], fixture.bytes[1], fixture.bytes[2], ConflictMarkers(), inputs);
        if (!result.clean())
            state.SkipWithError("the merge conflicts");
        benchmark::DoNotOptimize(result.bytes.size());
    }
}

// The parts, to see where the time goes.
void CanonicalizeOne(benchmark::State &state)
{
    const QJsonObject document = QJsonDocument::fromJson(TheFixture().bytes[1]).object();
    for (auto _ : state)
        benchmark::DoNotOptimize(CanonicalDocument::CanonicalObject(document).size());
}

void MergeValues(benchmark::State &state)
{
    const Fixture &fixture = TheFixture();
    const QJsonObject base = QJsonDocument::fromJson(fixture.bytes[0]).object();
    const QJsonObject ours = QJsonDocument::fromJson(fixture.bytes[1]).object();
    const QJsonObject theirs = QJsonDocument::fromJson(fixture.bytes[2]).object();
    for (auto _ : state)
        benchmark::DoNotOptimize(MergeJson(base, ours, theirs).conflicts.size());
}

void WriteOne(benchmark::State &state)
{
    const QJsonObject document = QJsonDocument::fromJson(TheFixture().bytes[1]).object();
    for (auto _ : state)
        benchmark::DoNotOptimize(CanonicalDocument::Bytes(document).size());
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("ParseThree", &ParseThree)->Unit(benchmark::kMillisecond);
    // 0: inputs known to be canonical; 1: inputs of any form.
    benchmark::RegisterBenchmark("MergeDocuments", &MergeDocuments)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
    for (const auto &entry : {std::make_pair("CanonicalizeOne", &CanonicalizeOne),
                              std::make_pair("MergeValues", &MergeValues), std::make_pair("WriteOne", &WriteOne)})
        benchmark::RegisterBenchmark(entry.first, entry.second)->Unit(benchmark::kMillisecond);

    BestTimeReporter reporter;
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    const double parse = reporter.seconds("ParseThree");
    const double canonical = reporter.seconds("MergeDocuments", "0");
    const double any = reporter.seconds("MergeDocuments", "1");
    std::printf("\n| features | parse three ms | merge ms (canonical inputs) | / parse | merge ms (any inputs) | / parse "
                "| canonicalize one ms | merge values ms | write one ms |\n|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    std::printf("| %d | %.1f | %.1f | %.2fx | %.1f | %.2fx | %.1f | %.1f | %.1f |\n", kFeatures, parse * 1e3,
                canonical * 1e3, canonical / parse, any * 1e3, any / parse,
                reporter.seconds("CanonicalizeOne") * 1e3, reporter.seconds("MergeValues") * 1e3,
                reporter.seconds("WriteOne") * 1e3);
    return 0;
}
