#include "editor/VantixJSONEditor.h"

#include "editor/EditorPrivate.h"
#include "json/VantixFeaturesDiffModel.h"
#include "json/VantixResultModel.h"
#include "models/IconDelegate.h"
#include "models/QueryFilterFeatureModel.h"

#include <QAbstractProxyModel>
#include <QClipboard>
#include <QDataWidgetMapper>
#include <QDir>
#include <QFileDialog>
#include <QFutureWatcher>
#include <QGuiApplication>
#include <QHeaderView>
#include <QInputDialog>
#include <QJsonArray>
#include <QKeyEvent>
#include <QMessageBox>
#include <QProgressBar>
#include <QProgressDialog>
#include <QTabBar>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>
#include <iterator>

namespace ProductEditor {

namespace {

const QString ProductsTab = QStringLiteral("Products");

const QItemSelectionModel::SelectionFlags SelectCurrent =
    QItemSelectionModel::Select | QItemSelectionModel::Current;
const QItemSelectionModel::SelectionFlags SelectCurrentRow =
    QItemSelectionModel::Select | QItemSelectionModel::Current | QItemSelectionModel::Rows;

void Toggle(QAbstractItemModel *model, const QModelIndex &index)
{
    model->setData(index, !index.data(Qt::UserRole).toBool(), Qt::EditRole);
}

QDataWidgetMapper *MapWidget(QAbstractItemView *view, QWidget *widget, int section,
                             const QByteArray &property)
{
    auto *mapper = new QDataWidgetMapper(view);
    mapper->setModel(view->model());
    mapper->addMapping(widget, section, property);
    mapper->toFirst();
    return mapper;
}

IconDelegate *CreateIconDelegate(QWidget *owner)
{
    // The delegate ignores the parent it is given; the owner is set afterwards
    // so that the delegate lives exactly as long as the widgets that use it.
    auto *delegate = new IconDelegate(owner);
    delegate->setParent(owner);
    return delegate;
}

// setModel keeps the old selection model alive; diff models come and go, so
// the old one is dropped here.
void ShowModel(QAbstractItemView *view, QAbstractItemModel *model)
{
    QItemSelectionModel *old = view->selectionModel();
    view->setModel(model);
    if (old && view->selectionModel() != old)
        old->deleteLater();
}

VantixFeaturesDiffModel *DiffModelOf(const QTabBar *tabBar, int index)
{
    return qobject_cast<VantixFeaturesDiffModel *>(tabBar->tabData(index).value<QObject *>());
}

// Confirmations offer Yes and No with no default button.
QMessageBox::StandardButton Ask(QWidget *parent, const QString &title, const QString &text)
{
    return QMessageBox::question(parent, title, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::NoButton);
}

// Enables a page's fields for a valid current row and moves the page's mappers
// (children of its list) there. Without a current row both pages empty the
// Features page's text fields, a long-standing behaviour of the Extensions page.
void FollowCurrentRow(Ui::VantixJSONEditorClass &ui, QAbstractItemView *list, const QList<QWidget *> &fields,
                      const QModelIndex &current)
{
    const bool valid = current.isValid();
    for (QWidget *field : fields)
        field->setEnabled(valid);
    if (valid) {
        const auto mappers = list->findChildren<QDataWidgetMapper *>(QString(), Qt::FindDirectChildrenOnly);
        for (QDataWidgetMapper *mapper : mappers)
            mapper->setCurrentIndex(current.row());
        return;
    }
    ui.mp_edt_id->setText(QString());
    ui.mp_edt_tooltip->setText(QString());
    ui.mp_edt_statustip->setText(QString());
    ui.mp_edt_title->setText(QString());
}

void WarnAlreadyExists(QWidget *parent, const QString &kind, const QString &name)
{
    QMessageBox::warning(parent, QStringLiteral("Warning"),
                         kind + QStringLiteral(" '") + name + QStringLiteral("' is already exist"), QMessageBox::Ok);
}

} // namespace

VantixJSONEditor::VantixJSONEditor(const QString &path,
                                   const std::function<QByteArray(const QString &)> &reader,
                                   const std::function<bool(const QString &, const QByteArray &)> &writer,
                                   const QMap<QString, QString> &map, QWidget *parent)
    : QMainWindow(parent)
    , d(std::make_unique<EditorPrivate>(path, reader, writer, map))
{
    _Build();
}

VantixJSONEditor::VantixJSONEditor(const QString &path,
                                   const std::function<QByteArray(const QString &)> &reader,
                                   const std::function<bool(const QString &, const QByteArray &)> &writer,
                                   const LicenseCatalogueFactory &catalogue, QWidget *parent)
    : QMainWindow(parent)
    , d(std::make_unique<EditorPrivate>(path, reader, writer, catalogue))
{
    _Build();
}

void VantixJSONEditor::_Build()
{
    d->ui.setupUi(this);
    _InitMenu();
    _InitFeatureTab();
    _InitProductsTab();
    _InitDiffTab();
    _InitResultTab();
    _InitQueryTab();
    _InitExtensionTab();
}

VantixJSONEditor::~VantixJSONEditor()
{
    // Views and proxies react while the models die; the window's handlers must
    // not run against a facade that is half gone.
    for (QObject *object : findChildren<QObject *>())
        object->disconnect(this);
    for (QObject *object : d->model.findChildren<QObject *>())
        object->disconnect(this);
    d->model.GetData().disconnect(this);
}

bool VantixJSONEditor::eventFilter(QObject *watched, QEvent *event)
{
    // The table copies only its current cell on Ctrl+C; the window copies the
    // whole selection instead.
    if (watched == d->ui.mp_tbl_query_result && event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_C && (key->modifiers() & Qt::ControlModifier)) {
            keyPressEvent(key);
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void VantixJSONEditor::_InitMenu()
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    connect(ui.mp_run_reload, &QAction::triggered, this, &VantixJSONEditor::_Reload);
    connect(ui.mp_run_save, &QAction::triggered, this, [this] { d->model.GetData().Save(); });
    connect(ui.mp_run_load, &QAction::triggered, this, &VantixJSONEditor::_Load);
    connect(ui.mp_run_save_as, &QAction::triggered, this, &VantixJSONEditor::_SaveAs);
    connect(ui.mp_run_compare, &QAction::triggered, this, &VantixJSONEditor::_Compare);
    connect(ui.mp_run_compare_product, &QAction::triggered, this,
            &VantixJSONEditor::_CompareProducts);
}

QString VantixJSONEditor::_AskFolder(const QString &caption)
{
    return QDir::toNativeSeparators(QFileDialog::getExistingDirectory(
        this, caption, QString(), QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks));
}

void VantixJSONEditor::_Reload()
{
    const auto answer =
        Ask(this, QStringLiteral("Reload"),
            QStringLiteral("You will lost all your changes, are you sure?"));
    if (answer == QMessageBox::Yes)
        d->model.GetData().Reload();
}

void VantixJSONEditor::_Load()
{
    const QString path = _AskFolder(QStringLiteral("Open"));
    if (!path.isEmpty())
        d->model.GetData().Load(path);
}

void VantixJSONEditor::_SaveAs()
{
    const QString path = _AskFolder(QStringLiteral("Save as"));
    if (!path.isEmpty())
        d->model.GetData().SaveAs(path);
}

void VantixJSONEditor::_Compare()
{
    // Index 2 is the products page, not the Changes page; the switch is kept as users know it.
    d->ui.mp_widget_tab->setCurrentIndex(2);
    if (_AskFolder(QStringLiteral("Open left")).isEmpty())
        return;
    if (_AskFolder(QStringLiteral("Open right")).isEmpty())
        return;

    VantixJsonData &data = d->model.GetData();
    ShowModel(d->ui.mp_tree_diff, nullptr);
    _ClearDiffTabs();
    if (auto *model = _BuildDiffModel(ProductsTab, data.GetProductsOriginalJson(),
                                      data.GetProductsResultJson(), d->diffTabBar))
        _AddDiffTab(ProductsTab, model);
    const QStringList layouts = data.GetLayoutsOriginalJsons().keys();
    for (const QString &key : layouts) {
        const QJsonObject &result = data.GetLayoutsResultJsons()[key];
        if (auto *model = _BuildDiffModel(key, data.GetLayoutsOriginalJsons().value(key), result,
                                          d->diffTabBar))
            _AddDiffTab(key, model);
    }
    if (d->diffTabBar->count() > 0)
        _TabBarChanged(0);
    d->ui.mp_btn_apply_patch->show();
}

void VantixJSONEditor::_CompareProducts()
{
    VantixJsonData &data = d->model.GetData();
    QStringList ids;
    for (const ProductData &product : data.GetProducts().products)
        ids << product.id;

    bool ok = false;
    const QString left = QInputDialog::getItem(this, QStringLiteral("Select Product"),
                                               QStringLiteral("Please, select Left Product: "), ids, 0,
                                               false, &ok);
    if (!ok)
        return;
    ids.removeOne(left);
    // Cancelling the second choice compares with the first remaining product.
    const QString right = QInputDialog::getItem(this, QStringLiteral("Select Product"),
                                                QStringLiteral("Please, select Right Product: "), ids,
                                                0, false);

    data.UpdateResultJsons();
    _ClearDiffTabs();

    QJsonObject leftObject;
    QJsonObject rightObject;
    const QJsonArray products = data.GetProductsResultJson()
                                    .value(QStringLiteral("products"))
                                    .toObject()
                                    .value(QStringLiteral("product"))
                                    .toArray();
    for (const QJsonValue &value : products) {
        const QJsonObject product = value.toObject();
        const QString id = product.value(QStringLiteral("id")).toString();
        if (id == left)
            leftObject = product;
        else if (id == right)
            rightObject = product;
        if (!leftObject.isEmpty() && !rightObject.isEmpty())
            break;
    }

    const QString name = left + QStringLiteral(" / ") + right;
    if (auto *model = _BuildDiffModel(name, leftObject, rightObject, d->diffTabBar)) {
        model->setHeaders({QStringLiteral("Key"), left, right});
        model->setEditableMode(false);
        d->diffTabBar->addTab(name);
        d->diffTabBar->setTabData(0, QVariant::fromValue(model));
        _TabBarChanged(0);
    }
    d->ui.mp_widget_tab->setCurrentIndex(2);
    d->ui.mp_btn_apply_patch->hide();
}

void VantixJSONEditor::_InitFeatureTab()
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    Model &model = d->model;

    ui.mp_lst_features->setModel(model.GetFeaturesModel());
    // Every row is one line of text; the list then need not measure thousands of rows.
    ui.mp_lst_features->setUniformItemSizes(true);
    ui.mp_lst_feature_product->setModel(model.GetFeatureProductsModel());
    ui.mp_lst_feature_layout->setModel(model.GetProductLayoutsModel());
    ui.mp_lst_specific_license->setModel(model.GetProductLicensesModel());

    MapWidget(ui.mp_lst_features, ui.mp_edt_title, 1, "text");
    MapWidget(ui.mp_lst_features, ui.mp_edt_id, 0, "text");
    MapWidget(ui.mp_lst_features, ui.mp_edt_statustip, 3, "text");
    MapWidget(ui.mp_lst_features, ui.mp_edt_tooltip, 2, "text");
    QDataWidgetMapper *visibleMapper = MapWidget(ui.mp_lst_features, ui.mp_chk_visible, 4, "checked");
    MapWidget(ui.mp_lst_features, ui.mp_chk_emergency, 5, "checked");
    QDataWidgetMapper *baseLicenseMapper =
        MapWidget(ui.mp_lst_feature_product, ui.mp_edt_base_license, 3, "text");

    QTableView *products = ui.mp_lst_feature_product;
    products->setItemDelegateForColumn(0, CreateIconDelegate(products));
    products->setSelectionBehavior(QAbstractItemView::SelectRows);
    products->setSelectionMode(QAbstractItemView::SingleSelection);
    products->verticalHeader()->hide();
    products->horizontalHeader()->hide();
    products->verticalHeader()->setDefaultSectionSize(20);
    products->horizontalHeader()->hideSection(3);
    products->horizontalHeader()->hideSection(2);
    products->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    products->horizontalHeader()->setStretchLastSection(true);
    products->resizeColumnsToContents();
    products->setSortingEnabled(true);
    products->sortByColumn(1, Qt::AscendingOrder);

    QTableView *layouts = ui.mp_lst_feature_layout;
    IconDelegate *layoutDelegate = CreateIconDelegate(layouts);
    layouts->setItemDelegateForColumn(0, layoutDelegate);
    layouts->setItemDelegateForColumn(1, layoutDelegate);
    layouts->setSelectionBehavior(QAbstractItemView::SelectRows);
    layouts->verticalHeader()->hide();
    layouts->verticalHeader()->setDefaultSectionSize(20);
    layouts->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    layouts->horizontalHeader()->setStretchLastSection(true);
    layouts->horizontalHeader()->setHighlightSections(false);
    layouts->resizeColumnsToContents();

    QTableView *licenses = ui.mp_lst_specific_license;
    licenses->setItemDelegateForColumn(0, CreateIconDelegate(licenses));
    licenses->setSelectionBehavior(QAbstractItemView::SelectRows);
    licenses->setSelectionMode(QAbstractItemView::SingleSelection);
    licenses->verticalHeader()->hide();
    licenses->horizontalHeader()->hide();
    licenses->horizontalHeader()->setSortIndicatorShown(false);
    licenses->verticalHeader()->setDefaultSectionSize(20);
    licenses->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    licenses->horizontalHeader()->setStretchLastSection(true);
    licenses->setSortingEnabled(true);
    licenses->model()->sort(0, Qt::AscendingOrder);
    licenses->resizeColumnsToContents();

    connect(ui.mp_chk_visible, &QCheckBox::toggled, visibleMapper, &QDataWidgetMapper::submit);
    connect(ui.mp_lst_features->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) { _FeatureChanged(current); });
    connect(products->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) {
                d->model.SelectProduct(current.sibling(current.row(), 1).data().toString());
            });
    connect(products->selectionModel(), &QItemSelectionModel::currentChanged, baseLicenseMapper,
            [baseLicenseMapper](const QModelIndex &current) {
                baseLicenseMapper->setCurrentIndex(current.row());
            });
    connect(products, &QAbstractItemView::clicked, this, [this](const QModelIndex &index) {
        if (index.column() == 0)
            Toggle(d->model.GetFeatureProductsModel(), index);
    });
    connect(layouts, &QAbstractItemView::clicked, this, [this](const QModelIndex &index) {
        if (index.column() == 0 || index.column() == 1)
            Toggle(d->model.GetProductLayoutsModel(), index);
    });
    connect(licenses, &QAbstractItemView::clicked, this, [this](const QModelIndex &index) {
        if (index.column() == 0)
            Toggle(d->model.GetProductLicensesModel(), index);
    });
    connect(ui.mp_edt_search, &QLineEdit::textChanged, this, [this](const QString &text) {
        d->model.SetFilter(text);
        d->ui.mp_lst_features->scrollTo(d->ui.mp_lst_features->currentIndex());
    });
    connect(ui.mp_btn_add_new_feature, &QPushButton::clicked, this, &VantixJSONEditor::_AddFeature);
    connect(ui.mp_btn_duplicate, &QPushButton::clicked, this, &VantixJSONEditor::_DuplicateFeature);
    connect(ui.mp_btn_remove_current, &QPushButton::clicked, this, &VantixJSONEditor::_RemoveFeature);
    // A feature the table gains (added or renamed) becomes current. The search
    // filter's own insertions while the user types are not followed, so the
    // current feature stays put; the filter has mapped the new row by now.
    connect(model.GetSourceFeaturesModel(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first) {
                QListView *view = d->ui.mp_lst_features;
                const QModelIndex source = d->model.GetSourceFeaturesModel()->index(first, 0);
                auto *search = qobject_cast<QAbstractProxyModel *>(view->model());
                const QModelIndex shown = search ? search->mapFromSource(source) : view->model()->index(first, 0);
                if (shown.isValid())
                    view->selectionModel()->setCurrentIndex(shown, SelectCurrent);
            });
    connect(&model.GetData(), &VantixJsonData::featuresDataReseted, this, [this] {
        QListView *view = d->ui.mp_lst_features;
        view->selectionModel()->setCurrentIndex(view->model()->index(0, 0), SelectCurrent);
    });

    ui.mp_lst_features->selectionModel()->setCurrentIndex(model.GetFeaturesModel()->index(0, 0),
                                                          SelectCurrent);
    // The license names are known only once a feature and a product are current.
    licenses->resizeColumnsToContents();
}

void VantixJSONEditor::_FeatureChanged(const QModelIndex &current)
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    FollowCurrentRow(ui, ui.mp_lst_features,
                     {ui.mp_edt_id, ui.mp_edt_tooltip, ui.mp_edt_statustip, ui.mp_edt_title, ui.mp_chk_emergency,
                      ui.mp_chk_visible},
                     current);

    d->model.SelectFeature(current.data().toString());
    QAbstractItemModel *featureProducts = d->model.GetFeatureProductsModel();
    const QModelIndex first = featureProducts->index(0, 1);
    d->model.SelectProduct(first.data().toString());
    ui.mp_lst_feature_product->selectionModel()->setCurrentIndex(first, SelectCurrentRow);
}

void VantixJSONEditor::_AddFeature()
{
    QAbstractItemModel *features = d->model.GetFeaturesModel();
    features->insertRow(features->rowCount());
}

void VantixJSONEditor::_RemoveFeature()
{
    const QModelIndex current = d->ui.mp_lst_features->currentIndex();
    if (current.isValid())
        d->model.GetFeaturesModel()->removeRow(current.row());
}

void VantixJSONEditor::_DuplicateFeature()
{
    QListView *view = d->ui.mp_lst_features;
    QAbstractItemModel *features = d->model.GetFeaturesModel();
    const QString currentId = features->index(view->currentIndex().row(), 0).data().toString();

    QInputDialog dialog(this);
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setTextValue(currentId);
    dialog.setLabelText(QStringLiteral("Input new feature name"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString newName = dialog.textValue();

    VantixJsonData &data = d->model.GetData();
    if (newName != currentId && !data.GetFeatures().contains(newName)) {
        data.DuplicateFeatureFrom(currentId, newName);
        d->ui.mp_edt_search->clear();
        const auto &map = data.GetFeatures();
        const int row = int(std::distance(map.begin(), map.lowerBound(newName)));
        const QModelIndex index = features->index(row, 0);
        view->selectionModel()->setCurrentIndex(index, SelectCurrentRow);
        view->scrollTo(index);
        return;
    }
    WarnAlreadyExists(this, QStringLiteral("Feature"), newName);
}

void VantixJSONEditor::_InitProductsTab()
{
    Ui::VantixJSONEditorClass &ui = d->ui;

    QTableView *products = ui.mp_lst_products;
    products->setModel(d->model.GetProductsModel());
    products->setSelectionBehavior(QAbstractItemView::SelectRows);
    products->setSelectionMode(QAbstractItemView::SingleSelection);
    products->verticalHeader()->hide();
    products->horizontalHeader()->show();
    products->verticalHeader()->setDefaultSectionSize(20);
    products->horizontalHeader()->hideSection(0);
    products->resizeColumnsToContents();
    products->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    products->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Fixed);
    products->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Fixed);
    products->setSortingEnabled(true);
    products->sortByColumn(1, Qt::AscendingOrder);
    products->horizontalHeader()->setHighlightSections(false);
    products->horizontalHeader()->setSortIndicatorShown(false);

    QTableView *licenses = ui.mp_lst_licenses;
    licenses->setModel(d->model.GetLicensesModel());
    licenses->hideColumn(0);
    licenses->verticalHeader()->hide();
    licenses->horizontalHeader()->hide();
    licenses->horizontalHeader()->setSortIndicatorShown(false);
    licenses->verticalHeader()->setDefaultSectionSize(20);
    licenses->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    licenses->setSelectionBehavior(QAbstractItemView::SelectRows);
    licenses->horizontalHeader()->setStretchLastSection(true);
    licenses->setSortingEnabled(true);
    licenses->model()->sort(2, Qt::AscendingOrder);
    licenses->resizeColumnsToContents();

    ui.mp_lst_layouts->setModel(d->model.GetLayoutsModel());
    ui.mp_lst_layouts->setModelColumn(2);

    connect(ui.mp_btn_duplicate_product, &QPushButton::clicked, this,
            &VantixJSONEditor::_DuplicateProduct);
    connect(ui.mp_btn_remove_product, &QPushButton::clicked, this, &VantixJSONEditor::_RemoveProduct);
    connect(ui.mp_btn_add_licenses, &QPushButton::clicked, this, &VantixJSONEditor::_AddLicense);
    connect(ui.mp_btn_remove_current_lic, &QPushButton::clicked, this, &VantixJSONEditor::_RemoveLicense);

    products->selectionModel()->setCurrentIndex(products->model()->index(0, 1), SelectCurrentRow);
}

void VantixJSONEditor::_DuplicateProduct()
{
    QTableView *view = d->ui.mp_lst_products;
    QAbstractItemModel *products = d->model.GetProductsModel();
    const QString currentId = products->index(view->currentIndex().row(), 1).data().toString();

    QInputDialog dialog(this);
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setTextValue(currentId);
    dialog.setLabelText(QStringLiteral("Input new product name"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString newName = dialog.textValue();

    VantixJsonData &data = d->model.GetData();
    const auto &list = data.GetProducts().products;
    const bool taken = std::any_of(list.begin(), list.end(),
                                   [&newName](const ProductData &product) { return product.id == newName; });
    if (newName != currentId && !taken) {
        data.DuplicateProductFrom(currentId, newName);
        const QModelIndex last = products->index(products->rowCount() - 1, 1);
        view->selectionModel()->setCurrentIndex(last, SelectCurrentRow);
        view->scrollTo(last);
        QTableView *featureProducts = d->ui.mp_lst_feature_product;
        featureProducts->selectionModel()->setCurrentIndex(featureProducts->model()->index(0, 0),
                                                           SelectCurrentRow);
        return;
    }
    WarnAlreadyExists(this, QStringLiteral("Product"), newName);
}

void VantixJSONEditor::_RemoveProduct()
{
    const auto answer =
        Ask(this, QStringLiteral("Remove product"),
            QStringLiteral("Are you sure? Product will be deleted without possibility to revert changes"));
    if (answer == QMessageBox::No)
        return;
    const QModelIndex current = d->ui.mp_lst_products->currentIndex();
    if (current.isValid())
        d->model.GetProductsModel()->removeRow(current.row());
}

void VantixJSONEditor::_AddLicense()
{
    QInputDialog dialog(this);
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setLabelText(QStringLiteral("Input new license"));
    dialog.setTextValue(QString());
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString name = dialog.textValue();

    const QMap<QString, QString> &known = d->model.GetData().GetLicenses();
    if (std::find(known.begin(), known.end(), name) == known.end()) {
        QAbstractItemModel *licenses = d->model.GetLicensesModel();
        const int count = licenses->rowCount();
        if (licenses->insertRow(count))
            licenses->setData(licenses->index(licenses->rowCount() - 1, 1), name, Qt::EditRole);
        return;
    }
    WarnAlreadyExists(this, QStringLiteral("License"), name);
}

void VantixJSONEditor::_RemoveLicense()
{
    const auto answer =
        Ask(this, QStringLiteral("Remove license"),
            QStringLiteral("Are you sure? License will be deleted without possibility to revert changes"));
    if (answer == QMessageBox::No)
        return;

    const QModelIndex current = d->ui.mp_lst_licenses->currentIndex();
    if (!current.isValid())
        return;
    QAbstractItemModel *licenses = d->model.GetLicensesModel();
    const QString name = licenses->index(current.row(), 1).data().toString();
    if (d->model.GetData().IsLicenseBasic(name)) {
        QMessageBox::critical(this, QStringLiteral("Remove license"),
                              QStringLiteral("This license is basic, you can't remove basic license"),
                              QMessageBox::Ok);
        return;
    }
    licenses->removeRow(current.row());
}

void VantixJSONEditor::_InitDiffTab()
{
    d->diffTabBar = new QTabBar(d->ui.mp_tab_diff);
    d->ui.verticalLayout_4->insertWidget(1, d->diffTabBar);
    connect(d->diffTabBar, &QTabBar::currentChanged, this, &VantixJSONEditor::_TabBarChanged);
    connect(d->ui.mp_btn_update, &QPushButton::clicked, this, &VantixJSONEditor::_Update);
    connect(d->ui.mp_btn_apply_patch, &QPushButton::clicked, this, &VantixJSONEditor::_ApplyChanges);
}

void VantixJSONEditor::_TabBarChanged(int index)
{
    QTreeView *tree = d->ui.mp_tree_diff;
    ShowModel(tree, DiffModelOf(d->diffTabBar, index));
    tree->expandAll();
    for (int column = 0; column < 3; ++column)
        tree->resizeColumnToContents(column);
}

VantixFeaturesDiffModel *VantixJSONEditor::_BuildDiffModel(const QString &name, const QJsonObject &left,
                                                           const QJsonObject &right, QWidget *parent)
{
    QProgressDialog dialog(parent);
    dialog.setWindowFlags(dialog.windowFlags() & ~Qt::WindowContextHelpButtonHint
                          & ~Qt::WindowCloseButtonHint);
    dialog.setModal(true);
    dialog.setLabelText(QStringLiteral("Building %1 diff ...").arg(name, 0, QLatin1Char(' ')));
    dialog.setCancelButton(nullptr);
    auto *bar = new QProgressBar(&dialog);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    dialog.setBar(bar);
    dialog.setFixedSize(dialog.size() + QSize(20, 5));

    QFutureWatcher<void> watcher;
    connect(&watcher, &QFutureWatcher<void>::finished, &dialog, &QProgressDialog::reset);
    connect(&watcher, &QFutureWatcher<void>::progressRangeChanged, &dialog, &QProgressDialog::setRange);
    connect(&watcher, &QFutureWatcher<void>::progressValueChanged, &dialog, &QProgressDialog::setValue);
    connect(&dialog, &QProgressDialog::canceled, &watcher, &QFutureWatcher<void>::cancel);

    auto *model = new VantixFeaturesDiffModel(parent);
    // The task sees only its own copies and the new model, which nothing else uses yet.
    bool changed = false;
    watcher.setFuture(QtConcurrent::run([model, left, right, &changed] {
        changed = model->Regenerate(left, right);
    }));
    dialog.exec();
    watcher.waitForFinished();

    if (changed)
        return model;
    delete model;
    return nullptr;
}

void VantixJSONEditor::_ClearDiffTabs()
{
    QTabBar *tabs = d->diffTabBar;
    while (tabs->count() > 0) {
        delete DiffModelOf(tabs, 0);
        tabs->removeTab(0);
    }
}

void VantixJSONEditor::_AddDiffTab(const QString &name, VantixFeaturesDiffModel *model)
{
    const int index = d->diffTabBar->addTab(name);
    d->diffTabBar->setTabData(index, QVariant::fromValue(model));
}

void VantixJSONEditor::_Update()
{
    VantixJsonData &data = d->model.GetData();
    Ui::VantixJSONEditorClass &ui = d->ui;
    data.UpdateResultJsons();
    ShowModel(ui.mp_tree_diff, nullptr);
    _ClearDiffTabs();

    if (auto *model = _BuildDiffModel(ProductsTab, data.GetProductsOriginalJson(),
                                      data.GetProductsResultJson(), d->diffTabBar))
        _AddDiffTab(ProductsTab, model);
    const QStringList layouts = data.GetLayoutsOriginalJsons().keys();
    for (const QString &key : layouts) {
        const QJsonObject &result = data.GetLayoutsResultJsons()[key];
        if (auto *model = _BuildDiffModel(key, data.GetLayoutsOriginalJsons().value(key), result,
                                          d->diffTabBar))
            _AddDiffTab(key, model);
        // Refreshed per layout, so a folder without layouts leaves the button as it was.
        // Nothing can change the tree between two layouts, so a tree that already
        // shows tab 0 is not expanded and measured again.
        if (d->diffTabBar->count() > 0) {
            VantixFeaturesDiffModel *first = DiffModelOf(d->diffTabBar, 0);
            if (ui.mp_tree_diff->model() != first) {
                ShowModel(ui.mp_tree_diff, first);
                ui.mp_tree_diff->expandAll();
                for (int column = 0; column < 3; ++column)
                    ui.mp_tree_diff->resizeColumnToContents(column);
            }
            ui.mp_btn_apply_patch->show();
        }
    }
}

void VantixJSONEditor::_ApplyChanges()
{
    VantixJsonData &data = d->model.GetData();
    for (int index = 0; index < d->diffTabBar->count(); ++index) {
        VantixFeaturesDiffModel *model = DiffModelOf(d->diffTabBar, index);
        if (!model)
            continue;
        const QString name = d->diffTabBar->tabText(index);
        if (name == ProductsTab)
            model->ApplyPatch(data.GetProductsOriginalJson());
        else
            model->ApplyPatch(data.GetLayoutsOriginalJsons()[name]);
    }
    data.UpdateData();
}

void VantixJSONEditor::_InitResultTab()
{
    QTreeView *tree = d->ui.mp_tree_result;
    tree->setModel(d->model.GetResultModel());
    d->model.GetResultModel()->SetJson(d->model.GetData().GetProductsResultJson());
    tree->resizeColumnToContents(0);
    connect(tree, &QTreeView::expanded, this, [tree] {
        tree->resizeColumnToContents(0);
        tree->resizeColumnToContents(1);
    });
}

void VantixJSONEditor::_InitQueryTab()
{
    QTableView *table = d->ui.mp_tbl_query_result;
    auto *query = new QueryFilterFeatureModel(this);
    query->setSourceModel(d->model.GetSourceFeaturesModel());
    table->setModel(query);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->horizontalHeader()->show();
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->verticalHeader()->setDefaultSectionSize(20);
    table->setTextElideMode(Qt::ElideRight);
    table->setSortingEnabled(true);
    table->installEventFilter(this);

    connect(d->ui.mp_btn_apply_query, &QPushButton::clicked, this, &VantixJSONEditor::_ApplyQuery);
    connect(table, &QAbstractItemView::doubleClicked, this, &VantixJSONEditor::_ShowQueriedFeature);
}

void VantixJSONEditor::_ApplyQuery()
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    auto *query = qobject_cast<QueryFilterFeatureModel *>(ui.mp_tbl_query_result->model());
    if (!query)
        return;
    FeatureQuery fields;
    fields.ids = FeatureQuery::Keys(ui.mp_edt_filter_by_id->text());
    fields.titles = FeatureQuery::Keys(ui.mp_edt_filter_by_title->text());
    fields.licenses = FeatureQuery::Keys(ui.mp_edt_filter_by_license->text());
    fields.products = FeatureQuery::Keys(ui.mp_edt_filter_by_product->text());
    fields.layouts = FeatureQuery::Keys(ui.mp_edt_filter_by_layout->text());
    query->ApplyQuery(fields, d->model.GetData());
}

void VantixJSONEditor::_ShowQueriedFeature(const QModelIndex &index)
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    auto *query = qobject_cast<QueryFilterFeatureModel *>(ui.mp_tbl_query_result->model());
    if (!query)
        return;
    ui.mp_widget_tab->setCurrentIndex(0);
    const QModelIndex source = query->mapToSource(index);
    const QModelIndex sourceId = source.sibling(source.row(), 0);

    QAbstractItemModel *features = d->model.GetFeaturesModel();
    auto *search = qobject_cast<QAbstractProxyModel *>(features);
    QModelIndex target = search ? search->mapFromSource(sourceId) : features->index(source.row(), 0);
    if (!target.isValid() && search) {
        // The search text hides the feature; show everything again.
        ui.mp_edt_search->clear();
        target = search->mapFromSource(sourceId);
    }
    ui.mp_lst_features->selectionModel()->setCurrentIndex(
        target, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Current);
    ui.mp_lst_features->scrollTo(target);
}

void VantixJSONEditor::_InitExtensionTab()
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    Model &model = d->model;

    ui.mp_lst_extensions->setModel(model.GetExtensionsModel());
    ui.mp_lst_ext_product->setModel(model.GetExtensionsProductModel());
    ui.mp_lst_ext_layout->setModel(model.GetExtensionsLayoutModel());
    ui.mp_lst_ext_licenses->setModel(model.GetExtensionsLicenseModel());

    QListView *list = ui.mp_lst_extensions;
    MapWidget(list, ui.mp_edt_ext_id, 0, "text");
    MapWidget(list, ui.mp_edt_ext_title, 1, "text");
    MapWidget(list, ui.mp_edt_ext_name, 2, "text");
    MapWidget(list, ui.mp_chk_ext_cad_support, 3, "checked");
    MapWidget(list, ui.mp_chk_ext_multiple_parts_support, 4, "checked");
    MapWidget(list, ui.mp_chk_ext_slice_support, 5, "checked");
    MapWidget(list, ui.mp_chk_ext_load_as_part, 6, "checked");

    IconDelegate *delegate = CreateIconDelegate(ui.mp_tab_extensions);
    for (QTableView *view : {ui.mp_lst_ext_product, ui.mp_lst_ext_layout}) {
        for (int column = 1; column <= 6; ++column)
            view->setItemDelegateForColumn(column, delegate);
        view->verticalHeader()->hide();
        view->verticalHeader()->setDefaultSectionSize(20);
        view->setSelectionBehavior(QAbstractItemView::SelectRows);
        view->horizontalHeader()->setHighlightSections(false);
        view->resizeColumnsToContents();
        view->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
        for (int column = 1; column <= 6; ++column)
            view->horizontalHeader()->setSectionResizeMode(column, QHeaderView::Fixed);
    }

    QTableView *licenses = ui.mp_lst_ext_licenses;
    licenses->setItemDelegateForColumn(2, delegate);
    licenses->setItemDelegateForColumn(3, delegate);
    licenses->verticalHeader()->hide();
    licenses->verticalHeader()->setDefaultSectionSize(20);
    licenses->setSelectionBehavior(QAbstractItemView::SelectRows);
    licenses->horizontalHeader()->setHighlightSections(false);
    licenses->setSortingEnabled(true);
    licenses->model()->sort(2, Qt::AscendingOrder);
    licenses->resizeColumnsToContents();
    licenses->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Fixed);
    licenses->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    licenses->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Fixed);
    licenses->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Fixed);

    connect(list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &current) { _ExtensionChanged(current); });
    connect(ui.mp_btn_add_new_extension, &QPushButton::clicked, this, [this] {
        QAbstractItemModel *extensions = d->model.GetExtensionsModel();
        extensions->insertRow(extensions->rowCount());
    });
    connect(model.GetExtensionsModel(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first) {
                QListView *view = d->ui.mp_lst_extensions;
                view->selectionModel()->setCurrentIndex(view->model()->index(first, 0),
                                                        QItemSelectionModel::ClearAndSelect
                                                            | QItemSelectionModel::Current);
            });
    connect(ui.mp_btn_remove_extension, &QPushButton::clicked, this, [this] {
        const QModelIndex current = d->ui.mp_lst_extensions->currentIndex();
        if (current.isValid())
            d->model.GetExtensionsModel()->removeRow(current.row());
    });
    const auto toggleExceptName = [this](QTableView *view) {
        return [view](const QModelIndex &index) {
            if (index.column() != 0)
                Toggle(view->model(), index);
        };
    };
    connect(ui.mp_lst_ext_product, &QAbstractItemView::clicked, this, toggleExceptName(ui.mp_lst_ext_product));
    connect(ui.mp_lst_ext_layout, &QAbstractItemView::clicked, this, toggleExceptName(ui.mp_lst_ext_layout));
    connect(licenses, &QAbstractItemView::clicked, this, [licenses](const QModelIndex &index) {
        if (index.column() == 2 || index.column() == 3)
            Toggle(licenses->model(), index);
    });

    list->selectionModel()->setCurrentIndex(list->model()->index(0, 0), SelectCurrent);
}

void VantixJSONEditor::_ExtensionChanged(const QModelIndex &current)
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    FollowCurrentRow(ui, ui.mp_lst_extensions,
                     {ui.mp_edt_ext_id, ui.mp_edt_ext_title, ui.mp_edt_ext_name, ui.mp_chk_ext_cad_support,
                      ui.mp_chk_ext_multiple_parts_support, ui.mp_chk_ext_slice_support, ui.mp_chk_ext_load_as_part},
                     current);
    d->model.SelectExtension(current.data().toString());
}

void VantixJSONEditor::keyPressEvent(QKeyEvent *event)
{
    Ui::VantixJSONEditorClass &ui = d->ui;
    if (ui.mp_widget_tab->currentIndex() != 4 || event->key() != Qt::Key_C
        || !(event->modifiers() & Qt::ControlModifier))
        return;
    if (focusWidget() != ui.mp_tbl_query_result) {
        QWidget::keyPressEvent(event);
        return;
    }

    QModelIndexList indexes = ui.mp_tbl_query_result->selectionModel()->selectedIndexes();
    std::sort(indexes.begin(), indexes.end());
    QString text;
    for (int i = 0; i < indexes.size(); ++i) {
        if (!text.isEmpty())
            text += indexes.at(i).row() == indexes.at(i - 1).row() ? QLatin1Char('\t') : QLatin1Char('\n');
        text += indexes.at(i).data(Qt::DisplayRole).toString();
    }
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

} // namespace ProductEditor
