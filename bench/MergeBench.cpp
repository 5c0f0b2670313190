// The three-way merge of a 100,000-feature products document against parsing its
// three versions, measured in the same run. The versions are canonical, as the
// editor and normalize write them; ours and theirs edit disjoint records. Two more
// runs give the merge a base that is not canonical: its features out of order, as a
// hand edit might leave them, and every feature with a default written out, as an
// older tool might have written them, which sends the merge the long way.

#include "BestTimeReporter.h"
#include "SyntheticFolder.h"

#include "merge/DefinitionMerge.h"
#include "merge/JsonMerge.h"
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
        QJsonArray reversed;
        QJsonArray defaults;
        const QJsonArray entries = base.value(QStringLiteral("features")).toObject().value(QStringLiteral("feature")).toArray();
        for (const QJsonValue entry : entries) {
            reversed.prepend(entry);
            QJsonObject written = entry.toObject();
            written.insert(QStringLiteral("visual"), true);
            defaults.append(written);
        }
        unorderedBase = WithFeatures(base, reversed);
        defaultsBase = WithFeatures(base, defaults);
    }

    static QByteArray WithFeatures(QJsonObject document, const QJsonArray &entries)
    {
        QJsonObject features = document.value(QStringLiteral("features")).toObject();
        features.insert(QStringLiteral("feature"), entries);
        document.insert(QStringLiteral("features"), features);
        return CanonicalDocument::Bytes(document);
    }

    QByteArray bytes[3];
    QByteArray unorderedBase;
    QByteArray defaultsBase;
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
    const QByteArray &base = state.range(0) == 2   ? fixture.unorderedBase
                             : state.range(0) == 3 ? fixture.defaultsBase
                                                   : fixture.bytes[0];
    for (auto _ : state) {
        const DefinitionMergeResult result =
            MergeDefinitionDocuments(base, fixture.bytes[1], fixture.bytes[2], ConflictMarkers(), inputs);
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
    // 0: inputs known to be canonical; 1: inputs of any form; 2 and 3: a base that is not canonical.
    benchmark::RegisterBenchmark("MergeDocuments", &MergeDocuments)
        ->Arg(0)
        ->Arg(1)
        ->Arg(2)
        ->Arg(3)
        ->Unit(benchmark::kMillisecond);
    for (const auto &entry : {std::make_pair("CanonicalizeOne", &CanonicalizeOne),
                              std::make_pair("MergeValues", &MergeValues), std::make_pair("WriteOne", &WriteOne)})
        benchmark::RegisterBenchmark(entry.first, entry.second)->Unit(benchmark::kMillisecond);

    BestTimeReporter reporter;
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    const double parse = reporter.seconds("ParseThree");
    std::printf("\n%d features; parsing the three: %.1f ms\n\n| inputs | merge ms | / parse |\n|---|---:|---:|\n",
                kFeatures, parse * 1e3);
    const char *runs[][2] = {{"0", "canonical, known to be (--assume-canonical)"},
                             {"1", "canonical (the default)"},
                             {"2", "base with its features out of order"},
                             {"3", "base with a default written out in every feature (the long way)"}};
    for (const auto &run : runs) {
        const double merge = reporter.seconds("MergeDocuments", run[0]);
        std::printf("| %s | %.1f | %.2fx |\n", run[1], merge * 1e3, merge / parse);
    }
    std::printf("\nparts: canonical form of one canonical version %.1f ms, merge of the values %.1f ms, "
                "writing one %.1f ms\n",
                reporter.seconds("CanonicalizeOne") * 1e3, reporter.seconds("MergeValues") * 1e3,
                reporter.seconds("WriteOne") * 1e3);
    return 0;
}
