#include "EditorFixture.h"

#include <QSet>
#include <QUndoStack>
#include <QUndoView>

// Every step on the Edit menu and in the History says what it did and to which record.
class EditorStepNamesTest : public QObject, EditorTestState
{
    Q_OBJECT

    QUndoStack *stack() const { return editor->find<QUndoView>("mp_lst_history")->stack(); }

private slots:
    void init() { start(); }
    void cleanup() { QCOMPARE(answers->Pending(), 0); }

    // Every edit the window offers names itself, and the record, on Undo and Redo; one
    // edit undone gives back the bytes saved before it.
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
        const auto before = save();
        for (const QString &step : steps.split("; "))
            act(step);
        QCOMPARE(undo->text(), "Undo " + name);
        const auto after = save();
        undo->trigger();
        QCOMPARE(redo->text(), "Redo " + name);
        // An edit undone gives back the very bytes saved before it.
        if (!stack()->canUndo()) {
            QCOMPARE(undo->text(), "Undo");
            QCOMPARE(save(), before);
        }
        redo->trigger();
        QCOMPARE(undo->text(), "Undo " + name);
        QCOMPARE(redo->text(), "Redo");
        QCOMPARE(save(), after);
    }

    // Each of these edits of one feature reads differently in the History; typing in a
    // field is one entry however many keys it took.
    void editsOfOneRecordReadDifferently()
    {
        editor->show(0);
        for (const char *step : {"type mp_edt_title Opened", "type mp_edt_title Opened_again", "type mp_edt_tooltip Opens",
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
};

QTEST_MAIN(EditorStepNamesTest)
#include "EditorStepNamesTest.moc"
