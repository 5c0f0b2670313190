// Saving loses nothing: the writer replaces a file only with a complete new one, and a
// write that fails leaves the previous file byte for byte and is reported.
#include "host/FileAccess.h"
#include "TestHelpers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

namespace {

// The entries of `dir`, to see that a failed write leaves no temporary file.
QStringList Listing(const QString &dir)
{
    return QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

// Lowers the file-size limit for its lifetime; with SIGXFSZ ignored, writes past it
// fail with EFBIG the way a full disk fails a write halfway.
struct FileSizeLimit
{
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &previous);
        const rlimit limited{bytes, previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &previous); }
    rlimit previous{};
};

} // namespace

class SaveSafetyTest : public QObject
{
    Q_OBJECT

private slots:
    void write_data()
    {
        QTest::addColumn<QString>("target"); // below the temporary folder; "previous" is there before
        QTest::addColumn<int>("limit");      // file-size limit in bytes, 0 for none
        QTest::addColumn<QString>("error");  // empty: the write succeeds

        QTest::newRow("replaces the whole file") << "previous" << 0 << "";
        QTest::newRow("a folder where the file should be") << "folder" << 0 << "a directory stands where the file should be";
        QTest::newRow("folder does not exist") << "absent/file" << 0 << "No such file or directory";
        QTest::newRow("large write fails halfway (disk full)") << "previous" << 64 * 1024 << "File too large";
        // Small enough to sit in a write buffer until the file is committed.
        QTest::newRow("small write fails halfway (disk full)") << "previous" << 1024 << "File too large";
    }

    void write()
    {
        QFETCH(QString, target);
        QFETCH(int, limit);
        QFETCH(QString, error);

        std::signal(SIGXFSZ, SIG_IGN);
        QVERIFY(Write(m_dir.filePath("previous"), "previous contents"));
        QVERIFY(QDir().mkpath(m_dir.filePath("folder/inner")));
        const QStringList before = Listing(m_dir.path());
        const QByteArray bytes(qMax(limit * 4, 100), 'n');
        QString reason;
        bool written = false;
        {
            const FileSizeLimit fileSize(limit > 0 ? rlim_t(limit) : RLIM_INFINITY);
            written = FileAccess::WriteFileAtomically(m_dir.filePath(target), bytes, &reason);
        }
        QVERIFY2(reason.contains(error, Qt::CaseInsensitive) && written == error.isEmpty(), qPrintable(reason));
        QCOMPARE(Read(m_dir.filePath("previous")), error.isEmpty() ? bytes : QByteArray("previous contents"));
        QCOMPARE(Listing(m_dir.path()), before);
    }

    void normalizeReportsAFailedWrite()
    {
        // The products file is several kilobytes and fails; the layout file, far smaller, could be
        // written, but a folder is saved whole or not at all.
        const QString products = m_dir.filePath("defs/products/products.json");
        QVERIFY(Write(products, "{\"features\": {\"feature\": [{\"id\": \"f\", \"visual\": true, \"title\": \""
                                    + QByteArray(4000, 'x') + "\"}]}}"));
        QVERIFY(Write(m_dir.filePath("defs/layouts/main.json"), "{\"layouts\": {\"main\": {\"features\": [\"b\", \"a\"]}}}"));
        const QByteArray previous = Read(products);
        const QByteArray previousLayout = Read(m_dir.filePath("defs/layouts/main.json"));
        const QStringList before = Listing(m_dir.filePath("defs/products"));

        // The limit applies to the program only; SIGXFSZ stays ignored across exec.
        const Run run = Start("bash", {"-c", "trap '' XFSZ; ulimit -f 1; exec \"$@\"", "sh", PE_PROGRAM, "normalize",
                                       m_dir.filePath("defs")});
        QCOMPARE(run.status, 2);
        QCOMPARE(run.err, "product-editor: cannot write " + products + ": File too large\n");
        QCOMPARE(Read(products), previous);
        QCOMPARE(Listing(m_dir.filePath("defs/products")), before);
        QCOMPARE(Read(m_dir.filePath("defs/layouts/main.json")), previousLayout);
        QCOMPARE(Listing(m_dir.filePath("defs/layouts")), QStringList{"main.json"});
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(SaveSafetyTest)
#include "SaveSafetyTest.moc"
