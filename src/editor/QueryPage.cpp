#include "editor/QueryPage.h"

#include "editor/FeaturesPage.h"
#include "editor/TableLook.h"
#include "models/Model.h"
#include "models/QueryFilterFeatureModel.h"
#include "ui_VantixJSONEditor.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace ProductEditor {

QueryPage::QueryPage(Ui::VantixJSONEditorClass &ui, Model &model, QWidget *window, FeaturesPage &features)
    : m_ui(ui)
    , m_model(model)
    , m_query(new QueryFilterFeatureModel(window))
{
    m_query->setSourceModel(model.GetSourceFeaturesModel());
    QTableView *table = ui.mp_tbl_query_result;
    table->setModel(m_query);
    TableLook look;
    look.stretchAll = true;
    look.sorting = true;
    look.verticalHeader = true;
    look.ApplyTo(table);
    table->setTextElideMode(Qt::ElideRight);

    connect(ui.mp_btn_apply_query, &QPushButton::clicked, this, &QueryPage::_ApplyQuery);
    connect(table, &QAbstractItemView::doubleClicked, this,
            [this, &features](const QModelIndex &index) { features.OpenFeature(m_query->mapToSource(index)); });
}

void QueryPage::_ApplyQuery()
{
    FeatureQuery fields;
    fields.ids = FeatureQuery::Keys(m_ui.mp_edt_filter_by_id->text());
    fields.titles = FeatureQuery::Keys(m_ui.mp_edt_filter_by_title->text());
    fields.licenses = FeatureQuery::Keys(m_ui.mp_edt_filter_by_license->text());
    fields.products = FeatureQuery::Keys(m_ui.mp_edt_filter_by_product->text());
    fields.layouts = FeatureQuery::Keys(m_ui.mp_edt_filter_by_layout->text());
    m_query->ApplyQuery(fields, m_model.GetData());
}

void QueryPage::CopySelection() const
{
    QModelIndexList indexes = m_ui.mp_tbl_query_result->selectionModel()->selectedIndexes();
    std::sort(indexes.begin(), indexes.end());
    QString text;
    for (int i = 0; i < indexes.size(); ++i) {
        // The test is on the text, so leading empty cells add no separator.
        if (!text.isEmpty())
            text += indexes.at(i).row() == indexes.at(i - 1).row() ? QLatin1Char('\t') : QLatin1Char('\n');
        text += indexes.at(i).data(Qt::DisplayRole).toString();
    }
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

} // namespace ProductEditor
