#include "editor/PageTools.h"

#include "models/IconDelegate.h"
#include "ui_VantixJSONEditor.h"

#include <QDataWidgetMapper>
#include <QInputDialog>
#include <QMessageBox>

namespace ProductEditor {
namespace PageTools {

void ToggleOnClick(QAbstractItemView *view, QObject *context, const std::function<bool(int column)> &toggles)
{
    QObject::connect(view, &QAbstractItemView::clicked, context, [view, toggles](const QModelIndex &index) {
        if (toggles(index.column()))
            view->model()->setData(index, !index.data(Qt::UserRole).toBool(), Qt::EditRole);
    });
}

QDataWidgetMapper *MapWidget(QAbstractItemView *view, QWidget *widget, int section, const QByteArray &property)
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

QModelIndex MakeCurrent(QAbstractItemView *view, int row, int column, QItemSelectionModel::SelectionFlags flags)
{
    const QModelIndex index = view->model()->index(row, column);
    view->selectionModel()->setCurrentIndex(index, flags);
    return index;
}

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
    // Both pages empty the Features page's fields, a long-standing behaviour of the Extensions page.
    ui.mp_edt_id->setText(QString());
    ui.mp_edt_tooltip->setText(QString());
    ui.mp_edt_statustip->setText(QString());
    ui.mp_edt_title->setText(QString());
}

bool Confirm(QWidget *parent, const QString &title, const QString &text)
{
    return QMessageBox::question(parent, title, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::NoButton)
           == QMessageBox::Yes;
}

bool AskText(QWidget *parent, const QString &label, QString &text)
{
    QInputDialog dialog(parent);
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setTextValue(text);
    dialog.setLabelText(label);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    text = dialog.textValue();
    return true;
}

void WarnAlreadyExists(QWidget *parent, const QString &kind, const QString &name)
{
    QMessageBox::warning(parent, QStringLiteral("Warning"),
                         kind + QStringLiteral(" '") + name + QStringLiteral("' is already exist"), QMessageBox::Ok);
}

} // namespace PageTools
} // namespace ProductEditor
