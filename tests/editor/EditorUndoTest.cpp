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

    QHash<QString, QByteArray> save()
    {
        editor->folder.written.clear();
        editor->run("mp_run_save");
        return editor->folder.written;
    }

    QUndoView *history() const { return editor->find<QUndoView>("mp_lst_history"); }
    QUndoStack *stack() const { return history()->stack(); }
    void click(const char *name, int row, int column)
    {
        const int rows = editor->model(name)->rowCount();
        if (rows > 0)
            emit view(name)->clicked(cell(name, row % rows, column));
    }

    // The row of `view` with `key` in one of its cells.
    QModelIndex find(const QString &view, const QString &key, int column)
    {
        const QAbstractItemModel *model = editor->model(qPrintable(view));
        for (int row = 0; row < model->rowCount(); ++row)
            for (int cell = 0; cell < model->columnCount(); ++cell)
                if (model->index(row, cell).data().toString() == key)
                    return model->index(row, column < 0 ? cell : column);
        return {};
    }
    // The page that holds `widget` comes to the front, so that it can take the focus.
    void front(QWidget *widget)
    {
        auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
        for (int page = 0; page < tabs->count(); ++page)
            if (tabs->widget(page)->isAncestorOf(widget))
                tabs->setCurrentIndex(page);
    }
    // One step of a user, "verb object argument...": "select VIEW KEY" makes the row holding
    // KEY current, "type FIELD TEXT" replaces a field's text, "tick BOX" clicks a check box,
    // "click VIEW KEY COLUMN" clicks a cell, "set VIEW KEY COLUMN TEXT" edits a table cell,
    // "run NAME [ANSWER]" clicks a button or triggers an action, answering its dialog.
    void act(const QString &step)
    {
        const QStringList words = step.split(' ');
        const QString &verb = words[0];
        if (verb == "select") {
            view(qPrintable(words[1]))->setCurrentIndex(find(words[1], words[2], -1));
        } else if (verb == "type" || verb == "tick") {
            QWidget *field = editor->find(words[1]);
            front(field);
            field->setFocus();
            QVERIFY(field->hasFocus());
            if (verb == "tick") {
                QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(4, field->height() / 2));
            } else {
                static_cast<QLineEdit *>(field)->selectAll();
                QTest::keyClicks(field, words[2]);
            }
            field->clearFocus(); // the field commits as it loses the focus
        } else if (verb == "click") {
            QAbstractItemView *table = view(qPrintable(words[1]));
            front(table);
            const QModelIndex index = find(words[1], words[2], words[3].toInt());
            QVERIFY2(index.isValid(), qPrintable(step));
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(index).center());
        } else if (verb == "set") {
            editor->model(qPrintable(words[1]))->setData(find(words[1], words[2], words[3].toInt()), words[4]);
        } else if (verb == "run") {
            if (words.size() > 2)
                answers->Then({words[2] == "Yes" ? QVariant(int(QMessageBox::Yes)) : QVariant(words[2])});
            editor->run(words[1]);
        }
        QTest::qWait(0);
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

    // Every edit the window offers names itself, and the record, on Undo and Redo.
    void stepNames_data()
    {
        QTest::addColumn<QString>("steps"); // separated by "; "
        QTest::addColumn<QString>("name");

        const QString open = "select mp_lst_features file_open; ";
        QTest::newRow("feature title") << open + "type mp_edt_title Opened" << "Set title of feature file_open";
        QTest::newRow("feature tool tip") << open + "type mp_edt_tooltip Opens" << "Set tool tip of feature file_open";
        QTest::newRow("feature status tip") << open + "type mp_edt_statustip Opens" << "Set status tip of feature file_open";
        QTest::newRow("feature id") << open + "type mp_edt_id file_load" << "Rename feature file_open to file_load";
        QTest::newRow("feature hidden") << open + "tick mp_chk_visible" << "Hide feature file_open";
        QTest::newRow("feature emergency") << open + "tick mp_chk_emergency" << "Mark feature file_open as emergency";
        QTest::newRow("product marked") << "select mp_lst_features mesh_cut; click mp_lst_feature_product basic 0"
                                        << "Mark feature mesh_cut for product basic";
        QTest::newRow("product unmarked") << open + "click mp_lst_feature_product basic 0"
                                          << "Unmark feature file_open for product basic";
        QTest::newRow("feature's layout") << open + "click mp_lst_feature_layout expert 0"
                                          << "Mark feature file_open for layout expert";
        QTest::newRow("product's layout") << open + "click mp_lst_feature_layout expert 1"
                                          << "Mark layout expert for product basic";
        QTest::newRow("feature's license") << open + "click mp_lst_specific_license lic_pro 0"
                                           << "Grant license lic_pro for file_open in product basic";
        QTest::newRow("feature's license taken back") << "select mp_lst_features file_save; "
                                                         "click mp_lst_specific_license lic_addon 0"
                                                      << "Revoke license lic_addon for file_save in product basic";
        QTest::newRow("feature added") << "run mp_btn_add_new_feature" << "Add feature New_Feature";
        QTest::newRow("feature duplicated") << open + "run mp_btn_duplicate file_open2"
                                            << "Duplicate feature file_open as file_open2";
        QTest::newRow("feature removed") << open + "run mp_btn_remove_current" << "Remove feature file_open";

        QTest::newRow("profile suffix") << "set mp_lst_products pro 2 _pro" << "Set profile suffix of product pro";
        QTest::newRow("base license") << "set mp_lst_products pro 3 lic_basic" << "Set base license of product pro";
        QTest::newRow("product duplicated") << "select mp_lst_products pro; run mp_btn_duplicate_product pro2"
                                            << "Duplicate product pro as pro2";
        QTest::newRow("product removed") << "select mp_lst_products pro; run mp_btn_remove_product Yes"
                                         << "Remove product pro";

        const QString step = "select mp_lst_extensions step; ";
        QTest::newRow("extension id") << step + "type mp_edt_ext_id stp" << "Rename extension step to stp";
        QTest::newRow("extension title") << step + "type mp_edt_ext_title Step" << "Set title of extension step";
        QTest::newRow("extension pattern") << step + "type mp_edt_ext_name *.stp"
                                           << "Set file name pattern of extension step";
        QTest::newRow("CAD format") << step + "tick mp_chk_ext_cad_support" << "Unmark extension step as a CAD format";
        QTest::newRow("several parts") << step + "tick mp_chk_ext_multiple_parts_support"
                                       << "Allow one part only in extension step";
        QTest::newRow("slices") << step + "tick mp_chk_ext_slice_support" << "Turn on slices support of extension step";
        QTest::newRow("loaded as a part") << step + "tick mp_chk_ext_load_as_part" << "Load extension step as a part";
        QTest::newRow("product opens") << step + "click mp_lst_ext_product basic 6" << "Allow product basic to open step";
        QTest::newRow("product imports no more") << step + "click mp_lst_ext_product pro 3"
                                                 << "Forbid product pro to import step";
        QTest::newRow("layout exports a scene") << step + "click mp_lst_ext_layout main 5"
                                                << "Allow layout main to export step as a scene";
        QTest::newRow("import license") << "select mp_lst_extensions stl; click mp_lst_ext_licenses lic_addon 2"
                                        << "Add import license lic_addon to extension stl";
        QTest::newRow("export license") << "select mp_lst_extensions stl; click mp_lst_ext_licenses lic_pro 3"
                                        << "Remove export license lic_pro from extension stl";
        QTest::newRow("extension added") << "run mp_btn_add_new_extension" << "Add extension extension";
        QTest::newRow("extension removed") << step + "run mp_btn_remove_extension" << "Remove extension step";

        QTest::newRow("apply") << "select mp_lst_features file_save; type mp_edt_title Saved; "
                                  "type mp_edt_tooltip Saves; type mp_edt_statustip Saving; run mp_btn_update; "
                                  "run mp_btn_take_right; run mp_btn_apply_patch"
                               << "Apply 3 changes";
    }
    void stepNames()
    {
        QFETCH(QString, steps);
        QFETCH(QString, name);
        editor->show(0);
        QAction *undo = editor->find<QAction>("mp_run_undo");
        QAction *redo = editor->find<QAction>("mp_run_redo");
        QCOMPARE(undo->text() + redo->text(), "UndoRedo");
        for (const QString &step : steps.split("; "))
            act(step);
        QCOMPARE(undo->text(), "Undo " + name);
        undo->trigger();
        QCOMPARE(redo->text(), "Redo " + name);
        if (!stack()->canUndo())
            QCOMPARE(undo->text(), "Undo");
        redo->trigger();
        QCOMPARE(undo->text(), "Undo " + name);
        QCOMPARE(redo->text(), "Redo");
    }

    // Each of these edits of one feature reads differently in the History; typing in a
    // field is one entry however many keys it took.
    void editsOfOneRecordReadDifferently()
    {
        editor->show(0);
        for (const QString &step : {"type mp_edt_title Opened", "type mp_edt_title Opened_again", "type mp_edt_tooltip Opens",
                                    "type mp_edt_statustip Opens", "tick mp_chk_visible", "tick mp_chk_emergency",
                                    "click mp_lst_feature_product basic 0", "click mp_lst_feature_product basic 0",
                                    "click mp_lst_feature_layout expert 0", "click mp_lst_specific_license lic_pro 0"})
            act(step);
        QStringList names;
        for (int index = 0; index < stack()->count(); ++index)
            names << stack()->text(index);
        QCOMPARE(names.size(), 10);
        QCOMPARE(names.filter("file_open").size(), names.size());
        names.removeAt(1); // the same field set twice reads alike
        QCOMPARE(QSet<QString>(names.cbegin(), names.cend()).size(), names.size());
    }

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

    // Every change on the Extensions page comes back byte for byte, and goes again on redo.
    void extensionStepsRestoreTheBytes_data()
    {
        QTest::addColumn<QString>("change");
        QTest::newRow("rename") << "rename";
        QTest::newRow("add") << "add";
        QTest::newRow("remove") << "remove";
        QTest::newRow("flag") << "flag";
        QTest::newRow("product access") << "access";
    }
    void extensionStepsRestoreTheBytes()
    {
        QFETCH(QString, change);
        editor->show(2);
        view("mp_lst_extensions")->setCurrentIndex(cell("mp_lst_extensions", 0, 0));
        const auto before = save();
        if (change == "rename") {
            auto *id = editor->find<QLineEdit>("mp_edt_ext_id");
            id->setFocus();
            id->selectAll();
            QTest::keyClicks(id, "stp");
            QTest::keyClick(id, Qt::Key_Return);
        } else if (change == "add") {
            editor->run("mp_btn_add_new_extension");
        } else if (change == "remove") {
            editor->run("mp_btn_remove_extension");
        } else if (change == "flag") {
            auto *flag = editor->find<QWidget>("mp_chk_ext_cad_support");
            QTest::mouseClick(flag, Qt::LeftButton, {}, QPoint(6, flag->height() / 2));
        } else {
            click("mp_lst_ext_product", 0, 2);
        }
        view("mp_lst_extensions")->setFocus(); // a field commits as it loses focus
        QTest::qWait(0);
        QCOMPARE(stack()->index(), 1);
        const auto after = save();
        QVERIFY(after != before);
        editor->run("mp_run_undo");
        QCOMPARE(save(), before);
        editor->run("mp_run_redo");
        QCOMPARE(save(), after);
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
