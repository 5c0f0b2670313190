#pragma once

#include "ProductEditorExport.h"

#include <QSortFilterProxyModel>

namespace ProductEditor {

// Sorts the licence table of an extension: import users, then export users,
// then the rest by the number in the licence name.
class PRODUCT_EDITOR_EXPORT ExtensionsLicenseProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit ExtensionsLicenseProxyModel(QObject *parent = nullptr);
    ~ExtensionsLicenseProxyModel() override;

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
};

} // namespace ProductEditor
