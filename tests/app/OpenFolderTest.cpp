// In-process: how the program opens a folder, for the commands and for the window.
#include "Commands.h"
#include "EditorHost.h"
#include "FileAccess.h"
#include "FolderOpener.h"

#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>

using namespace ProductEditor;

namespace {

void Write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class OpenFolderTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void messages_data();
    void messages();
    void readsEachFileOnce_data();
    void readsEachFileOnce();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_root;
};

void OpenFolderTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_root = m_dir->filePath("defs");
    Write(m_root + "/products/products.json", R"({"products": {"product": [{"id": "p", "licensing": {"base": "B"}}]}})");
    Write(m_root + "/layouts/main.json", R"({"layouts": {"main": {}}})");
    Write(m_dir->filePath("catalogue.json"), R"({"B": "Base"})");
}

void OpenFolderTest::messages_data()
{
    QTest::addColumn<QString>("path");     // below the temporary folder
    QTest::addColumn<QString>("file");     // written there, when not empty
    QTest::addColumn<QByteArray>("bytes"); // null: made a folder
    QTest::addColumn<QString>("catalogue");
    QTest::addColumn<QStringList>("expected"); // "TMP" stands for the temporary folder

    const QString P = "defs/products/products.json";
    QTest::newRow("accepted") << "defs" << QString() << QByteArray() << QString() << QStringList();
    QTest::newRow("missing folder") << "nowhere" << QString() << QByteArray() << QString()
                                    << QStringList{"product-editor: TMP/nowhere: the definition folder does not exist"};
    QTest::newRow("a file") << "catalogue.json" << QString() << QByteArray() << QString()
                            << QStringList{"product-editor: TMP/catalogue.json: not a folder"};
    QTest::newRow("products.json a folder") << "defs" << P << QByteArray() << QString()
                                            << QStringList{"product-editor: TMP/" + P + ": is a folder, not a file"};
    QTest::newRow("broken JSON") << "defs" << P << QByteArray("{\n \"a\" 1}") << QString()
                                 << QStringList{"product-editor: TMP/" + P + ": not valid JSON: missing name separator"
                                                " at offset 8 (line 2, column 7)"};
    QTest::newRow("array") << "defs" << P << QByteArray("[1]") << QString()
                           << QStringList{"product-editor: TMP/" + P + ": \"products.json\" is not a JSON object"};
    QTest::newRow("empty object") << "defs" << P << QByteArray(" {} ") << QString()
                                  << QStringList{"product-editor: TMP/" + P + ": \"products.json\" is an empty JSON object"};
    QTest::newRow("skipped layouts, missing catalogue")
        << "defs" << "defs/layouts/bad.json" << QByteArray("{\"layouts\"") << "nope.json"
        << QStringList{"product-editor: warning: TMP/defs/layouts/bad.json: skipped, not valid JSON: unterminated"
                       " string at offset 10 (line 1, column 11)",
                       "product-editor: TMP/nope.json: cannot be read: no such file"};
    QTest::newRow("catalogue not an object") << "defs" << "cat.json" << QByteArray("[]") << "cat.json"
        << QStringList{"product-editor: TMP/cat.json: the license catalogue must be a JSON object"};
}

void OpenFolderTest::messages()
{
    QFETCH(QString, path);
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, catalogue);
    QFETCH(QStringList, expected);

    if (!file.isEmpty() && bytes.isNull())
        QVERIFY(QFile::remove(m_dir->filePath(file)) && QDir().mkpath(m_dir->filePath(file)));
    else if (!file.isEmpty())
        Write(m_dir->filePath(file), bytes);
    expected.replaceInStrings("TMP", m_dir->path());
    FolderOpener opener(&FileAccess::ReadFile, catalogue.isEmpty() ? QString() : m_dir->filePath(catalogue));
    const auto store = opener.Open(m_dir->filePath(path), Writer());
    QCOMPARE(opener.Messages(), expected);
    QCOMPARE(bool(store), expected.isEmpty());
    QCOMPARE(opener.Opened(), expected.isEmpty());
    if (store)
        QCOMPARE(store->GetLicenses(), (QMap<QString, QString>{{"B", "B"}}));
}

void OpenFolderTest::readsEachFileOnce_data()
{
    QTest::addColumn<QString>("command"); // empty: the window
    QTest::addColumn<bool>("catalogue");

    for (const char *command : {"check", "diff", "compare-products", "query", ""}) {
        QTest::addRow("%s", *command ? command : "window") << command << false;
        if (QByteArray(command) != "query")
            QTest::addRow("%s --licenses", *command ? command : "window") << command << true;
    }
}

void OpenFolderTest::readsEachFileOnce()
{
    QFETCH(QString, command);
    QFETCH(bool, catalogue);

    QMap<QString, int> reads;
    const Reader counting = [&reads](const QString &path) {
        ++reads[QDir::cleanPath(path)];
        return FileAccess::ReadFile(path);
    };
    const QString catalogueFile = catalogue ? m_dir->filePath("catalogue.json") : QString();
    QStringList args{m_root};
    if (command == "compare-products")
        args << "p" << "p";
    if (catalogue)
        args << "--licenses" << catalogueFile;
    int status = -1;
    if (command == "check")
        status = RunCheck(args, counting);
    else if (command == "diff")
        status = RunDiff(args, counting);
    else if (command == "compare-products")
        status = RunCompareProducts(args, counting);
    else if (command == "query")
        status = RunQuery(args, counting);
    QStringList messages;
    if (command.isEmpty())
        status = OpenEditorWindow(m_root, catalogueFile, counting, Writer(), &messages) ? 0 : 2;
    QCOMPARE(messages, QStringList());
    QVERIFY(status == 0 || status == 1);
    QMap<QString, int> once{{m_root + "/products/products.json", 1}, {m_root + "/layouts/main.json", 1}};
    if (catalogue)
        once.insert(catalogueFile, 1);
    QCOMPARE(reads, once);
}

QTEST_MAIN(OpenFolderTest)
#include "OpenFolderTest.moc"
