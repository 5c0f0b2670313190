#include "json/VantixResultModel.h"

#include "json/LazyJsonTreeItem.h"

namespace ProductEditor {

VantixResultModel::VantixResultModel(QObject *parent)
    : QJsonModel(parent)
{
}

void VantixResultModel::SetJson(const QJsonObject &object)
{
    beginResetModel();
    delete m_root;
    m_root = new LazyJsonTreeItem(QJsonValue(object), nullptr);
    endResetModel();
}

QJsonObject VantixResultModel::GetJson() const
{
    if (auto *root = dynamic_cast<LazyJsonTreeItem *>(m_root))
        root->materializeAll();
    return _ToJson(m_root).toObject();
}

int VantixResultModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() <= 0) {
        if (auto *node = dynamic_cast<LazyJsonTreeItem *>(_Node(parent)))
            node->materialize();
    }
    return QJsonModel::rowCount(parent);
}

} // namespace ProductEditor
