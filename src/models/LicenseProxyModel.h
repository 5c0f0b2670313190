#pragma once

#include "ProductEditorExport.h"

#include <QSortFilterProxyModel>

namespace ProductEditor {

// Sorts the licence table: attached licences first, then by the number in the
// licence name.
class PRODUCT_EDITOR_EXPORT LicenseProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit LicenseProxyModel(QObject *parent = nullptr);
    ~LicenseProxyModel() override;

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
};

} // namespace ProductEditor
