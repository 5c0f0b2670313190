// `log` of one feature over the git history of a 20,000-feature folder. The history is
// built once per run with git fast-import: 200 commits that each change products.json
// (every tenth retitles the followed feature, the others retitle another one), then 200
// commits that change only a file outside the folder. The walk is timed from the 50th,
// 100th, 200th and 400th commit, against a plain parse of products.json: it should grow
// with the commits that change the folder's files and not with the others.

#include "BestTimeReporter.h"
#include "SyntheticFolder.h"

#include "git/EntryLog.h"

#include "store/JsonText.h"
#include "store/RecordsSnapshot.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace ProductEditor;

namespace {

constexpr int kFeatures = 20000;
constexpr int kFolderCommits = 200;
constexpr int kOutsideCommits = 200;
constexpr int kEntryEvery = 10;
const int kHeads[] = {50, 100, 200, 400};

bool Git(const QString &repo, const QStringList &args, const QByteArray &input = QByteArray())
{
    QProcess git;
    git.setWorkingDirectory(repo);
    git.start(QStringLiteral("git"), args);
    git.write(input);
    git.closeWriteChannel();
    return git.waitForFinished(-1) && git.exitStatus() == QProcess::NormalExit && git.exitCode() == 0;
}

// Replaces the title that follows `"id": "ID",` in canonical products.json.
void Retitle(QByteArray &products, const QString &id, int commit)
{
    const int at = products.indexOf(QStringLiteral("\"id\": \"%1\",").arg(id).toUtf8());
    const int title = products.indexOf("\"title\": \"", at) + 10;
    const int end = products.indexOf('"', title);
    products.replace(title, end - title, QByteArray("Title of commit ") + QByteArray::number(commit));
}

QByteArray FileCommand(const QString &path, const QByteArray &bytes)
{
    return "M 100644 inline " + path.toUtf8() + "\ndata " + QByteArray::number(bytes.size()) + '\n' + bytes + '\n';
}

QByteArray CommitCommand(int mark, const QByteArray &files)
{
    const QByteArray message = "Commit " + QByteArray::number(mark);
    const QByteArray when = QByteArray::number(1700000000 + mark * 60) + " +0000\n";
    QByteArray command = "commit refs/heads/main\nmark :" + QByteArray::number(mark) + "\nauthor Bench <bench@example.org> "
                         + when + "committer Bench <bench@example.org> " + when + "data "
                         + QByteArray::number(message.size()) + '\n' + message + '\n';
    if (mark > 1)
        command += "from :" + QByteArray::number(mark - 1) + '\n';
    return command + files + '\n';
}

struct History
{
    History()
    {
        repo = dir.filePath(QStringLiteral("repo"));
        QDir().mkpath(repo);
        const SyntheticFolder folder = GenerateSyntheticFolder(kFeatures);
        MemoryDefinitionFolder memory(folder);
        VantixJsonData store(memory.root(), memory.reader(), Writer(), {});
        store.UpdateResultJsons();
        QByteArray products = JsonText(QJsonDocument(store.GetProductsResultJson()), QJsonDocument::Indented);
        productsBytes = products;
        const QStringList ids = store.GetFeatures().keys();
        entry = ids.at(ids.size() / 2);

        QByteArray stream;
        for (auto it = folder.layoutFiles.cbegin(); it != folder.layoutFiles.cend(); ++it)
            stream += FileCommand(QStringLiteral("defs/layouts/") + it.key(), it.value());
        stream = CommitCommand(1, stream + FileCommand(QStringLiteral("defs/products/products.json"), products));
        for (int commit = 2; commit <= kFolderCommits; ++commit) {
            Retitle(products, commit % kEntryEvery == 0 ? entry : ids.at((commit * 97) % ids.size()), commit);
            stream += CommitCommand(commit, FileCommand(QStringLiteral("defs/products/products.json"), products));
        }
        for (int commit = kFolderCommits + 1; commit <= kFolderCommits + kOutsideCommits; ++commit)
            stream += CommitCommand(commit, FileCommand(QStringLiteral("notes.txt"), QByteArray::number(commit)));
        for (int head : kHeads)
            stream += "reset refs/tags/at" + QByteArray::number(head) + "\nfrom :" + QByteArray::number(head) + "\n\n";
        ok = Git(repo, {QStringLiteral("init"), QStringLiteral("-q")})
             && Git(repo, {QStringLiteral("fast-import"), QStringLiteral("--quiet")}, stream)
             && Git(repo, {QStringLiteral("checkout"), QStringLiteral("-q"), QStringLiteral("-f"), QStringLiteral("main")});
    }

    QTemporaryDir dir;
    QString repo;
    QString entry;
    QByteArray productsBytes;
    bool ok = false;
};

History &TheHistory()
{
    static History history;
    return history;
}

void Parse(benchmark::State &state)
{
    const History &history = TheHistory();
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(history.productsBytes).object().size());
}

void Log(benchmark::State &state)
{
    const History &history = TheHistory();
    const int head = int(state.range(0));
    if (!history.ok
        || !Git(history.repo, {QStringLiteral("checkout"), QStringLiteral("-q"), QStringLiteral("--detach"),
                               QStringLiteral("at%1").arg(head)})) {
        state.SkipWithError("the history could not be built");
        return;
    }
    const int expected = std::min(head, kFolderCommits) / kEntryEvery + 1;
    for (auto _ : state) {
        FolderHistory folder;
        QString error;
        int found = 0;
        EntryLog::Options options;
        options.entry.id = history.entry;
        if (!folder.Open(history.repo + QStringLiteral("/defs"), &error)
            || !EntryLog::Walk(folder, options, [&found](const EntryLog::Entry &) { ++found; },
                               [](const QString &) {}, &error)
            || found != expected) {
            state.SkipWithError("the walk failed or missed a commit");
            return;
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("Parse", &Parse)->Unit(benchmark::kMillisecond);
    auto *log = benchmark::RegisterBenchmark("Log", &Log)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
    for (int head : kHeads)
        log->Arg(head);

    BestTimeReporter reporter(BestTimeReporter::Clock::Wall);
    if (!RunBenchmarks(argc, argv, reporter))
        return 1;
    const double parse = reporter.seconds("Parse");
    std::printf("\n| commits from HEAD | of them changing the folder | log s | per folder commit ms | / parse |\n"
                "|---:|---:|---:|---:|---:|\n");
    for (int head : kHeads) {
        const double seconds = reporter.seconds("Log", head);
        const int changing = std::min(head, kFolderCommits);
        std::printf("| %d | %d | %.2f | %.1f | %.1fx |\n", head, changing, seconds, seconds * 1e3 / changing,
                    seconds / changing / parse);
    }
    std::printf("\nParse of products.json (%.1f MB): %.1f ms\n", TheHistory().productsBytes.size() / 1e6, parse * 1e3);
    return 0;
}
