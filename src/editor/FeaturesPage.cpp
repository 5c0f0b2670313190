#include "editor/FeaturesPage.h"

#include "editor/PageTools.h"
#include "editor/TabIndex.h"
#include "editor/TableLook.h"
#include "models/FeaturesModel.h"
#include "models/IconDelegate.h"
#include "models/Model.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"
#include "models/ProductsModel.h"
#include "store/VantixJsonData.h"
#include "ui_VantixJSONEditor.h"

#include <QAbstractProxyModel>
#include <QDataWidgetMapper>

#include <iterator>

namespace ProductEditor {

using namespace PageTools;

FeaturesPage::FeaturesPage(Ui::VantixJSONEditorClass &ui, Model &model, QWidget *window)
    : m_ui(ui)
    , m_model(model)
    , m_window(window)
{
    ui.mp_lst_features->setModel(model.GetFeaturesModel());
    // Every row is one line of text; the list then need not measure thousands of rows.
    ui.mp_lst_features->setUniformItemSizes(true);
    ui.mp_lst_feature_product->setModel(model.GetFeatureProductsModel());
    ui.mp_lst_feature_layout->setModel(model.GetProductLayoutsModel());
    ui.mp_lst_specific_license->setModel(model.GetProductLicensesModel());

    QListView *list = ui.mp_lst_features;
    MapWidget(list, ui.mp_edt_title, FeaturesModel::TitleColumn, "text");
    MapWidget(list, ui.mp_edt_id, FeaturesModel::IdColumn, "text");
    MapWidget(list, ui.mp_edt_statustip, FeaturesModel::StatustipColumn, "text");
    MapWidget(list, ui.mp_edt_tooltip, FeaturesModel::TooltipColumn, "text");
    QDataWidgetMapper *visibleMapper = MapWidget(list, ui.mp_chk_visible, FeaturesModel::VisibleColumn, "checked");
    MapWidget(list, ui.mp_chk_emergency, FeaturesModel::EmergencyColumn, "checked");
    QDataWidgetMapper *baseLicenseMapper =
        MapWidget(ui.mp_lst_feature_product, ui.mp_edt_base_license, ProductsModel::BaseColumn, "text");

    _SetUpTables();
    _Connect(visibleMapper, baseLicenseMapper);

    MakeCurrent(list, 0, FeaturesModel::IdColumn, SelectCurrent);
    // The licence names are known only once a feature and a product are current.
    ui.mp_lst_specific_license->resizeColumnsToContents();
}

void FeaturesPage::_SetUpTables()
{
    QTableView *products = m_ui.mp_lst_feature_product;
    products->setItemDelegateForColumn(ProductsModel::CheckColumn, CreateIconDelegate(products));
    TableLook productsLook;
    productsLook.singleSelection = true;
    productsLook.horizontalHeader = false;
    productsLook.hiddenColumns = {ProductsModel::BaseColumn, ProductsModel::SuffixColumn};
    productsLook.resizeModes = {{ProductsModel::CheckColumn, QHeaderView::Fixed}};
    productsLook.stretchLast = true;
    productsLook.sorting = true;
    productsLook.viewSortColumn = ProductsModel::IdColumn;
    productsLook.ApplyTo(products);

    QTableView *layouts = m_ui.mp_lst_feature_layout;
    IconDelegate *layoutDelegate = CreateIconDelegate(layouts);
    layouts->setItemDelegateForColumn(ProductLayoutsModel::FeatureColumn, layoutDelegate);
    layouts->setItemDelegateForColumn(ProductLayoutsModel::ProductColumn, layoutDelegate);
    TableLook layoutsLook;
    layoutsLook.highlightSections = false;
    layoutsLook.resizeModes = {{ProductLayoutsModel::FeatureColumn, QHeaderView::Fixed}};
    layoutsLook.stretchLast = true;
    layoutsLook.ApplyTo(layouts);

    QTableView *licenses = m_ui.mp_lst_specific_license;
    licenses->setItemDelegateForColumn(ProductLicensesModel::CheckColumn, CreateIconDelegate(licenses));
    TableLook licensesLook;
    licensesLook.singleSelection = true;
    licensesLook.horizontalHeader = false;
    // Sorting shows the indicator of this hidden header, and the columns have
    // always been measured with it.
    licensesLook.resizeModes = {{ProductLicensesModel::CheckColumn, QHeaderView::Fixed}};
    licensesLook.stretchLast = true;
    licensesLook.sorting = true;
    licensesLook.modelSortColumn = ProductLicensesModel::CheckColumn;
    licensesLook.ApplyTo(licenses);
}

void FeaturesPage::_Connect(QDataWidgetMapper *visibleMapper, QDataWidgetMapper *baseLicenseMapper)
{
    Ui::VantixJSONEditorClass &ui = m_ui;
    // "Visible" is written at once; "Emergency" waits for its mapper's own submit.
    connect(ui.mp_chk_visible, &QCheckBox::toggled, visibleMapper, &QDataWidgetMapper::submit);
    connect(ui.mp_lst_features->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &FeaturesPage::_FeatureChanged);
    QItemSelectionModel *products = ui.mp_lst_feature_product->selectionModel();
    connect(products, &QItemSelectionModel::currentChanged, this, [this](const QModelIndex &current) {
        m_model.SelectProduct(current.sibling(current.row(), ProductsModel::IdColumn).data().toString());
    });
    connect(products, &QItemSelectionModel::currentChanged, this,
            [baseLicenseMapper](const QModelIndex &current) { baseLicenseMapper->setCurrentIndex(current.row()); });
    ToggleOnClick(ui.mp_lst_feature_product, this, [](int column) { return column == ProductsModel::CheckColumn; });
    ToggleOnClick(ui.mp_lst_feature_layout, this, [](int column) {
        return column == ProductLayoutsModel::FeatureColumn || column == ProductLayoutsModel::ProductColumn;
    });
    ToggleOnClick(ui.mp_lst_specific_license, this, [](int column) { return column == ProductLicensesModel::CheckColumn; });
    connect(ui.mp_edt_search, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_model.SetFilter(text);
        m_ui.mp_lst_features->scrollTo(m_ui.mp_lst_features->currentIndex());
    });
    connect(ui.mp_btn_add_new_feature, &QPushButton::clicked, this, &FeaturesPage::_AddFeature);
    connect(ui.mp_btn_duplicate, &QPushButton::clicked, this, &FeaturesPage::_DuplicateFeature);
    connect(ui.mp_btn_remove_current, &QPushButton::clicked, this, &FeaturesPage::_RemoveFeature);
    connect(m_model.GetSourceFeaturesModel(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first) { _FollowInsertedFeature(first); });
    connect(&m_model.GetData(), &VantixJsonData::featuresDataReseted, this,
            [this] { MakeCurrent(m_ui.mp_lst_features, 0, FeaturesModel::IdColumn, SelectCurrent); });
}

void FeaturesPage::OpenFeature(const QModelIndex &source)
{
    m_ui.mp_widget_tab->setCurrentIndex(TabIndex::Features);
    const QModelIndex sourceId = source.sibling(source.row(), FeaturesModel::IdColumn);
    QAbstractItemModel *features = m_model.GetFeaturesModel();
    auto *search = qobject_cast<QAbstractProxyModel *>(features);
    QModelIndex target =
        search ? search->mapFromSource(sourceId) : features->index(source.row(), FeaturesModel::IdColumn);
    if (!target.isValid() && search) {
        // The search text hides the feature; show everything again.
        m_ui.mp_edt_search->clear();
        target = search->mapFromSource(sourceId);
    }
    m_ui.mp_lst_features->selectionModel()->setCurrentIndex(
        target, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Current);
    m_ui.mp_lst_features->scrollTo(target);
}

void FeaturesPage::SelectFirstProduct()
{
    MakeCurrent(m_ui.mp_lst_feature_product, 0, ProductsModel::CheckColumn, SelectCurrentRow);
}

void FeaturesPage::_FeatureChanged(const QModelIndex &current)
{
    Ui::VantixJSONEditorClass &ui = m_ui;
    FollowCurrentRow(ui, ui.mp_lst_features,
                     {ui.mp_edt_id, ui.mp_edt_tooltip, ui.mp_edt_statustip, ui.mp_edt_title, ui.mp_chk_emergency,
                      ui.mp_chk_visible},
                     current);
    m_model.SelectFeature(current.data().toString());
    m_model.SelectProduct(m_model.GetFeatureProductsModel()->index(0, ProductsModel::IdColumn).data().toString());
    MakeCurrent(ui.mp_lst_feature_product, 0, ProductsModel::IdColumn, SelectCurrentRow);
}

// A feature the table gains (added or renamed) becomes current. The search
// filter's own insertions while the user types are not followed, so the
// current feature stays put; the filter has mapped the new row by now.
void FeaturesPage::_FollowInsertedFeature(int first)
{
    QListView *view = m_ui.mp_lst_features;
    const QModelIndex source = m_model.GetSourceFeaturesModel()->index(first, FeaturesModel::IdColumn);
    auto *search = qobject_cast<QAbstractProxyModel *>(view->model());
    const QModelIndex shown =
        search ? search->mapFromSource(source) : view->model()->index(first, FeaturesModel::IdColumn);
    if (shown.isValid())
        view->selectionModel()->setCurrentIndex(shown, SelectCurrent);
}

void FeaturesPage::_AddFeature()
{
    QAbstractItemModel *features = m_model.GetFeaturesModel();
    features->insertRow(features->rowCount());
}

void FeaturesPage::_RemoveFeature()
{
    const QModelIndex current = m_ui.mp_lst_features->currentIndex();
    if (current.isValid())
        m_model.GetFeaturesModel()->removeRow(current.row());
}

void FeaturesPage::_DuplicateFeature()
{
    QListView *view = m_ui.mp_lst_features;
    QAbstractItemModel *features = m_model.GetFeaturesModel();
    const QString currentId = features->index(view->currentIndex().row(), FeaturesModel::IdColumn).data().toString();
    QString newName = currentId;
    if (!AskText(m_window, QStringLiteral("Input new feature name"), newName))
        return;

    VantixJsonData &data = m_model.GetData();
    if (newName == currentId || data.GetFeatures().contains(newName)) {
        WarnAlreadyExists(m_window, QStringLiteral("Feature"), newName);
        return;
    }
    data.DuplicateFeatureFrom(currentId, newName);
    m_ui.mp_edt_search->clear();
    const auto &map = data.GetFeatures();
    const int row = int(std::distance(map.begin(), map.lowerBound(newName)));
    view->scrollTo(MakeCurrent(view, row, FeaturesModel::IdColumn, SelectCurrentRow));
}

} // namespace ProductEditor
