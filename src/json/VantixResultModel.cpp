#include "json/VantixResultModel.h"

#include "json/QJsonTreeItem.h"

namespace ProductEditor {

VantixResultModel::VantixResultModel(QObject *parent)
    : QJsonModel(parent)
{
}

void VantixResultModel::SetJson(const QJsonObject &object)
{
    beginResetModel();
    delete m_root;
    m_root = QJsonTreeItem::load(QJsonValue(object), nullptr);
    m_root->setType(QJsonValue::Object);
    endResetModel();
}

QJsonObject VantixResultModel::GetJson() const
{
    return _ToJson(m_root).toObject();
}

} // namespace ProductEditor
