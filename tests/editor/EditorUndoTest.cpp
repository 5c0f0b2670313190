#include "EditorFixture.h"

#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QUndoStack>
#include <QUndoView>

// Every change is one step on the Edit menu's stack; undoing it gives back the very
// bytes a save wrote before it.
class EditorUndoTest : public QObject, EditorTestState
{
    Q_OBJECT

    QUndoView *history() const { return editor->find<QUndoView>("mp_lst_history"); }
    QUndoStack *stack() const { return history()->stack(); }
    void click(const char *name, int row, int column)
    {
        const int rows = editor->model(name)->rowCount();
        if (rows > 0)
            emit view(name)->clicked(cell(name, row % rows, column));
    }

    // One edit the way the window makes it, picked by `random`; says what it did.
    QString randomEdit(QRandomGenerator &random)
    {
        const int features = editor->model("mp_lst_features")->rowCount();
        const int row = random.bounded(qMax(features, 1));
        view("mp_lst_features")->setCurrentIndex(cell("mp_lst_features", row, 0));
        const int at = random.bounded(8);
        const int kind = random.bounded(14);
        const QString what = QString("edit %1/%2 on feature row %3").arg(kind).arg(at).arg(row);
        QAbstractItemModel *extensions = editor->model("mp_lst_extensions");
        const int extension = random.bounded(qMax(extensions->rowCount(), 1));
        view("mp_lst_extensions")->setCurrentIndex(extensions->index(extension, 0));
        switch (kind) {
        case 0:
            editor->model("mp_lst_features")->setData(cell("mp_lst_features", row, 1 + at % 3), QString("t%1").arg(at));
            break;
        case 1:
            editor->model("mp_lst_features")->setData(cell("mp_lst_features", row, 4 + at % 2),
                                                      !cell("mp_lst_features", row, 4 + at % 2).data().toBool());
            break;
        case 2:
            click("mp_lst_feature_product", at, 0);
            break;
        case 3:
            view("mp_lst_feature_product")->setCurrentIndex(cell("mp_lst_feature_product", at % 2, 1));
            click("mp_lst_feature_layout", at / 2, at % 2);
            break;
        case 4:
            click("mp_lst_specific_license", at, 0);
            break;
        case 5:
            editor->run(features > 1 && at % 2 ? "mp_btn_remove_current" : "mp_btn_add_new_feature");
            break;
        case 6:
            click("mp_lst_ext_product", at, 1 + at % 6);
            break;
        case 7:
            click("mp_lst_ext_layout", at, 1 + at % 6);
            break;
        case 8:
            click("mp_lst_ext_licenses", at, 2 + at % 2);
            break;
        case 9: // an id, a text or a flag of the extension
            extensions->setData(extensions->index(extension, at % 7),
                                at % 7 < 3 ? QVariant(QString("x%1").arg(at)) : QVariant(at % 2 == 0));
            break;
        case 10:
            editor->run(extensions->rowCount() > 1 && at % 2 ? "mp_btn_remove_extension" : "mp_btn_add_new_extension");
            break;
        case 11: // a product's id, suffix or base license
            editor->model("mp_lst_products")->setData(cell("mp_lst_products", at % 2, 1 + at % 3), QString("p%1").arg(at));
            break;
        case 12:
            answers->Then({QString("copy%1").arg(random.bounded(1000))});
            editor->run(at % 2 ? "mp_btn_duplicate" : "mp_btn_duplicate_product");
            break;
        default:
            editor->model("mp_lst_features")->setData(cell("mp_lst_features", row, 1), "to apply");
            QTest::qWait(0);
            editor->run("mp_btn_update");
            editor->run(at % 2 ? "mp_btn_take_right" : "mp_btn_take_left");
            editor->run("mp_btn_apply_patch");
        }
        QTest::qWait(0);
        return what;
    }

private slots:
    void init() { start(); }
    void cleanup() { QCOMPARE(answers->Pending(), 0); }

    void undoRedo_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("current"); // the feature current after the undo
        QTest::addColumn<QString>("name");    // of the step, on the Edit menu
        QTest::newRow("title edit") << "edit" << "mesh_cut" << "Set title of feature mesh_cut";
        QTest::newRow("product mark") << "toggle" << "mesh_cut" << "Mark feature mesh_cut for product basic";
        // The current feature stays where the change left it.
        QTest::newRow("feature removal") << "remove" << "file_save" << "Remove feature mesh_cut";
        QTest::newRow("apply changes") << "apply" << "file_open" << "Apply 1 change";
    }
    void undoRedo()
    {
        QFETCH(QString, change);
        QFETCH(QString, current);
        QFETCH(QString, name);
        view("mp_lst_features")->setCurrentIndex(cell("mp_lst_features", 2, 0));
        // Apply has something to take only after an edit; the edit is saved first.
        if (change == "apply")
            editor->model("mp_lst_features")->setData(cell("mp_lst_features", 0, 1), "Changed");
        QTest::qWait(0);
        const auto before = save();
        QVERIFY(!editor->window->isWindowModified());
        QAction *undo = editor->find<QAction>("mp_run_undo");
        QCOMPARE(undo->isEnabled(), change == "apply");

        if (change == "edit")
            editor->model("mp_lst_features")->setData(cell("mp_lst_features", 2, 1), "Changed");
        else if (change == "toggle")
            emit view("mp_lst_feature_product")->clicked(cell("mp_lst_feature_product", 0, 0));
        else if (change == "remove")
            editor->run("mp_btn_remove_current");
        else {
            editor->run("mp_btn_update");
            auto *diff = editor->diffBar()->tabData(0).value<QObject *>();
            QVERIFY(diff);
            editor->run("mp_btn_apply_patch");
        }
        QTRY_VERIFY(editor->window->isWindowModified());
        QVERIFY(undo->isEnabled());
        QCOMPARE(undo->text(), "Undo " + name);
        const auto after = save();
        QVERIFY(!editor->window->isWindowModified());
        if (change != "apply")
            QVERIFY(after != before);

        undo->trigger();
        QVERIFY(editor->window->isWindowModified());
        QCOMPARE(save(), before);
        QCOMPARE(cell("mp_lst_features", view("mp_lst_features")->currentIndex().row(), 0).data().toString(), current);
        QCOMPARE(editor->text("mp_edt_id"), current);
        QCOMPARE(editor->find<QAction>("mp_run_redo")->text(), "Redo " + name);
        editor->find<QAction>("mp_run_redo")->trigger();
        QCOMPARE(save(), after);
    }

    // Seeded edits of every kind through the window, each perhaps undone or undone and
    // redone; undoing them all saves the original bytes, redoing them all the last ones.
    void undoAllRedoAll_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 20; ++seed)
            QTest::newRow(qPrintable(QString("seed %1").arg(seed))) << seed;
    }
    void undoAllRedoAll()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const auto original = save();
        QStringList done;
        for (int i = 0; i < 15; ++i) {
            done << randomEdit(random);
            const int then = random.bounded(6);
            if (then < 3 && stack()->canUndo()) {
                editor->run("mp_run_undo");
                done << "undo";
                if (then == 0) {
                    editor->run("mp_run_redo");
                    done << "redo";
                }
            }
        }
        const QString sequence = QString("seed %1: %2").arg(seed).arg(done.join(", "));
        const auto edited = save();
        QSignalSpy indexes(stack(), &QUndoStack::indexChanged);
        const int steps = stack()->index();
        while (stack()->canUndo())
            editor->run("mp_run_undo");
        QCOMPARE(indexes.size(), steps);
        QVERIFY2(save() == original, qPrintable("undoing all differs from the first save after " + sequence));
        while (stack()->index() < steps)
            editor->run("mp_run_redo");
        QVERIFY2(save() == edited, qPrintable("redoing all differs from the last save after " + sequence));
        QCOMPARE(stack()->index(), steps);
        QCOMPARE(answers->Pending(), 0);
    }

    // View > History lists the steps; a click moves there, and the saved step is marked.
    void historyMovesToTheClickedStep()
    {
        editor->show(0);
        auto *dock = editor->find<QDockWidget>("mp_dock_history");
        QCOMPARE(dock->windowTitle(), "History");
        QVERIFY(dock->isHidden());
        QAction *toggle = editor->find<QAction>("mp_run_history");
        QVERIFY(editor->find<QMenu>("menuView")->actions().contains(toggle));
        toggle->trigger();
        QVERIFY(history()->isVisible());
        editor->model("mp_lst_features")->setData(cell("mp_lst_features", 0, 1), "Saved");
        QTest::qWait(0);
        save();
        // A typed field commits as it loses focus, on the click itself.
        auto *title = editor->find<QLineEdit>("mp_edt_title");
        title->setFocus();
        title->selectAll();
        QTest::keyClicks(title, "Typed");
        QVERIFY(title->hasFocus());
        const auto entry = [this](int row) { return history()->model()->index(row, 0); };
        const auto clickEntry = [&](int row) {
            QTest::mouseClick(history()->viewport(), Qt::LeftButton, {}, history()->visualRect(entry(row)).center());
        };
        QCOMPARE(entry(0).data().toString(), "Opened defs");
        clickEntry(0);
        QCOMPARE(stack()->count(), 2);
        QCOMPARE(stack()->index(), 0);
        QCOMPARE(editor->text("mp_edt_title"), "Open");
        QVERIFY(editor->window->isWindowModified());
        clickEntry(2);
        QCOMPARE(entry(2).data().toString(), "Set title of feature file_open");
        QCOMPARE(editor->text("mp_edt_title"), "Typed");
        QVERIFY(editor->window->isWindowModified());
        // The saved entry carries the clean icon, and going back to it leaves nothing unsaved.
        QCOMPARE(entry(1).data(Qt::DecorationRole).isNull(), false);
        QVERIFY(entry(2).data(Qt::DecorationRole).value<QIcon>().isNull());
        clickEntry(1);
        QCOMPARE(editor->text("mp_edt_title"), "Saved");
        QVERIFY(!editor->window->isWindowModified());
    }

    // The product picked on the Features page decides the base license, layouts and
    // licensing shown there; a step back keeps it.
    void undoKeepsTheFeaturesPageProduct()
    {
        view("mp_lst_features")->setCurrentIndex(cell("mp_lst_features", 2, 0)); // mesh_cut
        view("mp_lst_feature_product")->setCurrentIndex(cell("mp_lst_feature_product", 1, 1)); // pro
        editor->model("mp_lst_products")->setData(cell("mp_lst_products", 1, 3), "lic_other");
        QTest::qWait(0);
        QCOMPARE(editor->text("mp_edt_base_license"), "lic_other");
        editor->run("mp_run_undo");
        QCOMPARE(editor->text("mp_edt_base_license"), "lic_pro");
        QCOMPARE(cell("mp_lst_feature_product", view("mp_lst_feature_product")->currentIndex().row(), 1).data().toString(), "pro");
        QCOMPARE(editor->model("mp_lst_feature_layout")->index(0, 1).data(Qt::UserRole), true); // "expert" of pro
    }

    // Unticking by undo keeps the row the tick was made on current.
    void undoKeepsTheTickedRow()
    {
        view("mp_lst_features")->setCurrentIndex(cell("mp_lst_features", 2, 0));
        view("mp_lst_feature_product")->setCurrentIndex(cell("mp_lst_feature_product", 1, 0));
        const QVariant ticked = cell("mp_lst_feature_product", 1, 0).data(Qt::UserRole);
        click("mp_lst_feature_product", 1, 0);
        QTest::qWait(0);
        QVERIFY(cell("mp_lst_feature_product", 1, 0).data(Qt::UserRole) != ticked);
        editor->run("mp_run_undo");
        QCOMPARE(cell("mp_lst_feature_product", 1, 0).data(Qt::UserRole), ticked);
        QCOMPARE(view("mp_lst_feature_product")->currentIndex().row(), 1);
        QCOMPARE(editor->text("mp_edt_id"), "mesh_cut");
    }

    // Edit > Undo while a field still holds typed text undoes the typing, not the step before it.
    void undoTakesTheTypingFirst()
    {
        editor->show(0);
        editor->model("mp_lst_features")->setData(cell("mp_lst_features", 0, 2), "Earlier");
        QTest::qWait(0);
        auto *title = editor->find<QLineEdit>("mp_edt_title");
        title->setFocus();
        title->selectAll();
        QTest::keyClicks(title, "Typed");
        editor->run("mp_run_undo");
        QCOMPARE(editor->state({"mp_edt_title", "mp_edt_tooltip"}), "Open|Earlier");
        editor->run("mp_run_redo");
        QCOMPARE(editor->state({"mp_edt_title", "mp_edt_tooltip"}), "Typed|Earlier");
    }

    // A folder that is loaded again has nothing to undo and nothing unsaved.
    void reloadClearsTheSteps()
    {
        editor->model("mp_lst_features")->setData(cell("mp_lst_features", 0, 1), "Changed");
        QTRY_VERIFY(editor->window->isWindowModified());
        answers->Then({int(QMessageBox::Yes)});
        editor->run("mp_run_reload");
        QVERIFY(!editor->window->isWindowModified());
        QVERIFY(!editor->find<QAction>("mp_run_undo")->isEnabled());
        QCOMPARE(editor->window->windowFilePath(), editor->folder.path("defs"));
    }
};

QTEST_MAIN(EditorUndoTest)
#include "EditorUndoTest.moc"
