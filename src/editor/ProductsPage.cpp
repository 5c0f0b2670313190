#include "editor/ProductsPage.h"

#include "editor/FeaturesPage.h"
#include "editor/PageTools.h"
#include "editor/TableLook.h"
#include "models/Model.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductLicensesModel.h"
#include "models/ProductsModel.h"
#include "store/VantixJsonData.h"
#include "ui_VantixJSONEditor.h"

#include <QMessageBox>

#include <algorithm>

namespace ProductEditor {

using namespace PageTools;

ProductsPage::ProductsPage(Ui::VantixJSONEditorClass &ui, Model &model, QWidget *window, FeaturesPage &features)
    : m_ui(ui)
    , m_model(model)
    , m_window(window)
    , m_features(features)
{
    ui.mp_lst_products->setModel(model.GetProductsModel());
    ui.mp_lst_licenses->setModel(model.GetLicensesModel());
    _SetUpTables();
    ui.mp_lst_layouts->setModel(model.GetLayoutsModel());
    ui.mp_lst_layouts->setModelColumn(ProductLayoutsModel::NameColumn);

    connect(ui.mp_btn_duplicate_product, &QPushButton::clicked, this, &ProductsPage::_DuplicateProduct);
    connect(ui.mp_btn_remove_product, &QPushButton::clicked, this, &ProductsPage::_RemoveProduct);
    connect(ui.mp_btn_add_licenses, &QPushButton::clicked, this, &ProductsPage::_AddLicense);
    connect(ui.mp_btn_remove_current_lic, &QPushButton::clicked, this, &ProductsPage::_RemoveLicense);

    MakeCurrent(ui.mp_lst_products, 0, ProductsModel::IdColumn, SelectCurrentRow);
}

void ProductsPage::_SetUpTables()
{
    TableLook productsLook;
    productsLook.singleSelection = true;
    productsLook.hiddenColumns = {ProductsModel::CheckColumn};
    productsLook.resizeModes = {{ProductsModel::IdColumn, QHeaderView::Stretch},
                                {ProductsModel::SuffixColumn, QHeaderView::Fixed},
                                {ProductsModel::BaseColumn, QHeaderView::Fixed}};
    productsLook.sorting = true;
    productsLook.viewSortColumn = ProductsModel::IdColumn;
    productsLook.highlightSections = false;
    productsLook.sortIndicator = false;
    productsLook.ApplyTo(m_ui.mp_lst_products);

    TableLook licensesLook;
    licensesLook.hiddenColumns = {ProductLicensesModel::CheckColumn};
    licensesLook.horizontalHeader = false;
    // As on the Features page, sorting keeps the indicator of the hidden header.
    licensesLook.resizeModes = {{ProductLicensesModel::CheckColumn, QHeaderView::Fixed}};
    licensesLook.stretchLast = true;
    licensesLook.sorting = true;
    licensesLook.modelSortColumn = ProductLicensesModel::TextColumn;
    licensesLook.ApplyTo(m_ui.mp_lst_licenses);
}

void ProductsPage::_DuplicateProduct()
{
    QTableView *view = m_ui.mp_lst_products;
    QAbstractItemModel *products = m_model.GetProductsModel();
    const QString currentId = products->index(view->currentIndex().row(), ProductsModel::IdColumn).data().toString();
    QString newName = currentId;
    if (!AskText(m_window, QStringLiteral("Input new product name"), newName))
        return;

    VantixJsonData &data = m_model.GetData();
    const auto &list = data.GetProducts().products;
    const bool taken = std::any_of(list.begin(), list.end(),
                                   [&newName](const ProductData &product) { return product.id == newName; });
    if (newName == currentId || taken) {
        WarnAlreadyExists(m_window, QStringLiteral("Product"), newName);
        return;
    }
    data.DuplicateProductFrom(currentId, newName);
    view->scrollTo(MakeCurrent(view, products->rowCount() - 1, ProductsModel::IdColumn, SelectCurrentRow));
    m_features.SelectFirstProduct();
}

void ProductsPage::_RemoveProduct()
{
    if (!Confirm(m_window, QStringLiteral("Remove product"),
                 QStringLiteral("Are you sure? Product will be deleted without possibility to revert changes")))
        return;
    const QModelIndex current = m_ui.mp_lst_products->currentIndex();
    if (current.isValid())
        m_model.GetProductsModel()->removeRow(current.row());
}

void ProductsPage::_AddLicense()
{
    QString name;
    if (!AskText(m_window, QStringLiteral("Input new license"), name))
        return;

    const QMap<QString, QString> &known = m_model.GetData().GetLicenses();
    if (std::find(known.begin(), known.end(), name) != known.end()) {
        WarnAlreadyExists(m_window, QStringLiteral("License"), name);
        return;
    }
    QAbstractItemModel *licenses = m_model.GetLicensesModel();
    if (licenses->insertRow(licenses->rowCount()))
        licenses->setData(licenses->index(licenses->rowCount() - 1, ProductLicensesModel::NameColumn), name, Qt::EditRole);
}

void ProductsPage::_RemoveLicense()
{
    if (!Confirm(m_window, QStringLiteral("Remove license"),
                 QStringLiteral("Are you sure? License will be deleted without possibility to revert changes")))
        return;
    const QModelIndex current = m_ui.mp_lst_licenses->currentIndex();
    if (!current.isValid())
        return;
    QAbstractItemModel *licenses = m_model.GetLicensesModel();
    const QString name = licenses->index(current.row(), ProductLicensesModel::NameColumn).data().toString();
    if (m_model.GetData().IsLicenseBasic(name)) {
        QMessageBox::critical(m_window, QStringLiteral("Remove license"),
                              QStringLiteral("This license is basic, you can't remove basic license"),
                              QMessageBox::Ok);
        return;
    }
    licenses->removeRow(current.row());
}

} // namespace ProductEditor
