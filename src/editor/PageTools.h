#pragma once

#include <QItemSelectionModel>
#include <QList>
#include <QModelIndex>
#include <QString>

#include <functional>

class QAbstractItemModel;
class QAbstractItemView;
class QDataWidgetMapper;
class QWidget;

namespace Ui {
class VantixJSONEditorClass;
}

namespace ProductEditor {

class IconDelegate;

// Small pieces of wiring that several pages share.
namespace PageTools {

const QItemSelectionModel::SelectionFlags SelectCurrent =
    QItemSelectionModel::Select | QItemSelectionModel::Current;
const QItemSelectionModel::SelectionFlags SelectCurrentRow = SelectCurrent | QItemSelectionModel::Rows;

// A click on one of the columns `toggles` accepts flips that cell's membership flag.
void ToggleOnClick(QAbstractItemView *view, QObject *context, const std::function<bool(int column)> &toggles);

QDataWidgetMapper *MapWidget(QAbstractItemView *view, QWidget *widget, int section, const QByteArray &property);

IconDelegate *CreateIconDelegate(QWidget *owner);

// Moves the view's current index and selection to `row`, `column` of its model.
QModelIndex MakeCurrent(QAbstractItemView *view, int row, int column, QItemSelectionModel::SelectionFlags flags);

// Enables a page's fields for a valid current row and moves the page's mappers
// (children of its list) there.
void FollowCurrentRow(Ui::VantixJSONEditorClass &ui, QAbstractItemView *list, const QList<QWidget *> &fields,
                      const QModelIndex &current);

// A Yes/No question with no default button; true only for Yes.
bool Confirm(QWidget *parent, const QString &title, const QString &text);

// A text input dialog; false when cancelled.
bool AskText(QWidget *parent, const QString &label, QString &text);

void WarnAlreadyExists(QWidget *parent, const QString &kind, const QString &name);

} // namespace PageTools

} // namespace ProductEditor
