#include "MemoryFolder.h"
#include "json/VantixFeaturesDiffModel.h"
#include "json/VantixResultModel.h"
#include "models/CheckMark.h"
#include "models/ExtensionsBaseModel.h"
#include "models/ExtensionsLicenseModel.h"
#include "models/ExtensionsLicenseProxyModel.h"
#include "models/FeatureProductsModel.h"
#include "models/FeaturesModel.h"
#include "models/IconDelegate.h"
#include "models/LicenseProxyModel.h"
#include "models/Model.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"
#include "models/QueryFilterFeatureModel.h"
#include "models/RowCursor.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QPointer>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QStyle>
#include <QTableView>
#include <QTest>
#include <QToolTip>

#include <functional>

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

// For the query: f_base {Base} "Alpha", Base grants {Lic1, Lic2}; f_base2 {Base2} untitled;
// f_a1b1 {a1, b1} "Both"; f_ab {ab} "Ab"; f_none in no product. Layout design holds f_base,
// f_base2 and f_a1b1; only Base and a1 offer it.
const char *kQueryProducts = R"({
  "features": {"feature": [{"id": "f_base", "title": "Alpha"}, {"id": "f_base2"},
    {"id": "f_a1b1", "title": "Both"}, {"id": "f_ab", "title": "Ab"}, {"id": "f_none", "title": "None"}]},
  "products": {"product": [
    {"id": "Base", "modes": ["design"], "features": ["f_base"],
     "licensing": {"base": "L", "specific": [{"id": "f_base", "licenses": ["Lic1", "Lic2"]}]}},
    {"id": "Base2", "features": ["f_base2"]}, {"id": "a1", "modes": ["design"], "features": ["f_a1b1"]},
    {"id": "b1", "features": ["f_a1b1"]}, {"id": "ab", "features": ["f_ab"]}]}})";
const char *kQueryLayouts = R"({"layouts": {"design": {"features": ["f_base", "f_base2", "f_a1b1"]}}})";

struct StoreFixture
{
    explicit StoreFixture(const QByteArray &products = kProducts, const QByteArray &layouts = kLayouts)
    {
        folder.addFile(QStringLiteral("products/products.json"), products);
        folder.addFile(QStringLiteral("layouts/layouts.json"), layouts);
        store = std::make_unique<VantixJsonData>(folder.root(), folder.reader(), folder.writer(),
            QMap<QString, QString>{{"10", "Ten"}, {"2", "Two"}, {"B", "Bee"}, {"Lic1", "Licence one"}});
    }
    MemoryFolder folder;
    std::unique_ptr<VantixJsonData> store;
};

std::unique_ptr<QAbstractItemModelTester> Tester(QAbstractItemModel *model)
{
    return std::make_unique<QAbstractItemModelTester>(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
}

// One cell as text: invalid reads "-", colours by name, an icon as an empty text.
QString CellText(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("-");
    if (value.userType() == QMetaType::QColor) {
        const QColor color = value.value<QColor>();
        return color == QColor(Qt::black) ? "black" : color == QColor(Qt::gray) ? "gray" : color.name();
    }
    return value.toString();
}

// Cells of a row joined with "|".
QString RowText(const QAbstractItemModel &model, int row, int role = Qt::DisplayRole)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column)
        cells << CellText(model.index(row, column).data(role));
    return cells.join('|');
}

// Rows joined with ";".
QString TableText(const QAbstractItemModel &model, int role = Qt::DisplayRole)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows << RowText(model, row, role);
    return rows.join(';');
}

// One column of every row joined with ",".
QString ColumnText(const QAbstractItemModel &model, int column = 0, int role = Qt::DisplayRole)
{
    QStringList cells;
    for (int row = 0; row < model.rowCount(); ++row)
        cells << CellText(model.index(row, column).data(role));
    return cells.join(',');
}

QString HeaderText(const QAbstractItemModel &model, Qt::Orientation orientation = Qt::Horizontal)
{
    QStringList texts;
    for (int section = 0; section < (orientation == Qt::Horizontal ? model.columnCount() : model.rowCount()); ++section)
        texts << CellText(model.headerData(section, orientation));
    return texts.join('|');
}

// Every emission: indexes as "row,column" (the root as "-"), role lists in brackets; joined with ";".
QString Emissions(const QSignalSpy &spy)
{
    QStringList emissions;
    for (const QList<QVariant> &arguments : spy) {
        QStringList texts;
        for (const QVariant &argument : arguments) {
            const QModelIndex index = argument.toModelIndex();
            if (argument.userType() == qMetaTypeId<QModelIndex>())
                texts << (index.isValid() ? QString("%1,%2").arg(index.row()).arg(index.column()) : "-");
            else if (argument.userType() == qMetaTypeId<QVector<int>>())
                texts << QString("[%1]").arg(argument.value<QVector<int>>().size() ? "roles" : "");
            else
                texts << argument.toString();
        }
        emissions << texts.join(' ');
    }
    return emissions.join(';');
}

// Set order is free: sort.
QString SortedJoin(const QSet<QString> &set)
{
    QStringList parts(set.begin(), set.end());
    std::sort(parts.begin(), parts.end());
    return parts.join(',');
}

QString SortedJoin(const QString &joined)
{
    const QStringList parts = joined.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    return SortedJoin(QSet<QString>(parts.begin(), parts.end()));
}

// The names of the access sets that hold `id`, in column order.
QString Holding(const ExtensionAccess &access, const QString &id)
{
    QStringList names;
    for (const auto &set : QList<QPair<const char *, const QSet<QString> *>>{
             {"export", &access.export_}, {"export_as_project", &access.export_as_project},
             {"import", &access.import}, {"import_as_project", &access.import_as_project},
             {"export_as_scene", &access.export_as_scene}, {"open", &access.open}}) {
        if (set.second->contains(id))
            names << set.first;
    }
    return names.join(',');
}

QAbstractItemModel *SourceOf(QAbstractItemModel *model)
{
    auto *proxy = qobject_cast<QAbstractProxyModel *>(model);
    return proxy ? proxy->sourceModel() : nullptr;
}

class ExposedDelegate : public IconDelegate
{
public:
    using IconDelegate::IconDelegate;
    using IconDelegate::initStyleOption;
};

using Map = QMap<QString, int>;
using MapChange = std::function<void(Map &)>;
using Cursor = MapRowCursor<QString, int>;

Map Numbers(int count, const QString &prefix = QStringLiteral("k"))
{
    Map map;
    for (int i = 0; i < count; ++i)
        map.insert(prefix + QString::number(i).rightJustified(3, '0'), i);
    return map;
}

QString KeyAt(Cursor &cursor, const Map &map, int row)
{
    const auto it = cursor.At(map, row);
    return it == map.constEnd() ? QStringLiteral("<end>") : it.key();
}

} // namespace

Q_DECLARE_METATYPE(MapChange)

// The models are those of one facade over the shared folder, so each is tested as it is wired.
class ModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qRegisterMetaType<QList<QPersistentModelIndex>>();
        qRegisterMetaType<QAbstractItemModel::LayoutChangeHint>();
    }
    void init()
    {
        m_fixture = std::make_unique<StoreFixture>();
        m_model = std::make_unique<Model>(*m_fixture->store);
        m_features = m_model->GetSourceFeaturesModel();
        m_extensions = m_model->GetExtensionsModel();
        m_products = m_model->GetProductsModel();
        m_featureProducts = qobject_cast<FeatureProductsModel *>(m_model->GetFeatureProductsModel());
        m_productLayouts = qobject_cast<ProductLayoutsModel *>(m_model->GetProductLayoutsModel());
        m_productLicenses = qobject_cast<ProductLicensesModel *>(SourceOf(m_model->GetProductLicensesModel()));
        m_extensionProducts = qobject_cast<ExtensionsBaseModel *>(m_model->GetExtensionsProductModel());
        m_extensionLayouts = qobject_cast<ExtensionsBaseModel *>(m_model->GetExtensionsLayoutModel());
        m_extensionLicenses = qobject_cast<ExtensionsLicenseModel *>(SourceOf(m_model->GetExtensionsLicenseModel()));
    }
    void cleanup()
    {
        m_model.reset();
        m_fixture.reset();
    }

    // --- features, extensions and products tables

    void tables()
    {
        QAbstractItemModel &layouts = *m_model->GetLayoutsModel();
        QAbstractItemModel &licenses = *m_model->GetLicensesModel();
        const auto testers = {Tester(m_features), Tester(m_extensions), Tester(m_products), Tester(&layouts),
                              Tester(&licenses)};
        QCOMPARE(ColumnText(*m_features), QStringLiteral("Open,exit,my_feat_1,orphan,save"));
        QCOMPARE(HeaderText(*m_features),
                 QStringLiteral("Id|Title|Tooltip|Statustip|Visible|Emergrncy|Products|Layouts|Licenses"));
        QCOMPARE(m_features->headerData(9, Qt::Horizontal), QVariant(QString()));
        QVERIFY(!m_features->headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(m_features->headerData(2, Qt::Vertical).toInt(), 3);
        QCOMPARE(m_features->index(0, 4).data().userType(), int(QMetaType::Bool));
        QCOMPARE(RowText(*m_features, 0).section('|', 0, 7),
                 QStringLiteral("Open|Open file|Opens|Opening|true|false|Base|design"));
        QCOMPARE(SortedJoin(m_features->index(0, 8).data().toString()), QStringLiteral("2,Lic1")); // Base grants both
        QCOMPARE(RowText(*m_features, 0, Qt::ToolTipRole), RowText(*m_features, 0));
        // The joined lists are not editable, so a mapped editor shows them empty.
        QCOMPARE(RowText(*m_features, 0, Qt::EditRole),
                 QStringLiteral("Open|Open file|Opens|Opening|true|false|-|-|-"));
        QCOMPARE(RowText(*m_features, 0, Qt::DecorationRole), QStringLiteral("-|-|-|-|-|-|-|-|-"));
        // "save": products Base and Base2 in set order, licences of Base2 only; "orphan": none.
        QVERIFY(QStringList({"Base, Base2", "Base2, Base"}).contains(m_features->index(4, 6).data().toString()));
        QCOMPARE(m_features->index(4, 8).data(), QVariant("Lic1"));
        QCOMPARE(m_features->index(3, 6).data(), QVariant(QString()));
        QVERIFY(!m_features->data(QModelIndex()).isValid());
        QVERIFY(!m_features->setData(QModelIndex(), QStringLiteral("x")));

        QCOMPARE(HeaderText(*m_extensions),
                 QStringLiteral("Id|Title|Extension|Cad support|Multiple parts support|Slices support|Load as part"));
        QCOMPARE(TableText(*m_extensions),
                 QStringLiteral("obj|OBJ|.obj|false|false|true|false;stl|STL|.stl|true|false|false|false"));
        QCOMPARE(TableText(*m_extensions, Qt::EditRole), TableText(*m_extensions));
        QCOMPARE(TableText(*m_extensions, Qt::ToolTipRole), TableText(*m_extensions));
        QCOMPARE(RowText(*m_extensions, 1, Qt::DecorationRole), QStringLiteral("-|-|-|-|-|-|-"));
        QCOMPARE(m_extensions->index(1, 3).data().userType(), int(QMetaType::Bool));

        QCOMPARE(TableText(*m_products), QStringLiteral("-|Base|_b|L1;-|Base2|_b2|L2;-|ab||L3"));
        QCOMPARE(RowText(*m_products, 1, Qt::EditRole), QStringLiteral("-|-|_b2|L2"));
        QCOMPARE(RowText(*m_products, 1, Qt::ToolTipRole), QStringLiteral("-|-|-|-"));
        // The same words beside the rows, kept as they are.
        QCOMPARE(HeaderText(*m_products), QStringLiteral("-|Product|Suffix|Base lic"));
        QCOMPARE(HeaderText(*m_products, Qt::Vertical), QStringLiteral("-|Product|Suffix"));
        QVERIFY(!m_products->headerData(1, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QString editable;
        for (int column = 0; column < 4; ++column)
            editable += m_products->flags(m_products->index(0, column)).testFlag(Qt::ItemIsEditable) ? 'e' : '-';
        QCOMPARE(editable, QStringLiteral("--ee"));

        QCOMPARE(TableText(layouts), QStringLiteral("-|-|design;-|-|print"));
        QCOMPARE(RowText(layouts, 1, Qt::EditRole), QStringLiteral("-|-|-"));
        QCOMPARE(HeaderText(layouts), QStringLiteral("Current\nFeature|Current\nProduct|Name"));
        QCOMPARE(layouts.headerData(7, Qt::Horizontal), QVariant("Name"));
        QCOMPARE(HeaderText(layouts, Qt::Vertical), QStringLiteral("-|-"));
        QVERIFY(!layouts.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(TableText(licenses), QStringLiteral("-|10|Ten;-|2|Two;-|B|Bee;-|Lic1|Licence one"));
        QCOMPARE(RowText(licenses, 3, Qt::ToolTipRole), QStringLiteral("-|-|-"));
        QCOMPARE(HeaderText(licenses), QStringLiteral("1|2|3"));
    }

    // An empty row means refused: the row keeps its text and nothing is announced.
    void edits_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("column");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("role");
        QTest::addColumn<QString>("row");
        const auto row = [](const char *name, const char *model, int column, const QVariant &value,
                            const char *text, int role = Qt::EditRole) {
            QTest::newRow(name) << QString(model) << column << value << role << QString(text);
        };
        row("feature title", "features", 1, "T", "my_feat_1|T|||true|false|Base||");
        row("feature tooltip", "features", 2, "T", "my_feat_1||T||true|false|Base||");
        row("feature status tip", "features", 3, "T", "my_feat_1|||T|true|false|Base||");
        row("feature visible from text", "features", 4, "false", "my_feat_1||||false|false|Base||");
        row("feature emergency from int", "features", 5, 1, "my_feat_1||||true|true|Base||");
        row("feature products accept and keep", "features", 6, "x", "my_feat_1||||true|false|Base||");
        row("feature title equal to the own id", "features", 1, "my_feat_1", "");
        row("feature display role", "features", 1, "T", "", Qt::DisplayRole);
        row("extension title", "extensions", 1, "T", "obj|T|.obj|false|false|true|false");
        row("extension pattern", "extensions", 2, "*.o", "obj|OBJ|*.o|false|false|true|false");
        row("extension cad", "extensions", 3, true, "obj|OBJ|.obj|true|false|true|false");
        row("extension multiple parts", "extensions", 4, true, "obj|OBJ|.obj|false|true|true|false");
        row("extension slices", "extensions", 5, false, "obj|OBJ|.obj|false|false|false|false");
        row("extension load as part", "extensions", 6, true, "obj|OBJ|.obj|false|false|true|true");
        row("extension pattern equal to the own id", "extensions", 2, "obj", "");
        row("extension display role", "extensions", 1, "T", "", Qt::DisplayRole);
        row("product suffix", "products", 2, "T", "-|Base|T|L1");
        row("product base", "products", 3, "T", "-|Base|_b|T");
        row("product id, written straight", "products", 1, "T", "-|T|_b|L1");
        row("product column 0 accepts and keeps", "products", 0, "T", "-|Base|_b|L1");
        row("product display role", "products", 2, "T", "", Qt::DisplayRole);
    }
    void edits()
    {
        QFETCH(QString, model);
        QFETCH(int, column);
        QFETCH(QVariant, value);
        QFETCH(int, role);
        QFETCH(QString, row);
        QAbstractItemModel *table = model == "features" ? m_features : model == "products" ? m_products : m_extensions;
        const int rowNumber = model == "features" ? 2 : 0;
        const auto tester = Tester(table);
        const QString before = RowText(*table, rowNumber);
        QSignalSpy changed(table, &QAbstractItemModel::dataChanged);
        QCOMPARE(table->setData(table->index(rowNumber, column), value, role), !row.isEmpty());
        QCOMPARE(RowText(*table, rowNumber), row.isEmpty() ? before : row);
        QCOMPARE(Emissions(changed), row.isEmpty() ? "" : QString("%1,%2 %1,%2 []").arg(rowNumber).arg(column));
        // A renamed product keeps its old id in the features.
        QCOMPARE(SortedJoin(m_fixture->store->GetFeatures().value("Open").productIds), QStringLiteral("Base"));
    }

    // A rename is a removal and an insertion; the change is reported at the old row.
    void rename_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature to the front") << "features" << 4 << "Alpha" << "- 4 4/- 0 0"
                                              << "Alpha,Open,exit,my_feat_1,orphan";
        QTest::newRow("feature in place") << "features" << 0 << "Apen" << "- 0 0/- 0 0"
                                          << "Apen,exit,my_feat_1,orphan,save";
        QTest::newRow("feature to an existing id") << "features" << 4 << "exit" << "/"
                                                   << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("extension to the back") << "extensions" << 0 << "zip" << "- 0 0/- 1 1" << "stl,zip";
        QTest::newRow("extension to an existing id") << "extensions" << 1 << "obj" << "/" << "obj,stl";
    }
    void rename()
    {
        QFETCH(QString, model);
        QFETCH(int, row);
        QFETCH(QString, id);
        QFETCH(QString, moves);
        QFETCH(QString, ids);
        QAbstractItemModel *table = model == "features" ? m_features : m_extensions;
        const auto tester = Tester(table);
        QSignalSpy removed(table, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(table, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(table, &QAbstractItemModel::dataChanged);
        const QString fields = RowText(*table, row).section('|', 1, 7);
        const bool accepted = moves != "/";
        QCOMPARE(table->setData(table->index(row, 0), id), accepted);
        QCOMPARE(Emissions(removed) + '/' + Emissions(inserted), moves);
        QCOMPARE(Emissions(changed), accepted ? QString("%1,0 %1,0 []").arg(row) : "");
        QCOMPARE(ColumnText(*table), ids);
        if (accepted) {
            QCOMPARE(RowText(*table, ids.split(',').indexOf(id)).section('|', 1, 7), fields);
        } else {
            QCOMPARE(QToolTip::text(), QStringLiteral("This ID is already exist"));
            QToolTip::hideText();
        }
        // Licences granted under the old id stay where they were.
        QCOMPARE(m_fixture->store->GetProducts().products.at(1).specificLicenses.keys(), QStringList{"save"});
    }

    // No tester: a second insertion announces a row that is not added.
    void insertAddsOneUnnumberedRow_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("row");
        QTest::newRow("feature kept as it is") << "features" << "New_Feature||changed||true|false|||";
        QTest::newRow("extension pattern written again")
            << "extensions" << "extension||.extension|false|false|false|false";
    }
    void insertAddsOneUnnumberedRow()
    {
        QFETCH(QString, model);
        QFETCH(QString, row);
        QAbstractItemModel *table = model == "features" ? m_features : m_extensions;
        const int count = table->rowCount();
        QSignalSpy inserted(table, &QAbstractItemModel::rowsInserted);
        QVERIFY(table->insertRows(3, 7));
        QVERIFY(table->setData(table->index(0, 2), QStringLiteral("changed")));
        QVERIFY(table->insertRows(0, 1));
        QCOMPARE(Emissions(inserted), QStringLiteral("- 0 0;- 0 0"));
        QCOMPARE(RowText(*table, 0), row);
        QCOMPARE(table->rowCount(), count + 1);
    }

    // Features and extensions answer false even after removing; one row goes whatever the count.
    void removeTakesOneRow_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("ids");
        QTest::newRow("feature") << "features" << 3 << false << "Open,exit,my_feat_1,save";
        QTest::newRow("extension") << "extensions" << 1 << false << "obj";
        QTest::newRow("product") << "products" << 2 << true << "Base,Base2";
    }
    void removeTakesOneRow()
    {
        QFETCH(QString, model);
        QFETCH(int, row);
        QFETCH(bool, result);
        QFETCH(QString, ids);
        QAbstractItemModel *table = model == "features" ? m_features : model == "products" ? m_products : m_extensions;
        const auto tester = Tester(table);
        QSignalSpy removed(table, &QAbstractItemModel::rowsRemoved);
        QCOMPARE(table->removeRows(row, 5), result);
        QVERIFY(!table->removeRows(-1, 1) && !table->removeRows(table->rowCount(), 1));
        QCOMPARE(Emissions(removed), QString("- %1 %1").arg(row));
        QCOMPARE(ColumnText(*table, model == "products" ? 1 : 0), ids);
        VantixJsonData &data = *m_fixture->store;
        // The store drops the references to a removed product or extension.
        QCOMPARE(SortedJoin(data.GetFeatures().value("exit").productIds), model == "products" ? "Base2" : "Base2,ab");
        const bool stl = model != "extensions";
        QCOMPARE(Holding(data.GetProducts().products.at(0).extensions, "stl"), stl ? "import,open" : "");
        QCOMPARE(Holding(data.GetLayouts()["design"], "stl"), stl ? "export" : "");
    }

    void storeChangesResetTheTables()
    {
        QSignalSpy features(m_features, &QAbstractItemModel::modelReset);
        QSignalSpy products(m_products, &QAbstractItemModel::modelReset);
        QSignalSpy layouts(m_productLayouts, &QAbstractItemModel::modelReset);
        QSignalSpy licenses(m_model->GetLicensesModel(), &QAbstractItemModel::modelReset);
        QVERIFY(m_fixture->store->DuplicateProductFrom("ab", "ab2"));
        QCOMPARE(ColumnText(*m_products, 1), QStringLiteral("Base,Base2,ab,ab2"));
        QVERIFY(m_fixture->store->DuplicateFeatureFrom("exit", "exit2"));
        QCOMPARE(ColumnText(*m_features), QStringLiteral("Open,exit,exit2,my_feat_1,orphan,save"));
        QCOMPARE(QString("%1 %2 %3 %4").arg(features.count()).arg(products.count()).arg(layouts.count())
                     .arg(licenses.count()), QStringLiteral("1 2 1 1"));
        m_model.reset(); // the models let go of the store's signals
        QVERIFY(m_fixture->store->DuplicateFeatureFrom("exit", "exit3"));
    }

    // --- check marks of products, layouts and licences against the current extension

    void extensionAccessTables_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("names");
        QTest::addColumn<QString>("marks");
        const QString none = "-|false|false|false|false|false|false|-";
        QTest::newRow("products, no extension") << false << "" << "-,-,-"
                                                << "-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-;-|-|-|-|-|-|-|-";
        QTest::newRow("products, stl") << false << "stl" << "Base,Base2,ab"
                                       << "-|false|false|true|false|false|true|-;" + none + ';' + none;
        QTest::newRow("products, obj") << false << "obj" << "Base,Base2,ab"
                                       << "-|false|false|false|false|false|true|-;" + none + ';' + none;
        QTest::newRow("layouts, stl") << true << "stl" << "design,print"
                                      << "-|true|false|false|false|false|false|-;" + none;
        QTest::newRow("layouts, obj") << true << "obj" << "design,print"
                                      << none + ";-|false|false|true|false|false|false|-";
    }
    void extensionAccessTables()
    {
        QFETCH(bool, layouts);
        QFETCH(QString, extension);
        QFETCH(QString, names);
        QFETCH(QString, marks);
        ExtensionsBaseModel *model = layouts ? m_extensionLayouts : m_extensionProducts;
        const auto tester = Tester(model);
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        model->SetCurrentExtension(extension);
        QCOMPARE(Emissions(changed), QString("0,0 %1,7 []").arg(model->rowCount() - 1));
        QCOMPARE(HeaderText(*model), QString("%1|Export|Export\nproject|Import|Import\nproject|Export\nscene|Open|")
                                         .arg(layouts ? "Layout" : "Product"));
        QVERIFY(!model->headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
        QCOMPARE(ColumnText(*model), names);
        QCOMPARE(TableText(*model, Qt::UserRole), marks);
        QCOMPARE(RowText(*model, 0, Qt::DecorationRole), extension.isEmpty() ? "-|-|-|-|-|-|-|-" : "-|||||||-");
        QCOMPARE(RowText(*model, 0, Qt::EditRole), QStringLiteral("-|-|-|-|-|-|-|-"));
    }

    void extensionAccessToggles_data()
    {
        QTest::addColumn<bool>("layouts");
        QTest::addColumn<int>("column");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("sets");
        QTest::newRow("export") << false << 1 << true << "export";
        QTest::newRow("export project") << false << 2 << true << "export_as_project";
        QTest::newRow("import") << false << 3 << true << "import";
        QTest::newRow("import project") << false << 4 << true << "import_as_project";
        QTest::newRow("export scene") << false << 5 << true << "export_as_scene";
        QTest::newRow("open") << false << 6 << true << "open";
        QTest::newRow("layout open") << true << 6 << true << "open";
        QTest::newRow("name column refused") << false << 0 << false << "";
        QTest::newRow("column 7 accepted, nothing kept") << true << 7 << true << "";
    }
    void extensionAccessToggles()
    {
        QFETCH(bool, layouts);
        QFETCH(int, column);
        QFETCH(bool, accepted);
        QFETCH(QString, sets);
        ExtensionsBaseModel *model = layouts ? m_extensionLayouts : m_extensionProducts;
        model->SetCurrentExtension(QStringLiteral("stl"));
        const ExtensionAccess &access = layouts ? m_fixture->store->GetLayouts()["print"]
                                                : m_fixture->store->GetProducts().products[1].extensions;
        QSignalSpy changed(model, &QAbstractItemModel::dataChanged);
        const QModelIndex index = model->index(1, column);
        QVERIFY(!model->setData(index, true, Qt::DisplayRole));
        QCOMPARE(model->setData(index, true), accepted);
        QCOMPARE(Emissions(changed), accepted ? QString("1,%1 1,%1 []").arg(column) : "");
        QCOMPARE(Holding(access, "stl"), sets);
        QCOMPARE(CellText(index.data(Qt::UserRole)), sets.isEmpty() ? "-" : "true");
        QCOMPARE(model->setData(index, false), accepted);
        QCOMPARE(Holding(access, "stl"), QString());
    }

    void extensionLicenceTable()
    {
        ExtensionsLicenseModel &model = *m_extensionLicenses;
        const auto tester = Tester(&model);
        QCOMPARE(HeaderText(model), QStringLiteral("Id|Name|Import|Export"));
        QCOMPARE(RowText(model, 0), QStringLiteral("-|-|-|-"));
        // Without a current extension a write goes to the empty id; the licence model makes its record.
        QVERIFY(m_extensionProducts->setData(m_extensionProducts->index(2, 6), true));
        QCOMPARE(m_fixture->store->GetProducts().products.at(2).extensions.open, QSet<QString>{QString()});
        QVERIFY(model.setData(model.index(0, 2), true));
        QCOMPARE(m_fixture->store->GetExtensions().value(QString()).importLicenses, QSet<QString>{"10"});
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        model.SetCurrentExtension(QStringLiteral("stl"));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,3 []"));
        QCOMPARE(TableText(model), QStringLiteral("10|Ten|-|-;2|Two|-|-;B|Bee|-|-;Lic1|Licence one|-|-"));
        QCOMPARE(TableText(model, Qt::ToolTipRole), TableText(model));
        QCOMPARE(ColumnText(model, 2, Qt::UserRole) + '/' + ColumnText(model, 3, Qt::UserRole),
                 QStringLiteral("true,true,false,false/false,false,false,false"));
        QCOMPARE(RowText(model, 0, Qt::DecorationRole), QStringLiteral("-|-||"));
        QCOMPARE(ColumnText(model, 0, Qt::ForegroundRole) + '/' + ColumnText(model, 3, Qt::ForegroundRole),
                 QStringLiteral("black,black,gray,gray/black,black,gray,gray"));

        QVERIFY(model.setData(model.index(2, 3), true));
        QVERIFY(model.setData(model.index(0, 2), false));
        QVERIFY(!model.setData(model.index(0, 1), true) && !model.setData(model.index(0, 0), true));
        QVERIFY(!model.setData(model.index(0, 2), true, Qt::DisplayRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,3 [];2,3 2,3 [];0,2 0,2 []"));
        const ExtensionInfo &stl = m_fixture->store->GetExtensions()["stl"];
        QCOMPARE(SortedJoin(stl.importLicenses) + '/' + SortedJoin(stl.exportLicenses), QStringLiteral("2/B"));
        QCOMPARE(ColumnText(model, 0, Qt::ForegroundRole), QStringLiteral("gray,black,black,gray"));

        model.SetCurrentExtension(QStringLiteral("step")); // unknown: made on first read
        QCOMPARE(ColumnText(model, 2, Qt::UserRole), QStringLiteral("false,false,false,false"));
        QVERIFY(m_fixture->store->GetExtensions().contains("step"));
    }

    void extensionLicenceSort_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("order");
        // Import users, then export users, then the rest; names compare as numbers.
        QTest::newRow("stl: 2 before 10 as numbers") << "stl" << "2,10,B,Lic1";
        QTest::newRow("obj: words count as 0") << "obj" << "B,Lic1,2,10";
        QTest::newRow("no current extension: all tie") << "" << "10,2,B,Lic1";
    }
    void extensionLicenceSort()
    {
        QFETCH(QString, extension);
        QFETCH(QString, order);
        QAbstractProxyModel *proxy = qobject_cast<QAbstractProxyModel *>(m_model->GetExtensionsLicenseModel());
        const auto tester = Tester(proxy);
        QSignalSpy sorted(proxy, &QAbstractItemModel::layoutChanged);
        m_model->SelectExtension(extension);
        QCOMPARE(sorted.count(), 1);
        proxy->sort(1);
        // Without a current extension the table shows no names; take them from the store.
        const QStringList keys = m_fixture->store->GetLicenses().keys();
        QStringList names;
        for (int row = 0; row < proxy->rowCount(); ++row)
            names << keys.at(proxy->mapToSource(proxy->index(row, 0)).row());
        QCOMPARE(names.join(','), order);
    }

    // --- layouts and licences against the current feature and product

    // Marks per row as "feature|product|-".
    void productLayouts_data()
    {
        QTest::addColumn<QString>("feature");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("marks");
        QTest::addColumn<QString>("colors");
        QTest::newRow("no feature shows nothing") << "" << "Base" << "-|-|-;-|-|-" << "-,-";
        QTest::newRow("save in Base") << "save" << "Base" << "false|true|-;true|false|-" << "black,gray";
        QTest::newRow("Open in Base2") << "Open" << "Base2" << "true|true|-;false|true|-" << "black,black";
        QTest::newRow("product naming none") << "Open" << "nothing" << "true|-|-;false|-|-" << "-,-";
    }
    void productLayouts()
    {
        QFETCH(QString, feature);
        QFETCH(QString, product);
        QFETCH(QString, marks);
        QFETCH(QString, colors);
        const auto tester = Tester(m_productLayouts);
        QSignalSpy changed(m_productLayouts, &QAbstractItemModel::dataChanged);
        m_productLayouts->UpdateFeature(feature);
        QCOMPARE(changed.count(), 0);
        m_productLayouts->UpdateData(product);
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 1,2 []"));
        QCOMPARE(TableText(*m_productLayouts, Qt::UserRole), marks);
        QCOMPARE(ColumnText(*m_productLayouts, 2, Qt::ForegroundRole), colors);
        QCOMPARE(RowText(*m_productLayouts, 0), feature.isEmpty() ? "-|-|-" : "-|-|design");
        // An icon wherever a mark is shown.
        QCOMPARE(RowText(*m_productLayouts, 0, Qt::DecorationRole),
                 marks.section(';', 0, 0).remove("true").remove("false"));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 2), true));
    }

    void productLayoutToggles()
    {
        const auto tester = Tester(m_productLayouts);
        m_productLayouts->UpdateFeature(QStringLiteral("save"));
        m_productLayouts->UpdateData(QStringLiteral("Base"));
        QSignalSpy changed(m_productLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(0, 0), true));
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(1, 1), true));
        QVERIFY(m_productLayouts->setData(m_productLayouts->index(0, 1), false));
        QVERIFY(!m_productLayouts->setData(m_productLayouts->index(0, 0), false, Qt::UserRole));
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 0,0 [];1,1 1,1 [];0,1 0,1 []"));
        // The facade has each change repaint the feature's product marks (one past the end, kept).
        QCOMPARE(Emissions(featureProducts), QStringLiteral("0,0 3,4 [];0,0 3,4 [];0,0 3,4 []"));
        VantixJsonData &data = *m_fixture->store;
        QCOMPARE(SortedJoin(data.GetFeatures().value("save").layoutNames), QStringLiteral("design,print"));
        QCOMPARE(SortedJoin(data.GetProducts().products.at(0).modes), QStringLiteral("print"));

        m_productLayouts->UpdateFeature(QStringLiteral("fresh")); // unknown: made on first read
        QCOMPARE(ColumnText(*m_productLayouts, 0, Qt::UserRole), QStringLiteral("false,false"));
        QVERIFY(data.GetFeatures().contains("fresh"));
    }

    void productLicenses_data()
    {
        QTest::addColumn<QString>("feature");
        QTest::addColumn<QString>("product");
        QTest::addColumn<QString>("row");
        QTest::newRow("no product") << "Open" << "" << "-|-|-";
        QTest::newRow("no feature") << "" << "Base" << "-|-|-";
        QTest::newRow("product naming none") << "Open" << "nothing" << "-|-|-";
        QTest::newRow("Open in Base") << "Open" << "Base" << "-|2|Two";
    }
    void productLicenses()
    {
        QFETCH(QString, feature);
        QFETCH(QString, product);
        QFETCH(QString, row);
        const auto tester = Tester(m_productLicenses);
        QSignalSpy changed(m_productLicenses, &QAbstractItemModel::dataChanged);
        m_productLicenses->UpdateFeature(feature);
        QCOMPARE(changed.count(), 0);
        m_productLicenses->UpdateData(product);
        QCOMPARE(Emissions(changed), QStringLiteral("0,0 3,2 []"));
        QCOMPARE(RowText(*m_productLicenses, 1), row);
        if (row == "-|-|-")
            return;
        QCOMPARE(ColumnText(*m_productLicenses, 0, Qt::UserRole), QStringLiteral("false,true,false,true"));
        QCOMPARE(TableText(*m_productLicenses, Qt::ForegroundRole),
                 QStringLiteral("-|gray|gray;-|black|black;-|gray|gray;-|black|black"));
        QCOMPARE(RowText(*m_productLicenses, 0, Qt::DecorationRole), QStringLiteral("|-|-"));
    }

    void productLicenseToggles()
    {
        const auto tester = Tester(m_productLicenses);
        m_productLicenses->UpdateFeature(QStringLiteral("Open"));
        m_productLicenses->UpdateData(QStringLiteral("Base"));
        QSignalSpy changed(m_productLicenses, &QAbstractItemModel::dataChanged);
        const auto &specific = m_fixture->store->GetProducts().products.at(0).specificLicenses;
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(1, 0), false));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(3, 0), false));
        QVERIFY(!specific.contains("Open")); // no empty entry is left behind
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(2, 0), true));
        QCOMPARE(specific.value("Open"), QSet<QString>{"B"});
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(2, 1), true));
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(2, 0), true, Qt::DisplayRole));
        QCOMPARE(Emissions(changed), QStringLiteral("1,0 1,0 [];3,0 3,0 [];2,0 2,0 []"));
        m_productLicenses->UpdateData(QStringLiteral("nothing"));
        QVERIFY(!m_productLicenses->setData(m_productLicenses->index(1, 0), true));
    }

    // --- feature products

    void featureProductMarks()
    {
        const auto tester = Tester(m_featureProducts);
        QCOMPARE(TableText(*m_featureProducts), QStringLiteral("-|-|-|-;-|-|-|-;-|-|-|-"));
        QCOMPARE(RowText(*m_featureProducts, 0, Qt::UserRole), QStringLiteral("-|-|-|-"));
        QSignalSpy changed(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_featureProducts->UpdateFeature(QStringLiteral("save"));
        QCOMPARE(ColumnText(*m_featureProducts, 0, Qt::UserRole), QStringLiteral("true,true,false"));
        QCOMPARE(RowText(*m_featureProducts, 0), QStringLiteral("-|Base|_b|L1"));
        QCOMPARE(RowText(*m_featureProducts, 0, Qt::DecorationRole), QStringLiteral("|-|-|-"));
        QCOMPARE(TableText(*m_featureProducts, Qt::ForegroundRole),
                 QStringLiteral("-|black|-|-;-|black|-|-;-|gray|-|-"));

        QVERIFY(m_featureProducts->setData(m_featureProducts->index(2, 0), true));
        QCOMPARE(ColumnText(*m_featureProducts, 1, Qt::ForegroundRole), QStringLiteral("black,black,black"));
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 0), false));
        QCOMPARE(SortedJoin(m_fixture->store->GetFeatures().value("save").productIds), QStringLiteral("Base2,ab"));
        // Other columns are accepted and change nothing.
        QVERIFY(m_featureProducts->setData(m_featureProducts->index(0, 2), QStringLiteral("x")));
        QCOMPARE(m_fixture->store->GetProducts().products.at(0).profile_suffix, QStringLiteral("_b"));
        QVERIFY(!m_featureProducts->setData(m_featureProducts->index(0, 0), true, Qt::UserRole));
        QCOMPARE(Emissions(changed), QStringLiteral("2,0 2,0 [];0,0 0,0 [];0,2 0,2 []"));
    }

    // --- the quick search and the query

    void quickSearch_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rows");
        QTest::newRow("empty") << "" << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("blanks only") << "   " << "Open,exit,my_feat_1,orphan,save";
        QTest::newRow("blanks around are trimmed") << "  ex " << "exit";
        QTest::newRow("upper case finds lower case") << "FEAT" << "my_feat_1";
        QTest::newRow("lower case finds upper case") << "open" << "Open";
        QTest::newRow("title") << "FILE" << "Open";
        QTest::newRow("several rows") << "t" << "exit,my_feat_1";
        QTest::newRow("no query syntax") << "ex,save" << "";
        QTest::newRow("quotes are plain text") << "\"exit\"" << "";
    }
    void quickSearch()
    {
        QFETCH(QString, text);
        QFETCH(QString, rows);
        QAbstractItemModel *filter = m_model->GetFeaturesModel();
        const auto tester = Tester(filter);
        QCOMPARE(ColumnText(*filter), ColumnText(*m_features));
        m_model->SetFilter(text);
        QCOMPARE(ColumnText(*filter), rows);
        QCOMPARE(filter->columnCount(), 9);
        QCOMPARE(m_features->rowCount(), 5);
        // The text is matched again on every change of the source.
        QVERIFY(m_features->setData(m_features->index(4, 1), QStringLiteral("Store it")));
        QVERIFY(m_features->setData(m_features->index(2, 0), QStringLiteral("Alpha")));
        if (text == "t")
            QCOMPARE(ColumnText(*filter), QStringLiteral("exit,save"));
    }

    // What the query rows below do not reach.
    void matchKeys_data()
    {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<bool>("match");
        QTest::newRow("no keys, no values") << QStringList() << QStringList() << true;
        QTest::newRow("a key, no values") << QStringList{"a"} << QStringList() << false;
        QTest::newRow("key is trimmed") << QStringList{"  as "} << QStringList{"Base"} << true;
        QTest::newRow("quoted part of a word") << QStringList{"\"bas\""} << QStringList{"base"} << false;
        QTest::newRow("quotes kept in the fallback") << QStringList{"\"as\""} << QStringList{"b\"as\"e"} << true;
        QTest::newRow("duplicate keys collapse") << QStringList{"a", "a"} << QStringList{"a1"} << true;
    }
    void matchKeys()
    {
        QFETCH(QStringList, keys);
        QFETCH(QStringList, values);
        QFETCH(bool, match);
        QCOMPARE(QueryFilterFeatureModel::MatchKeys(keys, QSet<QString>(values.begin(), values.end())), match);
    }

    // Fields: ids|titles|products|layouts|licenses; an empty field is no criterion.
    void query_data()
    {
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("accepted");
        QTest::newRow("nothing asked: every feature") << "||||" << "f_a1b1,f_ab,f_base,f_base2,f_none";
        QTest::newRow("id substring") << "F_BASE||||" << "f_base,f_base2";
        QTest::newRow("two ids never match") << "f_base,f_ab||||" << "";
        QTest::newRow("a feature without products never matches") << "f_none||||" << "";
        QTest::newRow("title wildcard") << "|*|||" << "f_a1b1,f_ab,f_base";
        QTest::newRow("wildcard first decides") << "|*,zzz|||" << "f_a1b1,f_ab,f_base";
        QTest::newRow("wildcard second never matches") << "|Alpha,*|||" << "";
        QTest::newRow("title substring") << "|alp|||" << "f_base";
        QTest::newRow("empty keys match empty titles") << "|,|||" << "f_a1b1,f_ab,f_base,f_base2";
        QTest::newRow("a trailing comma adds an empty key") << "|Alpha,|||" << "";
        QTest::newRow("quoted product is a whole word") << "||\"base\"||" << "f_base";
        QTest::newRow("product substring") << "||base||" << "f_base,f_base2";
        QTest::newRow("each product key needs its own product") << "||a,b||" << "f_a1b1";
        QTest::newRow("quoted key after comma") << "||a,\"b1\"||" << "f_a1b1";
        QTest::newRow("blank before a quoted key") << "||a, \"b1\"||" << "";
        QTest::newRow("layout in feature and product") << "|||design|" << "f_a1b1,f_base";
        QTest::newRow("licence exact") << "||||Lic1" << "f_base";
        QTest::newRow("licence is case sensitive") << "||||lic1" << "";
        QTest::newRow("every licence key") << "||||Lic2,Lic1" << "f_base";
        QTest::newRow("a licence key missing") << "||||Lic1,Lic3" << "";
        QTest::newRow("fields are joined by AND") << "|o|1||" << "f_a1b1";
    }
    void query()
    {
        QFETCH(QString, fields);
        QFETCH(QString, accepted);
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(*fixture.store);
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        const auto tester = Tester(&filter);
        QCOMPARE(filter.rowCount(), 0);
        const QStringList texts = fields.split('|');
        const FeatureQuery query{FeatureQuery::Keys(texts.at(0)), FeatureQuery::Keys(texts.at(1)),
                                 FeatureQuery::Keys(texts.at(2)), FeatureQuery::Keys(texts.at(3)),
                                 FeatureQuery::Keys(texts.at(4))};
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(SortedJoin(ColumnText(filter).replace(',', ", ")), accepted);
        QCOMPARE(SortedJoin(filter.AcceptedIds()), accepted);
        if (fields != "F_BASE||||")
            return;
        QCOMPARE(HeaderText(filter), QStringLiteral("Id|Title|Products|Layouts|Licenses"));
        // f_base and f_base2 are source rows 2 and 3: the numbers run over the visible rows.
        QCOMPARE(HeaderText(filter, Qt::Vertical), QStringLiteral("1|2"));
        QCOMPARE(RowText(filter, 0).section('|', 0, 3), QStringLiteral("f_base|Alpha|Base|design"));
        QCOMPARE(SortedJoin(filter.index(0, 4).data().toString()), QStringLiteral("Lic1,Lic2"));
    }

    void queryEdges()
    {
        StoreFixture fixture(kQueryProducts, kQueryLayouts);
        FeaturesModel source(*fixture.store);
        QueryFilterFeatureModel filter;
        filter.setSourceModel(&source);
        FeatureQuery query;
        query.ids = QStringList(); // present but empty: still needs a product
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(ColumnText(filter), QStringLiteral("f_a1b1,f_ab,f_base,f_base2"));
        // The accepted ids are a snapshot: a new feature waits for the next query.
        QVERIFY(source.insertRows(0, 1));
        fixture.store->GetFeatures()["New_Feature"].productIds = {"ghost"};
        fixture.store->GetFeatures()["New_Feature"].layoutNames = {"design"};
        QCOMPARE(filter.rowCount(), 4);
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(ColumnText(filter), QStringLiteral("New_Feature,f_a1b1,f_ab,f_base,f_base2"));
        // A product without a record fails every product field.
        query.layouts = FeatureQuery::Keys("design");
        filter.ApplyQuery(query, *fixture.store);
        QCOMPARE(ColumnText(filter), QStringLiteral("f_a1b1,f_base"));
    }

    // --- the facade

    void everyModelIsAChildAndChained()
    {
        Model &model = *m_model;
        QCOMPARE(&model.GetData(), m_fixture->store.get());
        QCOMPARE(model.parent(), nullptr);
        for (QObject *child : QList<QObject *>{
                 model.GetSourceFeaturesModel(), model.GetFeaturesModel(), model.GetProductsModel(),
                 model.GetFeatureProductsModel(), model.GetLayoutsModel(), model.GetProductLayoutsModel(),
                 model.GetLicensesModel(), model.GetProductLicensesModel(), model.GetExtensionsModel(),
                 model.GetExtensionsProductModel(), model.GetExtensionsLayoutModel(),
                 model.GetExtensionsLicenseModel(), model.GetDiffModel(), model.GetResultModel()})
            QVERIFY(child && child->parent() == &model);
        QCOMPARE(SourceOf(model.GetFeaturesModel()), model.GetSourceFeaturesModel());
        QCOMPARE(SourceOf(model.GetFeatureProductsModel()), model.GetProductsModel());
        QCOMPARE(SourceOf(model.GetProductLayoutsModel()), model.GetLayoutsModel());
        QVERIFY(m_productLicenses && m_extensionLicenses && m_extensionProducts && m_extensionLayouts);
        QCOMPARE(SourceOf(m_productLicenses), model.GetLicensesModel());
        QPointer<QAbstractItemModel> features = model.GetSourceFeaturesModel();
        QPointer<QAbstractItemModel> diff = model.GetDiffModel();
        m_model.reset();
        QVERIFY(features.isNull() && diff.isNull());
    }

    void selectProductReachesTheProductModels()
    {
        QAbstractItemModel *licenses = m_model->GetProductLicensesModel();
        const auto tester = Tester(licenses);
        QSignalSpy extensionProducts(m_extensionProducts, &QAbstractItemModel::dataChanged);
        QSignalSpy licencesSorted(licenses, &QAbstractItemModel::layoutChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectFeature(QStringLiteral("Open"));
        QCOMPARE(featureProducts.count() + extensionProducts.count(), 0);
        QCOMPARE(licencesSorted.count(), 1);
        QCOMPARE(m_featureProducts->CurrentFeature() + m_productLayouts->CurrentFeature()
                     + m_productLicenses->CurrentFeature(), QStringLiteral("OpenOpenOpen"));
        QSignalSpy layoutsChanged(m_productLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy extensionLicences(m_extensionLicenses, &QAbstractItemModel::dataChanged);
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(Emissions(layoutsChanged), QStringLiteral("0,0 1,2 []"));
        // The product layouts' change repaints the feature's product marks (one past the end, kept).
        QCOMPARE(Emissions(featureProducts), QStringLiteral("0,0 3,4 []"));
        QCOMPARE(m_featureProducts->CurrentFeature(), QStringLiteral("Open"));
        QCOMPARE(extensionLicences.count() + extensionProducts.count(), 0);
        QCOMPARE(ColumnText(*m_productLayouts, 1, Qt::UserRole), QStringLiteral("true,false"));
        // Attached {2, Lic1} first, then {10, B}; names compare as numbers, words count as 0.
        licenses->sort(0);
        QCOMPARE(ColumnText(*licenses, 1), QStringLiteral("Lic1,2,B,10"));
        QVERIFY(m_productLicenses->setData(m_productLicenses->index(0, 0), true));
        m_model->SelectProduct(QStringLiteral("Base"));
        QCOMPARE(ColumnText(*licenses, 1), QStringLiteral("Lic1,2,10,B"));
    }

    void selectExtensionReachesTheExtensionModels()
    {
        QSignalSpy products(m_extensionProducts, &QAbstractItemModel::dataChanged);
        QSignalSpy layouts(m_extensionLayouts, &QAbstractItemModel::dataChanged);
        QSignalSpy licenses(m_extensionLicenses, &QAbstractItemModel::dataChanged);
        QSignalSpy featureProducts(m_featureProducts, &QAbstractItemModel::dataChanged);
        m_model->SelectExtension(QStringLiteral("stl"));
        QCOMPARE(Emissions(products) + '/' + Emissions(layouts) + '/' + Emissions(licenses),
                 QStringLiteral("0,0 2,7 []/0,0 1,7 []/0,0 3,3 []"));
        QCOMPARE(featureProducts.count(), 0);
        QCOMPARE(m_extensionProducts->CurrentExtension() + m_extensionLicenses->CurrentExtension(), "stlstl");
    }

    // --- the check-mark icons and their delegate

    void checkMarks_data()
    {
        QTest::addColumn<bool>("member");
        QTest::addColumn<QString>("path");
        QTest::newRow("member") << true << ":/check.png";
        QTest::newRow("not a member") << false << ":/uncheck.png";
    }
    void checkMarks()
    {
        QFETCH(bool, member);
        QFETCH(QString, path);
        const QImage image = QImage(path).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(image.size(), QSize(50, 50));
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0); // transparent corners, drawn middle
        QVERIFY(qAlpha(image.pixel(25, 25)) > 0);
        const QIcon icon = CheckMarkData(member, Qt::DecorationRole).value<QIcon>();
        QCOMPARE(icon.pixmap(50, 50).toImage().convertToFormat(QImage::Format_ARGB32), image);
        QCOMPARE(CheckMarkData(member, Qt::UserRole), QVariant(member));
        QVERIFY(!CheckMarkData(member, Qt::DisplayRole).isValid() && !CheckMarkData(member, Qt::EditRole).isValid());
    }

    void delegateGeometry_data()
    {
        QTest::addColumn<bool>("withIcon");
        QTest::addColumn<bool>("withWidget");
        QTest::newRow("icon, no widget: the whole cell") << true << false;
        QTest::newRow("no icon, no widget: the same geometry") << false << false;
        QTest::newRow("in a view: room for the focus frame") << true << true;
    }
    void delegateGeometry()
    {
        QFETCH(bool, withIcon);
        QFETCH(bool, withWidget);
        QStandardItemModel model(1, 1);
        if (withIcon)
            model.setData(model.index(0, 0), CheckMarkIcon(true), Qt::DecorationRole);
        QTableView view;
        ExposedDelegate delegate(&view);
        QCOMPARE(delegate.parent(), nullptr); // the parent argument does not take ownership
        QStyleOptionViewItem option;
        if (withWidget) {
            option.initFrom(&view);
            option.widget = &view;
        }
        option.rect = QRect(3, 4, 30, 22);
        delegate.initStyleOption(&option, model.index(0, 0));
        const int margin = withWidget ? view.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, &view) + 1 : 0;
        QCOMPARE(option.decorationSize, QSize(30 - margin, 22 - margin));
        QCOMPARE(option.decorationPosition, QStyleOptionViewItem::Top);
        QCOMPARE(option.decorationAlignment, Qt::Alignment(Qt::AlignCenter));
        QCOMPARE(option.features.testFlag(QStyleOptionViewItem::HasDecoration), withIcon);
    }

    // --- rows of a map: whatever happened to it, a cursor answers what counting from the first would

    void cursorAccessInAnyOrder_data()
    {
        QTest::addColumn<QList<int>>("rows");
        QTest::newRow("forward") << QList<int>{0, 1, 2, 3, 50, 51, 99};
        QTest::newRow("backward") << QList<int>{99, 98, 60, 3, 0};
        QTest::newRow("jumps") << QList<int>{40, 2, 97, 41, 41, 0, 70};
        QTest::newRow("past either end") << QList<int>{5, 100, -1, 99};
    }
    void cursorAccessInAnyOrder()
    {
        QFETCH(QList<int>, rows);
        const Map map = Numbers(100);
        Cursor cursor;
        for (int row : rows)
            QCOMPARE(KeyAt(cursor, map, row), map.keys().value(row, QStringLiteral("<end>")));
        QCOMPARE(KeyAt(cursor, Map(), 0), QStringLiteral("<end>"));
    }

    void cursorNoticesChanges_data()
    {
        QTest::addColumn<MapChange>("change");
        QTest::newRow("insertion before the cursor") << MapChange([](Map &map) { map.insert("a", -1); });
        QTest::newRow("removal before the cursor") << MapChange([](Map &map) { map.remove("k003"); });
        QTest::newRow("whole map replaced, same size") << MapChange([](Map &map) { map = Numbers(20, "j"); });
        QTest::newRow("key swap announced by a model") << MapChange([](Map &map) {
            map.remove("k003");
            map.insert("k0155", -1);
            BumpRowEpoch();
        });
        // The copy keeps the old entries until it goes, after the map has detached from it.
        QTest::newRow("map detached from a copy") << MapChange([](Map &map) {
            const Map copy = map;
            map["k000"] = 7;
        });
    }
    void cursorNoticesChanges()
    {
        QFETCH(MapChange, change);
        Map map = Numbers(20);
        Cursor cursor;
        QCOMPARE(KeyAt(cursor, map, 10), QStringLiteral("k010"));
        change(map);
        for (int row : {11, 10, 0, int(map.size()) - 1})
            QCOMPARE(KeyAt(cursor, map, row), map.keys().at(row));
    }

    void modelsSeeEachOthersRenamesAndStoreEdits()
    {
        FeaturesModel second(*m_fixture->store);
        QCOMPARE(second.index(3, 0).data().toString(), QStringLiteral("orphan"));
        // Same size afterwards: only the announcement tells the other model.
        QVERIFY(m_features->setData(m_features->index(0, 0), QStringLiteral("pen")));
        QCOMPARE(ColumnText(second), QStringLiteral("exit,my_feat_1,orphan,pen,save"));
        m_fixture->store->GetFeatures().insert(QStringLiteral("Aaa"), VantixFeatureData());
        QCOMPARE(ColumnText(second), QStringLiteral("Aaa,exit,my_feat_1,orphan,pen,save"));
        const QModelIndex last = second.index(5, 1);
        m_fixture->store->GetFeatures().remove(QStringLiteral("exit"));
        m_fixture->store->GetFeatures().remove(QStringLiteral("save"));
        QCOMPARE(second.index(2, 0).data().toString(), QStringLiteral("orphan"));
        // An index kept from before now points past the end.
        QVERIFY(!last.data().isValid() && !second.setData(last, QStringLiteral("x")));
        QVERIFY(!second.removeRows(last.row(), 1));
        QCOMPARE(second.rowCount(), 4);
    }

private:
    std::unique_ptr<StoreFixture> m_fixture;
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
