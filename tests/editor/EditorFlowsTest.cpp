#include "EditorFixture.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QListView>
#include <QPointer>
#include <QTableView>
#include <QTreeView>

namespace {
const QStringList FeatureFields = {"mp_edt_id", "mp_edt_title", "mp_edt_tooltip", "mp_edt_statustip",
                                   "mp_edt_base_license", "mp_chk_visible", "mp_chk_emergency"};
const QStringList ExtensionFields = {"mp_edt_ext_id", "mp_edt_ext_title", "mp_edt_ext_name",
                                     "mp_chk_ext_cad_support", "mp_chk_ext_multiple_parts_support",
                                     "mp_chk_ext_slice_support", "mp_chk_ext_load_as_part"};
const QString Warning = "2 | Warning | %1 '%2' is already exist";
const QStringList Busy = {"busy: Building Products diff ...", "busy: Building expert diff ...",
                          "busy: Building main diff ..."};
} // namespace

class EditorFlowsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { QCOMPARE(answers->Pending(), 0); }
    void featuresPageFollowsSelectionAndSearch();
    void editedFeatureReachesTheSavedFile();
    void duplicate_data();
    void duplicate();
    void toggleByColumn_data();
    void toggleByColumn();
    void extensionsPageAddsAndRemovesAll();
    void questions_data();
    void questions();
    void licenseRefusals();
    void updateThenApplyRestoresLoadedValues_data();
    void updateThenApplyRestoresLoadedValues();
    void updateWithoutLayoutsKeepsButtonState();
    void compareRebuildsTabsAndKeepsIndexTwo();
    void compareProducts_data();
    void compareProducts();
    void query_data();
    void query();
    void copyFromQueryTable_data();
    void copyFromQueryTable();
    void resultTreeWidensOnExpand();
    void loadAndSaveAs();

private:
    QListView *features() const { return editor->find<QListView>("mp_lst_features"); }
    void selectFeature(int row) { features()->setCurrentIndex(features()->model()->index(row, 0)); }

    std::unique_ptr<DialogAnswers> answers;
    std::unique_ptr<EditorUnderTest> editor;
};

void EditorFlowsTest::init()
{
    answers.reset();
    editor = std::make_unique<EditorUnderTest>(qstrcmp(QTest::currentTestFunction(),
                                                       "updateWithoutLayoutsKeepsButtonState"));
    answers = std::make_unique<DialogAnswers>();
}

void EditorFlowsTest::featuresPageFollowsSelectionAndSearch()
{
    // The first feature and its first product row are current.
    QCOMPARE(editor->state(FeatureFields), "file_open|Open|Open a file|Opens a file|lic_basic|true|false");
    auto *products = editor->find<QTableView>("mp_lst_feature_product");
    selectFeature(2);
    QCOMPARE(editor->state(FeatureFields), "mesh_cut|Cut|||lic_basic|false|true");
    QCOMPARE(Column(products->model(), 0, Qt::UserRole), QStringList({"false", "true"}));
    products->setCurrentIndex(products->model()->index(1, 1));
    QCOMPARE(editor->text("mp_edt_base_license"), "lic_pro");
    // "expert" is a mode of pro.
    QCOMPARE(editor->find<QTableView>("mp_lst_feature_layout")->model()->index(0, 1).data(Qt::UserRole), true);

    auto *search = editor->find<QLineEdit>("mp_edt_search");
    search->setText(" FILE ");
    QCOMPARE(Column(features()->model()), QStringList({"file_open", "file_save"}));
    // Nothing current: the general fields are disabled and emptied, and Remove does nothing.
    search->setText("nothing matches");
    QVERIFY(!editor->find("mp_edt_id")->isEnabled());
    QVERIFY(editor->state(FeatureFields).startsWith("||||"));
    editor->press("mp_btn_remove_current");
    search->clear();
    QCOMPARE(features()->model()->rowCount(), 3);
    // Rows coming back as the search widens leave the current feature where it is.
    selectFeature(2);
    search->setText("cut");
    search->clear();
    QCOMPARE(editor->text("mp_edt_id"), "mesh_cut");

    editor->press("mp_btn_add_new_feature");
    QCOMPARE(editor->text("mp_edt_id"), "New_Feature");
    selectFeature(2);
    editor->press("mp_btn_remove_current");
    QCOMPARE(Column(features()->model()), QStringList({"New_Feature", "file_open", "mesh_cut"}));
}

void EditorFlowsTest::editedFeatureReachesTheSavedFile()
{
    editor->show(0);
    const auto type = [this](const char *field, const QString &text) {
        auto *edit = editor->find<QLineEdit>(field);
        edit->setFocus();
        QTRY_VERIFY(edit->hasFocus());
        edit->selectAll();
        QTest::keyClicks(edit, text);
        editor->find("mp_edt_search")->setFocus();
        QTRY_VERIFY(!edit->hasFocus());
    };
    const auto clickBox = [this](const char *name) {
        auto *box = editor->find<QCheckBox>(name);
        box->setFocus();
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
        return box->isChecked();
    };
    selectFeature(1);
    type("mp_edt_title", "Store");
    editor->click("mp_lst_feature_product", 1, 0); // out of "pro"
    // "Visible" is written at once, "Emergency" only when the focus leaves it.
    QAbstractItemModel *model = features()->model();
    QVERIFY(!clickBox("mp_chk_visible"));
    QCOMPARE(model->index(1, 4).data(), false);
    QVERIFY(clickBox("mp_chk_emergency"));
    QCOMPARE(model->index(1, 5).data(), false);
    editor->find("mp_edt_title")->setFocus();
    QTRY_COMPARE(model->index(1, 5).data(), true);
    // A renamed feature moves to its sorted row and stays current.
    selectFeature(2);
    type("mp_edt_id", "a_cut");
    QCOMPARE(Column(model), QStringList({"a_cut", "file_open", "file_save"}));
    QCOMPARE(features()->currentIndex().row(), 0);
    QCOMPARE(editor->text("mp_edt_title"), "Cut");

    editor->trigger("mp_run_save");
    QCOMPARE(editor->saved("feature", "file_save"), QJsonObject({{"id", "file_save"}, {"title", "Store"},
                                                                 {"emergency", true}, {"visual", false}}));
    QCOMPARE(Strings(editor->saved("product", "pro")["features"]), QStringList({"a_cut", "file_open"}));
    QVERIFY(editor->folder.written.contains(editor->folder.path("defs/layouts/workspace.json")));
}

void EditorFlowsTest::duplicate_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("refused");
    QTest::addColumn<QStringList>("ids"); // afterwards; the feature list still searches "file_s" after a refusal
    const QStringList all = {"a_copy", "file_open", "file_save", "mesh_cut"};
    QTest::newRow("feature, new name") << "feature" << "a_copy" << false << all;
    QTest::newRow("feature, own name") << "feature" << "file_save" << true << QStringList({"file_save"});
    QTest::newRow("feature, taken name") << "feature" << "mesh_cut" << true << QStringList({"file_save"});
    QTest::newRow("product, new name") << "product" << "campus" << false << QStringList({"basic", "pro", "campus"});
    QTest::newRow("product, own name") << "product" << "pro" << true << QStringList({"basic", "pro"});
    QTest::newRow("product, taken name") << "product" << "basic" << true << QStringList({"basic", "pro"});
}

void EditorFlowsTest::duplicate()
{
    QFETCH(QString, kind);
    QFETCH(QString, name);
    QFETCH(bool, refused);
    QFETCH(QStringList, ids);

    const bool feature = kind == "feature";
    const int column = feature ? 0 : 1;
    auto *view = feature ? features() : editor->find<QAbstractItemView>("mp_lst_products");
    view->setCurrentIndex(view->model()->index(1, column));
    const QString source = view->currentIndex().data().toString();
    if (feature)
        editor->find<QLineEdit>("mp_edt_search")->setText("file_s");
    answers->Then(name);
    if (refused)
        answers->Then(QMessageBox::Ok);
    editor->press(feature ? "mp_btn_duplicate" : "mp_btn_duplicate_product");

    QStringList log = {QStringLiteral("input | Input new %1 name | %2").arg(kind, source)};
    if (refused)
        log << Warning.arg(feature ? "Feature" : "Product", name);
    QCOMPARE(answers->log, log);
    QCOMPARE(Column(view->model(), column), ids);
    QCOMPARE(view->currentIndex().siblingAtColumn(column).data().toString(), refused ? source : name);
    QCOMPARE(editor->text("mp_edt_search").isEmpty(), !feature || !refused);
    if (!feature && !refused) {
        auto *products = editor->find<QTableView>("mp_lst_feature_product");
        QCOMPARE(products->currentIndex(), products->model()->index(0, 0));
        // The copy has every feature of its source.
        editor->trigger("mp_run_save");
        QCOMPARE(Strings(editor->saved("product", name)["features"]),
                 QStringList({"file_open", "file_save", "mesh_cut"}));
    }
}

void EditorFlowsTest::toggleByColumn_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("nameColumn");
    QTest::addColumn<QString>("flips"); // per clicked column, the columns whose mark flips
    QTest::newRow("feature products") << 0 << "mp_lst_feature_product" << 1 << "0 -";
    QTest::newRow("feature layouts") << 0 << "mp_lst_feature_layout" << 2 << "0 1 -";
    QTest::newRow("specific licenses") << 0 << "mp_lst_specific_license" << 1 << "0 - -";
    QTest::newRow("extension products") << 1 << "mp_lst_ext_product" << 0 << "- 1 2 3 4 5 6 -";
    QTest::newRow("extension layouts") << 1 << "mp_lst_ext_layout" << 0 << "- 1 2 3 4 5 6 -";
    QTest::newRow("extension licenses") << 1 << "mp_lst_ext_licenses" << 0 << "- - 2 3";
}

void EditorFlowsTest::toggleByColumn()
{
    QFETCH(int, page);
    QFETCH(QString, view);
    QFETCH(int, nameColumn);
    QFETCH(QString, flips);

    editor->show(page);
    auto *table = editor->find<QTableView>(qPrintable(view));
    QAbstractItemModel *model = table->model();
    // Tables sorted by their marks move the row; follow it by its name.
    const QVariant name = model->index(0, nameColumn).data();
    const auto row = [&] {
        return model->match(model->index(0, nameColumn), Qt::DisplayRole, name, 1, Qt::MatchExactly).value(0);
    };
    const auto marks = [&] {
        QStringList values;
        for (int column = 0; column < model->columnCount(); ++column)
            values << row().siblingAtColumn(column).data(Qt::UserRole).toString();
        return values;
    };
    QStringList flipped;
    for (int column = 0; column < model->columnCount(); ++column) {
        if (table->isColumnHidden(column))
            continue;
        const QStringList before = marks();
        editor->click(qPrintable(view), row().row(), column);
        const QStringList after = marks();
        QStringList changed;
        for (int i = 0; i < before.size(); ++i)
            if (before[i] != after[i])
                changed << QString::number(i);
        flipped << (changed.isEmpty() ? "-" : changed.join(','));
    }
    QCOMPARE(flipped.join(' '), flips);
}

void EditorFlowsTest::extensionsPageAddsAndRemovesAll()
{
    QCOMPARE(editor->state(ExtensionFields), "step|STEP|*.step|true|true|false|false");
    // "pro" imports step; "basic" does not.
    QCOMPARE(Column(editor->find<QTableView>("mp_lst_ext_product")->model(), 3, Qt::UserRole),
             QStringList({"false", "true"}));
    auto *list = editor->find<QListView>("mp_lst_extensions");
    editor->press("mp_btn_add_new_extension");
    QCOMPARE(Column(list->model()), QStringList({"extension", "step", "stl"}));
    QCOMPARE(editor->state(ExtensionFields).section('|', 0, 2), "extension||.extension");

    for (int i = 0; i < 4; ++i) { // the last press has nothing to remove
        list->setCurrentIndex(list->model()->index(0, 0));
        editor->press("mp_btn_remove_extension");
    }
    QCOMPARE(list->model()->rowCount(), 0);
    for (const QString &name : ExtensionFields)
        QVERIFY2(!editor->find(qPrintable(name))->isEnabled(), qPrintable(name));
    // The Features page's fields are the ones emptied.
    QVERIFY(editor->state(FeatureFields).startsWith("||||"));
    QVERIFY(editor->find("mp_edt_id")->isEnabled());

    editor->trigger("mp_run_save");
    QVERIFY(editor->written()["extensions"]["extension"].toArray().isEmpty());
    QCOMPARE(Strings(editor->saved("product", "pro")["extensions"]["import"]), QStringList());
}

void EditorFlowsTest::questions_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("state"); // products | title of the first feature
    QTest::newRow("remove product, no") << "mp_btn_remove_product" << int(QMessageBox::No) << "basic,pro|Changed";
    QTest::newRow("remove product, yes") << "mp_btn_remove_product" << int(QMessageBox::Yes) << "pro|Changed";
    QTest::newRow("reload, no") << "mp_run_reload" << int(QMessageBox::No) << "basic,pro|Changed";
    QTest::newRow("reload, yes") << "mp_run_reload" << int(QMessageBox::Yes) << "basic,pro|Open";
}

void EditorFlowsTest::questions()
{
    QFETCH(QString, action);
    QFETCH(int, answer);
    QFETCH(QString, state);

    features()->model()->setData(features()->model()->index(0, 1), "Changed", Qt::EditRole);
    answers->Then(answer);
    const bool product = action.startsWith("mp_btn");
    product ? editor->press(qPrintable(action)) : editor->trigger(qPrintable(action));
    QCOMPARE(answers->log, QStringList(product ? "4 | Remove product | Are you sure? Product will be deleted "
                                                 "without possibility to revert changes"
                                               : "4 | Reload | You will lost all your changes, are you sure?"));
    QCOMPARE(Column(editor->find<QTableView>("mp_lst_products")->model(), 1).join(',') + '|'
                 + editor->text("mp_edt_title"),
             state);
}

void EditorFlowsTest::licenseRefusals()
{
    auto *licenses = editor->find<QTableView>("mp_lst_licenses");
    QCOMPARE(Column(licenses->model(), 2), QStringList({"Add-on", "Basic", "Professional"}));
    // The display text, not the key, is what a new license is compared with; a cancelled
    // dialog ends the flow; the catalogue table takes no new rows, silently.
    answers->Then("Professional").Then(QMessageBox::Ok).Then({}).Then("Enterprise");
    for (int i = 0; i < 3; ++i)
        editor->press("mp_btn_add_licenses");
    licenses->setCurrentIndex(licenses->model()->index(1, 1));
    answers->Then(QMessageBox::No).Then(QMessageBox::Yes).Then(QMessageBox::Ok);
    for (int i = 0; i < 2; ++i)
        editor->press("mp_btn_remove_current_lic");

    const QString input = "input | Input new license | ",
                  ask = "4 | Remove license | Are you sure? License will be deleted without possibility to "
                        "revert changes";
    QCOMPARE(answers->log, QStringList({input, Warning.arg("License", "Professional"), input, input, ask, ask,
                                        "3 | Remove license | This license is basic, you can't remove basic license"}));
    QCOMPARE(Column(licenses->model(), 1), QStringList({"lic_addon", "lic_basic", "lic_pro"}));
}

void EditorFlowsTest::updateThenApplyRestoresLoadedValues_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<bool>("inBasic");
    QTest::newRow("keep the loaded side") << 1 << false;
    QTest::newRow("take the edited side") << 2 << true;
}

void EditorFlowsTest::updateThenApplyRestoresLoadedValues()
{
    QFETCH(int, side);
    QFETCH(bool, inBasic);

    editor->show(0);
    selectFeature(2);                              // mesh_cut
    editor->click("mp_lst_feature_product", 0, 0); // joins "basic"
    editor->click("mp_lst_feature_layout", 1, 0);  // joins "main"
    features()->model()->setData(features()->model()->index(2, 1), "Slice", Qt::EditRole);

    editor->press("mp_btn_update");
    QCOMPARE(editor->diffTabs(), QStringList({"Products", "main"}));
    QVERIFY(!editor->find("mp_btn_apply_patch")->isHidden());
    QAbstractItemModel *diff = editor->find<QTreeView>("mp_tree_diff")->model();
    QCOMPARE(diff, editor->diffBar()->tabData(0).value<QObject *>());
    QModelIndex joined;
    for (const char *key : {"products", "product", "basic", "features", "mesh_cut"})
        joined = diff->match(diff->index(0, 0, joined), Qt::DisplayRole, key, 1, Qt::MatchExactly).value(0);
    QCOMPARE(joined.siblingAtColumn(1).data().toString() + '/' + joined.siblingAtColumn(2).data().toString(), "No/Yes");
    QVERIFY(diff->setData(joined.siblingAtColumn(side), Qt::Checked, Qt::CheckStateRole));
    editor->press("mp_btn_apply_patch");

    // The title edit has no side to choose and takes the loaded value back; so does the layout.
    editor->trigger("mp_run_save");
    QCOMPARE(editor->saved("feature", "mesh_cut")["title"], "Cut");
    QCOMPARE(Strings(editor->saved("product", "basic")["features"]).contains("mesh_cut"), inBasic);
    QCOMPARE(Strings(editor->written("defs/layouts/workspace.json")["layouts"]["main"]["features"]),
             QStringList({"file_open", "file_save"}));
}

void EditorFlowsTest::updateWithoutLayoutsKeepsButtonState()
{
    auto *apply = editor->find<QPushButton>("mp_btn_apply_patch");
    editor->show(0);
    editor->click("mp_lst_feature_product", 0, 0);
    editor->setPage(3);
    apply->hide();
    features()->model()->setData(features()->model()->index(0, 1), "Open...", Qt::EditRole);

    editor->press("mp_btn_update");
    QCOMPARE(editor->diffTabs(), QStringList({"Products"}));
    QVERIFY(apply->isHidden());
    QVERIFY(!editor->find<QTreeView>("mp_tree_diff")->model());
    // Apply with the title's loaded side restores the loaded title.
    apply->click();
    QCOMPARE(editor->text("mp_edt_title"), "Open");
}

void EditorFlowsTest::compareRebuildsTabsAndKeepsIndexTwo()
{
    editor->press("mp_btn_update");
    QCOMPARE(editor->diffTabs(), QStringList());
    QVERIFY(!editor->find<QTreeView>("mp_tree_diff")->model());
    QCOMPARE(answers->log, Busy);

    auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
    answers->log.clear();
    answers->Then({});
    editor->trigger("mp_run_compare");
    QCOMPARE(tabs->currentIndex(), 2);
    QCOMPARE(answers->log, QStringList({"dialog | Open left"}));

    // Take mesh_cut out of the "expert" layout, then compare twice.
    selectFeature(2);
    QAbstractItemModel *layouts = editor->find<QTableView>("mp_lst_feature_layout")->model();
    layouts->setData(layouts->index(0, 0), false, Qt::EditRole);
    editor->press("mp_btn_update");
    QPointer<QObject> first = editor->diffBar()->tabData(0).value<QObject *>();
    for (int round = 0; round < 2; ++round) {
        answers->log.clear();
        answers->Then(QDir::tempPath()).Then(QDir::tempPath());
        editor->trigger("mp_run_compare");
        QCOMPARE(answers->log, QStringList({"dialog | Open left", "dialog | Open right"}) + Busy);
    }
    QVERIFY(first.isNull());
    // Compare does not regenerate: the tabs show the diffs of the last Update.
    QCOMPARE(editor->diffTabs(), QStringList({"expert"}));
    QCOMPARE(editor->find<QTreeView>("mp_tree_diff")->model(), editor->diffBar()->tabData(0).value<QObject *>());
    QVERIFY(!editor->find("mp_btn_apply_patch")->isHidden());
    QCOMPARE(tabs->currentIndex(), 2);
}

void EditorFlowsTest::compareProducts_data()
{
    QTest::addColumn<bool>("cancelSecond");
    QTest::newRow("both chosen") << false;
    QTest::newRow("second cancelled takes the first remaining") << true;
}

void EditorFlowsTest::compareProducts()
{
    QFETCH(bool, cancelSecond);

    auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
    answers->Then({});
    editor->trigger("mp_run_compare_product");
    QCOMPARE(tabs->currentIndex(), 1);
    QVERIFY(!editor->find("mp_btn_apply_patch")->isHidden());

    answers->log.clear();
    answers->Then("basic").Then(cancelSecond ? QVariant() : "pro");
    editor->trigger("mp_run_compare_product");
    QCOMPARE(answers->log, QStringList({"input | Please, select Left Product:  | basic",
                                        "input | Please, select Right Product:  | pro",
                                        "busy: Building basic / pro diff ..."}));
    QCOMPARE(tabs->currentIndex(), 2);
    QVERIFY(editor->find("mp_btn_apply_patch")->isHidden());
    // Two products never share an id, so the diff engine reports them as not comparable.
    QCOMPARE(editor->diffTabs(), QStringList());
}

void EditorFlowsTest::query_data()
{
    QTest::addColumn<QStringList>("fields"); // id, title, products, layouts, licenses
    QTest::addColumn<QStringList>("ids");
    const QStringList all = {"file_open", "file_save", "mesh_cut"}, files = {"file_open", "file_save"};
    QTest::newRow("all empty") << QStringList({"", "", "", "", ""}) << all;
    QTest::newRow("id substring") << QStringList({"FILE", "", "", "", ""}) << files;
    QTest::newRow("two titles never match") << QStringList({"", "Open,Save", "", "", ""}) << QStringList();
    QTest::newRow("quoted product") << QStringList({"", "", "\"pro\"", "", ""}) << all;
    QTest::newRow("two products") << QStringList({"", "", "basic,pro", "", ""}) << files;
    QTest::newRow("layout") << QStringList({"", "", "", "expert", ""}) << QStringList({"mesh_cut"});
    QTest::newRow("license") << QStringList({"", "", "", "", "lic_addon"}) << QStringList({"file_save"});
}

void EditorFlowsTest::query()
{
    QFETCH(QStringList, fields);
    QFETCH(QStringList, ids);

    const char *names[] = {"mp_edt_filter_by_id", "mp_edt_filter_by_title", "mp_edt_filter_by_product",
                           "mp_edt_filter_by_layout", "mp_edt_filter_by_license"};
    for (int i = 0; i < 5; ++i)
        editor->find<QLineEdit>(names[i])->setText(fields.at(i));
    editor->find<QLineEdit>("mp_edt_search")->setText("open"); // does not narrow the query
    QAbstractItemModel *model = editor->find<QTableView>("mp_tbl_query_result")->model();
    QCOMPARE(model->rowCount(), 0);
    editor->press("mp_btn_apply_query");
    QStringList found = Column(model);
    found.sort();
    QCOMPARE(found, ids);

    // A double click opens the feature on the Features page.
    if (!ids.isEmpty()) {
        const QModelIndex row = model->match(model->index(0, 0), Qt::DisplayRole, ids.last()).value(0);
        emit editor->find<QTableView>("mp_tbl_query_result")->doubleClicked(row.siblingAtColumn(1));
        QCOMPARE(editor->find<QTabWidget>("mp_widget_tab")->currentIndex(), 0);
        QCOMPARE(features()->currentIndex().data().toString() + '|' + editor->text("mp_edt_id"),
                 ids.last() + '|' + ids.last());
    }
}

void EditorFlowsTest::copyFromQueryTable_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("toTable");
    QTest::addColumn<bool>("copies");
    QTest::newRow("to the window") << 4 << int(Qt::ControlModifier) << false << true;
    // The window's copy wins over the table's one-cell copy.
    QTest::newRow("to the table") << 4 << int(Qt::ControlModifier) << true << true;
    QTest::newRow("other page") << 0 << int(Qt::ControlModifier) << false << false;
    QTest::newRow("plain C") << 4 << int(Qt::NoModifier) << false << false;
}

void EditorFlowsTest::copyFromQueryTable()
{
    QFETCH(int, page);
    QFETCH(int, modifiers);
    QFETCH(bool, toTable);
    QFETCH(bool, copies);

    editor->show(4);
    editor->press("mp_btn_apply_query");
    auto *table = editor->find<QTableView>("mp_tbl_query_result");
    QAbstractItemModel *model = table->model();
    table->selectionModel()->clearSelection();
    for (const QModelIndex &index : {model->index(2, 1), model->index(0, 1), model->index(2, 0), model->index(0, 0)})
        table->selectionModel()->select(index, QItemSelectionModel::Select);
    table->setFocus();
    QTRY_VERIFY(table->hasFocus());
    editor->setPage(page);

    const auto cell = [model](int row, int column) { return model->index(row, column).data().toString(); };
    QGuiApplication::clipboard()->setText("untouched");
    QTest::keyClick(toTable ? static_cast<QWidget *>(table) : editor->window.get(), Qt::Key_C,
                    Qt::KeyboardModifiers(modifiers));
    QCOMPARE(QGuiApplication::clipboard()->text(),
             copies ? cell(0, 0) + '\t' + cell(0, 1) + '\n' + cell(2, 0) + '\t' + cell(2, 1) : "untouched");
}

void EditorFlowsTest::resultTreeWidensOnExpand()
{
    editor->show(5);
    auto *tree = editor->find<QTreeView>("mp_tree_result");
    QCOMPARE(Column(tree->model()), QStringList({"extensions", "features", "products"}));
    tree->setColumnWidth(0, 5);
    tree->setColumnWidth(1, 5);
    tree->expand(tree->model()->index(1, 0));
    QVERIFY(tree->columnWidth(0) > QFontMetrics(tree->font()).horizontalAdvance("extensions"));
    QVERIFY(tree->columnWidth(1) > 5);
}

void EditorFlowsTest::loadAndSaveAs()
{
    MemoryFolder &folder = editor->folder;
    folder.addFile("other/products/products.json", CanonicalProducts().replace("\"mesh_cut\"", "\"mesh_split\""));
    folder.addFolder("out");
    answers->Then({}).Then(folder.path("other")).Then({}).Then(folder.path("out"));
    editor->trigger("mp_run_load");
    editor->trigger("mp_run_load");
    // Layouts read before stay loaded, and name mesh_cut.
    QCOMPARE(Column(features()->model()), QStringList({"file_open", "file_save", "mesh_cut", "mesh_split"}));
    editor->trigger("mp_run_save_as");
    QVERIFY(folder.written.isEmpty());
    editor->trigger("mp_run_save_as");
    QCOMPARE(answers->log, QStringList({"dialog | Open", "dialog | Open", "dialog | Save as", "dialog | Save as"}));
    QVERIFY(editor->written("out/products/products.json")["features"]["feature"].toArray().contains(
        QJsonObject({{"id", "mesh_split"}, {"title", "Cut"}, {"emergency", true}, {"visual", false}})));
    QVERIFY(folder.written.contains(folder.path("out/layouts/workspace.json")));
}

QTEST_MAIN(EditorFlowsTest)
#include "EditorFlowsTest.moc"
