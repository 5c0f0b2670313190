#include "EditorFixture.h"

#include <QClipboard>
#include <QDir>
#include <QListView>
#include <QPointer>
#include <QSignalSpy>
#include <QTreeView>

namespace {
const QStringList FeatureFields = {"mp_edt_id", "mp_edt_title", "mp_edt_tooltip", "mp_edt_statustip",
                                   "mp_edt_base_license", "mp_chk_visible", "mp_chk_emergency"};
const QStringList ExtensionFields = {"mp_edt_ext_id", "mp_edt_ext_title", "mp_edt_ext_name", "mp_chk_ext_cad_support",
                                     "mp_chk_ext_multiple_parts_support", "mp_chk_ext_slice_support",
                                     "mp_chk_ext_load_as_part"};
const QString Warning = "2 | Warning | %1 '%2' is already exist";
const QStringList Busy = {"busy: Building Products diff ...", "busy: Building expert diff ...",
                          "busy: Building main diff ..."};
} // namespace

class EditorFlowsTest : public QObject, EditorTestState
{
    Q_OBJECT

    void clickCell(const char *name, int row, int column) { emit view(name)->clicked(cell(name, row, column)); }
    void select(const char *name, int row, int column = 0) { view(name)->setCurrentIndex(cell(name, row, column)); }
    void setTitle(int row, const QString &title)
    {
        editor->model("mp_lst_features")->setData(cell("mp_lst_features", row, 1), title);
    }

private slots:
    void init() { start(qstrcmp(QTest::currentTestFunction(), "updateWithoutLayouts")); }
    void cleanup() { QCOMPARE(answers->Pending(), 0); }

    void featuresPageFollowsSelectionAndSearch()
    {
        QCOMPARE(editor->state(FeatureFields), "file_open|Open|Open a file|Opens a file|lic_basic|true|false");
        select("mp_lst_features", 2);
        select("mp_lst_feature_product", 1, 1);
        QCOMPARE(editor->state(FeatureFields), "mesh_cut|Cut|||lic_pro|false|true");
        QCOMPARE(editor->model("mp_lst_feature_layout")->index(0, 1).data(Qt::UserRole), true); // "expert" of pro
        // Nothing current: the general fields are disabled and emptied, and Remove does nothing.
        auto *search = editor->find<QLineEdit>("mp_edt_search");
        search->setText("nothing matches");
        QVERIFY(!editor->find("mp_edt_id")->isEnabled());
        QVERIFY(editor->state(FeatureFields).startsWith("||||"));
        editor->run("mp_btn_remove_current");
        // Rows coming back as the search widens leave the current feature where it is.
        search->clear();
        select("mp_lst_features", 2);
        search->setText("cut");
        search->clear();
        QCOMPARE(editor->text("mp_edt_id"), "mesh_cut");
        editor->run("mp_btn_add_new_feature");
        QCOMPARE(editor->text("mp_edt_id"), "New_Feature");
        select("mp_lst_features", 2);
        editor->run("mp_btn_remove_current");
        QCOMPARE(Column(editor->model("mp_lst_features")), QStringList({"New_Feature", "file_open", "mesh_cut"}));
    }

    // "Visible" is written at once, "Emergency" only when the focus leaves it.
    void visibleCommitsAtOnce()
    {
        editor->show(0);
        QAbstractItemModel *model = editor->model("mp_lst_features");
        const auto click = [this](const char *box) {
            editor->find(box)->setFocus();
            QTRY_VERIFY(editor->find(box)->hasFocus());
            QTest::mouseClick(editor->find(box), Qt::LeftButton, {}, QPoint(8, editor->find(box)->height() / 2));
        };
        click("mp_chk_visible");
        QCOMPARE(model->index(0, 4).data(), false);
        click("mp_chk_emergency");
        QCOMPARE(model->index(0, 5).data(), false);
        editor->find("mp_edt_title")->setFocus();
        QTRY_COMPARE(model->index(0, 5).data(), true);
    }

    void duplicate_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("refused");
        QTest::addColumn<QStringList>("ids"); // afterwards; the feature list still searches "file_s" after a refusal
        const QStringList all = {"a_copy", "file_open", "file_save", "mesh_cut"};
        QTest::newRow("feature, new") << "feature" << "a_copy" << false << all;
        QTest::newRow("feature, own") << "feature" << "file_save" << true << QStringList({"file_save"});
        QTest::newRow("feature, taken") << "feature" << "mesh_cut" << true << QStringList({"file_save"});
        QTest::newRow("product, new") << "product" << "campus" << false << QStringList({"basic", "pro", "campus"});
        QTest::newRow("product, own") << "product" << "pro" << true << QStringList({"basic", "pro"});
        QTest::newRow("product, taken") << "product" << "basic" << true << QStringList({"basic", "pro"});
    }

    void duplicate()
    {
        QFETCH(QString, kind);
        QFETCH(QString, name);
        QFETCH(bool, refused);
        QFETCH(QStringList, ids);
        const bool feature = kind == "feature";
        const char *list = feature ? "mp_lst_features" : "mp_lst_products";
        const int column = feature ? 0 : 1;
        select(list, 1, column);
        if (feature)
            editor->find<QLineEdit>("mp_edt_search")->setText("file_s");
        answers->Then(refused ? QVariantList{name, QMessageBox::Ok} : QVariantList{name});
        editor->run(feature ? "mp_btn_duplicate" : "mp_btn_duplicate_product");
        const QString source = feature ? "file_save" : "pro";
        QStringList log = {QStringLiteral("input | Input new %1 name | %2").arg(kind, source)};
        QCOMPARE(answers->log, refused ? log << Warning.arg(feature ? "Feature" : "Product", name) : log);
        QCOMPARE(Column(editor->model(list), column), ids);
        QCOMPARE(view(list)->currentIndex().siblingAtColumn(column).data().toString(), refused ? source : name);
        QCOMPARE(editor->text("mp_edt_search").isEmpty(), !feature || !refused);
        if (!feature && !refused)
            QCOMPARE(view("mp_lst_feature_product")->currentIndex(), cell("mp_lst_feature_product", 0, 0));
    }

    void toggleByColumn_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("toggled"); // per clicked column, whether the click flipped its mark
        QTest::newRow("feature products") << "mp_lst_feature_product" << "0 - - -";
        QTest::newRow("feature layouts") << "mp_lst_feature_layout" << "0 1 -";
        QTest::newRow("specific licenses") << "mp_lst_specific_license" << "0 - -";
        QTest::newRow("extension products") << "mp_lst_ext_product" << "- 1 2 3 4 5 6 -";
        QTest::newRow("extension layouts") << "mp_lst_ext_layout" << "- 1 2 3 4 5 6 -";
        QTest::newRow("extension licenses") << "mp_lst_ext_licenses" << "- - 2 3";
    }

    void toggleByColumn()
    {
        QFETCH(QString, table);
        QFETCH(QString, toggled);
        QAbstractItemModel *model = editor->model(qPrintable(table));
        QStringList columns;
        for (int column = 0; column < model->columnCount(); ++column) {
            // Tables sorted by their marks move the row; the index follows it.
            const QPersistentModelIndex index = model->index(0, column);
            const QVariant before = index.data(Qt::UserRole);
            emit view(qPrintable(table))->clicked(index);
            columns << (index.data(Qt::UserRole) == before ? "-" : QString::number(column));
        }
        QCOMPARE(columns.join(' '), toggled);
    }

    void extensionsPageAddsAndRemovesAll()
    {
        QCOMPARE(editor->state(ExtensionFields), "step|STEP|*.step|true|true|false|false");
        editor->run("mp_btn_add_new_extension");
        QCOMPARE(editor->state(ExtensionFields).section('|', 0, 2), "extension||.extension");
        for (int i = 0; i < 4; ++i) { // the last press has nothing to remove
            select("mp_lst_extensions", 0);
            editor->run("mp_btn_remove_extension");
        }
        QCOMPARE(editor->model("mp_lst_extensions")->rowCount(), 0);
        for (const QString &name : ExtensionFields)
            QVERIFY2(!editor->find(name)->isEnabled(), qPrintable(name));
        // The Features page's fields are the ones emptied.
        QVERIFY(editor->state(FeatureFields).startsWith("||||"));
        QVERIFY(editor->find("mp_edt_id")->isEnabled());
    }

    void dialogs_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QVariantList>("replies");
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QString>("state"); // products | licence names | title of the first feature
        const auto row = [](const char *name, const char *action, const QVariantList &replies, const QStringList &log,
                            const char *state = "basic,pro|lic_addon,lic_basic,lic_pro|Changed") {
            QTest::newRow(name) << QString(action) << replies << log << QString(state);
        };
        const QString product = "4 | Remove product | Are you sure? Product will be deleted without possibility to "
                                "revert changes",
                      license = "4 | Remove license | Are you sure? License will be deleted without possibility to "
                                "revert changes",
                      reload = "4 | Reload | You will lost all your changes, are you sure?",
                      input = "input | Input new license | ";
        row("remove product, no", "mp_btn_remove_product", {QMessageBox::No}, {product});
        row("remove product, yes", "mp_btn_remove_product", {QMessageBox::Yes}, {product},
            "pro|lic_addon,lic_basic,lic_pro|Changed");
        row("reload, no", "mp_run_reload", {QMessageBox::No}, {reload});
        row("reload, yes", "mp_run_reload", {QMessageBox::Yes}, {reload}, "basic,pro|lic_addon,lic_basic,lic_pro|Open");
        row("remove license, no", "mp_btn_remove_current_lic", {QMessageBox::No}, {license});
        row("remove basic license", "mp_btn_remove_current_lic", {QMessageBox::Yes, QMessageBox::Ok},
            {license, "3 | Remove license | This license is basic, you can't remove basic license"});
        // The display text, not the key, is what a new licence is compared with.
        row("add license, taken", "mp_btn_add_licenses", {"Professional", QMessageBox::Ok},
            {input, Warning.arg("License", "Professional")});
        // The catalogue table takes no new rows, silently.
        row("add license, new", "mp_btn_add_licenses", {"Enterprise"}, {input});
        row("add license, cancelled", "mp_btn_add_licenses", {QVariant()}, {input});
        row("load, cancelled", "mp_run_load", {QVariant()}, {"dialog | Open"});
        row("save as, cancelled", "mp_run_save_as", {QVariant()}, {"dialog | Save as"});
    }

    void dialogs()
    {
        QFETCH(QString, action);
        QFETCH(QVariantList, replies);
        QFETCH(QStringList, log);
        QFETCH(QString, state);
        setTitle(0, "Changed");
        select("mp_lst_licenses", 1, 1);
        answers->Then(replies);
        editor->run(action);
        QCOMPARE(answers->log, log);
        const QString products = Column(editor->model("mp_lst_products"), 1).join(',');
        const QString licenses = Column(editor->model("mp_lst_licenses"), 1).join(',');
        QCOMPARE(products + '|' + licenses + '|' + editor->text("mp_edt_title"), state);
        QVERIFY(editor->folder.written.isEmpty());
    }

    void loadAndSaveAs()
    {
        MemoryFolder &folder = editor->folder;
        folder.addFile("other/products/products.json", CanonicalProducts().replace("\"mesh_cut\"", "\"mesh_split\""));
        folder.addFolder("out");
        answers->Then({folder.path("other"), folder.path("out")});
        // The extension views follow no store signal; the load resets them itself.
        QSignalSpy extensionsReset(editor->model("mp_lst_extensions"), &QAbstractItemModel::modelReset);
        editor->run("mp_run_load");
        QCOMPARE(extensionsReset.count(), 1);
        QCOMPARE(editor->find<QListView>("mp_lst_extensions")->currentIndex().row(), 0);
        // Layouts read before stay loaded, and name mesh_cut.
        QCOMPARE(Column(editor->model("mp_lst_features")),
                 QStringList({"file_open", "file_save", "mesh_cut", "mesh_split"}));
        editor->run("mp_run_save_as");
        QVERIFY(editor->written("out/products/products.json")["features"]["feature"].toArray().contains(
            QJsonObject({{"id", "mesh_split"}, {"title", "Cut"}, {"emergency", true}, {"visual", false}})));
    }

    void updateThenApplyTakesTheChosenSide()
    {
        select("mp_lst_features", 2);                // mesh_cut
        clickCell("mp_lst_feature_product", 0, 0); // joins "basic"
        clickCell("mp_lst_feature_layout", 1, 0);  // joins "main"
        setTitle(2, "Slice");
        editor->run("mp_btn_update");
        QCOMPARE(editor->diffTabs(), QStringList({"Products", "main"}));
        QVERIFY(!editor->find("mp_btn_apply_patch")->isHidden());
        QAbstractItemModel *diff = editor->find<QTreeView>("mp_tree_diff")->model();
        QCOMPARE(diff, editor->diffBar()->tabData(0).value<QObject *>());
        QModelIndex joined;
        for (const char *key : {"products", "product", "basic", "features", "mesh_cut"})
            joined = diff->match(diff->index(0, 0, joined), Qt::DisplayRole, key, 1, Qt::MatchExactly).value(0);
        QVERIFY(diff->setData(joined.siblingAtColumn(2), Qt::Checked, Qt::CheckStateRole));
        editor->run("mp_btn_apply_patch");
        // The title edit has no side to choose and takes the loaded value back; so does the layout.
        editor->run("mp_run_save");
        QCOMPARE(editor->saved("feature", "mesh_cut")["title"], "Cut");
        QVERIFY(Strings(editor->saved("product", "basic")["features"]).contains("mesh_cut"));
        QCOMPARE(Strings(editor->written("defs/layouts/workspace.json")["layouts"]["main"]["features"]),
                 QStringList({"file_open", "file_save"}));
    }

    // The tree and the button are refreshed per layout only.
    void updateWithoutLayouts()
    {
        auto *apply = editor->find<QPushButton>("mp_btn_apply_patch");
        apply->hide();
        setTitle(0, "Open...");
        editor->run("mp_btn_update");
        QCOMPARE(editor->diffTabs(), QStringList({"Products"}));
        QVERIFY(apply->isHidden());
        QVERIFY(!editor->find<QTreeView>("mp_tree_diff")->model());
        apply->click();
        QCOMPARE(editor->text("mp_edt_title"), "Open");
    }

    void compareRebuildsTabsAndKeepsIndexTwo()
    {
        editor->run("mp_btn_update");
        QCOMPARE(editor->diffTabs(), QStringList());
        answers->Then({QVariant()});
        editor->run("mp_run_compare");
        QCOMPARE(editor->page(), 2);
        QCOMPARE(answers->log, Busy + QStringList("dialog | Open left"));
        // Take mesh_cut out of the "expert" layout, then compare twice.
        select("mp_lst_features", 2);
        editor->model("mp_lst_feature_layout")->setData(editor->model("mp_lst_feature_layout")->index(0, 0), false);
        editor->run("mp_btn_update");
        QPointer<QObject> first = editor->diffBar()->tabData(0).value<QObject *>();
        for (int round = 0; round < 2; ++round) {
            answers->log.clear();
            answers->Then({QDir::tempPath(), QDir::tempPath()});
            editor->run("mp_run_compare");
            QCOMPARE(answers->log, QStringList({"dialog | Open left", "dialog | Open right"}) + Busy);
        }
        QVERIFY(first.isNull());
        // Compare does not regenerate: the tabs show the diffs of the last Update.
        QCOMPARE(editor->diffTabs(), QStringList({"expert"}));
        QCOMPARE(editor->find<QTreeView>("mp_tree_diff")->model(), editor->diffBar()->tabData(0).value<QObject *>());
        QVERIFY(!editor->find("mp_btn_apply_patch")->isHidden());
    }

    void compareProducts()
    {
        answers->Then({QVariant(), "basic", QVariant()}); // the second choice cancelled takes the first remaining
        editor->run("mp_run_compare_product");
        QCOMPARE(editor->page(), 1);
        editor->run("mp_run_compare_product");
        const QString left = "input | Please, select Left Product:  | basic";
        QCOMPARE(answers->log, QStringList({left, left, "input | Please, select Right Product:  | pro",
                                            "busy: Building basic / pro diff ..."}));
        QCOMPARE(editor->page(), 2);
        QVERIFY(editor->find("mp_btn_apply_patch")->isHidden());
        // Two products never share an id, so the diff engine reports them as not comparable.
        QCOMPARE(editor->diffTabs(), QStringList());
    }

    // Each field feeds its own criterion; an empty field is no criterion at all.
    void queryFieldsAndDoubleClick()
    {
        const QStringList fields = {"mp_edt_filter_by_id", "mp_edt_filter_by_title", "mp_edt_filter_by_product",
                                    "mp_edt_filter_by_layout", "mp_edt_filter_by_license", ""};
        const QStringList keys = {"FILE", "Cut", "basic,pro", "expert", "lic_addon", ""};
        QAbstractItemModel *model = editor->model("mp_tbl_query_result");
        QCOMPARE(model->rowCount(), 0);
        QStringList found;
        for (int i = 0; i < fields.size(); ++i) {
            for (const QString &field : fields)
                if (!field.isEmpty())
                    editor->find<QLineEdit>(field)->setText(field == fields[i] ? keys[i] : QString());
            editor->run("mp_btn_apply_query");
            QStringList ids = Column(model);
            found << (ids.sort(), ids.join(','));
        }
        QCOMPARE(found, QStringList({"file_open,file_save", "mesh_cut", "file_open,file_save", "mesh_cut", "file_save",
                                     "file_open,file_save,mesh_cut"}));
        // A double click opens the feature on the Features page, even one the search hides.
        editor->find<QLineEdit>("mp_edt_search")->setText("open");
        const QModelIndex meshCut = model->match(model->index(0, 0), Qt::DisplayRole, "mesh_cut").value(0);
        emit view("mp_tbl_query_result")->doubleClicked(meshCut.siblingAtColumn(1));
        QCOMPARE(editor->page(), 0);
        QCOMPARE(view("mp_lst_features")->currentIndex().data().toString(), "mesh_cut");
        QCOMPARE(editor->text("mp_edt_id"), "mesh_cut");
    }

    void copyFromQueryTable_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("toTable");
        QTest::addColumn<bool>("copies");
        QTest::newRow("to the window") << 4 << int(Qt::ControlModifier) << false << true;
        // The window's copy wins over the table's own one-cell copy.
        QTest::newRow("to the table") << 4 << int(Qt::ControlModifier) << true << true;
        QTest::newRow("other page") << 0 << int(Qt::ControlModifier) << false << false;
        QTest::newRow("plain C") << 4 << int(Qt::NoModifier) << false << false;
    }

    void copyFromQueryTable()
    {
        QFETCH(int, page);
        QFETCH(int, modifiers);
        QFETCH(bool, toTable);
        QFETCH(bool, copies);
        editor->show(4);
        editor->run("mp_btn_apply_query");
        QAbstractItemView *table = view("mp_tbl_query_result");
        QAbstractItemModel *model = table->model();
        table->selectionModel()->clearSelection();
        for (const QModelIndex &index :
             {model->index(2, 1), model->index(0, 1), model->index(2, 0), model->index(0, 0)})
            table->selectionModel()->select(index, QItemSelectionModel::Select);
        table->setFocus();
        QTRY_VERIFY(table->hasFocus());
        editor->setPage(page);
        QGuiApplication::clipboard()->setText("untouched");
        QWidget *target = toTable ? static_cast<QWidget *>(table) : editor->window.get();
        QTest::keyClick(target, Qt::Key_C, Qt::KeyboardModifiers(modifiers));
        const auto cell = [model](int row, int column) { return model->index(row, column).data().toString(); };
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 copies ? cell(0, 0) + '\t' + cell(0, 1) + '\n' + cell(2, 0) + '\t' + cell(2, 1) : "untouched");
    }

    void resultTreeWidensOnExpand()
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
};

QTEST_MAIN(EditorFlowsTest)
#include "EditorFlowsTest.moc"
