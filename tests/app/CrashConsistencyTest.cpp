// A save killed at any I/O call leaves a folder that the next open shows exactly as it was
// before the save or exactly as the save meant it. A kill at a random moment rarely lands
// between two renames, so the program is stopped at each of its calls on the folder in turn,
// for `normalize` and for a save from the window.
//
// A longer campaign on a folder of one's own: PE_KILL_FOLDER=DIR (for example one written by
// pe-generate) replaces the example, and PE_KILL_CAMPAIGN=N kills each save at N calls picked
// at random (seeded by PE_KILL_SEED) instead of at each call in turn.
#include "host/EditorHost.h"
#include "store/FolderTransaction.h"
#include "FolderFiles.h"
#include "TestHelpers.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QMainWindow>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <utility>

using namespace ProductEditor;

namespace {

const char *const WindowSave = "--window-save";
const QString Traced = QStringLiteral("openat,write,rename,renameat,renameat2,unlink,unlinkat,fsync,fdatasync");

// Which files hold the old bytes, which the new ones, and which neither.
QString Describe(const FolderFiles &files, const FolderFiles &before, const FolderFiles &after)
{
    QStringList parts;
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        parts << it.key()
                     + (it.value() == after.value(it.key())    ? " new"
                        : it.value() == before.value(it.key()) ? " old"
                                                               : " other");
    return parts.join(", ");
}

// One call to kill the save at: the `number`th call of `syscall`, as strace counts them.
struct Point
{
    QString syscall;
    int number;
};

// The traced process of the window's save: the program's window over `folder`, saved once.
int SaveFromTheWindow(int argc, char **argv)
{
    QApplication app(argc, argv);
    QStringList messages;
    const std::unique_ptr<QMainWindow> window = OpenHostWindow(QString::fromLocal8Bit(argv[2]), QString(), &messages);
    if (!window)
        return 3;
    window->findChild<QAction *>(QStringLiteral("mp_run_save"))->trigger();
    return 0;
}

} // namespace

class CrashConsistencyTest : public QObject
{
    Q_OBJECT

    // A save as a traced process runs it, and what a clean run of it does.
    struct Save
    {
        QStringList command;
        FolderFiles after;
        QString log; // the clean save's calls, as strace printed them
    };

    QTemporaryDir m_dir;
    QString m_folder;
    QString m_strace;
    FolderFiles m_old;
    QMap<QString, Save> m_saves;
    const bool m_campaign = qEnvironmentVariableIsSet("PE_KILL_CAMPAIGN");

    // What an open does first: an interrupted save is finished or undone, each file named.
    static Run Recovered(const QString &folder)
    {
        const FolderRecovery recovery = FolderTransaction::Recover(folder);
        Run run;
        run.status = recovery.outcome == FolderRecovery::Outcome::Refused ? 2 : 0;
        for (const QString &note : recovery.notes)
            run.err += "warning: " + folder + "/" + note + "\n";
        return run;
    }

    // The calls of one kind the save makes on the folder, numbered as strace counts them.
    QVector<int> CallsOnFolder(const QString &log, const QString &syscall, bool writesOnly) const
    {
        QVector<int> calls;
        int count = 0;
        const QRegularExpression line(QStringLiteral("^\\d+ +(\\w+)\\("));
        for (const QString &text : log.split(QLatin1Char('\n'))) {
            if (line.match(text).captured(1) != syscall)
                continue;
            ++count;
            const bool forWriting = !writesOnly || text.contains(QLatin1String("O_WRONLY"))
                                    || text.contains(QLatin1String("O_RDWR"))
                                    || text.contains(QLatin1String("O_CREAT"));
            if (text.contains(m_folder) && forWriting)
                calls << count;
        }
        return calls;
    }

    Save Record(const QStringList &command)
    {
        WriteFolderFiles(m_folder, m_old);
        const QString log = m_dir.filePath(QStringLiteral("calls.log"));
        const Run run = Start(m_strace, QStringList{"-f", "-y", "-qq", "-o", log, "-e", "trace=" + Traced} + command);
        return {command, run.status == 0 ? ReadFolderFiles(m_folder) : FolderFiles(), QString::fromUtf8(Read(log))};
    }

    // Kills `save` at `point`, opens the folder again and checks what that open sees.
    bool KillAndOpen(const Save &save, const Point &point)
    {
        const QString where = QStringLiteral("killed at %1 #%2").arg(point.syscall).arg(point.number);
        WriteFolderFiles(m_folder, m_old);
        const QString inject = QStringLiteral("inject=%1:signal=KILL:when=%2").arg(point.syscall).arg(point.number);
        const Run killed = Start(m_strace, QStringList{"-f", "-qq", "-o", "/dev/null", "-e", "trace=" + point.syscall,
                                                       "-e", inject}
                                               + save.command);
        if (killed.status != -1) {
            QTest::qFail(qPrintable(where + ": the program was not killed"), __FILE__, __LINE__);
            return false;
        }
        const FolderFiles left = ReadFolderFiles(m_folder);
        // A campaign opens the folder the way every open starts, without loading it after.
        const Run open = m_campaign ? Recovered(m_folder) : Program({"normalize", m_folder, "--check"});
        const FolderFiles opened = ReadFolderFiles(m_folder);
        if (opened != m_old && opened != save.after) {
            QTest::qFail(qPrintable(where + ": the next open sees " + Describe(opened, m_old, save.after)), __FILE__,
                         __LINE__);
            return false;
        }
        // Whatever the open had to finish or remove is named, and it then sees a saved folder.
        const bool named = left == opened || open.err.contains("warning: " + m_folder);
        if (!named || (!m_campaign && open.status != (opened == save.after ? 0 : 1))) {
            QTest::qFail(qPrintable(where + ": " + open.err), __FILE__, __LINE__);
            return false;
        }
        return true;
    }

private slots:
    void initTestCase()
    {
        m_strace = QStandardPaths::findExecutable(QStringLiteral("strace"));
        if (m_strace.isEmpty())
            QSKIP("strace is not installed");
        // A container without ptrace rights has strace but cannot trace.
        if (Start(m_strace, {"-f", "-qq", "-o", "/dev/null", "true"}).status != 0)
            QSKIP("strace cannot trace processes here");
        // The leak checker of a sanitizer build refuses to run under a tracer.
        qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":detect_leaks=0");
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // The products document and the first layout written compact (not canonical), the other layouts canonical.
        const QString source = qEnvironmentVariable("PE_KILL_FOLDER", QStringLiteral(PE_SOURCE_DIR "/examples/definitions"));
        m_folder = m_dir.filePath(QStringLiteral("defs"));
        FolderFiles files = ReadFolderFiles(source);
        bool layout = false;
        for (auto it = files.begin(); it != files.end(); ++it) {
            const bool first = it.key().startsWith("layouts/") && !std::exchange(layout, true);
            if (first || it.key() == "products/products.json")
                it.value() = QJsonDocument::fromJson(it.value()).toJson(QJsonDocument::Compact);
        }
        m_old = files;

        m_saves.insert("normalize", Record({PE_PROGRAM, "normalize", m_folder}));
        m_saves.insert("window", Record({QCoreApplication::applicationFilePath(), WindowSave, m_folder}));
        for (const Save &save : std::as_const(m_saves)) {
            QCOMPARE(save.after.keys(), m_old.keys());
            QVERIFY(save.after != m_old);
        }
    }

    void killedSaveOpensAsOldOrNew_data()
    {
        QTest::addColumn<QString>("save");
        QTest::addColumn<QStringList>("syscalls");
        QTest::addColumn<bool>("writesOnly"); // only the calls that open a file for writing

        for (const char *save : {"normalize", "window"}) {
            const auto row = [save](const char *name) -> QTestData & { return QTest::addRow("%s, %s", save, name) << QString(save); };
            row("rename") << QStringList{"rename", "renameat", "renameat2"} << false;
            row("write") << QStringList{"write"} << false;
            row("unlink") << QStringList{"unlink", "unlinkat"} << false;
            row("fsync") << QStringList{"fsync", "fdatasync"} << false;
            row("open for writing") << QStringList{"openat"} << true;
        }
    }

    void killedSaveOpensAsOldOrNew()
    {
        QFETCH(QString, save);
        QFETCH(QStringList, syscalls);
        QFETCH(bool, writesOnly);
        if (m_campaign)
            QSKIP("a campaign kills at random calls instead");
        int kills = 0;
        for (const QString &syscall : syscalls) {
            for (int call : CallsOnFolder(m_saves[save].log, syscall, writesOnly)) {
                if (!KillAndOpen(m_saves[save], {syscall, call}))
                    return;
                ++kills;
            }
        }
        QVERIFY2(kills > 0, "the save made no such call on the folder");
    }

    void campaign_data()
    {
        QTest::addColumn<QString>("save");
        QTest::newRow("normalize") << "normalize";
        QTest::newRow("window") << "window";
    }

    void campaign()
    {
        QFETCH(QString, save);
        const int kills = qEnvironmentVariableIntValue("PE_KILL_CAMPAIGN");
        if (kills <= 0)
            QSKIP("set PE_KILL_CAMPAIGN=N for N kills at random calls");
        QVector<Point> points;
        for (const QString &syscall : Traced.split(QLatin1Char(',')))
            for (int call : CallsOnFolder(m_saves[save].log, syscall, syscall == "openat"))
                points.append({syscall, call});
        QRandomGenerator random(quint32(qEnvironmentVariableIntValue("PE_KILL_SEED")));
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < kills; ++i) {
            if (!KillAndOpen(m_saves[save], points.at(random.bounded(int(points.size())))))
                return;
            if ((i + 1) % 10 == 0)
                qInfo("%d kills", i + 1);
        }
        qInfo("%d kills of the %s save among its %d calls on the folder: old or new after each next open, %.1f s",
              kills, qPrintable(save), int(points.size()), timer.elapsed() / 1000.0);
    }
};

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], WindowSave) == 0)
        return SaveFromTheWindow(argc, argv);
    // A campaign runs for longer than a test function may by default.
    if (qEnvironmentVariableIsSet("PE_KILL_CAMPAIGN") && !qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT"))
        qputenv("QTEST_FUNCTION_TIMEOUT", "86400000");
    QCoreApplication app(argc, argv);
    CrashConsistencyTest test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "CrashConsistencyTest.moc"
