#include "EditorFixture.h"

#include <QGridLayout>
#include <QListView>
#include <QMenu>
#include <QPointer>
#include <QRegularExpression>
#include <QTranslator>

// Records every text the form asks to translate.
class RecordingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        requests << QString(context) + '/' + QString::fromUtf8(sourceText);
        return {};
    }
    mutable QStringList requests;
};

class EditorFormTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { editor = std::make_unique<EditorUnderTest>(); }
    void widgets_data();
    void widgets();
    void windowPagesAndMenu();
    void textsAreTranslatable();
    void entryReturnsHiddenWindowOwnedByParent();
    void modelsDieBeforeTheirViews();

private:
    std::unique_ptr<EditorUnderTest> editor;
};

namespace {
const QString keys = "Type text or left empty. Use comma to search by several keys";
const QString words = keys + ". Use quotes to strict search by whole word";
// Name, class, text (placeholder, title or text, whichever the class has) and, for some, "grid:row,column,spans".
const struct
{
    const char *name, *className;
    QString text;
    const char *cell;
} Widgets[] = {
    {"mp_widget_tab", "QTabWidget", {}, "gridLayout:0,0,1,1"},
    {"mp_edt_search", "QLineEdit", "Search...", ""},
    {"mp_lst_features", "QListView", {}, ""},
    {"mp_btn_add_new_feature", "QPushButton", "Add feature", ""},
    {"mp_btn_duplicate", "QPushButton", "Duplicate ", ""},
    {"mp_btn_remove_current", "QPushButton", "Remove current", ""},
    {"General", "QGroupBox", "General", "gridLayout_2:0,1,1,2"},
    {"groupBox", "QGroupBox", "Products", "gridLayout_2:1,1,3,1"},
    {"groupBox_3", "QGroupBox", "Layouts", "gridLayout_2:1,2,1,1"},
    {"groupBox_2", "QGroupBox", "Licensing", "gridLayout_2:2,2,2,1"},
    {"label", "QLabel", "Id", "gridLayout_3:0,0,1,1"},
    {"label_2", "QLabel", "Statustip", ""},
    {"label_3", "QLabel", "Title", ""},
    {"label_4", "QLabel", "Tooltip", ""},
    {"mp_edt_tooltip", "QLineEdit", "", "gridLayout_3:3,2,1,1"},
    {"mp_chk_visible", "QCheckBox", "Visible", "gridLayout_3:4,0,1,1"},
    {"mp_chk_emergency", "QCheckBox", "Emergency", "gridLayout_3:4,2,1,1"},
    {"label_5", "QLabel", "Base", ""},
    {"mp_edt_base_license", "QLineEdit", "", "gridLayout_4:0,1,1,1"},
    {"mp_lst_feature_product", "QTableView", {}, ""},
    {"mp_lst_feature_layout", "QTableView", {}, ""},
    {"mp_lst_specific_license", "QTableView", {}, "gridLayout_4:2,0,1,2"},
    {"mp_lst_extensions", "QListView", {}, ""},
    {"mp_btn_add_new_extension", "QPushButton", "Add extension", ""},
    {"mp_btn_remove_extension", "QPushButton", "Remove current", ""},
    {"groupBox_9", "QGroupBox", "General", "gridLayout_10:0,0,1,2"},
    {"groupBox_10", "QGroupBox", "Licensing", "gridLayout_10:1,1,3,1"},
    {"label_14", "QLabel", "Id", ""},
    {"label_11", "QLabel", "Title", ""},
    {"label_13", "QLabel", "Extension", ""},
    {"mp_edt_ext_name", "QLineEdit", "", "gridLayout_9:2,1,1,3"},
    {"mp_chk_ext_cad_support", "QCheckBox", "Cad support", ""},
    {"mp_chk_ext_slice_support", "QCheckBox", "Sclice support", "gridLayout_9:3,1,1,1"},
    {"mp_chk_ext_multiple_parts_support", "QCheckBox", "Multiple parts support", ""},
    {"mp_chk_ext_load_as_part", "QCheckBox", "Load as part", "gridLayout_9:3,3,1,1"},
    {"mp_lst_ext_product", "QTableView", {}, ""},
    {"mp_lst_ext_layout", "QTableView", {}, "gridLayout_10:2,0,1,1"},
    {"mp_lst_ext_licenses", "QTableView", {}, ""},
    {"groupBox_4", "QGroupBox", "Products", ""},
    {"groupBox_5", "QGroupBox", "Layouts", ""},
    {"groupBox_6", "QGroupBox", "Licenses", "gridLayout_5:0,1,2,1"},
    {"mp_lst_products", "QTableView", {}, "gridLayout_6:0,0,1,2"},
    {"mp_lst_layouts", "QListView", {}, ""},
    {"mp_lst_licenses", "QTableView", {}, ""},
    {"mp_btn_duplicate_product", "QPushButton", "Duplicate current", ""},
    {"mp_btn_remove_product", "QPushButton", "Remove current", ""},
    {"mp_btn_add_licenses", "QPushButton", "Add licenses", ""},
    {"mp_btn_remove_current_lic", "QPushButton", "Remove current", "gridLayout_7:1,1,1,1"},
    {"mp_btn_update", "QPushButton", "Update", ""},
    {"mp_tree_diff", "QTreeView", {}, ""},
    {"mp_btn_apply_patch", "QPushButton", "Apply changes", ""},
    {"groupBox_7", "QGroupBox", "Query", ""},
    {"groupBox_8", "QGroupBox", "Result", ""},
    {"label_6", "QLabel", "Id", ""},
    {"label_7", "QLabel", "Title", ""},
    {"label_8", "QLabel", "Licenses", "gridLayout_8:5,0,1,1"},
    {"label_9", "QLabel", "Products", ""},
    {"label_10", "QLabel", "Layouts", ""},
    {"mp_edt_filter_by_id", "QLineEdit", keys, ""},
    {"mp_edt_filter_by_title", "QLineEdit", keys + ". Use * to search features with non empty title", ""},
    {"mp_edt_filter_by_product", "QLineEdit", words, "gridLayout_8:3,2,1,1"},
    {"mp_edt_filter_by_layout", "QLineEdit", words, ""},
    {"mp_edt_filter_by_license", "QLineEdit", keys, ""},
    {"mp_btn_apply_query", "QPushButton", "Apply", "gridLayout_8:6,2,1,1"},
    {"mp_tbl_query_result", "QTableView", {}, ""},
    {"mp_tree_result", "QTreeView", {}, ""},
};
} // namespace

void EditorFormTest::widgets_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < int(std::size(Widgets)); ++row)
        QTest::newRow(Widgets[row].name) << row;
}

void EditorFormTest::widgets()
{
    QFETCH(int, row);
    const auto &expected = Widgets[row];
    QWidget *widget = editor->find(expected.name);
    QVERIFY(widget);
    QCOMPARE(widget->metaObject()->className(), expected.className);
    const char *property = widget->inherits("QLineEdit")   ? "placeholderText"
                           : widget->inherits("QGroupBox") ? "title"
                                                           : "text";
    QCOMPARE(widget->property(property).toString(), expected.text);

    if (const QStringList cell = QString(expected.cell).split(':'); cell.size() == 2) {
        auto *grid = editor->window->findChild<QGridLayout *>(cell[0]);
        int r = 0, c = 0, rows = 0, columns = 0;
        grid->getItemPosition(grid->indexOf(widget), &r, &c, &rows, &columns);
        QCOMPARE(QStringLiteral("%1,%2,%3,%4").arg(r).arg(c).arg(rows).arg(columns), cell[1]);
        if (widget->objectName() == "mp_btn_apply_query")
            QCOMPARE(grid->itemAt(grid->indexOf(widget))->alignment(), Qt::AlignRight);
    }
    if (const QVariant styling = widget->property("Styling"); widget->inherits("QLabel"))
        QCOMPARE(QStringLiteral("%1=%2 %3").arg(styling.typeName()).arg(*static_cast<const int *>(styling.constData()))
                     .arg(widget->property("StylingEnabled").toString()),
                 "Vantix::UI::Fonts::FontType=4 true");
}

void EditorFormTest::windowPagesAndMenu()
{
    QMainWindow *window = editor->window.get();
    QCOMPARE(QStringList({window->objectName(), window->windowTitle()}),
             QStringList({"VantixJSONEditorClass", "VantixJSONEditor"}));
    QCOMPARE(window->size(), QSize(1197, 822));
    QVERIFY(!window->isVisible());

    auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
    QCOMPARE(tabs->currentIndex(), 1);
    QStringList pages;
    for (int i = 0; i < tabs->count(); ++i)
        pages << tabs->widget(i)->objectName() + '=' + tabs->tabText(i);
    QCOMPARE(pages, QStringList({"mp_tab_features=Features", "mp_tab_extensions=Extensions",
                                 "mp_tab_products_layout_license=Add Product/Layout", "mp_tab_diff=Changes",
                                 "mp_tab_query=Query", "mp_tab_result=Result"}));

    auto *file = editor->find<QMenu>("menuFile");
    QStringList entries = {file->title()};
    for (QAction *action : file->actions())
        entries << (action->isSeparator() ? "-" : action->objectName() + '=' + action->text());
    QCOMPARE(entries, QStringList({"File", "mp_run_reload=Reload", "mp_run_save=Save", "-", "mp_run_load=Load...",
                                   "mp_run_save_as=Save as...", "-", "mp_run_compare=Compare...",
                                   "mp_run_compare_product=Compare products..."}));
}

void EditorFormTest::textsAreTranslatable()
{
    RecordingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    EditorUnderTest another;
    QCoreApplication::removeTranslator(&translator);
    for (const char *text : {"VantixJSONEditorClass/Duplicate ", "VantixJSONEditorClass/Sclice support",
                             "VantixJSONEditorClass/Compare products...", "VantixJSONEditorClass/Search..."})
        QVERIFY2(translator.requests.contains(text), text);
}

void EditorFormTest::entryReturnsHiddenWindowOwnedByParent()
{
    MemoryFolder &folder = editor->folder;
    auto parent = std::make_unique<QWidget>();
    QPointer<QMainWindow> window = ProductEditor::CreateProductEditor(folder.path("defs"), folder.reader(),
                                                                      folder.writer(), Catalogue(), parent.get());
    QCOMPARE(window->parentWidget(), parent.get());
    QVERIFY(window->isHidden());
    QCOMPARE(window->metaObject()->className(), "ProductEditor::VantixJSONEditor");
    parent.reset();
    QVERIFY(window.isNull());

    // A folder the store refuses still opens, empty.
    std::unique_ptr<QMainWindow> empty(
        ProductEditor::CreateProductEditor(folder.path("missing"), folder.reader(), folder.writer(), {}, nullptr));
    QCOMPARE(empty->findChild<QListView *>("mp_lst_features")->model()->rowCount(), 0);
}

void EditorFormTest::modelsDieBeforeTheirViews()
{
    QStringList order;
    for (const char *name : {"mp_lst_features", "mp_lst_products", "mp_lst_ext_licenses", "mp_tree_result"}) {
        auto *view = editor->find<QAbstractItemView>(name);
        connect(view->model(), &QObject::destroyed, [&order, name] { order << QString("model ") + name; });
        connect(view, &QObject::destroyed, [&order, name] { order << QString("view ") + name; });
    }
    editor.reset();
    QCOMPARE(order.size(), 8);
    QVERIFY(order.indexOf(QRegularExpression("view .*")) > order.lastIndexOf(QRegularExpression("model .*")));
}

QTEST_MAIN(EditorFormTest)
#include "EditorFormTest.moc"
