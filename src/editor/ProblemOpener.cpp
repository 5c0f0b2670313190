#include "editor/ProblemOpener.h"

#include "check/Diagnostic.h"
#include "editor/FeaturesPage.h"
#include "editor/PageTools.h"
#include "editor/TabIndex.h"
#include "models/ExtensionsModel.h"
#include "models/FeaturesModel.h"
#include "models/Model.h"
#include "models/ProductLayoutsModel.h"
#include "models/ProductsModel.h"
#include "store/DefinitionFolder.h"
#include "ui_VantixJSONEditor.h"

#include <QDir>
#include <QFileInfo>

namespace ProductEditor {

ProblemOpener::ProblemOpener(Ui::VantixJSONEditorClass &ui, Model &model, FeaturesPage &features)
    : m_ui(ui)
    , m_model(model)
    , m_features(features)
{
}

void ProblemOpener::Open(const Diagnostic &diagnostic)
{
    switch (diagnostic.subject) {
    case Diagnostic::Subject::Feature: {
        const auto &features = m_model.GetData().GetFeatures();
        const auto found = features.constFind(diagnostic.subjectId);
        if (found != features.cend())
            m_features.OpenFeature(m_model.GetSourceFeaturesModel()->index(
                int(std::distance(features.cbegin(), found)), FeaturesModel::IdColumn));
        break;
    }
    case Diagnostic::Subject::Product:
        m_ui.mp_widget_tab->setCurrentIndex(TabIndex::Products);
        _Select(m_ui.mp_lst_products, ProductsModel::IdColumn, diagnostic.subjectId);
        break;
    case Diagnostic::Subject::Extension:
        m_ui.mp_widget_tab->setCurrentIndex(TabIndex::Extensions);
        _Select(m_ui.mp_lst_extensions, ExtensionsModel::IdColumn, diagnostic.subjectId);
        break;
    case Diagnostic::Subject::None: _OpenFile(diagnostic); break;
    }
}

// A layout file's problem selects the layout its path names, else the file's first.
void ProblemOpener::_OpenFile(const Diagnostic &diagnostic)
{
    const VantixJsonData &store = m_model.GetData();
    if (QFileInfo(diagnostic.file).dir() != QDir(DefinitionFolder(store.GetFolder().path()).LayoutsFolder())) {
        m_ui.mp_widget_tab->setCurrentIndex(TabIndex::Result);
        return;
    }
    m_ui.mp_widget_tab->setCurrentIndex(TabIndex::Products);
    const QStringList names = store.GetLayoutFiles().value(diagnostic.file);
    for (const QString &name : names) {
        const QString named = QStringLiteral("$.layouts.") + name;
        if ((diagnostic.path == named || diagnostic.path.startsWith(named + QLatin1Char('.')))
            && _Select(m_ui.mp_lst_layouts, ProductLayoutsModel::NameColumn, name))
            return;
    }
    if (!names.isEmpty())
        _Select(m_ui.mp_lst_layouts, ProductLayoutsModel::NameColumn, names.first());
}

bool ProblemOpener::_Select(QAbstractItemView *view, int column, const QString &text)
{
    const QAbstractItemModel *model = view->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        if (model->index(row, column).data().toString() == text) {
            view->scrollTo(PageTools::MakeCurrent(view, row, column, PageTools::SelectCurrentRow));
            return true;
        }
    }
    return false;
}

} // namespace ProductEditor
