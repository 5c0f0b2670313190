#pragma once

#include "MemoryFolder.h"
#include "models/ExtensionsBaseModel.h"
#include "models/ExtensionsLicenseModel.h"
#include "models/FeatureProductsModel.h"
#include "models/FeaturesModel.h"
#include "models/Model.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"

#include <QAbstractItemModelTester>
#include <QAbstractProxyModel>
#include <QSignalSpy>
#include <QTest>

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

// A cell as text: invalid reads "-", colours by name, an icon as an empty text.
inline QString CellText(const QVariant &value)
{
    if (value.userType() == QMetaType::QColor)
        return value.value<QColor>() == Qt::black ? "black" : value.value<QColor>() == Qt::gray ? "gray" : "?";
    return value.isValid() ? value.toString() : QStringLiteral("-");
}

// Cells joined with "|" and rows with ";"; for one column, rows joined with ",".
inline QString Text(const QAbstractItemModel &model, int role = Qt::DisplayRole, int column = -1, int row = -1)
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

inline QString HeaderText(const QAbstractItemModel &model, Qt::Orientation orientation = Qt::Horizontal)
{
    QStringList texts;
    for (int section = 0; section < (orientation == Qt::Horizontal ? model.columnCount() : model.rowCount()); ++section)
        texts << CellText(model.headerData(section, orientation));
    return texts.join('|');
}

// Every emission: index arguments as "row,column" ("-" for the root), others as text, a role list as "[]" or "[roles]".
inline QString Emissions(const QSignalSpy &spy)
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

// Set order is free: sort.
inline QString SortedJoin(const QSet<QString> &set)
{
    QStringList parts(set.begin(), set.end());
    parts.sort();
    return parts.join(',');
}

inline QAbstractItemModel *SourceOf(QAbstractItemModel *model)
{
    auto *proxy = qobject_cast<QAbstractProxyModel *>(model);
    return proxy ? proxy->sourceModel() : nullptr;
}

} // namespace ModelsTesting

using namespace ModelsTesting;

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
    VantixJsonData &store() { return *m_fixture->store; }

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
