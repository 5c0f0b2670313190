#include "EditorFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPointer>
#include <QTabWidget>
#include <QTableView>
#include <QTranslator>
#include <QTreeView>

// Records every text the form asks to translate.
class RecordingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        requests << QStringLiteral("%1/%2").arg(QLatin1String(context), QString::fromUtf8(sourceText));
        return QString();
    }
    mutable QStringList requests;
};

class EditorFormTest : public QObject
{
    Q_OBJECT

private slots:
    void widgetTexts_data();
    void widgetTexts();
    void pages();
    void menu();
    void gridCells_data();
    void gridCells();
    void labelStyling_data();
    void labelStyling();
    void textsAreTranslatable();
    void entryReturnsHiddenWindowOwnedByParent();
    void modelsDieBeforeTheirViews();
};

void EditorFormTest::widgetTexts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *cls, const char *property, const QString &text) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(cls)
                            << QString::fromLatin1(property) << text;
    };
    const QString keys = QStringLiteral("Type text or left empty. Use comma to search by several keys");
    row("mp_edt_search", "QLineEdit", "placeholderText", QStringLiteral("Search..."));
    row("mp_lst_features", "QListView", "objectName", QStringLiteral("mp_lst_features"));
    row("mp_btn_add_new_feature", "QPushButton", "text", QStringLiteral("Add feature"));
    row("mp_btn_duplicate", "QPushButton", "text", QStringLiteral("Duplicate "));
    row("mp_btn_remove_current", "QPushButton", "text", QStringLiteral("Remove current"));
    row("General", "QGroupBox", "title", QStringLiteral("General"));
    row("groupBox", "QGroupBox", "title", QStringLiteral("Products"));
    row("groupBox_3", "QGroupBox", "title", QStringLiteral("Layouts"));
    row("groupBox_2", "QGroupBox", "title", QStringLiteral("Licensing"));
    row("label", "QLabel", "text", QStringLiteral("Id"));
    row("label_2", "QLabel", "text", QStringLiteral("Statustip"));
    row("label_3", "QLabel", "text", QStringLiteral("Title"));
    row("label_4", "QLabel", "text", QStringLiteral("Tooltip"));
    row("label_5", "QLabel", "text", QStringLiteral("Base"));
    row("mp_chk_visible", "QCheckBox", "text", QStringLiteral("Visible"));
    row("mp_chk_emergency", "QCheckBox", "text", QStringLiteral("Emergency"));
    row("mp_edt_base_license", "QLineEdit", "placeholderText", QString());
    row("mp_lst_feature_product", "QTableView", "objectName", QStringLiteral("mp_lst_feature_product"));
    row("mp_lst_feature_layout", "QTableView", "objectName", QStringLiteral("mp_lst_feature_layout"));
    row("mp_lst_specific_license", "QTableView", "objectName", QStringLiteral("mp_lst_specific_license"));
    row("mp_lst_extensions", "QListView", "objectName", QStringLiteral("mp_lst_extensions"));
    row("mp_btn_add_new_extension", "QPushButton", "text", QStringLiteral("Add extension"));
    row("mp_btn_remove_extension", "QPushButton", "text", QStringLiteral("Remove current"));
    row("groupBox_9", "QGroupBox", "title", QStringLiteral("General"));
    row("groupBox_10", "QGroupBox", "title", QStringLiteral("Licensing"));
    row("label_14", "QLabel", "text", QStringLiteral("Id"));
    row("label_11", "QLabel", "text", QStringLiteral("Title"));
    row("label_13", "QLabel", "text", QStringLiteral("Extension"));
    row("mp_chk_ext_cad_support", "QCheckBox", "text", QStringLiteral("Cad support"));
    row("mp_chk_ext_slice_support", "QCheckBox", "text", QStringLiteral("Sclice support"));
    row("mp_chk_ext_multiple_parts_support", "QCheckBox", "text", QStringLiteral("Multiple parts support"));
    row("mp_chk_ext_load_as_part", "QCheckBox", "text", QStringLiteral("Load as part"));
    row("mp_lst_ext_product", "QTableView", "objectName", QStringLiteral("mp_lst_ext_product"));
    row("mp_lst_ext_layout", "QTableView", "objectName", QStringLiteral("mp_lst_ext_layout"));
    row("mp_lst_ext_licenses", "QTableView", "objectName", QStringLiteral("mp_lst_ext_licenses"));
    row("groupBox_4", "QGroupBox", "title", QStringLiteral("Products"));
    row("groupBox_5", "QGroupBox", "title", QStringLiteral("Layouts"));
    row("groupBox_6", "QGroupBox", "title", QStringLiteral("Licenses"));
    row("mp_lst_products", "QTableView", "objectName", QStringLiteral("mp_lst_products"));
    row("mp_lst_layouts", "QListView", "objectName", QStringLiteral("mp_lst_layouts"));
    row("mp_lst_licenses", "QTableView", "objectName", QStringLiteral("mp_lst_licenses"));
    row("mp_btn_duplicate_product", "QPushButton", "text", QStringLiteral("Duplicate current"));
    row("mp_btn_remove_product", "QPushButton", "text", QStringLiteral("Remove current"));
    row("mp_btn_add_licenses", "QPushButton", "text", QStringLiteral("Add licenses"));
    row("mp_btn_remove_current_lic", "QPushButton", "text", QStringLiteral("Remove current"));
    row("mp_btn_update", "QPushButton", "text", QStringLiteral("Update"));
    row("mp_tree_diff", "QTreeView", "objectName", QStringLiteral("mp_tree_diff"));
    row("mp_btn_apply_patch", "QPushButton", "text", QStringLiteral("Apply changes"));
    row("groupBox_7", "QGroupBox", "title", QStringLiteral("Query"));
    row("groupBox_8", "QGroupBox", "title", QStringLiteral("Result"));
    row("label_6", "QLabel", "text", QStringLiteral("Id"));
    row("label_7", "QLabel", "text", QStringLiteral("Title"));
    row("label_8", "QLabel", "text", QStringLiteral("Licenses"));
    row("label_9", "QLabel", "text", QStringLiteral("Products"));
    row("label_10", "QLabel", "text", QStringLiteral("Layouts"));
    row("mp_edt_filter_by_id", "QLineEdit", "placeholderText", keys);
    row("mp_edt_filter_by_title", "QLineEdit", "placeholderText",
        keys + QStringLiteral(". Use * to search features with non empty title"));
    row("mp_edt_filter_by_product", "QLineEdit", "placeholderText",
        keys + QStringLiteral(". Use quotes to strict search by whole word"));
    row("mp_edt_filter_by_layout", "QLineEdit", "placeholderText",
        keys + QStringLiteral(". Use quotes to strict search by whole word"));
    row("mp_edt_filter_by_license", "QLineEdit", "placeholderText", keys);
    row("mp_btn_apply_query", "QPushButton", "text", QStringLiteral("Apply"));
    row("mp_tbl_query_result", "QTableView", "objectName", QStringLiteral("mp_tbl_query_result"));
    row("mp_tree_result", "QTreeView", "objectName", QStringLiteral("mp_tree_result"));
}

void EditorFormTest::widgetTexts()
{
    QFETCH(QString, name);
    QFETCH(QString, className);
    QFETCH(QString, property);
    QFETCH(QString, text);

    EditorUnderTest editor;
    QWidget *widget = editor.window->findChild<QWidget *>(name);
    QVERIFY2(widget, qPrintable(name));
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QCOMPARE(widget->property(property.toLatin1()).toString(), text);
}

void EditorFormTest::pages()
{
    EditorUnderTest editor;
    QCOMPARE(editor.window->objectName(), QStringLiteral("VantixJSONEditorClass"));
    QCOMPARE(editor.window->windowTitle(), QStringLiteral("VantixJSONEditor"));
    QCOMPARE(editor.window->size(), QSize(1197, 822));
    QVERIFY(!editor.window->isVisible());

    auto *tabs = editor.find<QTabWidget>("mp_widget_tab");
    QCOMPARE(tabs->tabPosition(), QTabWidget::North);
    QCOMPARE(tabs->tabShape(), QTabWidget::Rounded);
    QCOMPARE(tabs->currentIndex(), 1);
    const QStringList names = {"mp_tab_features", "mp_tab_extensions", "mp_tab_products_layout_license",
                               "mp_tab_diff", "mp_tab_query", "mp_tab_result"};
    const QStringList texts = {"Features", "Extensions", "Add Product/Layout", "Changes", "Query", "Result"};
    QCOMPARE(tabs->count(), names.size());
    for (int i = 0; i < tabs->count(); ++i) {
        QCOMPARE(tabs->widget(i)->objectName(), names.at(i));
        QCOMPARE(tabs->tabText(i), texts.at(i));
    }
}

void EditorFormTest::menu()
{
    EditorUnderTest editor;
    auto *file = editor.find<QMenu>("menuFile");
    QVERIFY(file);
    QCOMPARE(file->title(), QStringLiteral("File"));
    QStringList entries;
    for (QAction *action : file->actions())
        entries << (action->isSeparator() ? QStringLiteral("-")
                                          : action->objectName() + QLatin1Char('=') + action->text());
    QCOMPARE(entries, QStringList({"mp_run_reload=Reload", "mp_run_save=Save", "-", "mp_run_load=Load...",
                                   "mp_run_save_as=Save as...", "-", "mp_run_compare=Compare...",
                                   "mp_run_compare_product=Compare products..."}));
}

void EditorFormTest::gridCells_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("item");
    QTest::addColumn<QList<int>>("cell");

    const auto row = [](const char *layout, const char *item, QList<int> cell) {
        QTest::newRow(item) << QString::fromLatin1(layout) << QString::fromLatin1(item) << cell;
    };
    row("gridLayout", "mp_widget_tab", {0, 0, 1, 1});
    row("gridLayout_2", "General", {0, 1, 1, 2});
    row("gridLayout_2", "groupBox", {1, 1, 3, 1});
    row("gridLayout_2", "groupBox_3", {1, 2, 1, 1});
    row("gridLayout_2", "groupBox_2", {2, 2, 2, 1});
    row("gridLayout_3", "label", {0, 0, 1, 1});
    row("gridLayout_3", "mp_edt_id", {0, 2, 1, 1});
    row("gridLayout_3", "mp_edt_tooltip", {3, 2, 1, 1});
    row("gridLayout_3", "mp_chk_visible", {4, 0, 1, 1});
    row("gridLayout_3", "mp_chk_emergency", {4, 2, 1, 1});
    row("gridLayout_4", "mp_edt_base_license", {0, 1, 1, 1});
    row("gridLayout_4", "mp_lst_specific_license", {2, 0, 1, 2});
    row("gridLayout_10", "groupBox_9", {0, 0, 1, 2});
    row("gridLayout_10", "mp_lst_ext_layout", {2, 0, 1, 1});
    row("gridLayout_10", "groupBox_10", {1, 1, 3, 1});
    row("gridLayout_9", "mp_edt_ext_name", {2, 1, 1, 3});
    row("gridLayout_9", "mp_chk_ext_slice_support", {3, 1, 1, 1});
    row("gridLayout_9", "mp_chk_ext_load_as_part", {3, 3, 1, 1});
    row("gridLayout_5", "groupBox_6", {0, 1, 2, 1});
    row("gridLayout_6", "mp_lst_products", {0, 0, 1, 2});
    row("gridLayout_7", "mp_btn_remove_current_lic", {1, 1, 1, 1});
    row("gridLayout_8", "mp_edt_filter_by_product", {3, 2, 1, 1});
    row("gridLayout_8", "label_8", {5, 0, 1, 1});
    row("gridLayout_8", "mp_btn_apply_query", {6, 2, 1, 1});
}

void EditorFormTest::gridCells()
{
    QFETCH(QString, layout);
    QFETCH(QString, item);
    QFETCH(QList<int>, cell);

    EditorUnderTest editor;
    auto *grid = editor.window->findChild<QGridLayout *>(layout);
    QVERIFY(grid);
    const int index = grid->indexOf(editor.window->findChild<QWidget *>(item));
    QVERIFY(index >= 0);
    int row = 0, column = 0, rowSpan = 0, columnSpan = 0;
    grid->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
    QCOMPARE(QList<int>({row, column, rowSpan, columnSpan}), cell);
    if (item == QLatin1String("mp_btn_apply_query"))
        QCOMPARE(grid->itemAt(index)->alignment(), Qt::AlignRight);
}

void EditorFormTest::labelStyling_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"label", "label_2", "label_3", "label_4", "label_5", "label_6", "label_7",
                             "label_8", "label_9", "label_10", "label_11", "label_13", "label_14"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void EditorFormTest::labelStyling()
{
    QFETCH(QString, name);
    EditorUnderTest editor;
    auto *label = editor.window->findChild<QLabel *>(name);
    QVERIFY(label);
    const QVariant styling = label->property("Styling");
    QCOMPARE(QString::fromLatin1(styling.typeName()), QStringLiteral("Vantix::UI::Fonts::FontType"));
    QCOMPARE(styling.userType(), QMetaType::type("Vantix::UI::Fonts::FontType"));
    QCOMPARE(*static_cast<const int *>(styling.constData()), 4);
    QCOMPARE(label->property("StylingEnabled"), QVariant(true));
}

void EditorFormTest::textsAreTranslatable()
{
    RecordingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    { EditorUnderTest editor; }
    QCoreApplication::removeTranslator(&translator);
    for (const char *text : {"VantixJSONEditorClass/Duplicate ", "VantixJSONEditorClass/Sclice support",
                             "VantixJSONEditorClass/Compare products...", "VantixJSONEditorClass/Search..."})
        QVERIFY2(translator.requests.contains(QLatin1String(text)), text);
}

void EditorFormTest::entryReturnsHiddenWindowOwnedByParent()
{
    MemoryFolder folder;
    folder.addFile(QStringLiteral("products/products.json"), CanonicalProducts());
    auto parent = std::make_unique<QWidget>();
    QPointer<QMainWindow> window = ProductEditor::CreateProductEditor(folder.root(), folder.reader(),
                                                                      folder.writer(), Catalogue(), parent.get());
    QVERIFY(window);
    QCOMPARE(window->parentWidget(), parent.get());
    QVERIFY(window->isHidden());
    QCOMPARE(window->metaObject()->className(), "ProductEditor::VantixJSONEditor");
    parent.reset();
    QVERIFY(window.isNull());

    // A folder the store refuses still opens, empty.
    std::unique_ptr<QMainWindow> empty(ProductEditor::CreateProductEditor(
        folder.path(QStringLiteral("missing")), folder.reader(), folder.writer(), {}, nullptr));
    QCOMPARE(empty->findChild<QListView *>(QStringLiteral("mp_lst_features"))->model()->rowCount(), 0);
}

void EditorFormTest::modelsDieBeforeTheirViews()
{
    auto editor = std::make_unique<EditorUnderTest>();
    QStringList order;
    for (const char *name : {"mp_lst_features", "mp_lst_products", "mp_lst_ext_licenses", "mp_tree_result"}) {
        auto *view = editor->find<QAbstractItemView>(name);
        connect(view->model(), &QObject::destroyed, [&order, name] { order << QStringLiteral("model ") + name; });
        connect(view, &QObject::destroyed, [&order, name] { order << QStringLiteral("view ") + name; });
    }
    editor.reset();
    QCOMPARE(order.size(), 8);
    for (const char *name : {"mp_lst_features", "mp_lst_products", "mp_lst_ext_licenses", "mp_tree_result"})
        QVERIFY(order.indexOf(QStringLiteral("model ") + name) < order.indexOf(QStringLiteral("view ") + name));
    QVERIFY(order.first().startsWith(QLatin1String("model")));
}

QTEST_MAIN(EditorFormTest)
#include "EditorFormTest.moc"
