// Store speed at three sizes, each against the floor of what any reader and
// writer of the same documents must do: parse them and serialise them.
// After the runs a table of ratios and the peak-memory figures are printed.

#include "BestTimeReporter.h"
#include "FixtureCache.h"
#include "SyntheticFolder.h"

#include "store/VantixJsonData.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QVector>

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <memory>
#include <string>

using ProductEditor::VantixJsonData;

namespace {

const int kScales[] = {2000, 20000, 100000};
const int kMemoryScale = 100000;

QVector<QByteArray> AllFiles(const SyntheticFolder &folder)
{
    QVector<QByteArray> files{folder.productsJson};
    for (const QByteArray &layout : folder.layoutFiles)
        files.append(layout);
    return files;
}

qint64 TotalSize(const QVector<QByteArray> &files)
{
    qint64 total = 0;
    for (const QByteArray &bytes : files)
        total += bytes.size();
    return total;
}

QVector<QJsonObject> ParseAll(const QVector<QByteArray> &files)
{
    QVector<QJsonObject> objects;
    objects.reserve(files.size());
    for (const QByteArray &bytes : files)
        objects.append(QJsonDocument::fromJson(bytes).object());
    return objects;
}

// One generated folder per scale, built outside every timed region and kept
// for the whole run so each benchmark sees the same bytes.
struct Fixture
{
    explicit Fixture(int features)
        : folder(GenerateSyntheticFolder(features))
        , memory(folder)
        , files(AllFiles(folder))
        , bytes(TotalSize(files))
        , parsed(ParseAll(files))
    {
    }

    VantixJsonData &loadedStore()
    {
        if (!store)
            store = std::make_unique<VantixJsonData>(memory.root(), memory.reader(), memory.writer(),
                                                     QMap<QString, QString>());
        return *store;
    }

    SyntheticFolder folder;
    MemoryDefinitionFolder memory;
    QVector<QByteArray> files;
    qint64 bytes;
    QVector<QJsonObject> parsed;
    std::unique_ptr<VantixJsonData> store;
    QTemporaryDir target;
};

void Parse(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        QVector<QJsonObject> objects = ParseAll(fixture.files);
        benchmark::DoNotOptimize(objects.data());
        state.PauseTiming();
        objects.clear();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * fixture.bytes);
}

// CPU time of the whole process, every thread's.
double ProcessCpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

// Load's least CPU time per scale, over both of its threads.
std::map<int, double> &LoadCpuSeconds()
{
    static std::map<int, double> best;
    return best;
}

void Load(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        const double cpuBefore = ProcessCpuSeconds();
        auto store = std::make_unique<VantixJsonData>(fixture.memory.root(), fixture.memory.reader(),
                                                      fixture.memory.writer(), QMap<QString, QString>());
        benchmark::DoNotOptimize(store.get());
        state.PauseTiming();
        const double cpu = ProcessCpuSeconds() - cpuBefore;
        double &best = LoadCpuSeconds()[int(state.range(0))];
        if (best == 0 || cpu < best)
            best = cpu;
        if (store->GetFeatures().isEmpty())
            state.SkipWithError("the synthetic folder did not load");
        store.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * fixture.bytes);
}

void ToJson(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    for (auto _ : state) {
        for (const QJsonObject &object : fixture.parsed) {
            const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Indented);
            benchmark::DoNotOptimize(text.constData());
        }
    }
    state.SetBytesProcessed(state.iterations() * fixture.bytes);
}

void UpdateResultJsons(benchmark::State &state)
{
    VantixJsonData &store = FixtureFor<Fixture>(int(state.range(0))).loadedStore();
    for (auto _ : state) {
        store.UpdateResultJsons();
        benchmark::DoNotOptimize(store.GetProductsResultJson());
    }
}

// SaveAs regenerates and serialises every document; the memory writer keeps the bytes.
void SaveAs(benchmark::State &state)
{
    Fixture &fixture = FixtureFor<Fixture>(int(state.range(0)));
    VantixJsonData &store = fixture.loadedStore();
    for (auto _ : state) {
        if (!store.SaveAs(fixture.target.path()))
            state.SkipWithError("SaveAs failed");
    }
    state.SetBytesProcessed(state.iterations() * fixture.bytes);
}

// Peak memory, measured in a child process forked before any fixture exists so
// that neither freed memory of earlier work nor the fixtures blur the figures.
struct MemoryFigures
{
    double documentsKiB = 0;  // RSS growth from holding the parsed documents
    double documentsLiveKiB = 0; // the allocator's bytes in use for the parsed documents
    double loadLiveKiB = 0;      // the allocator's bytes in use that stay while the store is loaded
    double loadPeakKiB = 0;   // peak RSS growth while loading
    double loadHeldKiB = 0;   // RSS growth that stays while the store is loaded
    double savePeakKiB = 0;   // peak RSS growth through load, regeneration and save
    double inputKiB = 0;      // the documents' bytes
    bool valid = false;
};

long StatusKiB(const char *field)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    const size_t length = std::strlen(field);
    while (std::getline(status, line)) {
        if (line.compare(0, length, field) == 0 && line.size() > length && line[length] == ':')
            return std::stol(line.substr(length + 1));
    }
    return -1;
}

// Bytes handed out by malloc and not freed, heap and mapped chunks together: what
// the data holds, without the freed room the heap keeps for later allocations.
double LiveKiB()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / 1024.0;
}

bool ResetPeak()
{
    std::ofstream clear("/proc/self/clear_refs");
    clear << "5";
    clear.flush();
    return bool(clear);
}

MemoryFigures MeasureInChild()
{
    MemoryFigures figures;
    {
        const SyntheticFolder folder = GenerateSyntheticFolder(kMemoryScale);
        MemoryDefinitionFolder memory(folder);
        const QVector<QByteArray> files = AllFiles(folder);
        figures.inputKiB = double(TotalSize(files)) / 1024.0;
        malloc_trim(0);

        const long before = StatusKiB("VmRSS");
        const double liveBefore = LiveKiB();
        {
            const QVector<QJsonObject> documents = ParseAll(files);
            figures.documentsKiB = double(StatusKiB("VmRSS") - before);
            figures.documentsLiveKiB = LiveKiB() - liveBefore;
        }
        malloc_trim(0);

        const long base = StatusKiB("VmRSS");
        const double liveBase = LiveKiB();
        if (!ResetPeak())
            return figures;
        VantixJsonData store(memory.root(), memory.reader(), memory.writer(), QMap<QString, QString>());
        figures.loadPeakKiB = double(StatusKiB("VmHWM") - base);
        figures.loadHeldKiB = double(StatusKiB("VmRSS") - base);
        figures.loadLiveKiB = LiveKiB() - liveBase;
        QTemporaryDir target;
        store.UpdateResultJsons();
        store.SaveAs(target.path());
        figures.savePeakKiB = double(StatusKiB("VmHWM") - base);
        figures.valid = !store.GetFeatures().isEmpty() && !memory.written.isEmpty();
    }
    return figures;
}

MemoryFigures MeasureMemory()
{
    int channel[2];
    if (pipe(channel) != 0)
        return {};
    const pid_t child = fork();
    if (child < 0)
        return {};
    if (child == 0) {
        close(channel[0]);
        const MemoryFigures figures = MeasureInChild();
        const ssize_t written = write(channel[1], &figures, sizeof figures);
        _exit(written == ssize_t(sizeof figures) ? 0 : 1);
    }
    close(channel[1]);
    MemoryFigures figures;
    const ssize_t got = read(channel[0], &figures, sizeof figures);
    close(channel[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (got != ssize_t(sizeof figures) || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return {};
    return figures;
}

void PrintSummary(const BestTimeReporter &times, const MemoryFigures &memory)
{
    std::printf("\n| features | parse ms | Load ms | Load / parse | Load CPU, both threads / parse | toJson ms | UpdateResultJsons ms | SaveAs ms "
                "| UpdateResultJsons / toJson | SaveAs / toJson |\n");
    std::printf("|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    for (const int scale : kScales) {
        const double parse = times.seconds("Parse", scale);
        const double load = times.seconds("Load", scale);
        const double toJson = times.seconds("ToJson", scale);
        const double update = times.seconds("UpdateResultJsons", scale);
        const double save = times.seconds("SaveAs", scale);
        std::printf("| %d | %.1f | %.1f | %.2fx | %.2fx | %.1f | %.1f | %.1f | %.2fx | %.2fx |\n", scale, parse * 1e3,
                    load * 1e3, load / parse, LoadCpuSeconds()[scale] / parse, toJson * 1e3, update * 1e3, save * 1e3, update / toJson,
                    save / toJson);
    }

    std::printf("\n| operation | growth per tenfold, 2k -> 20k | growth per tenfold, 20k -> 100k |\n");
    std::printf("|---|---:|---:|\n");
    for (const char *name : {"Parse", "Load", "ToJson", "UpdateResultJsons", "SaveAs"}) {
        std::printf("| %s | %.1fx | %.1fx |\n", name,
                    PerTenfold(times.seconds(name, kScales[0]), times.seconds(name, kScales[1]), kScales[0], kScales[1]),
                    PerTenfold(times.seconds(name, kScales[1]), times.seconds(name, kScales[2]), kScales[1], kScales[2]));
    }

    if (!memory.valid) {
        std::printf("\nPeak memory: not measured\n");
        return;
    }
    std::printf("\nMemory at %d features (input %.1f MiB, parsed documents as QJsonObject %.1f MiB):\n", kMemoryScale,
                memory.inputKiB / 1024.0, memory.documentsKiB / 1024.0);
    std::printf("| measure | MiB | / documents as QJsonObject |\n|---|---:|---:|\n");
    std::printf("| held after Load | %.1f | %.2fx |\n", memory.loadHeldKiB / 1024.0,
                memory.loadHeldKiB / memory.documentsKiB);
    std::printf("| in use after Load (allocator) | %.1f | %.2fx of %.1f in use for the documents |\n",
                memory.loadLiveKiB / 1024.0, memory.loadLiveKiB / memory.documentsLiveKiB,
                memory.documentsLiveKiB / 1024.0);
    std::printf("| peak during Load | %.1f | %.2fx |\n", memory.loadPeakKiB / 1024.0,
                memory.loadPeakKiB / memory.documentsKiB);
    std::printf("| peak through Load, UpdateResultJsons, SaveAs | %.1f | %.2fx |\n", memory.savePeakKiB / 1024.0,
                memory.savePeakKiB / memory.documentsKiB);
}

} // namespace

int main(int argc, char **argv)
{
    // "--no-memory" skips the forked peak-memory measurement.
    bool measureMemory = true;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--no-memory") == 0) {
            measureMemory = false;
            for (int j = i; j + 1 < argc; ++j)
                argv[j] = argv[j + 1];
            --argc;
            --i;
        }
    }
    const MemoryFigures memory = measureMemory ? MeasureMemory() : MemoryFigures();

    // Scale by scale, so each operation runs next to its floor.
    const std::pair<const char *, void (*)(benchmark::State &)> operations[] = {
        {"Parse", &Parse}, {"Load", &Load}, {"ToJson", &ToJson},
        {"UpdateResultJsons", &UpdateResultJsons}, {"SaveAs", &SaveAs}};
    for (const int scale : kScales) {
        for (const auto &operation : operations)
            benchmark::RegisterBenchmark(operation.first, operation.second)->Arg(scale)->Unit(benchmark::kMillisecond)->UseRealTime();
    }

    // Load reads the products document's text on a second thread while it parses it,
    // so the figures are wall-clock time, on an otherwise idle machine.
    BestTimeReporter reporter(BestTimeReporter::Clock::Wall);
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    PrintSummary(reporter, memory);
    return 0;
}
