#include "EditorFixture.h"

#include <QAction>

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

private slots:
    void init() { start(); }
    void cleanup() { QCOMPARE(answers->Pending(), 0); }

    void undoRedo_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("current"); // the feature current after the undo
        QTest::newRow("title edit") << "edit" << "mesh_cut";
        QTest::newRow("product mark") << "toggle" << "mesh_cut";
        // The current feature stays where the change left it.
        QTest::newRow("feature removal") << "remove" << "file_save";
        QTest::newRow("apply changes") << "apply" << "file_open";
    }
    void undoRedo()
    {
        QFETCH(QString, change);
        QFETCH(QString, current);
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
        const auto after = save();
        QVERIFY(!editor->window->isWindowModified());
        if (change != "apply")
            QVERIFY(after != before);

        undo->trigger();
        QVERIFY(editor->window->isWindowModified());
        QCOMPARE(save(), before);
        QCOMPARE(cell("mp_lst_features", view("mp_lst_features")->currentIndex().row(), 0).data().toString(), current);
        QCOMPARE(editor->text("mp_edt_id"), current);
        editor->find<QAction>("mp_run_redo")->trigger();
        QCOMPARE(save(), after);
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
