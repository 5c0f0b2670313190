// From files on disk to the shown window, at 20,000 and 100,000 features, against
// one plain parse of the same folder's products document, measured in the same
// run. The window is built the way the program builds it: each file read once,
// the license catalogue made from the loaded definitions.

#include "BestTimeReporter.h"
#include "SyntheticFolder.h"

#include "editor/CreateProductEditor.h"
#include "store/DefaultLicenseCatalogue.h"
#include "store/VantixJsonData.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QMainWindow>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>

namespace {

const int kSizes[] = {20000, 100000};

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// One synthetic folder per size, written once to a temporary folder.
const QString &FolderOnDisk(int features)
{
    static std::map<int, std::unique_ptr<QTemporaryDir>> folders;
    static std::map<int, QString> paths;
    if (!folders.count(features)) {
        folders[features] = std::make_unique<QTemporaryDir>();
        paths[features] = folders[features]->path();
        WriteSyntheticFolder(GenerateSyntheticFolder(features), paths[features]);
    }
    return paths[features];
}

void ParseProducts(benchmark::State &state)
{
    const QString path = QDir(FolderOnDisk(int(state.range(0)))).filePath(QStringLiteral("products/products.json"));
    const QByteArray bytes = ReadFile(path);
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(bytes).object().size());
}

void ShowWindow(benchmark::State &state)
{
    const QString &folder = FolderOnDisk(int(state.range(0)));
    const auto writer = [](const QString &, const QByteArray &) { return true; };
    const auto catalogue = [](ProductEditor::VantixJsonData &store) {
        return ProductEditor::DefaultLicenseCatalogue(store);
    };
    for (auto _ : state) {
        std::unique_ptr<QMainWindow> window(
            ProductEditor::CreateProductEditorWithCatalogue(folder, ReadFile, writer, catalogue, nullptr));
        window->resize(1600, 960);
        window->show();
        QApplication::processEvents();
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(ParseProducts)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(ShowWindow)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    BestTimeReporter reporter(BestTimeReporter::Clock::Wall);
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;

    std::printf("\nStartup: files on disk to the shown window (best wall-clock time per run)\n");
    std::printf("%-10s %12s %12s %8s %8s\n", "features", "window", "parse", "ratio", "target");
    for (const int features : kSizes) {
        const double window = reporter.seconds("ShowWindow", features);
        const double parse = reporter.seconds("ParseProducts", features);
        std::printf("%-10d %9.1f ms %9.1f ms %8.1f %8s\n", features, window * 1e3, parse * 1e3, window / parse,
                    features == 100000 ? "10.0" : "-");
    }
    return 0;
}
