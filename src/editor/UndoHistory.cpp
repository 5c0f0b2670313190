#include "editor/UndoHistory.h"

#include "editor/PageTools.h"
#include "models/ExtensionsModel.h"
#include "models/FeaturesModel.h"
#include "models/Model.h"
#include "models/ModelReset.h"
#include "models/ProductsModel.h"
#include "store/ChangeWording.h"
#include "store/RecordComparison.h"
#include "ui_VantixJSONEditor.h"

#include <QAbstractItemDelegate>
#include <QAbstractProxyModel>
#include <QApplication>
#include <QDataWidgetMapper>
#include <QEvent>
#include <QPushButton>
#include <QTimer>
#include <QUndoCommand>
#include <QUndoStack>

#include <iterator>
#include <utility>

namespace ProductEditor {

namespace {

// One step: the records before and after it. The stack redoes a command as it
// is pushed; the records are already in that state then. The Changes page can
// change without a step (Update, ticks), so each side keeps the page as it was
// when the stack last left that side.
class SnapshotCommand : public QUndoCommand
{
public:
    SnapshotCommand(UndoHistory &history, const QString &name, RecordsSnapshot before, RecordsSnapshot after,
                    EditSteps &steps)
        : QUndoCommand(name.isEmpty() ? NameEdit(CompareRecords(before, after)) : name)
        , m_history(history)
        , m_steps(steps)
        , m_stepBefore(steps.Current())
        , m_stepAfter(steps.Grow())
        , m_before(std::move(before))
        , m_after(std::move(after))
        , m_changesBefore(history.CaptureChanges())
        , m_changesAfter(m_changesBefore)
    {
    }

    void undo() override
    {
        m_changesAfter = m_history.CaptureChanges();
        m_steps.MoveTo(m_stepBefore);
        m_history.Restore(m_before, m_changesBefore);
    }
    void redo() override
    {
        if (m_pushed) {
            m_changesBefore = m_history.CaptureChanges();
            m_steps.MoveTo(m_stepAfter);
            m_history.Restore(m_after, m_changesAfter);
        }
        m_pushed = true;
    }

private:
    UndoHistory &m_history;
    EditSteps &m_steps;
    EditSteps::Step m_stepBefore;
    EditSteps::Step m_stepAfter;
    RecordsSnapshot m_before;
    RecordsSnapshot m_after;
    ChangesPage::State m_changesBefore;
    ChangesPage::State m_changesAfter;
    bool m_pushed = false;
};

QString CurrentId(const QAbstractItemView *view, int column)
{
    const QModelIndex current = view->currentIndex();
    return current.sibling(current.row(), column).data().toString();
}

} // namespace

UndoHistory::UndoHistory(Ui::VantixJSONEditorClass &ui, Model &model, ChangesPage &changes, QUndoStack &stack,
                         EditSteps &steps)
    : m_ui(ui)
    , m_model(model)
    , m_changes(changes)
    , m_stack(stack)
    , m_steps(steps)
    , m_sources(SourceModels({model.GetSourceFeaturesModel(), model.GetProductsModel(), model.GetLayoutsModel(),
                              model.GetLicensesModel(), model.GetExtensionsModel(), model.GetExtensionsProductModel(),
                              model.GetExtensionsLayoutModel(), model.GetExtensionsLicenseModel()}))
    , m_current(RecordsSnapshot::Take(model.GetData()))
{
    // Selection changes notify too; they leave the records shared with the
    // last step, which makes the comparison that drops them cheap.
    for (QAbstractItemModel *watched : model.findChildren<QAbstractItemModel *>()) {
        connect(watched, &QAbstractItemModel::dataChanged, this, &UndoHistory::_Schedule);
        connect(watched, &QAbstractItemModel::rowsInserted, this, &UndoHistory::_Schedule);
        connect(watched, &QAbstractItemModel::rowsRemoved, this, &UndoHistory::_Schedule);
        connect(watched, &QAbstractItemModel::modelReset, this, &UndoHistory::_Schedule);
        connect(watched, &QAbstractItemModel::layoutChanged, this, &UndoHistory::_Schedule);
    }
    // Runs after the page has applied; the step it made is recorded later, under this name.
    connect(ui.mp_btn_apply_patch, &QPushButton::clicked, this,
            [this] { m_nextName = NameApply(m_changes.DifferenceCount()); });
}

void UndoHistory::_Schedule()
{
    if (m_restoring || m_pending)
        return;
    m_pending = true;
    QTimer::singleShot(0, this, &UndoHistory::Flush);
}

void UndoHistory::Flush()
{
    m_pending = false;
    const QString name = std::exchange(m_nextName, QString());
    RecordsSnapshot now = RecordsSnapshot::Take(m_model.GetData());
    if (now == m_current)
        return;
    RecordsSnapshot before = m_current;
    m_current = now;
    m_stack.push(new SnapshotCommand(*this, name, std::move(before), std::move(now), m_steps));
}

void UndoHistory::FlushTyping()
{
    // A field commits when it loses focus; a menu leaves the focus where it was.
    QWidget *focus = QApplication::focusWidget();
    for (QDataWidgetMapper *mapper : m_ui.mp_widget_tab->findChildren<QDataWidgetMapper *>()) {
        if (focus && mapper->mappedSection(focus) >= 0)
            emit mapper->itemDelegate()->commitData(focus);
    }
    Flush();
}

void UndoHistory::Watch(QAbstractItemView *view)
{
    view->viewport()->installEventFilter(this);
}

// Focus moves before the press reaches the view, so the field's commit is in by now.
bool UndoHistory::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress)
        Flush();
    return QObject::eventFilter(watched, event);
}

void UndoHistory::Clear()
{
    m_pending = false;
    m_nextName.clear();
    m_current = RecordsSnapshot::Take(m_model.GetData());
    m_stack.clear();
    m_steps.Grow();
}

ChangesPage::State UndoHistory::CaptureChanges() const
{
    return m_changes.Capture();
}

void UndoHistory::Restore(const RecordsSnapshot &snapshot, const ChangesPage::State &changes)
{
    const QString feature = CurrentId(m_ui.mp_lst_features, FeaturesModel::IdColumn);
    const QString product = CurrentId(m_ui.mp_lst_products, ProductsModel::IdColumn);
    const QString extension = CurrentId(m_ui.mp_lst_extensions, ExtensionsModel::IdColumn);
    // The Features page shows the layouts and licensing of its own current product.
    const QString featureProduct = CurrentId(m_ui.mp_lst_feature_product, ProductsModel::IdColumn);

    m_restoring = true;
    // The extension tables look their current extension up with insertion: while the
    // records change under them none is current, so a stale id never comes back as a
    // new, empty extension (a sorted table reads every row as soon as it is reset).
    m_model.SelectExtension(QString());
    ResetAround(m_sources, [this, &snapshot] { snapshot.Restore(m_model.GetData()); });
    m_current = snapshot;
    m_changes.Restore(changes);
    _ReselectFeature(feature);
    _Reselect(m_ui.mp_lst_feature_product, ProductsModel::IdColumn, featureProduct);
    _Reselect(m_ui.mp_lst_products, ProductsModel::IdColumn, product);
    _Reselect(m_ui.mp_lst_extensions, ExtensionsModel::IdColumn, extension);
    m_restoring = false;
}

void UndoHistory::_Reselect(QAbstractItemView *view, int column, const QString &id)
{
    const QAbstractItemModel *model = view->model();
    int row = 0;
    for (int candidate = 0; candidate < model->rowCount(); ++candidate) {
        if (model->index(candidate, column).data().toString() == id) {
            row = candidate;
            break;
        }
    }
    view->scrollTo(PageTools::MakeCurrent(view, row, column, PageTools::SelectCurrentRow));
}

// The feature list can hold a hundred thousand rows; the row comes from the map.
void UndoHistory::_ReselectFeature(const QString &id)
{
    QAbstractItemView *view = m_ui.mp_lst_features;
    const auto &features = m_model.GetData().GetFeatures();
    QModelIndex shown;
    if (features.contains(id)) {
        const int row = int(std::distance(features.constBegin(), features.constFind(id)));
        const QModelIndex source = m_model.GetSourceFeaturesModel()->index(row, FeaturesModel::IdColumn);
        auto *search = qobject_cast<QAbstractProxyModel *>(view->model());
        shown = search ? search->mapFromSource(source) : source;
    }
    const int row = shown.isValid() ? shown.row() : 0;
    view->scrollTo(PageTools::MakeCurrent(view, row, FeaturesModel::IdColumn, PageTools::SelectCurrent));
}

} // namespace ProductEditor
