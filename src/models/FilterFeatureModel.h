#pragma once

#include "ProductEditorExport.h"

#include <QSortFilterProxyModel>

namespace ProductEditor {

// The quick search of the features tab: rows whose id or title contains the
// text, ignoring case.
class PRODUCT_EDITOR_EXPORT FilterFeatureModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit FilterFeatureModel(QObject *parent = nullptr);
    ~FilterFeatureModel() override;

    void SetFilter(const QString &text);
    const QString &Filter() const { return m_filter; }

protected:
    bool filterAcceptsRow(int source_row, const QModelIndex &source_parent) const override;

private:
    QString m_filter;
    QString m_lowerFilter;
};

} // namespace ProductEditor
