// A save killed at any I/O call leaves a folder that the next open shows exactly as it was
// before the save or exactly as the save meant it. A kill at a random moment rarely lands
// between two renames, so the program is stopped at each of its calls on the folder in turn.
#include "FolderFiles.h"
#include "TestHelpers.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

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

} // namespace

class CrashConsistencyTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_folder;
    QString m_strace;
    FolderFiles m_old;
    FolderFiles m_new;
    QString m_log; // the clean save's calls, as strace printed them

    // The calls of one kind the save makes on the folder, numbered as strace counts them.
    QVector<int> CallsOnFolder(const QString &syscall, bool writesOnly)
    {
        QVector<int> calls;
        int count = 0;
        const QRegularExpression line(QStringLiteral("^\\d+ +(\\w+)\\("));
        for (const QString &text : m_log.split(QLatin1Char('\n'))) {
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
        // The example, two of its three files written compact (not canonical), the third left canonical.
        m_folder = m_dir.filePath(QStringLiteral("defs"));
        WriteFolderFiles(m_folder, ReadFolderFiles(QStringLiteral(PE_SOURCE_DIR "/examples/definitions")));
        for (const char *name : {"products/products.json", "layouts/production.json"}) {
            const QString path = QDir(m_folder).filePath(QLatin1String(name));
            QVERIFY(Write(path, QJsonDocument::fromJson(Read(path)).toJson(QJsonDocument::Compact)));
        }
        m_old = ReadFolderFiles(m_folder);

        const QString log = m_dir.filePath(QStringLiteral("calls.log"));
        QCOMPARE(Start(m_strace, {"-f", "-y", "-qq", "-o", log, "-e",
                                  "trace=openat,write,rename,renameat,renameat2,unlink,unlinkat,fsync,fdatasync",
                                  PE_PROGRAM, "normalize", m_folder})
                     .status,
                 0);
        m_log = QString::fromUtf8(Read(log));
        m_new = ReadFolderFiles(m_folder);
        QCOMPARE(m_new.keys(), m_old.keys());
        QVERIFY(m_new != m_old);
        QCOMPARE(m_new.value("layouts/workspace.json"), m_old.value("layouts/workspace.json"));
    }

    void killedSaveOpensAsOldOrNew_data()
    {
        QTest::addColumn<QStringList>("syscalls");
        QTest::addColumn<bool>("writesOnly"); // only the calls that open a file for writing

        QTest::newRow("rename") << QStringList{"rename", "renameat", "renameat2"} << false;
        QTest::newRow("write") << QStringList{"write"} << false;
        QTest::newRow("unlink") << QStringList{"unlink", "unlinkat"} << false;
        QTest::newRow("fsync") << QStringList{"fsync", "fdatasync"} << false;
        QTest::newRow("open for writing") << QStringList{"openat"} << true;
    }

    void killedSaveOpensAsOldOrNew()
    {
        QFETCH(QStringList, syscalls);
        QFETCH(bool, writesOnly);
        int kills = 0;
        for (const QString &syscall : syscalls) {
            for (int call : CallsOnFolder(syscall, writesOnly)) {
                const QString where = QStringLiteral("killed at %1 #%2").arg(syscall).arg(call);
                WriteFolderFiles(m_folder, m_old);
                const QString inject = QStringLiteral("inject=%1:signal=KILL:when=%2").arg(syscall).arg(call);
                QVERIFY2(Start(m_strace, {"-f", "-qq", "-o", "/dev/null", "-e", "trace=" + syscall, "-e", inject,
                                          PE_PROGRAM, "normalize", m_folder})
                                 .status
                             == -1,
                         qPrintable(where + ": the program was not killed"));
                ++kills;
                const FolderFiles killed = ReadFolderFiles(m_folder);
                const Run open = Program({"normalize", m_folder, "--check"});
                const FolderFiles opened = ReadFolderFiles(m_folder);
                QVERIFY2(opened == m_old || opened == m_new,
                         qPrintable(where + ": the next open sees " + Describe(opened, m_old, m_new)));
                QCOMPARE(open.status, opened == m_new ? 0 : 1);
                // Whatever the open had to finish or remove is named.
                if (killed != opened)
                    QVERIFY2(open.err.contains("warning: " + m_folder), qPrintable(where + ": " + open.err));
            }
        }
        QVERIFY2(kills > 0, "the save made no such call on the folder");
    }
};

QTEST_GUILESS_MAIN(CrashConsistencyTest)
#include "CrashConsistencyTest.moc"
