// The program's writer is unit-tested here as well as through the program.
#include "FileAccess.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

namespace {

struct Run
{
    int status = -1;
    QString err;
};

bool Write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray Read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Name and size of every entry below `dir`, to see that a failed write leaves no trace.
QStringList Listing(const QString &dir)
{
    QStringList entries;
    const QDir root(dir);
    for (const QFileInfo &info : root.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name)) {
        entries << info.fileName() + QLatin1Char(' ') + QString::number(info.isDir() ? -1 : info.size());
        if (info.isDir() && !info.isSymLink()) {
            for (const QString &inner : Listing(info.filePath()))
                entries << info.fileName() + QLatin1Char('/') + inner;
        }
    }
    return entries;
}

// Non-canonical on purpose (unsorted arrays, "visual": true), so a normalize has to rewrite every file.
QByteArray ProductsDocument()
{
    QJsonArray features;
    QJsonArray ids;
    for (int i = 40; i > 0; --i) {
        const QString id = QStringLiteral("feature%1").arg(i);
        features.append(QJsonObject{{QStringLiteral("id"), id}, {QStringLiteral("title"), QStringLiteral("Title of ") + id},
                                    {QStringLiteral("visual"), true}});
        ids.append(id);
    }
    const QJsonObject product{{QStringLiteral("id"), QStringLiteral("p")}, {QStringLiteral("features"), ids},
                              {QStringLiteral("modes"), QJsonArray{QStringLiteral("main")}}};
    return QJsonDocument(QJsonObject{{QStringLiteral("features"), QJsonObject{{QStringLiteral("feature"), features}}},
                                     {QStringLiteral("products"),
                                      QJsonObject{{QStringLiteral("product"), QJsonArray{product}}}}})
        .toJson();
}

const QByteArray kLayout("{\"layouts\": {\"main\": {\"features\": [\"feature2\", \"feature1\"]}}}");

// Whether this process can create files in `dir` whatever its mode says (root can).
bool IgnoresPermissions(const QString &dir)
{
    QFile probe(QDir(dir).filePath(QStringLiteral(".probe")));
    if (!probe.open(QIODevice::WriteOnly))
        return false;
    probe.remove();
    return true;
}

// Lowers the file-size limit for its lifetime: writes past `bytes` fail with EFBIG
// instead of raising SIGXFSZ, the way a full disk fails a write halfway.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limited{bytes, m_previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_previous{};
    void (*m_handler)(int) = nullptr;
};

} // namespace

// Saving loses nothing: the writer replaces a file only with a complete new one,
// and a write that fails leaves the previous file byte for byte and is reported.
class SaveSafetyTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void writeReplacesTheWholeFile();
    void failedWriteKeepsThePreviousFile_data();
    void failedWriteKeepsThePreviousFile();
    void writerCollectsPathAndReason();
    void normalizeReportsAFailedWrite_data();
    void normalizeReportsAFailedWrite();

private:
    Run Normalize(const QStringList &args, int fileSizeLimitKb = 0) const;

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_defs;
};

void SaveSafetyTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_defs = m_dir->filePath(QStringLiteral("defs"));
    QVERIFY(Write(m_defs + QStringLiteral("/products/products.json"), ProductsDocument()));
    QVERIFY(Write(m_defs + QStringLiteral("/layouts/main.json"), kLayout));
}

Run SaveSafetyTest::Normalize(const QStringList &args, int fileSizeLimitKb) const
{
    QProcess process;
    QStringList shellArgs{QStringLiteral("-c")};
    // The limit applies to the program only; SIGXFSZ stays ignored across exec so
    // the write fails with an error the program can report.
    if (fileSizeLimitKb > 0)
        shellArgs << QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$@\"").arg(fileSizeLimitKb);
    else
        shellArgs << QStringLiteral("exec \"$@\"");
    shellArgs << QStringLiteral("sh") << QStringLiteral(PE_PROGRAM) << QStringLiteral("normalize") << args;
    process.start(QStringLiteral("bash"), shellArgs);
    if (!process.waitForFinished(120000))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardError())};
}

void SaveSafetyTest::writeReplacesTheWholeFile()
{
    const QString path = m_dir->filePath(QStringLiteral("file.json"));
    QVERIFY(Write(path, QByteArray(4096, 'o')));
    QString error;
    QVERIFY(FileAccess::WriteFileAtomically(path, "new", &error));
    QCOMPARE(error, QString());
    QCOMPARE(Read(path), QByteArray("new"));
    // No temporary file is left beside the target.
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::Files | QDir::Hidden), (QStringList{QStringLiteral("file.json")}));
}

void SaveSafetyTest::failedWriteKeepsThePreviousFile_data()
{
    QTest::addColumn<QString>("failure");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("size");

    const QString tooLarge = QStringLiteral("File too large");
    QTest::newRow("a directory where the file should be")
        << QStringLiteral("directory") << QStringLiteral("a directory stands where the file should be") << 100;
    QTest::newRow("read-only folder") << QStringLiteral("read-only") << QStringLiteral("Permission denied") << 100;
    QTest::newRow("large write fails halfway (file-size limit)") << QStringLiteral("limit") << tooLarge << 256 * 1024;
    // Small enough to sit in a write buffer until the file is committed.
    QTest::newRow("small write fails halfway (file-size limit)") << QStringLiteral("limit") << tooLarge << 4 * 1024;
    QTest::newRow("folder does not exist") << QStringLiteral("missing") << QStringLiteral("No such file or directory")
                                           << 100;
}

void SaveSafetyTest::failedWriteKeepsThePreviousFile()
{
    QFETCH(QString, failure);
    QFETCH(QString, reason);
    QFETCH(int, size);

    const QString folder = m_dir->filePath(QStringLiteral("target"));
    QString path = QDir(folder).filePath(QStringLiteral("products.json"));
    const QByteArray previous("previous contents");
    QVERIFY(Write(path, previous));
    const QByteArray bytes(size, 'n');

    if (failure == QLatin1String("directory")) {
        path = QDir(folder).filePath(QStringLiteral("sub.json"));
        QVERIFY(QDir().mkpath(path + QStringLiteral("/inner")));
        QVERIFY(Write(path + QStringLiteral("/inner/kept.json"), previous));
    } else if (failure == QLatin1String("read-only")) {
        QVERIFY(QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        if (IgnoresPermissions(folder)) {
            QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
            QTest::qSkip("This user writes into read-only folders (running as root)", __FILE__, __LINE__);
            return;
        }
    } else if (failure == QLatin1String("missing")) {
        path = m_dir->filePath(QStringLiteral("absent/products.json"));
    }
    const QStringList before = Listing(m_dir->path());

    QString error;
    bool written = true;
    if (failure == QLatin1String("limit")) {
        // The temporary file fills up to the limit and the rest of the write fails.
        const FileSizeLimit limit(size / 4);
        written = FileAccess::WriteFileAtomically(path, bytes, &error);
    } else {
        written = FileAccess::WriteFileAtomically(path, bytes, &error);
    }
    QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    QVERIFY(!written);
    QVERIFY2(error.contains(reason, Qt::CaseInsensitive), qPrintable(error));
    QCOMPARE(Read(QDir(folder).filePath(QStringLiteral("products.json"))), previous);
    QCOMPARE(Listing(m_dir->path()), before);
}

void SaveSafetyTest::writerCollectsPathAndReason()
{
    const QString blocked = m_dir->filePath(QStringLiteral("blocked.json"));
    QVERIFY(QDir().mkpath(blocked));
    const QString fine = m_dir->filePath(QStringLiteral("fine.json"));
    FileAccess access;
    const ProductEditor::Writer writer = access.writer();
    QVERIFY(!writer(blocked, "x"));
    QVERIFY(writer(fine, "y"));
    QCOMPARE(access.errors(), QStringList{blocked + QStringLiteral(": a directory stands where the file should be")});
    QCOMPARE(Read(fine), QByteArray("y"));
}

void SaveSafetyTest::normalizeReportsAFailedWrite_data()
{
    QTest::addColumn<QString>("failure");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("reason");

    QTest::newRow("nothing fails") << QStringLiteral("none") << 0 << QString();
    QTest::newRow("write fails halfway (file-size limit)") << QStringLiteral("limit") << 2
                                                          << QStringLiteral("File too large");
    QTest::newRow("a directory where the output file should be")
        << QStringLiteral("directory") << 2 << QStringLiteral("a directory stands where the file should be");
    QTest::newRow("read-only output folder") << QStringLiteral("read-only") << 2 << QStringLiteral("Permission denied");
}

void SaveSafetyTest::normalizeReportsAFailedWrite()
{
    QFETCH(QString, failure);
    QFETCH(int, status);
    QFETCH(QString, reason);

    // The products file is the one that fails; it is several kilobytes, the layout file far less.
    QString folder = m_defs;
    QStringList args{m_defs};
    int limitKb = 0;
    if (failure == QLatin1String("limit")) {
        limitKb = 1;
    } else if (failure != QLatin1String("none")) {
        folder = m_dir->filePath(QStringLiteral("out"));
        args << QStringLiteral("--out") << folder;
        QVERIFY(Write(folder + QStringLiteral("/products/products.json"), "previous output"));
        QVERIFY(Write(folder + QStringLiteral("/layouts/main.json"), "previous layout"));
        if (failure == QLatin1String("directory")) {
            QVERIFY(QFile::remove(folder + QStringLiteral("/products/products.json")));
            QVERIFY(Write(folder + QStringLiteral("/products/products.json/inner"), "kept"));
        } else {
            const QString products = folder + QStringLiteral("/products");
            QVERIFY(QFile::setPermissions(products, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
            if (IgnoresPermissions(products)) {
                QFile::setPermissions(products, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
                QTest::qSkip("This user writes into read-only folders (running as root)", __FILE__, __LINE__);
                return;
            }
        }
    }
    const QString productsFile = folder + QStringLiteral("/products/products.json");
    const QStringList productsBefore = Listing(folder + QStringLiteral("/products"));
    const QByteArray previous = Read(productsFile);

    const Run run = Normalize(args, limitKb);
    QFile::setPermissions(folder + QStringLiteral("/products"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

    QVERIFY2(run.status == status, qPrintable(run.err));
    if (failure == QLatin1String("none")) {
        QVERIFY(run.err.isEmpty());
        QVERIFY(Read(productsFile) != previous);
        QVERIFY(QJsonDocument::fromJson(Read(productsFile)).isObject());
        return;
    }
    QVERIFY2(run.err.contains(QStringLiteral("cannot write ") + QDir::cleanPath(productsFile)), qPrintable(run.err));
    QVERIFY2(run.err.contains(reason, Qt::CaseInsensitive), qPrintable(run.err));
    QCOMPARE(Read(productsFile), previous);
    QCOMPARE(Listing(folder + QStringLiteral("/products")), productsBefore);
    // The small layout file was written; there is no rollback across files.
    QVERIFY(QJsonDocument::fromJson(Read(folder + QStringLiteral("/layouts/main.json"))).isObject());
}

QTEST_GUILESS_MAIN(SaveSafetyTest)
#include "SaveSafetyTest.moc"
