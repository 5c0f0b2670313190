#include "EditorFixture.h"

#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPointer>
#include <QRegularExpression>

class EditorFormTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<EditorUnderTest> editor;

private slots:
    void init() { editor = std::make_unique<EditorUnderTest>(); }

    void windowPagesAndMenu()
    {
        QMainWindow *window = editor->window.get();
        QCOMPARE(QStringList({window->objectName(), window->windowTitle()}),
                 QStringList({"VantixJSONEditorClass", "VantixJSONEditor"}));
        QCOMPARE(window->size(), QSize(1197, 822));
        auto *tabs = editor->find<QTabWidget>("mp_widget_tab");
        QStringList pages = {QString::number(tabs->currentIndex())};
        for (int i = 0; i < tabs->count(); ++i)
            pages << tabs->widget(i)->objectName() + '=' + tabs->tabText(i);
        QCOMPARE(pages, QStringList({"1", "mp_tab_features=Features", "mp_tab_extensions=Extensions",
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

    // The code reaches every named widget through the form, so names and kinds are checked by the
    // compiler; the kinds of item view are what the host's style sheets also rely on.
    void itemViewKinds()
    {
        QStringList kinds;
        for (QWidget *view : editor->window->findChildren<QAbstractItemView *>(QRegularExpression("^mp_")))
            kinds << view->metaObject()->className();
        kinds.sort();
        QCOMPARE(kinds.join(' '), "QListView QListView QListView QTableView QTableView QTableView QTableView QTableView "
                                  "QTableView QTableView QTableView QTableView QTableView QTreeView QTreeView QUndoView");
        for (const char *list : {"mp_lst_features", "mp_lst_extensions", "mp_lst_layouts"})
            QVERIFY(editor->find<QListView>(list));
    }

    // Texts required as they stand, typos and trailing blank included.
    void texts()
    {
        QStringList texts;
        for (const char *name : {"mp_btn_duplicate", "mp_chk_ext_slice_support"})
            texts << editor->find(name)->property("text").toString();
        for (const char *name :
             {"mp_edt_search", "mp_edt_filter_by_id", "mp_edt_filter_by_title", "mp_edt_filter_by_layout"})
            texts << editor->find(name)->property("placeholderText").toString();
        const QString keys = "Type text or left empty. Use comma to search by several keys";
        QCOMPARE(texts, QStringList({"Duplicate ", "Sclice support", "Search...", keys,
                                     keys + ". Use * to search features with non empty title",
                                     keys + ". Use quotes to strict search by whole word"}));
    }

    void labelsCarryStyling()
    {
        QStringList labels;
        for (QLabel *label : editor->window->findChildren<QLabel *>(QRegularExpression("^label"))) {
            const QVariant styling = label->property("Styling");
            labels << QStringLiteral("%1=%2 %3")
                          .arg(styling.typeName())
                          .arg(*static_cast<const int *>(styling.constData()))
                          .arg(label->property("StylingEnabled").toBool());
        }
        QCOMPARE(labels.size(), 13);
        QCOMPARE(labels.filter("Vantix::UI::Fonts::FontType=4 1").size(), 13);
    }

    void entryReturnsHiddenWindowOwnedByParent()
    {
        MemoryFolder &folder = editor->folder;
        auto parent = std::make_unique<QWidget>();
        QPointer<QMainWindow> window = ProductEditor::CreateProductEditor(folder.path("defs"), folder.reader(),
                                                                          folder.writer(), {}, parent.get());
        QCOMPARE(window->parentWidget(), parent.get());
        QVERIFY(window->isHidden());
        parent.reset();
        QVERIFY(window.isNull());
        // A folder the store refuses still opens, empty.
        std::unique_ptr<QMainWindow> empty(
            ProductEditor::CreateProductEditor(folder.path("missing"), folder.reader(), folder.writer(), {}, nullptr));
        QCOMPARE(empty->findChild<QAbstractItemView *>("mp_lst_features")->model()->rowCount(), 0);
    }

    void modelsDieBeforeTheirViews()
    {
        QStringList order;
        for (const char *name : {"mp_lst_features", "mp_lst_products", "mp_lst_ext_licenses", "mp_tree_result"}) {
            auto *view = editor->find<QAbstractItemView>(name);
            connect(view->model(), &QObject::destroyed, [&order] { order << "model"; });
            connect(view, &QObject::destroyed, [&order] { order << "view"; });
        }
        editor.reset();
        QCOMPARE(order.join(' '), "model model model model view view view view");
    }
};

QTEST_MAIN(EditorFormTest)
#include "EditorFormTest.moc"
