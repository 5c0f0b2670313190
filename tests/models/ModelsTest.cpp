// The store table models, the check-mark models, the filters and the facade that wires them.
#include "MemoryFolder.h"
#include "TestHelpers.h"
#include "models/ExtensionsBaseModel.h"
#include "models/ExtensionsLicenseModel.h"
#include "models/FeatureProductsModel.h"
#include "models/FeaturesModel.h"
#include "models/Model.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"
#include "models/QueryFilterFeatureModel.h"

#include <QAbstractItemModelTester>
#include <QAbstractProxyModel>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

using namespace ProductEditor;

namespace {

// Features: Open, exit, my_feat_1, orphan, save (rows in this order); products: Base, Base2, ab;
// layouts: design, print; extensions: obj, stl; licence catalogue: 10, 2, B, Lic1.
const char *kProducts = R"({"extensions": {
  "extension": [{"id": "stl", "title": "STL", "ext": ".stl", "cad_support": true},
                {"id": "obj", "title": "OBJ", "ext": ".obj", "slices_support": true}],
  "lic_coveradge": {"import": [{"id": "stl", "lic": ["10", "2"]}], "export": [{"id": "obj", "lic": ["B"]}]}},
 "features": {"feature": [{"id": "Open", "title": "Open file", "tooltip": "Opens", "statustip": "Opening"},
  {"id": "save", "title": "Save", "emergency": true}, {"id": "my_feat_1"},
  {"id": "orphan", "title": "Orphan", "visual": false}, {"id": "exit", "title": "Exit"}]},
 "products": {"product": [
  {"id": "Base", "profile_suffix": "_b", "modes": ["design"], "features": ["Open", "save", "my_feat_1"],
   "licensing": {"base": "L1", "specific": [{"id": "Open", "licenses": ["Lic1", "2"]}]},
   "extensions": {"import": ["stl"], "open": ["stl", "obj"]}},
  {"id": "Base2", "profile_suffix": "_b2", "modes": ["design", "print"], "features": ["save", "exit"],
   "licensing": {"base": "L2", "specific": [{"id": "save", "licenses": ["Lic1"]}]}},
  {"id": "ab", "licensing": {"base": "L3"}, "features": ["exit"]}]}})";
const char *kLayouts = R"({"layouts": {"design": {"extensions": {"export": ["stl"]}, "features": ["Open"]},
  "print": {"extensions": {"import": ["obj"]}, "features": ["save", "exit"]}}})";

std::unique_ptr<QAbstractItemModelTester> Tester(QAbstractItemModel *model)
{
    return std::make_unique<QAbstractItemModelTester>(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
}

// A cell as text: invalid reads "-", colours by name, an icon as an empty text.
QString CellText(const QVariant &value)
{
    if (value.userType() == QMetaType::QColor)
        return value.value<QColor>() == Qt::black ? "black" : value.value<QColor>() == Qt::gray ? "gray" : "?";
    return value.isValid() ? value.toString() : QStringLiteral("-");
}

// Cells joined with "|" and rows with ";"; for one column, rows joined with ",".
QString Text(const QAbstractItemModel &model, int role = Qt::DisplayRole, int column = -1, int row = -1)
{
    QStringList rows;
    for (int r = row < 0 ? 0 : row; r < (row < 0 ? model.rowCount() : row + 1); ++r) {
        QStringList cells;
        for (int c = column < 0 ? 0 : column; c < (column < 0 ? model.columnCount() : column + 1); ++c)
            cells << CellText(model.index(r, c).data(role));
        rows << cells.join('|');
    }
    return rows.join(column < 0 ? ';' : ',');
}

QString HeaderText(const QAbstractItemModel &model, Qt::Orientation orientation = Qt::Horizontal)
{
    QStringList texts;
    for (int section = 0; section < (orientation == Qt::Horizontal ? model.columnCount() : model.rowCount()); ++section)
        texts << CellText(model.headerData(section, orientation));
    return texts.join('|');
}

// Every emission: index arguments as "row,column" ("-" for the root), others as text, a role list as "[]" or "[roles]".
QString Emissions(const QSignalSpy &spy)
{
    QStringList emissions;
    for (const QList<QVariant> &arguments : spy) {
        QStringList texts;
        for (const QVariant &a : arguments) {
            const QModelIndex i = a.toModelIndex();
            texts << (a.userType() == qMetaTypeId<QModelIndex>() ? (i.isValid() ? QString("%1,%2").arg(i.row()).arg(i.column()) : "-")
                      : a.userType() == qMetaTypeId<QVector<int>>() ? (a.value<QVector<int>>().isEmpty() ? "[]" : "[roles]")
                                                                     : a.toString());
        }
        emissions << texts.join(' ');
    }
    return emissions.join(';');
}


} // namespace

// One facade over the shared folder per test, so each model is tested as it is wired.
class ModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<MemoryFolder>();
        m_folder->addFile(QStringLiteral("products/products.json"), kProducts);
        m_folder->addFile(QStringLiteral("layouts/layouts.json"), kLayouts);
        m_store = std::make_unique<VantixJsonData>(m_folder->root(), m_folder->reader(), m_folder->writer(),
            QMap<QString, QString>{{"10", "Ten"}, {"2", "Two"}, {"B", "Bee"}, {"Lic1", "Licence one"}});
        m_model = std::make_unique<Model>(*m_store);
        m_features = m_model->GetSourceFeaturesModel();
        m_extensions = m_model->GetExtensionsModel();
        m_products = m_model->GetProductsModel();
        m_featureProducts = qobject_cast<FeatureProductsModel *>(m_model->GetFeatureProductsModel());
        m_productLayouts = qobject_cast<ProductLayoutsModel *>(m_model->GetProductLayoutsModel());
        m_productLicenses = qobject_cast<ProductLicensesModel *>(qobject_cast<QAbstractProxyModel *>(m_model->GetProductLicensesModel())->sourceModel());
        m_extensionProducts = qobject_cast<ExtensionsBaseModel *>(m_model->GetExtensionsProductModel());
        m_extensionLayouts = qobject_cast<ExtensionsBaseModel *>(m_model->GetExtensionsLayoutModel());
        m_extensionLicenses = qobject_cast<ExtensionsLicenseModel *>(qobject_cast<QAbstractProxyModel *>(m_model->GetExtensionsLicenseModel())->sourceModel());
    }
    void cleanup()
    {
        m_model.reset();
        m_store.reset();
    }

    void tables()
    {
        QAbstractItemModel &layouts = *m_model->GetLayoutsModel();
        [[maybe_unused]] const auto testers = {Tester(m_features), Tester(m_extensions), Tester(m_products), Tester(&layouts)};
        QCOMPARE(HeaderText(*m_features), "Id|Title|Tooltip|Statustip|Visible|Emergrncy|Products|Layouts|Licenses");
        QCOMPARE(Text(*m_features, Qt::ToolTipRole, -1, 0).section('|', 0, 7), "Open|Open file|Opens|Opening|true|false|Base|design");
        QVERIFY(QStringList({"2, Lic1", "Lic1, 2"}).contains(m_features->index(0, 8).data().toString()));
        // The joined lists are not editable, so a mapped editor shows them empty.
        QCOMPARE(Text(*m_features, Qt::EditRole, -1, 0), QStringLiteral("Open|Open file|Opens|Opening|true|false|-|-|-"));
        QCOMPARE(HeaderText(*m_extensions), "Id|Title|Extension|Cad support|Multiple parts support|Slices support|Load as part");
        QCOMPARE(Text(*m_extensions, Qt::EditRole), "obj|OBJ|.obj|false|false|true|false;stl|STL|.stl|true|false|false|false");
        QCOMPARE(Text(*m_products), QStringLiteral("-|Base|_b|L1;-|Base2|_b2|L2;-|ab||L3"));
        // The same words beside the rows, kept as they are.
        QCOMPARE(HeaderText(*m_products) + '/' + HeaderText(*m_products, Qt::Vertical), "-|Product|Suffix|Base lic/-|Product|Suffix");
        QCOMPARE(Text(layouts) + '/' + HeaderText(layouts), "-|-|design;-|-|print/Current\nFeature|Current\nProduct|Name");
    }

    // An empty text means refused: the row keeps its text and nothing is announced.
    void edits_data()
    {
        QTest::addColumn<int>("model"); // 0 features (row 2), 1 extensions, 2 products
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("row");
        QTest::newRow("feature visible from text") << 0 << 4 << QVariant("false") << "my_feat_1||||false|false|Base||";
        QTest::newRow("feature emergency from int") << 0 << 5 << QVariant(1) << "my_feat_1||||true|true|Base||";
        QTest::newRow("feature title equal to the own id") << 0 << 1 << QVariant("my_feat_1") << "";
        QTest::newRow("extension load as part") << 1 << 6 << QVariant(true) << "obj|OBJ|.obj|false|false|true|true";
        QTest::newRow("product id, written straight") << 2 << 1 << QVariant("T") << "-|T|_b|L1";
    }
    void edits()
    {
        QFETCH(int, model);
        QFETCH(int, column);
        QFETCH(QVariant, value);
        QFETCH(QString, row);
        QAbstractItemModel *table = QList<QAbstractItemModel *>{m_features, m_extensions, m_products}[model];
        const int r = model == 0 ? 2 : 0;
        const auto tester = Tester(table);
        const QString before = Text(*table, Qt::DisplayRole, -1, r);
        QSignalSpy changed(table, &QAbstractItemModel::dataChanged);
        QVERIFY(!table->setData(table->index(r, column), value, Qt::DisplayRole)); // edits come in the edit role only
        QCOMPARE(table->setData(table->index(r, column), value), !row.isEmpty());
        QCOMPARE(Text(*table, Qt::DisplayRole, -1, r), row.isEmpty() ? before : row);
        QCOMPARE(Emissions(changed), row.isEmpty() ? "" : QString("%1,%2 %1,%2 []").arg(r).arg(column));
        QCOMPARE(Sorted(store().GetFeatures().value("Open").productIds), "Base"); // a renamed product is not followed
    }

    // A rename is a removal and an insertion; the change is reported at the old row.
    void rename_data()
    {
        QTest::addColumn<bool>("features");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature to the front") << true << 4 << "Alpha" << "- 4 4/- 0 0" << "Alpha,Open,exit,my_feat_1,orphan";
        QTest::newRow("feature to an existing id") << true << 4 << "exit" << "/" << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("extension to the back") << false << 0 << "zip" << "- 0 0/- 1 1" << "stl,zip";
    }
    void rename()
    {
        QFETCH(bool, features);
        QFETCH(int, row);
        QFETCH(QString, id);
        QFETCH(QString, moves);
        QFETCH(QString, ids);
        QAbstractItemModel *table = features ? m_features : m_extensions;
        const auto tester = Tester(table);
        QSignalSpy removed(table, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(table, &QAbstractItemModel::rowsInserted);
        const QString fields = Text(*table, Qt::DisplayRole, -1, row).section('|', 1, 7);
        const bool accepted = moves != "/";
        QCOMPARE(table->setData(table->index(row, 0), id), accepted);
        QCOMPARE(Emissions(removed) + '/' + Emissions(inserted), moves);
        QCOMPARE(Text(*table, Qt::DisplayRole, 0), ids);
        if (accepted)
            QCOMPARE(Text(*table, Qt::DisplayRole, -1, ids.split(',').indexOf(id)).section('|', 1, 7), fields);
        else
            QCOMPARE(QToolTip::text(), QStringLiteral("This ID is already exist"));
        QToolTip::hideText();
    }

    // No tester: a second insertion announces a row that is not added.
    void insertAddsOneUnnumberedRow()
    {
        for (QAbstractItemModel *table : {m_features, m_extensions}) {
            QSignalSpy inserted(table, &QAbstractItemModel::rowsInserted);
            QVERIFY(table->insertRows(3, 7) && table->setData(table->index(0, 2), QStringLiteral("changed")));
            QVERIFY(table->insertRows(0, 1));
            QCOMPARE(Emissions(inserted), QStringLiteral("- 0 0;- 0 0"));
        }
        // The feature is kept as it is; the extension's pattern is written again.
        QCOMPARE(Text(*m_features, Qt::DisplayRole, -1, 0), QStringLiteral("New_Feature||changed||true|false|||"));
        QCOMPARE(Text(*m_extensions, Qt::DisplayRole, -1, 0), QStringLiteral("extension||.extension|false|false|false|false"));
    }

    // Features and extensions answer false even after removing; one row goes whatever the count.
    void removeTakesOneRow_data()
    {
        QTest::addColumn<int>("model");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature") << 0 << 3 << "Open,exit,my_feat_1,save";
        QTest::newRow("extension") << 1 << 1 << "obj";
        QTest::newRow("product") << 2 << 2 << "Base,Base2";
    }
    void removeTakesOneRow()
    {
        QFETCH(int, model);
        QFETCH(int, row);
        QFETCH(QString, ids);
        QAbstractItemModel *table = QList<QAbstractItemModel *>{m_features, m_extensions, m_products}[model];
        const auto tester = Tester(table);
        QSignalSpy removed(table, &QAbstractItemModel::rowsRemoved);
        QCOMPARE(table->removeRows(row, 5), model == 2);
        QCOMPARE(Emissions(removed), QString("- %1 %1").arg(row));
        QCOMPARE(Text(*table, Qt::DisplayRole, model == 2 ? 1 : 0), ids);
        // The store drops the references to a removed product or extension.
        QCOMPARE(Sorted(store().GetFeatures().value("exit").productIds), model == 2 ? "Base2" : "Base2,ab");
    }

    void storeChangesResetTheTables()
    {
        QSignalSpy features(m_features, &QAbstractItemModel::modelReset);
        QSignalSpy products(m_products, &QAbstractItemModel::modelReset);
        QVERIFY(store().DuplicateProductFrom("ab", "ab2") && store().DuplicateFeatureFrom("exit", "exit2"));
        QCOMPARE(Text(*m_products, Qt::DisplayRole, 1) + '/' + Text(*m_features, Qt::DisplayRole, 0),
                 "Base,Base2,ab,ab2/Open,exit,exit2,my_feat_1,orphan,save");
        QCOMPARE(features.count() * 10 + products.count(), 12);
        m_model.reset(); // the models let go of the store's signals
        QVERIFY(store().DuplicateFeatureFrom("exit", "exit3"));
    }

    void extensionAccessTables_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("marks");
        const QString none = "-|false|false|false|false|false|false|-";
        QTest::newRow("products, no extension") << false << "" << "-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-";
        QTest::newRow("products, stl") << false << "stl" << "-|false|false|true|false|false|true|-;" + none + ';' + none;
        QTest::newRow("layouts, obj") << true << "obj" << none + ";-|false|false|true|false|false|false|-";
    }
    void extensionAccessTables()
    {
        QFETCH(bool, layouts);
        QFETCH(QString, extension);
        QFETCH(QString, marks);
        ExtensionsBaseModel *model = layouts ? m_extensionLayouts : m_extensionProducts;
        const auto tester = Tester(model);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectExtension(extension);
        QCOMPARE(Emissions(changed), QString("0,0 %1,7 []").arg(model->rowCount() - 1));
        QCOMPARE(featureProducts.count(), 0);
        QCOMPARE(HeaderText(*model).section('|', 1), "Export|Export\nproject|Import|Import\nproject|Export\nscene|Open|");
        QCOMPARE(HeaderText(*model).section('|', 0, 0), layouts ? "Layout" : "Product");
        QCOMPARE(Text(*model, Qt::DisplayRole, 0), extension.isEmpty() ? "-,-,-" : layouts ? "design,print" : "Base,Base2,ab");
        QCOMPARE(Text(*model, Qt::UserRole), marks);
        // Edits go to the set of the column; with no current extension, the empty id goes in.
        QVERIFY(model->setData(model->index(1, 2), true) && !model->setData(model->index(1, 0), true));
        QVERIFY(!model->setData(model->index(1, 2), true, Qt::DisplayRole) && model->setData(model->index(1, 7), true));
        const ExtensionAccess &access = layouts ? store().GetLayouts()["print"] : store().GetProducts().products[1].extensions;
        QCOMPARE(access.export_as_project, QSet<QString>{extension});
        QCOMPARE(Emissions(changed).section(';', 1), "1,2 1,2 [];1,7 1,7 []");
    }

    void extensionLicenceTable()
    {
        ExtensionsLicenseModel &model = *m_extensionLicenses;
        const auto tester = Tester(&model);
        QCOMPARE(HeaderText(model) + '/' + Text(model, Qt::DisplayRole, -1, 0), "Id|Name|Import|Export/-|-|-|-");
        // Without a current extension a write goes to the empty id; the licence model makes its record.
        QVERIFY(model.setData(model.index(0, 2), true));
        QCOMPARE(store().GetExtensions().value(QString()).importLicenses, QSet<QString>{"10"});
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        m_model->SelectExtension(QStringLiteral("stl"));
        QCOMPARE(Text(model), QStringLiteral("10|Ten|-|-;2|Two|-|-;B|Bee|-|-;Lic1|Licence one|-|-"));
        QCOMPARE(Text(model, Qt::UserRole, 2) + '/' + Text(model, Qt::UserRole, 3), "true,true,false,false/false,false,false,false");
        QVERIFY(model.setData(model.index(2, 3), true) && model.setData(model.index(0, 2), false));
        QVERIFY(!model.setData(model.index(0, 1), true) && !model.setData(model.index(0, 2), true, Qt::DisplayRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,3 [];2,3 2,3 [];0,2 0,2 []"));
        const ExtensionInfo &stl = store().GetExtensions()["stl"];
        QCOMPARE(Sorted(stl.importLicenses) + '/' + Sorted(stl.exportLicenses), QStringLiteral("2/B"));
    }

    // Marks per row as "feature|product|-"; layout names black where the product offers them.
    void productLayouts()
    {
        const auto tester = Tester(m_productLayouts);
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Text(*m_productLayouts) + '/' + Text(*m_productLayouts, Qt::UserRole), "-|-|-;-|-|-/-|-|-;-|-|-"); // no feature
        QSignalSpy changed(m_productLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectFeature(QStringLiteral("save"));
        QCOMPARE(changed.count() + featureProducts.count(), 0); // a new feature alone does not repaint
        QCOMPARE(Text(*m_featureProducts, Qt::UserRole, 0) + '/' + Text(*m_featureProducts, Qt::ForegroundRole, 1),
                 "true,true,false/black,black,gray");
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(2, 0), true) && m_featureProducts->setData(m_featureProducts->index(0, 0), false));
        QCOMPARE(Sorted(store().GetFeatures().value("save").productIds), QStringLiteral("Base2,ab"));
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Text(*m_productLayouts, Qt::UserRole) + '/' + Text(*m_productLayouts, Qt::ForegroundRole, 2),
                 "false|true|-;true|false|-/black,gray");
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(1, 1), true) && m_productLayouts->setData(m_productLayouts->index(0, 0), true));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 2), true));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 0), false, Qt::UserRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 1,2 [];1,1 1,1 [];0,0 0,0 []"));
        // Each change repaints the feature's product marks, one past the last row and column (kept).
        QCOMPARE(Emissions(featureProducts), "2,0 2,0 [];0,0 0,0 [];0,0 3,4 [];0,0 3,4 [];0,0 3,4 []");
        QCOMPARE(Sorted(store().GetFeatures().value("save").layoutNames), QStringLiteral("design,print"));
        QCOMPARE(Sorted(store().GetProducts().products.at(0).modes), QStringLiteral("design,print"));
    }

    void productLicenses()
    {
        const auto tester = Tester(m_model->GetProductLicensesModel());
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Text(*m_productLicenses, Qt::UserRole, 0), QStringLiteral("false,true,false,true"));
        QCOMPARE(Text(*m_productLicenses, Qt::ForegroundRole, 1), QStringLiteral("gray,black,gray,black"));
        // Attached {2, Lic1} first; names compare as numbers, words count as 0.
        m_model->GetProductLicensesModel()->sort(0);
        QCOMPARE(Text(*m_model->GetProductLicensesModel(), Qt::DisplayRole, 1), QStringLiteral("Lic1,2,B,10"));
        QSignalSpy changed(m_productLicenses, &QAbstractItemModel::dataChanged);
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(1, 0), false) && m_productLicenses->setData(m_productLicenses->index(3, 0), false));
        const auto &specific = store().GetProducts().products.at(0).specificLicenses;
        QVERIFY(!specific.contains("Open")); // no empty entry is left behind
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(2, 0), true));
        QCOMPARE(specific.value("Open"), QSet<QString>{"B"});
        QCOMPARE(Emissions(changed), QStringLiteral("1,0 1,0 [];3,0 3,0 [];2,0 2,0 []"));
    }

    void quickSearch_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rows");
        QTest::newRow("blanks only") << "   " << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("blanks around are trimmed") << "  ex " << "exit";
        QTest::newRow("upper case finds lower case") << "FEAT" << "my_feat_1";
    }
    void quickSearch()
    {
        QFETCH(QString, text);
        QFETCH(QString, rows);
        QAbstractItemModel *filter = m_model->GetFeaturesModel();
        const auto tester = Tester(filter);
        m_model->SetFilter(text);
        QCOMPARE(Text(*filter, Qt::DisplayRole, 0), rows);
    }

    // Fields: ids|titles|products|layouts|licenses; an empty field is no criterion.
    void query_data()
    {
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("accepted");
        QTest::newRow("nothing asked: every feature") << "||||" << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("id substring; no product, no match") << "E||||" << "Open,exit,my_feat_1,save";
        QTest::newRow("two ids never match") << "Open,exit||||" << "";
        QTest::newRow("title wildcard") << "|*|||" << "Open,exit,save";
        QTest::newRow("wildcard first decides") << "|*,zzz|||" << "Open,exit,save";
        QTest::newRow("wildcard second never matches") << "|Save,*|||" << "";
        QTest::newRow("quoted product is a whole word") << "||\"base\"||" << "Open,my_feat_1,save";
        QTest::newRow("each product key needs its own product") << "||a,b||" << "exit,save";
        QTest::newRow("layout in feature and product") << "|||design|" << "Open";
        QTest::newRow("licence exact") << "||||Lic1" << "Open,save";
        QTest::newRow("every licence key") << "||||2,Lic1" << "Open";
        QTest::newRow("licence keys are case sensitive") << "||||2,lic1" << "";
        QTest::newRow("fields are joined by AND") << "|e|2||" << "exit,save";
    }
    void query()
    {
        QFETCH(QString, fields);
        QFETCH(QString, accepted);
        QueryFilterFeatureModel filter;
        filter.setSourceModel(m_features);
        const auto tester = Tester(&filter);
        const QStringList texts = fields.split('|');
        filter.ApplyQuery({FeatureQuery::Keys(texts[0]), FeatureQuery::Keys(texts[1]), FeatureQuery::Keys(texts[2]),
                           FeatureQuery::Keys(texts[3]), FeatureQuery::Keys(texts[4])}, store());
        QCOMPARE(Text(filter, Qt::DisplayRole, 0), accepted);
        if (fields != "E||||")
            return;
        // The numbers run over the visible rows.
        QCOMPARE(HeaderText(filter) + '/' + HeaderText(filter, Qt::Vertical), "Id|Title|Products|Layouts|Licenses/1|2|3|4");
    }

private:
    VantixJsonData &store() { return *m_store; }

    std::unique_ptr<MemoryFolder> m_folder;
    std::unique_ptr<VantixJsonData> m_store;
    std::unique_ptr<Model> m_model;
    // The facade's models, not owned.
    QAbstractItemModel *m_features = nullptr;
    QAbstractItemModel *m_extensions = nullptr;
    QAbstractItemModel *m_products = nullptr;
    FeatureProductsModel *m_featureProducts = nullptr;
    ProductLayoutsModel *m_productLayouts = nullptr;
    ProductLicensesModel *m_productLicenses = nullptr;
    ExtensionsBaseModel *m_extensionProducts = nullptr;
    ExtensionsBaseModel *m_extensionLayouts = nullptr;
    ExtensionsLicenseModel *m_extensionLicenses = nullptr;
};

QTEST_MAIN(ModelsTest)
#include "ModelsTest.moc"
