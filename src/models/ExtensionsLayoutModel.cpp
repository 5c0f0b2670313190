#include "models/ExtensionsLayoutModel.h"

namespace ProductEditor {

ExtensionsLayoutModel::ExtensionsLayoutModel(VantixJsonData &data, QObject *parent)
    : ExtensionsBaseModel(data, parent)
{
}

ExtensionsLayoutModel::~ExtensionsLayoutModel() = default;

QString ExtensionsLayoutModel::RowName(const QModelIndex &index) const
{
    const QMap<QString, LayoutData> &layouts = Data().GetLayouts();
    const auto it = m_cursor.At(layouts, index.row());
    return it == layouts.constEnd() ? QString() : it.key();
}

const ExtensionAccess *ExtensionsLayoutModel::RowAccess(const QModelIndex &index) const
{
    const QMap<QString, LayoutData> &layouts = Data().GetLayouts();
    const auto it = m_cursor.At(layouts, index.row());
    return it == layouts.constEnd() ? nullptr : &it.value();
}

int ExtensionsLayoutModel::ItemCount() const
{
    return Data().GetLayouts().size();
}

QString ExtensionsLayoutModel::ItemTitle() const
{
    return QStringLiteral("Layout");
}

ExtensionAccess *ExtensionsLayoutModel::EditRowAccess(const QModelIndex &index)
{
    return m_cursor.Edit(Data().GetLayouts(), index.row());
}

} // namespace ProductEditor
