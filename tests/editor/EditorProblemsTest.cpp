// The Problems panel follows the records: an edit that leaves a name pointing nowhere
// adds its row once edits pause, undoing it takes the row away, and activating a row
// opens the record the problem is about.
#include "EditorFixture.h"
#include "PlantedFolder.h"

#include "models/ProblemsModel.h"
#include "store/CanonicalDocument.h"
#include "models/FeaturesModel.h"
#include "models/ProductsModel.h"

#include <QAbstractItemModelTester>
#include <QDockWidget>
#include <QLabel>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTableView>

using ProductEditor::ProblemsModel;
using ProductEditor::FeaturesModel;
using ProductEditor::ProductsModel;

namespace {

QStringList Rows(const QAbstractItemModel *model)
{
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row)
        rows << model->index(row, ProblemsModel::CodeColumn).data().toString() + ' '
                    + model->index(row, ProblemsModel::LocationColumn).data().toString() + ' '
                    + model->index(row, ProblemsModel::MessageColumn).data().toString();
    return rows;
}

} // namespace

class EditorProblemsTest : public QObject, EditorTestState
{
    Q_OBJECT

    // Where a save would first write something else.
    const QString rewrite = "PE014 %1 the file is not in canonical form from here on; normalize and every save "
                            "rewrite it";

    void canonicalize()
    {
        for (const auto &[file, bytes] : {std::pair{"defs/products/products.json", CanonicalProducts()},
                                          std::pair{"defs/layouts/workspace.json", CanonicalLayouts()}})
            editor->folder.addFile(file, ProductEditor::CanonicalizeDefinitionDocument(bytes).bytes);
        answers->Then({QMessageBox::Yes});
        editor->run("mp_run_reload");
    }

    QAbstractItemModel *findings() const { return editor->model("mp_tbl_problems"); }
    QString title() const { return editor->find<QDockWidget>("mp_dock_problems")->windowTitle(); }

    // Waits for the panel's rows to change, as they do once a check in the background ends.
    bool waitForRows(const QStringList &expected)
    {
        QSignalSpy reset(findings(), &QAbstractItemModel::modelReset);
        QSignalSpy inserted(findings(), &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(findings(), &QAbstractItemModel::rowsRemoved);
        for (int round = 0; round < 50 && Rows(findings()) != expected; ++round)
            inserted.wait(100);
        return Rows(findings()) == expected;
    }

private slots:
    void init() { start(); }

    // Every kind of problem planted once: the rows are those `check` prints, in its order and
    // with its counts, and activating the undefined feature's row makes it current.
    void planted()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath("defs");
        WritePlantedFolder(root);
        Write(dir.filePath("lic.json"), R"({"Base": "B"})");
        const Run check = Program({"check", root, "--licenses", dir.filePath("lic.json"), "--format", "json"});
        const QJsonObject printed = QJsonDocument::fromJson(check.out.toUtf8()).object();
        QStringList expected;
        for (const QJsonValue &problem : printed["diagnostics"].toArray())
            expected << problem["code"].toString() + ' ' + QDir(root).relativeFilePath(problem["file"].toString()) + ':'
                            + QString::number(problem["line"].toInt()) + ':' + QString::number(problem["column"].toInt())
                            + ' ' + problem["message"].toString();
        QCOMPARE(expected.size(), 23);
        editor->window.reset(ProductEditor::CreateProductEditor(
            root, &Read, [](const QString &path, const QByteArray &bytes) { return Write(path, bytes); }, {{"Base", "B"}},
            nullptr));
        QVERIFY2(waitForRows(expected), qPrintable(Rows(findings()).join('\n')));
        QCOMPARE(editor->find<QLabel>("mp_lbl_problems_summary")->text(),
                 QString("%1 warnings, %2 errors").arg(printed["warnings"].toInt()).arg(printed["errors"].toInt()));
        QCOMPARE(title(), QString("Problems (23)"));
        auto *sortable = static_cast<QTableView *>(editor->find<QAbstractItemView>("mp_tbl_problems"));
        sortable->sortByColumn(ProblemsModel::CodeColumn, Qt::DescendingOrder);
        QCOMPARE(findings()->index(0, ProblemsModel::CodeColumn).data().toString(), QString("PE015"));
        sortable->sortByColumn(-1, Qt::AscendingOrder);
        QCOMPARE(Rows(findings()), expected);

        auto *table = editor->find<QAbstractItemView>("mp_tbl_problems");
        const QModelIndexList ghost = findings()->match(findings()->index(0, ProblemsModel::MessageColumn),
                                                        Qt::DisplayRole, "feature \"ghost\"", 1, Qt::MatchStartsWith);
        QCOMPARE(ghost.size(), 1);
        emit table->activated(ghost.first());
        QCOMPARE(editor->page(), 0);
        QCOMPARE(view("mp_lst_features")->currentIndex().data().toString(), QString("ghost"));
        // A layout file's problem shows the layouts.
        emit table->activated(findings()->match(findings()->index(0, ProblemsModel::LocationColumn), Qt::DisplayRole,
                                                "layouts/b.json", 1, Qt::MatchStartsWith)
                                  .value(0));
        QCOMPARE(editor->page(), 2);
    }
    // The fixture's files are not laid out as a save writes them; a reload of the very
    // bytes a save writes leaves no finding.
    void reloadedFiles()
    {
        // Created hidden, its toggle under View, right after Edit.
        QVERIFY(editor->find<QDockWidget>("mp_dock_problems")->isHidden());
        QStringList menus;
        for (QAction *menu : editor->find<QMenuBar>("menuBar")->actions())
            menus << menu->menu()->objectName();
        QCOMPARE(menus, QStringList({"menuFile", "menuEdit", "menuView"}));
        QAction *toggle = editor->find<QAction>("mp_run_problems");
        QCOMPARE(editor->find<QMenu>("menuView")->actions().value(0), toggle);
        QVERIFY2(waitForRows({rewrite.arg("products/products.json:1:2"), rewrite.arg("layouts/workspace.json:1:2")}),
                 qPrintable(Rows(findings()).join('\n')));
        QCOMPARE(editor->find<QLabel>("mp_lbl_problems_summary")->text(), QString("2 warnings, 0 errors"));
        QCOMPARE(title(), QString("Problems (2)"));
        QCOMPARE(toggle->text(), QString("Problems"));
        editor->find<QLineEdit>("mp_edt_problems_filter")->setText("LAYOUTS/");
        QCOMPARE(findings()->rowCount(), 1);
        canonicalize();
        QVERIFY(waitForRows({}));
        QCOMPARE(editor->find<QLabel>("mp_lbl_problems_summary")->text(), QString("0 warnings, 0 errors"));
        QCOMPARE(title(), QString("Problems"));
    }

    void edit_data()
    {
        QTest::addColumn<QString>("view");
        QTest::addColumn<QString>("id");
        QTest::addColumn<int>("column"); // -1 removes the feature
        QTest::addColumn<QString>("value");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<int>("opens"); // the page activating the first row shows, -1 none
        QTest::addColumn<QString>("record"); // the product it makes current

        const QString licensing = "PE006 product \"basic\" (edited, in no file yet) licensing "
                                  "of product \"basic\" names feature \"file_save\", which no \"feature\" entry "
                                  "defines; the licenses are kept for no feature";
        QTest::newRow("licensed feature renamed")
            << "mp_lst_features" << "file_save" << int(FeaturesModel::IdColumn) << "file_store"
            << QStringList{licensing, rewrite.arg("products/products.json:52:30"),
                           rewrite.arg("layouts/workspace.json:42:24")}
            << 2 << "basic";
        QTest::newRow("licensed feature removed")
            << "mp_lst_features" << "file_save" << -1 << ""
            << QStringList{licensing, rewrite.arg("products/products.json:52:18"),
                           rewrite.arg("layouts/workspace.json:41:28")}
            << 2 << "basic";
        QTest::newRow("product id repeated")
            << "mp_lst_products" << "pro" << int(ProductsModel::IdColumn) << "basic"
            << QStringList{"PE004 product \"basic\" (edited, in no file yet) product \"basic\" is defined again; both "
                           "stay and most operations use the first",
                           rewrite.arg("products/products.json:125:32")}
            << 2 << "basic";
        QTest::newRow("base license outside the catalogue")
            << "mp_lst_products" << "pro" << int(ProductsModel::BaseColumn) << "lic_gold"
            << QStringList{"PE008 product \"pro\" (edited, in no file yet) license \"lic_gold\" "
                           "is missing from the license catalogue; the name is kept but the catalogue cannot show it",
                           rewrite.arg("products/products.json:130:34")}
            << 2 << "pro";
        QTest::newRow("title edited") << "mp_lst_features" << "mesh_cut" << int(FeaturesModel::TitleColumn) << "Slice"
                                      << QStringList{rewrite.arg("products/products.json:58:27")}
                                      << 5 << ""; // the products file, as a save writes it
    }

    void edit()
    {
        QFETCH(QString, view);
        QFETCH(QString, id);
        QFETCH(int, column);
        QFETCH(QString, value);
        QFETCH(QStringList, rows);
        QFETCH(int, opens);
        QFETCH(QString, record);

        canonicalize();
        QVERIFY(waitForRows({}));
        QAbstractItemModelTester tester(findings(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QAbstractItemModel *records = editor->model(qPrintable(view));
        const int idColumn = view == "mp_lst_products" ? int(ProductsModel::IdColumn) : int(FeaturesModel::IdColumn);
        const QModelIndexList found = records->match(records->index(0, idColumn), Qt::DisplayRole, id, 1, Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        if (column < 0) {
            EditorTestState::view(qPrintable(view))->setCurrentIndex(found.first());
            editor->run("mp_btn_remove_current");
        } else {
            QVERIFY(records->setData(found.first().siblingAtColumn(column), value));
        }
        QVERIFY2(waitForRows(rows), qPrintable(Rows(findings()).join('\n')));

        editor->setPage(0);
        auto *table = editor->find<QAbstractItemView>("mp_tbl_problems");
        table->setCurrentIndex(findings()->index(0, 0));
        QTest::keyClick(table, Qt::Key_Return);
        QCOMPARE(editor->page(), opens);
        if (!record.isEmpty())
            QCOMPARE(EditorTestState::view("mp_lst_products")->currentIndex().siblingAtColumn(ProductsModel::IdColumn).data().toString(),
                     record);

        editor->run("mp_run_undo");
        QVERIFY2(waitForRows({}), qPrintable(Rows(findings()).join('\n')));
    }
};

QTEST_MAIN(EditorProblemsTest)
#include "EditorProblemsTest.moc"
