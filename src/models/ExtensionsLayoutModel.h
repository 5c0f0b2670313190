#pragma once

#include "ProductEditorExport.h"
#include "models/ExtensionsBaseModel.h"
#include "models/RowCursor.h"

namespace ProductEditor {

// The layouts, in name order, against the current extension.
class PRODUCT_EDITOR_EXPORT ExtensionsLayoutModel : public ExtensionsBaseModel
{
    Q_OBJECT

public:
    explicit ExtensionsLayoutModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ExtensionsLayoutModel() override;

protected:
    QString RowName(const QModelIndex &index) const override;
    const ExtensionAccess *RowAccess(const QModelIndex &index) const override;
    int ItemCount() const override;
    QString ItemTitle() const override;
    ExtensionAccess *EditRowAccess(const QModelIndex &index) override;

private:
    mutable MapRowCursor<QString, LayoutData> m_cursor;
};

} // namespace ProductEditor
