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

    // The summary, and the right side of the first difference with what "Apply changes" does with it.
    QString observe()
    {
        QString seen = summary();
        if (editor->diffBar()->count() > 0) {
            editor->diffBar()->setCurrentIndex(0);
            tree()->setCurrentIndex(QModelIndex());
            editor->run("mp_btn_next_difference");
            const QStringList lines = details().split('\n');
            seen += " | " + lines.value(lines.indexOf("Right:") + 1) + " | " + lines.last();
        }
        return seen;
    }
    void act(const QString &action)
    {
        if (action == "title" || action == "title2")
            editor->model("mp_lst_features")->setData(cell("mp_lst_features", 0, 1), action == "title" ? "Opened" : "Opened2");
        else if (action == "join") { // mesh_cut joins "basic"
            view("mp_lst_features")->setCurrentIndex(cell("mp_lst_features", 2, 0));
            emit view("mp_lst_feature_product")->clicked(cell("mp_lst_feature_product", 0, 0));
        } else if (action == "right")
            editor->run("mp_btn_take_right");
        else if (action == "compare") {
            answers->Then({editor->folder.root(), editor->folder.root()});
            editor->run("mp_run_compare");
        } else if (action == "reload") {
            answers->Then({int(QMessageBox::Yes)});
            editor->run("mp_run_reload");
        } else
            editor->run(action.startsWith("mp_") ? action
                                                 : QStringList{"undo", "redo", "save"}.contains(action) ? "mp_run_" + action
                                                                                                       : "mp_btn_" + action);
        QTest::qWait(0);
    }

private slots:
    void init() { start(); }
    void cleanup() { QCOMPARE(answers->Pending(), 0); }

    // The page says what it compared and whether the records changed since, and each
    // undo step shows the page as it was at that step.
    void pageFollowsTheSteps_data()
    {
        QTest::addColumn<QStringList>("actions");
        QTest::addColumn<QStringList>("seen");
        const QString none = "No differences";
        const QString notCompared = "Not compared yet: press Update to compare the definitions with the files as loaded.";
        const QString outOfDate = "Out of date: %1 since this comparison. Press Update.";
        const QString title = "%1 | \"%2\" | Apply changes: keeps the left value";
        const QString opened = title.arg("1 difference in 1 document", "Opened");
        const QString openedOutdated = title.arg(outOfDate.arg("1 edit"), "Opened");
        const QString joined = "%1 | \"mesh_cut\" | Apply changes: %2";
        const QString joinedNow = joined.arg("1 difference in 1 document");
        QTest::newRow("an edit outdates the comparison, its undo does not, a reload is one more edit")
            << QStringList{"title", "update", "title2", "undo", "redo", "reload"}
            << QStringList{notCompared, opened, openedOutdated, opened, openedOutdated,
                           title.arg(outOfDate.arg("2 edits"), "Opened")};
        QTest::newRow("every edit since counts, a save does not")
            << QStringList{"update", "title", "title2", "save", "undo"}
            << QStringList{none, outOfDate.arg("1 edit"), outOfDate.arg("2 edits"), outOfDate.arg("2 edits"),
                           outOfDate.arg("1 edit")};
        QTest::newRow("a save leaves a current comparison current")
            << QStringList{"title", "update", "save", "title2", "title"}
            << QStringList{notCompared, opened, opened, openedOutdated, opened};
        QTest::newRow("undoing Apply brings back the ticked differences")
            << QStringList{"join", "update", "right", "apply_patch", "update", "undo", "redo", "take_left"}
            << QStringList{notCompared, joinedNow.arg("leaves the element out"), joinedNow.arg("adds the element"),
                           joined.arg("Applied: 1 of 1 difference took the right side, and the loaded documents "
                                      "were re-read from the result. Press Update to compare again.",
                                      "adds the element"),
                           none,
                           joinedNow.arg("adds the element"), none,
                           none}; // with no document, taking a side does nothing
        QTest::newRow("Compare... after an undo compares the documents of that step")
            << QStringList{"title", "update", "title2", "update", "undo", "compare"}
            << QStringList{notCompared, opened, openedOutdated, title.arg("1 difference in 1 document", "Opened2"),
                           opened, opened};
    }
    void pageFollowsTheSteps()
    {
        QFETCH(QStringList, actions);
        QFETCH(QStringList, seen);
        for (int i = 0; i < actions.size(); ++i) {
            act(actions[i]);
            QCOMPARE(observe(), seen[i]);
        }
    }

    // Before the first comparison the summary alone says what to do.
    void noticeSaysWhatWasCompared()
    {
        auto *notice = editor->find<QLabel>("mp_lbl_diff_notice");
        QVERIFY(notice->isHidden());
        act("update");
        const QString compared = "Compared the files as loaded with the documents regenerated from the definitions: "
                                 "Products, expert, main; only documents with differences have a tab.";
        QCOMPARE(notice->text(), compared);
        QVERIFY(!notice->isHidden());
        act("title");
        QCOMPARE(notice->text(), compared);
        QCOMPARE(summary(), "Out of date: 1 edit since this comparison. Press Update.");
    }

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
        editor->run("mp_btn_next_difference");
        QCOMPARE(details(), "Path: features / feature / file_open / title\n"
                            "In product terms: feature file_open: title \"Open\" -> \"Opened\"\n"
                            "Left:\n\"Open\"\nRight:\n\"Opened\"\nApply changes: keeps the left value");
        // The feature above it changed inside: both whole features.
        tree()->setCurrentIndex(tree()->currentIndex().parent());
        QVERIFY2(details().contains("Left:\n{\n    \"id\": \"file_open\",\n    \"statustip\": \"Opens a file\",\n"
                                    "    \"title\": \"Open\",\n    \"tooltip\": \"Open a file\"\n}\nRight:\n{"),
                 qPrintable(details()));
        QVERIFY(details().contains("    \"title\": \"Opened\",\n"));
    }

    // The pending edits in product terms under the diff tree: the records as loaded
    // against the records as edited, as of the last Update.
    void summaryInProductTerms_data()
    {
        QTest::addColumn<QStringList>("actions");
        QTest::addColumn<QString>("summary");

        QTest::newRow("before Update") << QStringList{"title"} << "";
        QTest::newRow("nothing edited") << QStringList{"update"} << "No pending edits: the definitions are as loaded.";
        QTest::newRow("a title and a product")
            << QStringList{"title", "join", "update"}
            << "2 changes to 2 features\n\nFeatures:\n  feature file_open: title \"Open\" -> \"Opened\"\n"
               "  feature mesh_cut added to product basic\n";
        QTest::newRow("edited, then undone") << QStringList{"title", "update", "undo", "update"}
                                             << "No pending edits: the definitions are as loaded.";
    }

    void summaryInProductTerms()
    {
        QFETCH(QStringList, actions);
        QFETCH(QString, summary);
        auto *view = editor->find<QPlainTextEdit>("mp_tree_change_summary");
        QVERIFY(view && view->isReadOnly());
        for (const QString &action : actions)
            act(action);
        QCOMPARE(view->toPlainText(), summary);
    }
};

QTEST_MAIN(EditorReviewTest)
#include "EditorReviewTest.moc"
