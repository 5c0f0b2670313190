#include "EditorFixture.h"
#include "host/EditorHost.h"
#include "FolderFiles.h"

#include <QDirIterator>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QUndoView>

// The desktop program's window over files on disk.
class HostFeedbackTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString copyExample(const QString &name = "defs")
    {
        WriteFolderFiles(m_dir.filePath(name), ReadFolderFiles(PE_SOURCE_DIR "/examples/definitions"));
        return m_dir.filePath(name);
    }
    template<typename T = QWidget>
    static T *find(const std::unique_ptr<QMainWindow> &window, const char *name)
    {
        return window->findChild<T *>(name);
    }
    // Makes the row of `view` whose `column` reads `id` current and returns it.
    static QModelIndex select(QAbstractItemView *view, int column, const QString &id)
    {
        const QAbstractItemModel *model = view->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            if (model->index(row, column).data().toString() == id) {
                view->setCurrentIndex(model->index(row, column));
                return model->index(row, column);
            }
        }
        return {};
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

    // The example after three edits, with the Edit menu open over the History. With
    // PE_PICTURES set, the picture goes there as history.png (the README's).
    void historyOfThreeEdits()
    {
        QStringList messages;
        std::unique_ptr<QMainWindow> window = OpenHostWindow(copyExample("definitions"), QString(), &messages);
        window->resize(1600, 960);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        find<QDockWidget>(window, "mp_dock_problems")->show();
        find<QDockWidget>(window, "mp_dock_history")->show();

        auto *extensions = find<QAbstractItemView>(window, "mp_lst_extensions");
        QVERIFY(select(extensions, 0, "vrml").isValid());
        find<QPushButton>(window, "mp_btn_remove_extension")->click();
        QTest::qWait(0);
        find<QTabWidget>(window, "mp_widget_tab")->setCurrentIndex(0);
        const QModelIndex print = select(find<QAbstractItemView>(window, "mp_lst_features"), 0, "file_print");
        const_cast<QAbstractItemModel *>(print.model())->setData(print.siblingAtColumn(1), "Print view...");
        QTest::qWait(0);
        auto *products = find<QAbstractItemView>(window, "mp_lst_feature_product");
        emit products->clicked(select(products, 1, "viewer").siblingAtColumn(0));
        QTest::qWait(0);

        auto *view = find<QUndoView>(window, "mp_lst_history");
        QStringList entries;
        for (int row = 0; row < view->model()->rowCount(); ++row)
            entries << view->model()->index(row, 0).data().toString();
        QCOMPARE(entries, QStringList({"Opened definitions", "Remove extension vrml", "Set title of feature file_print",
                                       "Mark feature file_print for product viewer"}));
        auto *undo = find<QAction>(window, "mp_run_undo");
        QCOMPARE(undo->text(), "Undo Mark feature file_print for product viewer");
        QCOMPARE(find<QAction>(window, "mp_run_redo")->text(), "Redo");

        // A menu is a window of its own; it is drawn into the picture where it opens.
        auto *menu = find<QMenu>(window, "menuEdit");
        QMenuBar *bar = window->menuBar();
        const QPoint at = bar->mapTo(window.get(), bar->actionGeometry(menu->menuAction()).bottomLeft());
        menu->popup(window->mapToGlobal(at));
        menu->setActiveAction(undo);
        QImage picture = window->grab().toImage();
        QPainter(&picture).drawPixmap(at, menu->grab());
        menu->hide();
        const QString pictures = qEnvironmentVariable("PE_PICTURES", m_dir.path());
        QVERIFY(picture.save(QDir(pictures).filePath("history.png")));
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
        // The files now hold neither; the panel lists both as dropped until the next load.
        const QAbstractItemModel *problems = window->findChild<QAbstractItemView *>("mp_tbl_problems")->model();
        QTRY_COMPARE(problems->rowCount(), 2);
        for (int row = 0; row < 2; ++row)
            QVERIFY(problems->index(row, 2).data().toString().endsWith(":1:2 (dropped by the last save)")
                    || problems->index(row, 2).data().toString().endsWith(":5:17 (dropped by the last save)"));
        window->findChild<QAction *>("mp_run_save")->trigger();
        QVERIFY(window->statusBar()->currentMessage().startsWith("Saved 3 files to "));
        DialogAnswers answers;
        answers.Then({int(QMessageBox::Yes)});
        window->findChild<QAction *>("mp_run_reload")->trigger();
        QTRY_COMPARE(problems->rowCount(), 0);
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
