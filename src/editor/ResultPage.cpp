#include "editor/ResultPage.h"

#include "json/VantixResultModel.h"
#include "models/Model.h"
#include "store/VantixJsonData.h"
#include "ui_VantixJSONEditor.h"

namespace ProductEditor {

namespace {
enum { KeyColumn, ValueColumn };
} // namespace

ResultPage::ResultPage(Ui::VantixJSONEditorClass &ui, Model &model)
{
    QTreeView *tree = ui.mp_tree_result;
    tree->setModel(model.GetResultModel());
    model.GetResultModel()->SetJson(model.GetData().GetProductsResultJson());
    tree->resizeColumnToContents(KeyColumn);
    connect(tree, &QTreeView::expanded, this, [tree] {
        tree->resizeColumnToContents(KeyColumn);
        tree->resizeColumnToContents(ValueColumn);
    });
}

} // namespace ProductEditor
