#include "EditorFixture.h"
#include "host/EditorHost.h"
#include "FolderFiles.h"

#include <QDirIterator>
#include <QDockWidget>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>

// The desktop program's window over files on disk.
class HostFeedbackTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString copyExample()
    {
        WriteFolderFiles(m_dir.filePath("defs"), ReadFolderFiles(PE_SOURCE_DIR "/examples/definitions"));
        return m_dir.filePath("defs");
    }
    static QMap<QString, QDateTime> times(const QString &root)
    {
        QMap<QString, QDateTime> result;
        QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            result.insert(it.next(), it.fileInfo().lastModified());
        return result;
    }

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QSettings().clear();
    }

    void saveLeavesUnchangedFilesAndCloseAsks()
    {
        const QString folder = copyExample();
        QStringList messages;
        std::unique_ptr<QMainWindow> window = OpenHostWindow(folder, QString(), &messages);
        QVERIFY(window);
        QCOMPARE(window->windowTitle(), "Product editor - " + QDir::toNativeSeparators(folder) + "[*]");
        auto *save = window->findChild<QAction *>("mp_run_save");
        save->trigger();
        const auto first = times(folder);
        const int files = first.size();
        save->trigger();
        QCOMPARE(times(folder), first);
        QCOMPARE(window->statusBar()->currentMessage(),
                 QString("Saved %1 files to %2 (%1 unchanged)").arg(files).arg(QDir::toNativeSeparators(folder)));

        // The program shows the Problems panel, and the next window has the docks as this one left them.
        window->show();
        auto *problems = window->findChild<QDockWidget *>("mp_dock_problems");
        QVERIFY(problems->isVisible());
        problems->close();
        auto *history = window->findChild<QDockWidget *>("mp_dock_history");
        QVERIFY(history->isHidden());
        history->show();
        QAbstractItemModel *features = window->findChild<QAbstractItemView *>("mp_lst_features")->model();
        features->setData(features->index(0, 1), "Changed");
        QTRY_VERIFY(window->isWindowModified());
        DialogAnswers answers;
        answers.Then({int(QMessageBox::Cancel), int(QMessageBox::Discard)});
        QVERIFY(!window->close());
        QVERIFY(window->isVisible());
        QVERIFY(window->close());
        QCOMPARE(answers.log.value(0), "4 | Product editor | The definitions in " + QDir::toNativeSeparators(folder)
                                           + " have unsaved changes.");
        QCOMPARE(times(folder), first);
        window = OpenHostWindow(folder, QString(), &messages);
        window->show();
        QVERIFY(window->findChild<QDockWidget *>("mp_dock_problems")->isHidden());
        QVERIFY(window->findChild<QDockWidget *>("mp_dock_history")->isVisible());
    }

    // A save that drops what the files held says so, in one sentence.
    void savedLossesAreTold()
    {
        const QString folder = copyExample();
        const QString products = folder + "/products/products.json";
        QByteArray bytes = Read(products).replace(0, 1, R"({"extra": 1, "extra": 2,)");
        Write(products, bytes.insert(bytes.indexOf("\"cad_support\""), R"("colour": "red", )"));
        QStringList messages;
        std::unique_ptr<QMainWindow> window = OpenHostWindow(folder, QString(), &messages);
        QTRY_COMPARE(window->findChild<QDockWidget *>("mp_dock_problems")->windowTitle(), QString("Problems (3)"));
        window->findChild<QAction *>("mp_run_save")->trigger();
        QCOMPARE(window->statusBar()->currentMessage(),
                 QString("Saved 3 files; 1 unknown key and 1 repeated key were dropped, see Problems"));
    }

    // The host marks a failed save unsaved; stepping back and forth to that step keeps the mark.
    void failedSaveStaysUnsavedThroughUndoAndRedo()
    {
        const QString folder = copyExample();
        QStringList messages;
        std::unique_ptr<QMainWindow> window = OpenHostWindow(folder, QString(), &messages);
        QAbstractItemModel *features = window->findChild<QAbstractItemView *>("mp_lst_features")->model();
        features->setData(features->index(0, 1), "Changed");
        QTRY_VERIFY(window->isWindowModified());
        const QString products = folder + "/products/products.json";
        QFile::rename(products, products + ".away");
        QDir().mkpath(products + "/in-the-way");
        DialogAnswers answers;
        answers.Then({int(QMessageBox::Ok), int(QMessageBox::Ok)});
        window->findChild<QAction *>("mp_run_save")->trigger();
        QVERIFY(answers.log.value(0).contains("Could not write"));
        QVERIFY(window->isWindowModified());
        for (const char *step : {"mp_run_undo", "mp_run_redo"}) {
            window->findChild<QAction *>(step)->trigger();
            QVERIFY2(window->isWindowModified(), step);
        }
        QDir(products).removeRecursively();
        window->findChild<QAction *>("mp_run_save")->trigger();
        QVERIFY(!window->isWindowModified());
    }

    void refusedLoadIsTold()
    {
        const QString folder = copyExample();
        QDir().mkpath(m_dir.filePath("empty/products"));
        QStringList messages;
        std::unique_ptr<QMainWindow> window = OpenHostWindow(folder, QString(), &messages);
        DialogAnswers answers;
        answers.Then({m_dir.filePath("empty")});
        window->findChild<QAction *>("mp_run_load")->trigger();
        const QString empty = QDir::toNativeSeparators(m_dir.filePath("empty"));
        QCOMPARE(window->statusBar()->currentMessage(),
                 "Could not load " + empty + ": " + QDir::toNativeSeparators(m_dir.filePath("empty/products/products.json"))
                     + ": cannot be read: no such file");
        QCOMPARE(window->windowTitle(), "Product editor - " + QDir::toNativeSeparators(folder) + "[*]");

        // A save that was stopped and left a journal that cannot be trusted: nothing is read or removed.
        const QString damaged = m_dir.filePath("damaged");
        QDir().mkpath(damaged + "/products");
        QFile::copy(folder + "/products/products.json", damaged + "/products/products.json");
        QFile journal(damaged + "/.product-editor-save");
        QVERIFY(journal.open(QIODevice::WriteOnly) && journal.write("{") == 1);
        journal.close();
        answers.Then({damaged});
        window->findChild<QAction *>("mp_run_load")->trigger();
        QVERIFY2(window->statusBar()->currentMessage().startsWith(
                     "Could not load " + QDir::toNativeSeparators(damaged) + ": " + journal.fileName()
                     + ": cannot finish or undo the interrupted save it records"),
                 qPrintable(window->statusBar()->currentMessage()));
        QVERIFY(journal.exists());
        QCOMPARE(window->windowTitle(), "Product editor - " + QDir::toNativeSeparators(folder) + "[*]");
    }
};

QTEST_MAIN(HostFeedbackTest)
#include "HostFeedbackTest.moc"
