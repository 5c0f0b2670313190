#pragma once

#include "ProductEditorExport.h"

#include <QStyledItemDelegate>

namespace ProductEditor {

// Draws a cell's decoration (a check mark) centred and scaled to the cell.
// It takes no parent: whoever creates it deletes it after the last view.
class PRODUCT_EDITOR_EXPORT IconDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit IconDelegate(QObject *parent = nullptr);
    ~IconDelegate() override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};

} // namespace ProductEditor
