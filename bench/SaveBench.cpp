// What the all-or-nothing save costs on disk: SaveAs of a loaded folder written file by
// file (each file to a temporary beside it, synced and renamed over the old one), against
// the same files staged and committed through the folder's journal. Both against the
// floor of serialising the documents. Wall clock, since most of a save is waiting for the disk.

#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "store/FolderTransaction.h"
#include "store/VantixJsonData.h"

#include <QDir>
#include <QJsonDocument>
#include <QSaveFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <utility>

using namespace ProductEditor;

namespace {

const int kScales[] = {20000, 100000};

struct Fixture
{
    explicit Fixture(int features)
        : folder(GenerateSyntheticFolder(features))
    {
        WriteSyntheticFolder(folder, source.path());
        WriteSyntheticFolder(folder, target.path());
        parsed.append(QJsonDocument::fromJson(folder.productsJson));
        for (const QByteArray &bytes : std::as_const(folder.layoutFiles))
            parsed.append(QJsonDocument::fromJson(bytes));
    }

    SyntheticFolder folder;
    QTemporaryDir source;
    QTemporaryDir target;
    QVector<QJsonDocument> parsed;
};

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteOne(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

void ToJson(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        for (const QJsonDocument &document : fixture.parsed)
            benchmark::DoNotOptimize(document.toJson(QJsonDocument::Indented).constData());
    }
}

void SaveFileByFile(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    VantixJsonData store(fixture.source.path(), &ReadFile, &WriteOne, {});
    for (auto _ : state) {
        if (!store.SaveAs(fixture.target.path()))
            state.SkipWithError("SaveAs failed");
    }
}

void SaveAllOrNothing(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    std::unique_ptr<FolderTransaction> save;
    const auto stage = [&save](const QString &path, const QByteArray &bytes) {
        QString error;
        return save->Stage(path, bytes, &error);
    };
    VantixJsonData store(fixture.source.path(), &ReadFile, stage, {});
    for (auto _ : state) {
        save = std::make_unique<FolderTransaction>(fixture.target.path());
        QString error;
        if (!store.SaveAs(fixture.target.path()) || !save->Commit(&error))
            state.SkipWithError("the save failed");
    }
}

} // namespace

int main(int argc, char **argv)
{
    const std::pair<const char *, void (*)(benchmark::State &)> operations[] = {
        {"ToJson", &ToJson}, {"SaveFileByFile", &SaveFileByFile}, {"SaveAllOrNothing", &SaveAllOrNothing}};
    for (const int scale : kScales) {
        for (const auto &operation : operations)
            benchmark::RegisterBenchmark(operation.first, operation.second)
                ->Arg(scale)
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
    }
    BestTimeReporter reporter(BestTimeReporter::Clock::Wall);
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    std::printf("\n| features | toJson ms | file by file ms | all or nothing ms | all or nothing / file by file |\n"
                "|---:|---:|---:|---:|---:|\n");
    for (const int scale : kScales) {
        const double json = reporter.seconds("ToJson", scale) * 1e3;
        const double plain = reporter.seconds("SaveFileByFile", scale) * 1e3;
        const double journal = reporter.seconds("SaveAllOrNothing", scale) * 1e3;
        std::printf("| %d | %.0f | %.0f | %.0f | %.2fx |\n", scale, json, plain, journal, journal / plain);
    }
    return 0;
}
