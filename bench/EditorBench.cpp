// The editor window over the 20,000-feature synthetic folder: opening it, the
// Update button's diff build and one search keystroke, each timed against the
// floor of the work underneath it, measured in the same run. A table of times,
// targets and ratios is printed after the runs.

#include "BestTimeReporter.h"
#include "SyntheticFolder.h"

#include "check/LiveFindings.h"
#include "diff/VantixFeaturesDiffModel.h"
#include "editor/CreateProductEditor.h"
#include "store/RecordsSnapshot.h"
#include "store/VantixJsonData.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QJsonObject>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QJsonDocument>
#include <QTabBar>
#include <QThread>
#include <QThreadPool>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

using ProductEditor::VantixJsonData;

namespace {

const int kFeatures = 20000;

struct Fixture
{
    Fixture()
        : folder(GenerateSyntheticFolder(kFeatures))
        , memory(folder)
    {
    }
    QMainWindow *window()
    {
        if (!editor) {
            editor.reset(ProductEditor::CreateProductEditor(memory.root(), memory.reader(), memory.writer(),
                                                            {}, nullptr));
            editor->show();
            QApplication::processEvents();
        }
        return editor.get();
    }
    SyntheticFolder folder;
    MemoryDefinitionFolder memory;
    std::unique_ptr<QMainWindow> editor;
};

Fixture &TheFixture()
{
    static Fixture fixture;
    return fixture;
}

// Floor of opening: loading the store that the window is built over.
void StoreLoad(benchmark::State &state)
{
    Fixture &fixture = TheFixture();
    for (auto _ : state) {
        VantixJsonData store(fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(), {});
        benchmark::DoNotOptimize(store.GetFeatures().size());
    }
}

void WindowOpen(benchmark::State &state)
{
    Fixture &fixture = TheFixture();
    for (auto _ : state) {
        std::unique_ptr<QMainWindow> window(ProductEditor::CreateProductEditor(
            fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(), {}, nullptr));
        window->show();
        QApplication::processEvents();
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}

// Floor of Update: regenerating the documents and building every diff with no window.
void DiffEngine(benchmark::State &state)
{
    Fixture &fixture = TheFixture();
    VantixJsonData store(fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(), {});
    int tabs = 0;
    for (auto _ : state) {
        store.UpdateResultJsons();
        tabs = 0;
        ProductEditor::VantixFeaturesDiffModel products;
        tabs += products.Regenerate(store.GetProductsOriginalJson(), store.GetProductsResultJson());
        for (auto it = store.GetLayoutsOriginalJsons().begin(); it != store.GetLayoutsOriginalJsons().end(); ++it) {
            ProductEditor::VantixFeaturesDiffModel layout;
            tabs += layout.Regenerate(it.value(), store.GetLayoutsResultJsons()[it.key()]);
        }
    }
    state.counters["diffs"] = tabs;
}

void UpdateButton(benchmark::State &state)
{
    QMainWindow *window = TheFixture().window();
    auto *update = window->findChild<QPushButton *>(QStringLiteral("mp_btn_update"));
    for (auto _ : state) {
        update->click();
        QApplication::processEvents();
    }
    state.counters["tabs"] = window->findChild<QWidget *>(QStringLiteral("mp_tab_diff"))
                                 ->findChild<QTabBar *>()
                                 ->count();
}

// Floor of a keystroke: looking at every feature's id and title once.
void ScanFeatures(benchmark::State &state)
{
    Fixture &fixture = TheFixture();
    VantixJsonData store(fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(), {});
    const QString key = QStringLiteral("feature_1");
    for (auto _ : state) {
        int found = 0;
        for (auto it = store.GetFeatures().cbegin(); it != store.GetFeatures().cend(); ++it)
            found += it.key().toLower().contains(key) || it.value().title.toLower().contains(key);
        benchmark::DoNotOptimize(found);
    }
}

// Typing into the feature search, one keystroke per iteration.
void Keystrokes(benchmark::State &state, QMainWindow *window)
{
    auto *search = window->findChild<QLineEdit *>(QStringLiteral("mp_edt_search"));
    const QStringList texts = {QStringLiteral("feature_1"), QStringLiteral("feature_")};
    int next = 0;
    for (auto _ : state) {
        search->setText(texts.at(next));
        next = 1 - next;
        QApplication::processEvents();
    }
    search->clear();
    QApplication::processEvents();
}

void SearchKeystroke(benchmark::State &state)
{
    Keystrokes(state, TheFixture().window());
}

// One undo step over 100,000 features: an edit recorded as a step, and undoing or
// redoing it. The records are shared with the step until the edit writes them, so a
// step costs the copy of the written map.
struct LargeFixture
{
    LargeFixture()
        : folder(GenerateSyntheticFolder(100000))
        , memory(folder)
        , editor(ProductEditor::CreateProductEditor(memory.root(), memory.reader(), memory.writer(), {}, nullptr))
    {
        editor->show();
        QApplication::processEvents();
    }
    SyntheticFolder folder;
    MemoryDefinitionFolder memory;
    std::unique_ptr<QMainWindow> editor;
};

LargeFixture &TheLargeFixture()
{
    static LargeFixture fixture;
    return fixture;
}

// Lets the findings panel finish the check that the edits before started, so that it
// does not run on the other core while the next case is timed.
void Settle()
{
    QThread::msleep(350);
    QApplication::processEvents();
    QThreadPool::globalInstance()->waitForDone();
    QApplication::processEvents();
}

long ResidentKiB()
{
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toLong() * 4;
}

void UndoStepEdit(benchmark::State &state)
{
    QMainWindow *window = TheLargeFixture().editor.get();
    QAbstractItemModel *features = window->findChild<QAbstractItemView *>(QStringLiteral("mp_lst_features"))->model();
    const long before = ResidentKiB();
    int steps = 0;
    for (auto _ : state) {
        features->setData(features->index(steps % 100, 1), QStringLiteral("title %1").arg(steps));
        QApplication::processEvents(); // the step is recorded once the event is done
        ++steps;
    }
    state.counters["KiB/step"] = double(ResidentKiB() - before) / steps;
}

void UndoStepUndoRedo(benchmark::State &state)
{
    QMainWindow *window = TheLargeFixture().editor.get();
    QAction *undo = window->findChild<QAction *>(QStringLiteral("mp_run_undo"));
    QAction *redo = window->findChild<QAction *>(QStringLiteral("mp_run_redo"));
    bool back = true;
    for (auto _ : state) {
        (back ? undo : redo)->trigger();
        back = !back;
    }
}

// Update over 100,000 features, with every diff tree expanded as the page shows it.
void LargeUpdate(benchmark::State &state)
{
    QMainWindow *window = TheLargeFixture().editor.get();
    auto *update = window->findChild<QPushButton *>(QStringLiteral("mp_btn_update"));
    Settle();
    for (auto _ : state) {
        update->click();
        QApplication::processEvents();
    }
}

// Moving to the next difference of that large diff: selecting, scrolling, the details text.
void LargeNextDifference(benchmark::State &state)
{
    QMainWindow *window = TheLargeFixture().editor.get();
    auto *next = window->findChild<QPushButton *>(QStringLiteral("mp_btn_next_difference"));
    Settle();
    for (auto _ : state) {
        next->click();
        QApplication::processEvents();
    }
}

// Undo and redo while the Changes page shows that large diff: each step also keeps the
// page's ticks and checks whether the differences still describe the records.
void LargeUndoRedoWithDiff(benchmark::State &state)
{
    QMainWindow *window = TheLargeFixture().editor.get();
    QAbstractItemModel *features = window->findChild<QAbstractItemView *>(QStringLiteral("mp_lst_features"))->model();
    features->setData(features->index(0, 1), QStringLiteral("edited with the diff shown"));
    QApplication::processEvents();
    Settle();
    UndoStepUndoRedo(state);
}

// Floor of the findings: one plain parse of the 100,000-feature products.json.
void LargeParse(benchmark::State &state)
{
    LargeFixture &fixture = TheLargeFixture();
    const QByteArray bytes = fixture.memory.reader()(fixture.memory.root() + QStringLiteral("/products/products.json"));
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(bytes).isObject());
}

void LargeSearchKeystroke(benchmark::State &state)
{
    Settle();
    Keystrokes(state, TheLargeFixture().editor.get());
}

// What the GUI thread spends on one field edit with the findings panel: the edit, then,
// once edits pause, taking a snapshot and starting the check, then taking in its result.
// The check itself runs on a pool thread, outside the timing.
void LargeEditWithFindings(benchmark::State &state)
{
    QMainWindow *window = TheLargeFixture().editor.get();
    QAbstractItemModel *features = window->findChild<QAbstractItemView *>(QStringLiteral("mp_lst_features"))->model();
    Settle();
    int edits = 0;
    for (auto _ : state) {
        features->setData(features->index(edits % 100, 1), QStringLiteral("finding %1").arg(edits));
        QApplication::processEvents();
        ++edits;
        state.PauseTiming();
        QThread::msleep(350);
        state.ResumeTiming();
        QApplication::processEvents();
        state.PauseTiming();
        QThreadPool::globalInstance()->waitForDone();
        state.ResumeTiming();
        QApplication::processEvents();
    }
}

// The check on the pool thread: after a load (files and records) and after an edit
// (the records, and where a save would rewrite the files).
void LargeFindings(benchmark::State &state, bool afterEdit)
{
    LargeFixture &fixture = TheLargeFixture();
    VantixJsonData store(fixture.memory.root(), fixture.memory.reader(), fixture.memory.writer(), {});
    const QString folder = store.GetFolder().path();
    std::optional<ProductEditor::LiveFindings> loaded;
    if (afterEdit) {
        loaded = ProductEditor::LiveFindings::Run(fixture.memory.reader(), folder,
                                                  ProductEditor::RecordsSnapshot::Take(store), store.GetLayoutFiles(),
                                                  nullptr);
        store.GetFeatures().first().title = QStringLiteral("edited");
    }
    const ProductEditor::RecordsSnapshot records = ProductEditor::RecordsSnapshot::Take(store);
    int findings = 0;
    for (auto _ : state)
        findings = ProductEditor::LiveFindings::Run(fixture.memory.reader(), folder, records, store.GetLayoutFiles(),
                                                    loaded ? &*loaded : nullptr)
                       .all.size();
    state.counters["findings"] = findings;
}

void PrintRow(const BestTimeReporter &reporter, const char *what, const char *measured, const char *floor,
              double target)
{
    const double seconds = reporter.seconds(measured);
    const double floorSeconds = reporter.seconds(floor);
    std::printf("%-28s %10.1f ms %10.1f ms %8.1f %10.1f ms %s\n", what, seconds * 1e3, target * 1e3,
                seconds / floorSeconds, floorSeconds * 1e3, floor);
}

} // namespace

BENCHMARK(StoreLoad)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(WindowOpen)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(DiffEngine)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(UpdateButton)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(ScanFeatures)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SearchKeystroke)->Unit(benchmark::kMillisecond)->Iterations(20)->UseRealTime();
BENCHMARK(UndoStepEdit)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();
BENCHMARK(UndoStepUndoRedo)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();
BENCHMARK(LargeUpdate)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK(LargeNextDifference)->Unit(benchmark::kMillisecond)->Iterations(20)->UseRealTime();
BENCHMARK(LargeUndoRedoWithDiff)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();
BENCHMARK(LargeParse)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();
BENCHMARK(LargeSearchKeystroke)->Unit(benchmark::kMillisecond)->Iterations(10)->UseRealTime();
BENCHMARK(LargeEditWithFindings)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
BENCHMARK_CAPTURE(LargeFindings, AfterLoad, false)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK_CAPTURE(LargeFindings, AfterEdit, true)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    BestTimeReporter reporter(BestTimeReporter::Clock::Wall);
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;

    std::printf("\nEditor window, %d features (best wall-clock time per run)\n", kFeatures);
    std::printf("%-28s %13s %13s %8s %13s %s\n", "operation", "time", "target", "ratio", "floor", "floor is");
    PrintRow(reporter, "open and show the window", "WindowOpen", "StoreLoad", 2.0);
    PrintRow(reporter, "Update (all diffs)", "UpdateButton", "DiffEngine", 1.0);
    PrintRow(reporter, "one search keystroke", "SearchKeystroke", "ScanFeatures", 0.05);
    std::printf("%-28s %10.1f ms %10.1f ms  (100,000 features)\n", "one undo step (edit)",
                reporter.seconds("UndoStepEdit") * 1e3, 100.0);
    std::printf("%-28s %10.1f ms %10.1f ms  (100,000 features)\n", "undo or redo one step",
                reporter.seconds("UndoStepUndoRedo") * 1e3, 100.0);
    std::printf("%-28s %10.1f ms %10.1f ms  (100,000 features)\n", "Update, trees expanded",
                reporter.seconds("LargeUpdate") * 1e3, 2000.0);
    std::printf("%-28s %10.1f ms %10.1f ms  (100,000 features)\n", "next difference and details",
                reporter.seconds("LargeNextDifference") * 1e3, 50.0);
    std::printf("%-28s %10.1f ms %10.1f ms  (100,000 features)\n", "undo or redo, diff shown",
                reporter.seconds("LargeUndoRedoWithDiff") * 1e3, 100.0);
    std::printf("\nFindings panel, 100,000 features, against one parse of products.json (%.1f ms)\n",
                reporter.seconds("LargeParse") * 1e3);
    for (const auto &[what, name] : {std::pair{"search keystroke (GUI)", "LargeSearchKeystroke"},
                                     std::pair{"field edit (GUI)", "LargeEditWithFindings"},
                                     std::pair{"check after a load (pool)", "LargeFindings/AfterLoad"},
                                     std::pair{"check after an edit (pool)", "LargeFindings/AfterEdit"}})
        std::printf("%-28s %10.1f ms %8.2fx\n", what, reporter.seconds(name) * 1e3,
                    reporter.seconds(name) / reporter.seconds("LargeParse"));
    TheFixture().editor.reset();
    TheLargeFixture().editor.reset();
    return 0;
}
