#include "editor/ExtensionsPage.h"

#include "editor/PageTools.h"
#include "editor/TableLook.h"
#include "models/ExtensionsBaseModel.h"
#include "models/ExtensionsLicenseModel.h"
#include "models/ExtensionsModel.h"
#include "models/IconDelegate.h"
#include "models/Model.h"
#include "ui_VantixJSONEditor.h"

namespace ProductEditor {

using namespace PageTools;

ExtensionsPage::ExtensionsPage(Ui::VantixJSONEditorClass &ui, Model &model)
    : m_ui(ui)
    , m_model(model)
{
    ui.mp_lst_extensions->setModel(model.GetExtensionsModel());
    ui.mp_lst_ext_product->setModel(model.GetExtensionsProductModel());
    ui.mp_lst_ext_layout->setModel(model.GetExtensionsLayoutModel());
    ui.mp_lst_ext_licenses->setModel(model.GetExtensionsLicenseModel());

    QListView *list = ui.mp_lst_extensions;
    MapWidget(list, ui.mp_edt_ext_id, ExtensionsModel::IdColumn, "text");
    MapWidget(list, ui.mp_edt_ext_title, ExtensionsModel::TitleColumn, "text");
    MapWidget(list, ui.mp_edt_ext_name, ExtensionsModel::ExtColumn, "text");
    MapWidget(list, ui.mp_chk_ext_cad_support, ExtensionsModel::CadColumn, "checked");
    MapWidget(list, ui.mp_chk_ext_multiple_parts_support, ExtensionsModel::MultiplePartsColumn, "checked");
    MapWidget(list, ui.mp_chk_ext_slice_support, ExtensionsModel::SlicesColumn, "checked");
    MapWidget(list, ui.mp_chk_ext_load_as_part, ExtensionsModel::LoadAsPartColumn, "checked");

    _SetUpTables();
    _Connect();
    MakeCurrent(list, 0, ExtensionsModel::IdColumn, SelectCurrent);
}

void ExtensionsPage::_SetUpTables()
{
    IconDelegate *delegate = CreateIconDelegate(m_ui.mp_tab_extensions);
    TableLook accessLook;
    accessLook.highlightSections = false;
    accessLook.resizeModes = {{ExtensionsBaseModel::NameColumn, QHeaderView::Stretch}};
    for (int column = ExtensionsBaseModel::FirstSetColumn; column <= ExtensionsBaseModel::LastSetColumn; ++column)
        accessLook.resizeModes.insert(column, QHeaderView::Fixed);
    for (QTableView *view : {m_ui.mp_lst_ext_product, m_ui.mp_lst_ext_layout}) {
        for (int column = ExtensionsBaseModel::FirstSetColumn; column <= ExtensionsBaseModel::LastSetColumn; ++column)
            view->setItemDelegateForColumn(column, delegate);
        accessLook.ApplyTo(view);
    }

    QTableView *licenses = m_ui.mp_lst_ext_licenses;
    licenses->setItemDelegateForColumn(ExtensionsLicenseModel::ImportColumn, delegate);
    licenses->setItemDelegateForColumn(ExtensionsLicenseModel::ExportColumn, delegate);
    TableLook licensesLook;
    licensesLook.highlightSections = false;
    licensesLook.sorting = true;
    licensesLook.modelSortColumn = ExtensionsLicenseModel::ImportColumn;
    licensesLook.resizeModes = {{ExtensionsLicenseModel::NameColumn, QHeaderView::Fixed},
                                {ExtensionsLicenseModel::TextColumn, QHeaderView::Stretch},
                                {ExtensionsLicenseModel::ImportColumn, QHeaderView::Fixed},
                                {ExtensionsLicenseModel::ExportColumn, QHeaderView::Fixed}};
    licensesLook.ApplyTo(licenses);
}

void ExtensionsPage::_Connect()
{
    Ui::VantixJSONEditorClass &ui = m_ui;
    QAbstractItemModel *extensions = m_model.GetExtensionsModel();
    connect(ui.mp_lst_extensions->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ExtensionsPage::_ExtensionChanged);
    connect(ui.mp_btn_add_new_extension, &QPushButton::clicked, this,
            [extensions] { extensions->insertRow(extensions->rowCount()); });
    connect(extensions, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first) {
        MakeCurrent(m_ui.mp_lst_extensions, first, ExtensionsModel::IdColumn,
                    QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Current);
    });
    // A load or an undo resets the list; its first extension becomes current again.
    connect(extensions, &QAbstractItemModel::modelReset, this,
            [this] { MakeCurrent(m_ui.mp_lst_extensions, 0, ExtensionsModel::IdColumn, SelectCurrent); });
    connect(ui.mp_btn_remove_extension, &QPushButton::clicked, this, [this, extensions] {
        const QModelIndex current = m_ui.mp_lst_extensions->currentIndex();
        if (current.isValid())
            extensions->removeRow(current.row());
    });
    const auto roleColumns = [](int column) { return column != ExtensionsBaseModel::NameColumn; };
    ToggleOnClick(ui.mp_lst_ext_product, this, roleColumns);
    ToggleOnClick(ui.mp_lst_ext_layout, this, roleColumns);
    ToggleOnClick(ui.mp_lst_ext_licenses, this, [](int column) {
        return column == ExtensionsLicenseModel::ImportColumn || column == ExtensionsLicenseModel::ExportColumn;
    });
}

void ExtensionsPage::_ExtensionChanged(const QModelIndex &current)
{
    Ui::VantixJSONEditorClass &ui = m_ui;
    FollowCurrentRow(ui, ui.mp_lst_extensions,
                     {ui.mp_edt_ext_id, ui.mp_edt_ext_title, ui.mp_edt_ext_name, ui.mp_chk_ext_cad_support,
                      ui.mp_chk_ext_multiple_parts_support, ui.mp_chk_ext_slice_support, ui.mp_chk_ext_load_as_part},
                     current);
    m_model.SelectExtension(current.data().toString());
}

} // namespace ProductEditor
