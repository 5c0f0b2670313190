#pragma once

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

namespace ModelsTesting {

// Features: Open, exit, my_feat_1, orphan, save (rows in this order); products: Base, Base2, ab;
// layouts: design, print; extensions: obj, stl; licence catalogue: 10, 2, B, Lic1.
inline const char *kProducts = R"({"extensions": {
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
inline const char *kLayouts = R"({"layouts": {"design": {"extensions": {"export": ["stl"]}, "features": ["Open"]},
  "print": {"extensions": {"import": ["obj"]}, "features": ["save", "exit"]}}})";

// For the query: f_base {Base} "Alpha", Base grants {Lic1, Lic2}; f_base2 {Base2} untitled;
// f_a1b1 {a1, b1} "Both"; f_ab {ab} "Ab"; f_none in no product. Layout design holds f_base,
// f_base2 and f_a1b1; only Base and a1 offer it.
inline const char *kQueryProducts = R"({
  "features": {"feature": [{"id": "f_base", "title": "Alpha"}, {"id": "f_base2"},
    {"id": "f_a1b1", "title": "Both"}, {"id": "f_ab", "title": "Ab"}, {"id": "f_none", "title": "None"}]},
  "products": {"product": [
    {"id": "Base", "modes": ["design"], "features": ["f_base"],
     "licensing": {"base": "L", "specific": [{"id": "f_base", "licenses": ["Lic1", "Lic2"]}]}},
    {"id": "Base2", "features": ["f_base2"]}, {"id": "a1", "modes": ["design"], "features": ["f_a1b1"]},
    {"id": "b1", "features": ["f_a1b1"]}, {"id": "ab", "features": ["f_ab"]}]}})";
inline const char *kQueryLayouts = R"({"layouts": {"design": {"features": ["f_base", "f_base2", "f_a1b1"]}}})";

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

inline std::unique_ptr<QAbstractItemModelTester> Tester(QAbstractItemModel *model)
{
    return std::make_unique<QAbstractItemModelTester>(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
}

// One cell as text: invalid reads "-", colours by name, an icon as an empty text.
inline QString CellText(const QVariant &value)
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
inline QString RowText(const QAbstractItemModel &model, int row, int role = Qt::DisplayRole)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column)
        cells << CellText(model.index(row, column).data(role));
    return cells.join('|');
}

// Rows joined with ";".
inline QString TableText(const QAbstractItemModel &model, int role = Qt::DisplayRole)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows << RowText(model, row, role);
    return rows.join(';');
}

// One column of every row joined with ",".
inline QString ColumnText(const QAbstractItemModel &model, int column = 0, int role = Qt::DisplayRole)
{
    QStringList cells;
    for (int row = 0; row < model.rowCount(); ++row)
        cells << CellText(model.index(row, column).data(role));
    return cells.join(',');
}

inline QString HeaderText(const QAbstractItemModel &model, Qt::Orientation orientation = Qt::Horizontal)
{
    QStringList texts;
    for (int section = 0; section < (orientation == Qt::Horizontal ? model.columnCount() : model.rowCount()); ++section)
        texts << CellText(model.headerData(section, orientation));
    return texts.join('|');
}

// Every emission: indexes as "row,column" (the root as "-"), role lists in brackets; joined with ";".
inline QString Emissions(const QSignalSpy &spy)
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
inline QString SortedJoin(const QSet<QString> &set)
{
    QStringList parts(set.begin(), set.end());
    std::sort(parts.begin(), parts.end());
    return parts.join(',');
}

inline QString SortedJoin(const QString &joined)
{
    const QStringList parts = joined.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    return SortedJoin(QSet<QString>(parts.begin(), parts.end()));
}

// The names of the access sets that hold `id`, in column order.
inline QString Holding(const ExtensionAccess &access, const QString &id)
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

inline QAbstractItemModel *SourceOf(QAbstractItemModel *model)
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

inline Map Numbers(int count, const QString &prefix = QStringLiteral("k"))
{
    Map map;
    for (int i = 0; i < count; ++i)
        map.insert(prefix + QString::number(i).rightJustified(3, '0'), i);
    return map;
}

inline QString KeyAt(Cursor &cursor, const Map &map, int row)
{
    const auto it = cursor.At(map, row);
    return it == map.constEnd() ? QStringLiteral("<end>") : it.key();
}

} // namespace ModelsTesting

using namespace ModelsTesting;

Q_DECLARE_METATYPE(MapChange)
// One facade over the shared folder per test, so each model is tested as it is wired.
class ModelsFixture : public QObject
{
    Q_OBJECT

protected slots:
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

protected:
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
