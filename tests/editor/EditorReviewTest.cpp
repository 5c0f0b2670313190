#include "EditorFixture.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTreeView>

// The review aids of the Changes page: counts, details, stepping and taking a side.
class EditorReviewTest : public QObject, EditorTestState
{
    Q_OBJECT

    QString summary() const { return editor->find<QLabel>("mp_lbl_diff_summary")->text(); }
    QString details() const { return editor->find<QPlainTextEdit>("mp_edt_diff_details")->toPlainText(); }
    QTreeView *tree() const { return editor->find<QTreeView>("mp_tree_diff"); }
    QString currentKey() const
    {
        return editor->diffBar()->tabText(editor->diffBar()->currentIndex()) + ":" + tree()->currentIndex().data().toString();
    }
    // The folder with entries the regeneration rewrites: a needless "visual", unknown keys.
    void reopenNonCanonical()
    {
        editor.reset();
        editor = std::make_unique<EditorUnderTest>();
        MemoryFolder &folder = editor->folder;
        folder.files[folder.path("defs/products/products.json")] =
            CanonicalProducts().replace(R"({"id": "file_save", "title": "Save"})",
                                        R"({"id": "file_save", "title": "Save", "visual": true, "colour": "red"})");
        folder.files[folder.path("defs/layouts/workspace.json")] =
            CanonicalLayouts().replace(R"("main": {)", R"("main": {"note": "x", )");
        answers->Then({int(QMessageBox::Yes)});
        editor->run("mp_run_reload");
    }

private slots:
    void init() { start(); }
    void cleanup() { QCOMPARE(answers->Pending(), 0); }

    void countsAndSteps()
    {
        editor->run("mp_btn_update");
        QCOMPARE(summary(), "No differences");
        reopenNonCanonical();
        editor->run("mp_btn_update");
        QCOMPARE(summary(), "3 differences in 2 documents");
        QCOMPARE(editor->diffBar()->tabToolTip(0), "2 differences");
        QCOMPARE(editor->diffBar()->tabToolTip(1), "1 difference");

        QStringList seen;
        for (int i = 0; i < 4; ++i) {
            editor->run("mp_btn_next_difference");
            seen << currentKey();
        }
        QCOMPARE(seen, QStringList({"Products:colour", "Products:visual", "main:note", "Products:colour"}));
        editor->run("mp_btn_previous_difference");
        QCOMPARE(currentKey(), "main:note");
        QVERIFY(details().contains("Path: note\nLeft:\n\"x\"\nRight:\n(absent)"));
    }

    void detailsOfANestedTitle()
    {
        editor->model("mp_lst_features")->setData(cell("mp_lst_features", 0, 1), "Opened");
        editor->run("mp_btn_update");
        QCOMPARE(summary(), "1 difference in 1 document");
        editor->run("mp_btn_next_difference");
        QCOMPARE(details(), "Path: features / feature / file_open / title\nLeft:\n\"Open\"\nRight:\n\"Opened\"\n"
                            "Apply changes: keeps the left value");
    }

    void takeAllRightThenApply()
    {
        view("mp_lst_features")->setCurrentIndex(cell("mp_lst_features", 2, 0)); // mesh_cut
        emit view("mp_lst_feature_product")->clicked(cell("mp_lst_feature_product", 0, 0)); // joins "basic"
        editor->run("mp_btn_update");
        editor->run("mp_btn_next_difference");
        QVERIFY(details().endsWith("Apply changes: leaves the element out"));
        editor->run("mp_btn_take_right");
        QVERIFY(details().endsWith("Apply changes: adds the element"));
        editor->run("mp_btn_apply_patch");
        editor->run("mp_btn_update");
        QCOMPARE(summary(), "No differences");
        editor->run("mp_run_save");
        QVERIFY(Strings(editor->saved("product", "basic")["features"]).contains("mesh_cut"));
        editor->run("mp_btn_take_left"); // no document: nothing to do
    }
};

QTEST_MAIN(EditorReviewTest)
#include "EditorReviewTest.moc"
