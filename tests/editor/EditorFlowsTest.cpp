#include "EditorFixture.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QJsonArray>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QSortFilterProxyModel>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTreeView>

using Answers = DialogAnswers;

namespace {

QStringList Column(const QAbstractItemModel *model, int column = 0)
{
    QStringList texts;
    for (int row = 0; row < model->rowCount(); ++row)
        texts << model->index(row, column).data().toString();
    return texts;
}

const QJsonObject Product(const QJsonObject &products, const QString &id)
{
    for (const QJsonValue &value : products[QStringLiteral("products")][QStringLiteral("product")].toArray())
        if (value[QStringLiteral("id")].toString() == id)
            return value.toObject();
    return {};
}

const QJsonObject Feature(const QJsonObject &products, const QString &id)
{
    for (const QJsonValue &value : products[QStringLiteral("features")][QStringLiteral("feature")].toArray())
        if (value[QStringLiteral("id")].toString() == id)
            return value.toObject();
    return {};
}

QStringList Strings(const QJsonValue &array)
{
    QStringList list;
    for (const QJsonValue &value : array.toArray())
        list << value.toString();
    return list;
}

// The index in a tree model whose column-0 texts follow `path` from the top.
QModelIndex Find(const QAbstractItemModel *model, const QStringList &path)
{
    QModelIndex parent;
    for (const QString &key : path) {
        QModelIndex found;
        for (int row = 0; row < model->rowCount(parent) && !found.isValid(); ++row)
            if (model->index(row, 0, parent).data().toString() == key)
                found = model->index(row, 0, parent);
        if (!found.isValid())
            return {};
        parent = found;
    }
    return parent;
}

QStringList TabTexts(const QTabBar *tabs)
{
    QStringList texts;
    for (int i = 0; i < tabs->count(); ++i)
        texts << tabs->tabText(i);
    return texts;
}

} // namespace

class EditorFlowsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void featuresPageFollowsTheCurrentFeature();
    void searchFiltersAndClears();
    void editedFeatureReachesTheSavedFile();
    void renamedFeatureStaysCurrent();
    void visibleCommitsAtOnceEmergencyOnSubmit();
    void addAndRemoveFeature();
    void duplicateFeature_data();
    void duplicateFeature();
    void featureTogglesByColumn_data();
    void featureTogglesByColumn();

    void extensionsPageOpensOnFirstExtension();
    void extensionTogglesByColumn_data();
    void extensionTogglesByColumn();
    void addExtensionAndRemoveAll();

    void duplicateProduct_data();
    void duplicateProduct();
    void removeProductAsksFirst_data();
    void removeProductAsksFirst();
    void licenseRefusals();

    void updateWithoutEditsBuildsNoTab();
    void updateThenApplyRestoresLoadedValues_data();
    void updateThenApplyRestoresLoadedValues();
    void updateWithoutLayoutsKeepsButtonState();
    void compareRebuildsTabsAndKeepsIndexTwo();
    void compareProducts_data();
    void compareProducts();

    void query_data();
    void query();
    void queryDoubleClickSelectsFeature();
    void copySelectedCells();
    void copyOnlyOnQueryPageWithControl_data();
    void copyOnlyOnQueryPageWithControl();
    void resultTreeWidensOnExpand();

    void reloadAsksFirst_data();
    void reloadAsksFirst();
    void loadAndSaveAs();

private:
    std::unique_ptr<EditorUnderTest> editor;
    std::unique_ptr<DialogAnswers> answers;
};

void EditorFlowsTest::init()
{
    editor = std::make_unique<EditorUnderTest>();
    answers = std::make_unique<DialogAnswers>();
}

void EditorFlowsTest::cleanup()
{
    QCOMPARE(answers->Pending(), 0);
    answers.reset();
    editor.reset();
}

void EditorFlowsTest::featuresPageFollowsTheCurrentFeature()
{
    auto *list = editor->find<QListView>("mp_lst_features");
    QCOMPARE(list->currentIndex().row(), 0);
    QCOMPARE(editor->find<QLineEdit>("mp_edt_id")->text(), QStringLiteral("file_open"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_title")->text(), QStringLiteral("Open"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_tooltip")->text(), QStringLiteral("Open a file"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_statustip")->text(), QStringLiteral("Opens a file"));
    QVERIFY(editor->find<QCheckBox>("mp_chk_visible")->isChecked());

    // The first product row is current, and its base license is shown.
    auto *products = editor->find<QTableView>("mp_lst_feature_product");
    QCOMPARE(products->currentIndex().row(), 0);
    QCOMPARE(editor->find<QLineEdit>("mp_edt_base_license")->text(), QStringLiteral("lic_basic"));

    list->setCurrentIndex(list->model()->index(2, 0));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_id")->text(), QStringLiteral("mesh_cut"));
    QVERIFY(!editor->find<QCheckBox>("mp_chk_visible")->isChecked());
    QVERIFY(editor->find<QCheckBox>("mp_chk_emergency")->isChecked());
    QCOMPARE(products->model()->index(0, 0).data(Qt::UserRole), QVariant(false));
    QCOMPARE(products->model()->index(1, 0).data(Qt::UserRole), QVariant(true));

    products->setCurrentIndex(products->model()->index(1, 1));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_base_license")->text(), QStringLiteral("lic_pro"));
    auto *layouts = editor->find<QTableView>("mp_lst_feature_layout");
    QCOMPARE(layouts->model()->index(0, 1).data(Qt::UserRole), QVariant(true)); // "expert" is a mode of pro
}

void EditorFlowsTest::searchFiltersAndClears()
{
    auto *list = editor->find<QListView>("mp_lst_features");
    auto *search = editor->find<QLineEdit>("mp_edt_search");
    search->setText(QStringLiteral(" FILE "));
    QCOMPARE(Column(list->model()), QStringList({"file_open", "file_save"}));
    search->setText(QStringLiteral("cut"));
    QCOMPARE(Column(list->model()), QStringList({"mesh_cut"}));

    // Nothing current: the general fields are disabled and emptied.
    search->setText(QStringLiteral("nothing matches"));
    QVERIFY(!list->currentIndex().isValid());
    QVERIFY(!editor->find<QLineEdit>("mp_edt_id")->isEnabled());
    QCOMPARE(editor->find<QLineEdit>("mp_edt_title")->text(), QString());
    editor->find<QPushButton>("mp_btn_remove_current")->click();

    search->clear();
    QCOMPARE(list->model()->rowCount(), 3);

    // Rows coming back as the search widens leave the current feature where it is.
    list->setCurrentIndex(list->model()->index(2, 0));
    search->setText(QStringLiteral("cut"));
    search->clear();
    QCOMPARE(list->currentIndex().data().toString(), QStringLiteral("mesh_cut"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_id")->text(), QStringLiteral("mesh_cut"));
}

void EditorFlowsTest::editedFeatureReachesTheSavedFile()
{
    editor->show();
    auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
    tabs->setCurrentIndex(0);
    auto *list = editor->find<QListView>("mp_lst_features");
    list->setCurrentIndex(list->model()->index(1, 0));

    auto *title = editor->find<QLineEdit>("mp_edt_title");
    title->setFocus();
    QTRY_VERIFY(title->hasFocus());
    title->selectAll();
    QTest::keyClicks(title, QStringLiteral("Store"));
    editor->find<QLineEdit>("mp_edt_tooltip")->setFocus();
    QTRY_VERIFY(!title->hasFocus());

    // Take file_save out of "pro".
    editor->click("mp_lst_feature_product", 1, 0);

    editor->trigger("mp_run_save");
    const QJsonObject saved = editor->written();
    QCOMPARE(Feature(saved, QStringLiteral("file_save"))[QStringLiteral("title")].toString(),
             QStringLiteral("Store"));
    QCOMPARE(Strings(Product(saved, QStringLiteral("pro"))[QStringLiteral("features")]),
             QStringList({"file_open", "mesh_cut"}));
    QVERIFY(editor->folder.written.contains(editor->folder.path(QStringLiteral("defs/layouts/workspace.json"))));
}

void EditorFlowsTest::renamedFeatureStaysCurrent()
{
    editor->show();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(0);
    auto *list = editor->find<QListView>("mp_lst_features");
    list->setCurrentIndex(list->model()->index(2, 0));
    auto *id = editor->find<QLineEdit>("mp_edt_id");
    id->setFocus();
    QTRY_VERIFY(id->hasFocus());
    id->setText(QStringLiteral("a_cut"));
    editor->find<QLineEdit>("mp_edt_title")->setFocus();

    QTRY_COMPARE(Column(list->model()), QStringList({"a_cut", "file_open", "file_save"}));
    QCOMPARE(list->currentIndex().row(), 0);
    QCOMPARE(editor->find<QLineEdit>("mp_edt_title")->text(), QStringLiteral("Cut"));
    QVERIFY(editor->find<QCheckBox>("mp_chk_emergency")->isChecked());
    editor->trigger("mp_run_save");
    QCOMPARE(Strings(Product(editor->written(), QStringLiteral("pro"))[QStringLiteral("features")]),
             QStringList({"a_cut", "file_open", "file_save"}));
}

void EditorFlowsTest::visibleCommitsAtOnceEmergencyOnSubmit()
{
    editor->show();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(0);
    QAbstractItemModel *features = editor->find<QListView>("mp_lst_features")->model();

    const auto clickBox = [](QCheckBox *box) {
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    };
    clickBox(editor->find<QCheckBox>("mp_chk_visible"));
    QCOMPARE(features->index(0, 4).data(), QVariant(false));

    auto *emergency = editor->find<QCheckBox>("mp_chk_emergency");
    emergency->setFocus();
    clickBox(emergency);
    QVERIFY(emergency->isChecked());
    QCOMPARE(features->index(0, 5).data(), QVariant(false));
    editor->find<QLineEdit>("mp_edt_title")->setFocus();
    QTRY_COMPARE(features->index(0, 5).data(), QVariant(true));
}

void EditorFlowsTest::addAndRemoveFeature()
{
    auto *list = editor->find<QListView>("mp_lst_features");
    editor->find<QPushButton>("mp_btn_add_new_feature")->click();
    QCOMPARE(Column(list->model()), QStringList({"New_Feature", "file_open", "file_save", "mesh_cut"}));
    QCOMPARE(list->currentIndex().data().toString(), QStringLiteral("New_Feature"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_id")->text(), QStringLiteral("New_Feature"));

    list->setCurrentIndex(list->model()->index(2, 0));
    editor->find<QPushButton>("mp_btn_remove_current")->click();
    QCOMPARE(Column(list->model()), QStringList({"New_Feature", "file_open", "mesh_cut"}));
    QVERIFY(answers->log.isEmpty());
}

void EditorFlowsTest::duplicateFeature_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("features");
    QTest::addColumn<QString>("current");
    QTest::addColumn<QStringList>("log");

    const QString ask = QStringLiteral("input | Input new feature name | file_save");
    QTest::newRow("new name") << "a_copy" << QStringList({"a_copy", "file_open", "file_save", "mesh_cut"})
                              << "a_copy" << QStringList({ask});
    QTest::newRow("own name") << "file_save" << QStringList({"file_save"})
                              << "file_save"
                              << QStringList({ask, "2 | Warning | Feature 'file_save' is already exist"});
    QTest::newRow("taken name") << "mesh_cut" << QStringList({"file_save"})
                                << "file_save"
                                << QStringList({ask, "2 | Warning | Feature 'mesh_cut' is already exist"});
}

void EditorFlowsTest::duplicateFeature()
{
    QFETCH(QString, name);
    QFETCH(QStringList, features);
    QFETCH(QString, current);
    QFETCH(QStringList, log);

    auto *list = editor->find<QListView>("mp_lst_features");
    list->setCurrentIndex(list->model()->index(1, 0));
    editor->find<QLineEdit>("mp_edt_search")->setText(QStringLiteral("file_s"));
    answers->Then(Answers::Enter(name));
    if (log.size() > 1)
        answers->Then(Answers::Press(QMessageBox::Ok));
    editor->find<QPushButton>("mp_btn_duplicate")->click();
    QCOMPARE(answers->log, log);
    QCOMPARE(Column(list->model()), features);
    QCOMPARE(list->currentIndex().data().toString(), current);
    QCOMPARE(editor->find<QLineEdit>("mp_edt_search")->text().isEmpty(), log.size() == 1);
}

void EditorFlowsTest::featureTogglesByColumn_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("checkColumn");
    QTest::addColumn<bool>("flips");

    QTest::newRow("product check") << "mp_lst_feature_product" << 0 << 0 << true;
    QTest::newRow("product name") << "mp_lst_feature_product" << 1 << 0 << false;
    QTest::newRow("layout of feature") << "mp_lst_feature_layout" << 0 << 0 << true;
    QTest::newRow("layout of product") << "mp_lst_feature_layout" << 1 << 1 << true;
    QTest::newRow("layout name") << "mp_lst_feature_layout" << 2 << 1 << false;
    QTest::newRow("license check") << "mp_lst_specific_license" << 0 << 0 << true;
    QTest::newRow("license name") << "mp_lst_specific_license" << 1 << 0 << false;
}

void EditorFlowsTest::featureTogglesByColumn()
{
    QFETCH(QString, view);
    QFETCH(int, column);
    QFETCH(int, checkColumn);
    QFETCH(bool, flips);

    editor->show();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(0);
    auto *table = editor->window->findChild<QTableView *>(view);
    // The license table sorts by its marks; follow the row by its name.
    const int nameColumn = view.endsWith("license") ? 1 : view.endsWith("layout") ? 2 : 1;
    const QString name = table->model()->index(0, nameColumn).data().toString();
    const QVariant before = table->model()->index(0, checkColumn).data(Qt::UserRole);
    QVERIFY(before.isValid());
    editor->click(qPrintable(view), 0, column);
    const QModelIndexList rows = table->model()->match(table->model()->index(0, nameColumn), Qt::DisplayRole,
                                                       name, 1, Qt::MatchExactly);
    QCOMPARE(rows.size(), 1);
    const QVariant after = table->model()->index(rows.first().row(), checkColumn).data(Qt::UserRole);
    QCOMPARE(after.toBool(), flips ? !before.toBool() : before.toBool());
}

void EditorFlowsTest::extensionsPageOpensOnFirstExtension()
{
    QCOMPARE(editor->find<QTabWidget>("mp_widget_tab")->currentIndex(), 1);
    QCOMPARE(editor->find<QListView>("mp_lst_extensions")->currentIndex().row(), 0);
    QCOMPARE(editor->find<QLineEdit>("mp_edt_ext_id")->text(), QStringLiteral("step"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_ext_title")->text(), QStringLiteral("STEP"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_ext_name")->text(), QStringLiteral("*.step"));
    QVERIFY(editor->find<QCheckBox>("mp_chk_ext_cad_support")->isChecked());
    QVERIFY(editor->find<QCheckBox>("mp_chk_ext_multiple_parts_support")->isChecked());
    QVERIFY(!editor->find<QCheckBox>("mp_chk_ext_load_as_part")->isChecked());
    // "pro" imports step; "basic" does not.
    QAbstractItemModel *products = editor->find<QTableView>("mp_lst_ext_product")->model();
    QCOMPARE(products->index(0, 3).data(Qt::UserRole), QVariant(false));
    QCOMPARE(products->index(1, 3).data(Qt::UserRole), QVariant(true));
}

void EditorFlowsTest::extensionTogglesByColumn_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("checkColumn");
    QTest::addColumn<bool>("flips");

    QTest::newRow("product name") << "mp_lst_ext_product" << 0 << 3 << false;
    for (int column = 1; column <= 6; ++column)
        QTest::addRow("product column %d", column) << "mp_lst_ext_product" << column << column << true;
    QTest::newRow("layout name") << "mp_lst_ext_layout" << 0 << 3 << false;
    QTest::newRow("layout import") << "mp_lst_ext_layout" << 3 << 3 << true;
    QTest::newRow("license id") << "mp_lst_ext_licenses" << 0 << 2 << false;
    QTest::newRow("license name") << "mp_lst_ext_licenses" << 1 << 2 << false;
    QTest::newRow("license import") << "mp_lst_ext_licenses" << 2 << 2 << true;
    QTest::newRow("license export") << "mp_lst_ext_licenses" << 3 << 3 << true;
}

void EditorFlowsTest::extensionTogglesByColumn()
{
    QFETCH(QString, view);
    QFETCH(int, column);
    QFETCH(int, checkColumn);
    QFETCH(bool, flips);

    editor->show();
    auto *table = editor->window->findChild<QTableView *>(view);
    // The license table sorts by its marks; follow the row by its name.
    const QString name = table->model()->index(0, 0).data().toString();
    const bool before = table->model()->index(0, checkColumn).data(Qt::UserRole).toBool();
    editor->click(qPrintable(view), 0, column);
    const QModelIndexList rows = table->model()->match(table->model()->index(0, 0), Qt::DisplayRole, name, 1,
                                                       Qt::MatchExactly);
    QCOMPARE(rows.size(), 1);
    const bool after = table->model()->index(rows.first().row(), checkColumn).data(Qt::UserRole).toBool();
    QCOMPARE(after, flips ? !before : before);
}

void EditorFlowsTest::addExtensionAndRemoveAll()
{
    auto *list = editor->find<QListView>("mp_lst_extensions");
    editor->find<QPushButton>("mp_btn_add_new_extension")->click();
    QCOMPARE(Column(list->model()), QStringList({"extension", "step", "stl"}));
    QCOMPARE(list->currentIndex().row(), 0);
    QCOMPARE(editor->find<QLineEdit>("mp_edt_ext_name")->text(), QStringLiteral(".extension"));

    auto *remove = editor->find<QPushButton>("mp_btn_remove_extension");
    for (int i = 0; i < 3; ++i) {
        list->setCurrentIndex(list->model()->index(0, 0));
        remove->click();
    }
    QCOMPARE(list->model()->rowCount(), 0);
    for (const char *name : {"mp_edt_ext_id", "mp_edt_ext_title", "mp_edt_ext_name", "mp_chk_ext_cad_support",
                             "mp_chk_ext_multiple_parts_support", "mp_chk_ext_slice_support",
                             "mp_chk_ext_load_as_part"})
        QVERIFY2(!editor->find<QWidget>(name)->isEnabled(), name);
    // The Features page's fields are the ones emptied.
    for (const char *name : {"mp_edt_id", "mp_edt_tooltip", "mp_edt_statustip", "mp_edt_title"})
        QVERIFY2(editor->find<QLineEdit>(name)->text().isEmpty(), name);
    QVERIFY(editor->find<QLineEdit>("mp_edt_id")->isEnabled());
    remove->click();

    editor->trigger("mp_run_save");
    const QJsonObject saved = editor->written();
    QVERIFY(saved[QStringLiteral("extensions")][QStringLiteral("extension")].toArray().isEmpty());
    QCOMPARE(Strings(Product(editor->written(), QStringLiteral("pro"))[QStringLiteral("extensions")]
                         [QStringLiteral("import")]),
             QStringList());
}

void EditorFlowsTest::duplicateProduct_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("products");
    QTest::addColumn<QString>("warning");

    QTest::newRow("new name") << "campus" << QStringList({"basic", "pro", "campus"}) << QString();
    QTest::newRow("own name") << "pro" << QStringList({"basic", "pro"})
                              << "2 | Warning | Product 'pro' is already exist";
    QTest::newRow("taken name") << "basic" << QStringList({"basic", "pro"})
                                << "2 | Warning | Product 'basic' is already exist";
}

void EditorFlowsTest::duplicateProduct()
{
    QFETCH(QString, name);
    QFETCH(QStringList, products);
    QFETCH(QString, warning);

    auto *view = editor->find<QTableView>("mp_lst_products");
    view->setCurrentIndex(view->model()->index(1, 1));
    answers->Then(Answers::Enter(name));
    if (!warning.isEmpty())
        answers->Then(Answers::Press(QMessageBox::Ok));
    editor->find<QPushButton>("mp_btn_duplicate_product")->click();

    QCOMPARE(answers->log.value(0), QStringLiteral("input | Input new product name | pro"));
    QCOMPARE(answers->log.value(1), warning);
    QCOMPARE(Column(view->model(), 1), products);
    if (warning.isEmpty()) {
        QCOMPARE(view->currentIndex().row(), 2);
        QCOMPARE(editor->find<QTableView>("mp_lst_feature_product")->currentIndex(),
                 editor->find<QTableView>("mp_lst_feature_product")->model()->index(0, 0));
        // The copy has every feature of its source.
        editor->trigger("mp_run_save");
        QCOMPARE(Strings(Product(editor->written(), name)[QStringLiteral("features")]),
                 QStringList({"file_open", "file_save", "mesh_cut"}));
    }
}

void EditorFlowsTest::removeProductAsksFirst_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("products");
    QTest::newRow("no") << int(QMessageBox::No) << QStringList({"basic", "pro"});
    QTest::newRow("yes") << int(QMessageBox::Yes) << QStringList({"pro"});
}

void EditorFlowsTest::removeProductAsksFirst()
{
    QFETCH(int, answer);
    QFETCH(QStringList, products);

    answers->Then(Answers::Press(QMessageBox::StandardButton(answer)));
    editor->find<QPushButton>("mp_btn_remove_product")->click();
    QCOMPARE(answers->log, QStringList({"4 | Remove product | Are you sure? Product will be deleted without "
                                        "possibility to revert changes"}));
    QCOMPARE(Column(editor->find<QTableView>("mp_lst_products")->model(), 1), products);
}

void EditorFlowsTest::licenseRefusals()
{
    auto *licenses = editor->find<QTableView>("mp_lst_licenses");
    QCOMPARE(Column(licenses->model(), 2), QStringList({"Add-on", "Basic", "Professional"}));

    // The display text, not the key, is what a new license is compared with.
    answers->Then(Answers::Enter(QStringLiteral("Professional"))).Then(Answers::Press(QMessageBox::Ok));
    editor->find<QPushButton>("mp_btn_add_licenses")->click();
    // A cancelled dialog ends the flow.
    answers->Then(Answers::Cancel());
    editor->find<QPushButton>("mp_btn_add_licenses")->click();
    // The catalogue table takes no new rows; the refusal is silent.
    answers->Then(Answers::Enter(QStringLiteral("Enterprise")));
    editor->find<QPushButton>("mp_btn_add_licenses")->click();

    licenses->setCurrentIndex(licenses->model()->index(1, 1));
    answers->Then(Answers::Press(QMessageBox::No));
    editor->find<QPushButton>("mp_btn_remove_current_lic")->click();
    answers->Then(Answers::Press(QMessageBox::Yes)).Then(Answers::Press(QMessageBox::Ok));
    editor->find<QPushButton>("mp_btn_remove_current_lic")->click();

    const QString ask = QStringLiteral(
        "4 | Remove license | Are you sure? License will be deleted without possibility to revert changes");
    QCOMPARE(answers->log,
             QStringList({"input | Input new license | ", "2 | Warning | License 'Professional' is already exist",
                          "input | Input new license | ", "input | Input new license | ", ask, ask,
                          "3 | Remove license | This license is basic, you can't remove basic license"}));
    QCOMPARE(Column(licenses->model(), 1), QStringList({"lic_addon", "lic_basic", "lic_pro"}));
}

void EditorFlowsTest::updateWithoutEditsBuildsNoTab()
{
    editor->find<QPushButton>("mp_btn_update")->click();
    auto *tabs = editor->diffTabs();
    QVERIFY(tabs);
    QCOMPARE(tabs->count(), 0);
    QVERIFY(!editor->find<QTreeView>("mp_tree_diff")->model());
    QCOMPARE(answers->log, QStringList({"busy: Building Products diff ...", "busy: Building expert diff ...",
                                        "busy: Building main diff ..."}));
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

    editor->show();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(0);
    auto *list = editor->find<QListView>("mp_lst_features");
    list->setCurrentIndex(list->model()->index(2, 0)); // mesh_cut
    editor->click("mp_lst_feature_product", 0, 0);     // join "basic"
    editor->click("mp_lst_feature_layout", 1, 0);      // join "main"
    QAbstractItemModel *features = list->model();
    features->setData(features->index(2, 1), QStringLiteral("Slice"), Qt::EditRole);

    editor->find<QPushButton>("mp_btn_update")->click();
    auto *tabs = editor->diffTabs();
    QCOMPARE(TabTexts(tabs), QStringList({"Products", "main"}));
    QVERIFY(!editor->find<QPushButton>("mp_btn_apply_patch")->isHidden());
    auto *tree = editor->find<QTreeView>("mp_tree_diff");
    QAbstractItemModel *diff = tree->model();
    QCOMPARE(diff, tabs->tabData(0).value<QObject *>());

    const QModelIndex joined = Find(diff, {"products", "product", "basic", "features", "mesh_cut"});
    QVERIFY(joined.isValid());
    QCOMPARE(joined.sibling(joined.row(), 1).data().toString(), QStringLiteral("No"));
    QCOMPARE(joined.sibling(joined.row(), 2).data().toString(), QStringLiteral("Yes"));
    QVERIFY(diff->setData(joined.sibling(joined.row(), side), Qt::Checked, Qt::CheckStateRole));

    editor->find<QPushButton>("mp_btn_apply_patch")->click();

    // The title edit has no side to choose and takes the loaded value back; so does the layout.
    editor->trigger("mp_run_save");
    const QJsonObject saved = editor->written();
    QCOMPARE(Feature(saved, QStringLiteral("mesh_cut"))[QStringLiteral("title")].toString(), QStringLiteral("Cut"));
    QCOMPARE(Strings(Product(saved, QStringLiteral("basic"))[QStringLiteral("features")]).contains("mesh_cut"),
             inBasic);
    const QJsonObject layouts = editor->written(QStringLiteral("defs/layouts/workspace.json"));
    QCOMPARE(Strings(layouts[QStringLiteral("layouts")][QStringLiteral("main")][QStringLiteral("features")]),
             QStringList({"file_open", "file_save"}));
}

void EditorFlowsTest::updateWithoutLayoutsKeepsButtonState()
{
    answers.reset();
    editor = std::make_unique<EditorUnderTest>(false);
    answers = std::make_unique<DialogAnswers>();
    auto *apply = editor->find<QPushButton>("mp_btn_apply_patch");
    editor->show();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(0);
    editor->click("mp_lst_feature_product", 0, 0);
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(3);
    apply->hide();
    QAbstractItemModel *features = editor->find<QListView>("mp_lst_features")->model();
    features->setData(features->index(0, 1), QStringLiteral("Open..."), Qt::EditRole);

    editor->find<QPushButton>("mp_btn_update")->click();
    QCOMPARE(TabTexts(editor->diffTabs()), QStringList({"Products"}));
    QVERIFY(apply->isHidden());
    QVERIFY(!editor->find<QTreeView>("mp_tree_diff")->model());

    // Apply with the title's loaded side restores the loaded title.
    apply->click();
    QCOMPARE(features->index(0, 1).data().toString(), QStringLiteral("Open"));
}

void EditorFlowsTest::compareRebuildsTabsAndKeepsIndexTwo()
{
    auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
    answers->Then(Answers::Cancel());
    editor->trigger("mp_run_compare");
    QCOMPARE(tabs->currentIndex(), 2);
    QCOMPARE(answers->log, QStringList({"dialog | Open left"}));

    // Take mesh_cut out of the "expert" layout, then compare twice.
    editor->find<QListView>("mp_lst_features")->setCurrentIndex(
        editor->find<QListView>("mp_lst_features")->model()->index(2, 0));
    QAbstractItemModel *layouts = editor->find<QTableView>("mp_lst_feature_layout")->model();
    layouts->setData(layouts->index(0, 0), false, Qt::EditRole);
    editor->find<QPushButton>("mp_btn_update")->click();
    auto *bar = editor->diffTabs();
    QCOMPARE(TabTexts(bar), QStringList({"expert"}));
    QPointer<QObject> first = bar->tabData(0).value<QObject *>();

    for (int round = 0; round < 2; ++round) {
        answers->log.clear();
        answers->Then(Answers::ChooseFolder(QDir::tempPath())).Then(Answers::ChooseFolder(QDir::tempPath()));
        editor->trigger("mp_run_compare");
        QCOMPARE(answers->log, QStringList({"dialog | Open left", "dialog | Open right",
                                            "busy: Building Products diff ...", "busy: Building expert diff ...",
                                            "busy: Building main diff ..."}));
    }
    QVERIFY(first.isNull());
    // Compare does not regenerate: the tabs show the diffs of the last Update.
    QCOMPARE(TabTexts(bar), QStringList({"expert"}));
    QCOMPARE(editor->find<QTreeView>("mp_tree_diff")->model(), bar->tabData(0).value<QObject *>());
    QVERIFY(!editor->find<QPushButton>("mp_btn_apply_patch")->isHidden());
    QCOMPARE(tabs->currentIndex(), 2);
}

void EditorFlowsTest::compareProducts_data()
{
    QTest::addColumn<bool>("cancelSecond");
    QTest::addColumn<QString>("right");
    QTest::newRow("both chosen") << false << "pro";
    QTest::newRow("second cancelled") << true << "pro";
}

void EditorFlowsTest::compareProducts()
{
    QFETCH(bool, cancelSecond);
    QFETCH(QString, right);

    auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
    answers->Then(Answers::Cancel());
    editor->trigger("mp_run_compare_product");
    QCOMPARE(tabs->currentIndex(), 1);
    QVERIFY(!editor->find<QPushButton>("mp_btn_apply_patch")->isHidden());

    answers->log.clear();
    answers->Then(Answers::Enter(QStringLiteral("basic")));
    answers->Then(cancelSecond ? Answers::Cancel() : Answers::Enter(right));
    editor->trigger("mp_run_compare_product");
    QCOMPARE(answers->log, QStringList({"input | Please, select Left Product:  | basic",
                                        "input | Please, select Right Product:  | pro",
                                        "busy: Building basic / " + right + " diff ..."}));
    QCOMPARE(tabs->currentIndex(), 2);
    QVERIFY(editor->find<QPushButton>("mp_btn_apply_patch")->isHidden());
    // Two products never share an id, so the diff engine reports them as not comparable.
    QCOMPARE(editor->diffTabs()->count(), 0);
}

void EditorFlowsTest::query_data()
{
    QTest::addColumn<QStringList>("fields"); // id, title, products, layouts, licenses
    QTest::addColumn<QStringList>("ids");

    QTest::newRow("all empty") << QStringList({"", "", "", "", ""})
                               << QStringList({"file_open", "file_save", "mesh_cut"});
    QTest::newRow("id substring") << QStringList({"FILE", "", "", "", ""})
                                  << QStringList({"file_open", "file_save"});
    QTest::newRow("two titles never match") << QStringList({"", "Open,Save", "", "", ""}) << QStringList();
    QTest::newRow("quoted product") << QStringList({"", "", "\"pro\"", "", ""})
                                    << QStringList({"file_open", "file_save", "mesh_cut"});
    QTest::newRow("two products") << QStringList({"", "", "basic,pro", "", ""})
                                  << QStringList({"file_open", "file_save"});
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
    auto *table = editor->find<QTableView>("mp_tbl_query_result");
    QCOMPARE(table->model()->rowCount(), 0);
    editor->find<QPushButton>("mp_btn_apply_query")->click();
    QStringList found = Column(table->model());
    found.sort();
    QCOMPARE(found, ids);
    QCOMPARE(table->model()->columnCount(), 5);
}

void EditorFlowsTest::queryDoubleClickSelectsFeature()
{
    editor->find<QLineEdit>("mp_edt_search")->setText(QStringLiteral("open"));
    editor->find<QPushButton>("mp_btn_apply_query")->click();
    auto *table = editor->find<QTableView>("mp_tbl_query_result");
    const QModelIndexList rows =
        table->model()->match(table->model()->index(0, 0), Qt::DisplayRole, QStringLiteral("mesh_cut"));
    QCOMPARE(rows.size(), 1);
    emit table->doubleClicked(rows.first().sibling(rows.first().row(), 1));
    QCOMPARE(editor->find<QTabWidget>("mp_widget_tab")->currentIndex(), 0);
    QCOMPARE(editor->find<QListView>("mp_lst_features")->currentIndex().data().toString(),
             QStringLiteral("mesh_cut"));
    QCOMPARE(editor->find<QLineEdit>("mp_edt_id")->text(), QStringLiteral("mesh_cut"));
}

void EditorFlowsTest::copySelectedCells()
{
    editor->show();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(4);
    editor->find<QPushButton>("mp_btn_apply_query")->click();
    auto *table = editor->find<QTableView>("mp_tbl_query_result");
    QAbstractItemModel *model = table->model();
    QItemSelectionModel *selection = table->selectionModel();
    selection->clearSelection();
    for (const QModelIndex &index : {model->index(2, 1), model->index(0, 1), model->index(2, 0), model->index(0, 0)})
        selection->select(index, QItemSelectionModel::Select);
    table->setFocus();
    QTRY_VERIFY(table->hasFocus());

    const QString expected = model->index(0, 0).data().toString() + '\t' + model->index(0, 1).data().toString()
                             + '\n' + model->index(2, 0).data().toString() + '\t'
                             + model->index(2, 1).data().toString();
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(editor->window.get(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), expected);

    // Pressed in the table itself, the window's copy wins over the table's one-cell copy.
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), expected);
}

void EditorFlowsTest::copyOnlyOnQueryPageWithControl_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("modifiers");
    QTest::newRow("other page") << 0 << int(Qt::ControlModifier);
    QTest::newRow("plain C") << 4 << int(Qt::NoModifier);
}

void EditorFlowsTest::copyOnlyOnQueryPageWithControl()
{
    QFETCH(int, page);
    QFETCH(int, modifiers);

    editor->show();
    editor->find<QPushButton>("mp_btn_apply_query")->click();
    auto *table = editor->find<QTableView>("mp_tbl_query_result");
    table->selectAll();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(page);
    QGuiApplication::clipboard()->setText(QStringLiteral("untouched"));
    QTest::keyClick(editor->window.get(), Qt::Key_C, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("untouched"));
}

void EditorFlowsTest::resultTreeWidensOnExpand()
{
    editor->show();
    editor->find<QTabWidget>("mp_widget_tab")->setCurrentIndex(5);
    auto *tree = editor->find<QTreeView>("mp_tree_result");
    QCOMPARE(Column(tree->model()), QStringList({"extensions", "features", "products"}));
    tree->setColumnWidth(0, 5);
    tree->setColumnWidth(1, 5);
    tree->expand(tree->model()->index(1, 0));
    QVERIFY(tree->columnWidth(0) > QFontMetrics(tree->font()).horizontalAdvance(QStringLiteral("extensions")));
    QVERIFY(tree->columnWidth(1) > 5);
}

void EditorFlowsTest::reloadAsksFirst_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("title");
    QTest::newRow("no keeps the edit") << int(QMessageBox::No) << "Changed";
    QTest::newRow("yes drops it") << int(QMessageBox::Yes) << "Open";
}

void EditorFlowsTest::reloadAsksFirst()
{
    QFETCH(int, answer);
    QFETCH(QString, title);

    QAbstractItemModel *features = editor->find<QListView>("mp_lst_features")->model();
    features->setData(features->index(0, 1), QStringLiteral("Changed"), Qt::EditRole);
    answers->Then(Answers::Press(QMessageBox::StandardButton(answer)));
    editor->trigger("mp_run_reload");
    QCOMPARE(answers->log, QStringList({"4 | Reload | You will lost all your changes, are you sure?"}));
    QCOMPARE(features->index(0, 1).data().toString(), title);
    QCOMPARE(editor->find<QLineEdit>("mp_edt_title")->text(), title);
}

void EditorFlowsTest::loadAndSaveAs()
{
    QByteArray other = CanonicalProducts();
    other.replace("\"mesh_cut\"", "\"mesh_split\"");
    editor->folder.addFile(QStringLiteral("other/products/products.json"), other);
    editor->folder.addFolder(QStringLiteral("out"));

    answers->Then(Answers::Cancel());
    editor->trigger("mp_run_load");
    answers->Then(Answers::ChooseFolder(editor->folder.path(QStringLiteral("other"))));
    editor->trigger("mp_run_load");
    // Layouts read before stay loaded, and name mesh_cut.
    QCOMPARE(Column(editor->find<QListView>("mp_lst_features")->model()),
             QStringList({"file_open", "file_save", "mesh_cut", "mesh_split"}));

    answers->Then(Answers::Cancel());
    editor->trigger("mp_run_save_as");
    QVERIFY(editor->folder.written.isEmpty());
    answers->Then(Answers::ChooseFolder(editor->folder.path(QStringLiteral("out"))));
    editor->trigger("mp_run_save_as");
    QCOMPARE(answers->log, QStringList({"dialog | Open", "dialog | Open", "dialog | Save as", "dialog | Save as"}));
    QVERIFY(Feature(editor->written(QStringLiteral("out/products/products.json")), QStringLiteral("mesh_split"))
                .contains(QStringLiteral("title")));
    QVERIFY(editor->folder.written.contains(editor->folder.path(QStringLiteral("out/layouts/workspace.json"))));
}

QTEST_MAIN(EditorFlowsTest)
#include "EditorFlowsTest.moc"
