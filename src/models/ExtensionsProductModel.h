#pragma once

#include "ProductEditorExport.h"
#include "models/ExtensionsBaseModel.h"

namespace ProductEditor {

// The products, in list order, against the current extension.
class PRODUCT_EDITOR_EXPORT ExtensionsProductModel : public ExtensionsBaseModel
{
    Q_OBJECT

public:
    explicit ExtensionsProductModel(VantixJsonData &data, QObject *parent = nullptr);
    ~ExtensionsProductModel() override;

protected:
    QString RowName(const QModelIndex &index) const override;
    const ExtensionAccess *RowAccess(const QModelIndex &index) const override;
    int ItemCount() const override;
    QString ItemTitle() const override;
    ExtensionAccess *EditRowAccess(const QModelIndex &index) override;
};

} // namespace ProductEditor
