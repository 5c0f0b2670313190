#include "json/QJsonModel.h"

#include "json/QJsonTreeItem.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ProductEditor {

QJsonModel::QJsonModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_root(new QJsonTreeItem(nullptr))
{
    m_headers << QStringLiteral("Key") << QStringLiteral("Value");
}

QJsonModel::~QJsonModel()
{
    delete m_root;
}

QJsonTreeItem *QJsonModel::_Node(const QModelIndex &index) const
{
    if (!index.isValid())
        return m_root;
    return static_cast<QJsonTreeItem *>(index.internalPointer());
}

QModelIndex QJsonModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    QJsonTreeItem *parentNode = _Node(parent);
    QJsonTreeItem *child = parentNode ? parentNode->child(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex QJsonModel::parent(const QModelIndex &index) const
{
    if (!index.isValid())
        return QModelIndex();
    QJsonTreeItem *parentNode = _Node(index)->parent();
    if (!parentNode || parentNode == m_root)
        return QModelIndex();
    return createIndex(parentNode->row(), 0, parentNode);
}

int QJsonModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    QJsonTreeItem *node = _Node(parent);
    return node ? node->childCount() : 0;
}

int QJsonModel::columnCount(const QModelIndex &) const
{
    return 2;
}

QVariant QJsonModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const QJsonTreeItem *node = _Node(index);
    if (role == Qt::DisplayRole) {
        if (index.column() == 0)
            return node->key();
        if (index.column() == 1)
            return node->value();
    } else if (role == Qt::EditRole && index.column() == 1) {
        return node->value();
    }
    return QVariant();
}

bool QJsonModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole || index.column() != 1)
        return false;
    _Node(index)->setValue(value.toString());
    emit dataChanged(index, index, {Qt::EditRole});
    return true;
}

Qt::ItemFlags QJsonModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags result = QAbstractItemModel::flags(index);
    if (!index.isValid())
        return result;
    const QJsonValue::Type type = _Node(index)->type();
    if (index.column() == 1 && type != QJsonValue::Array && type != QJsonValue::Object)
        result |= Qt::ItemIsEditable;
    return result;
}

QVariant QJsonModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return QVariant();
    return section >= 0 && section < m_headers.size() ? m_headers.at(section) : QString();
}

QJsonValue QJsonModel::_ToJson(const QJsonTreeItem *node)
{
    if (!node)
        return QJsonValue();
    if (node->type() == QJsonValue::Object) {
        QJsonObject object;
        for (int i = 0; i < node->childCount(); ++i) {
            const QJsonTreeItem *child = node->child(i);
            object.insert(child->key(), _ToJson(child));
        }
        return object;
    }
    if (node->type() == QJsonValue::Array) {
        QJsonArray array;
        for (int i = 0; i < node->childCount(); ++i)
            array.append(_ToJson(node->child(i)));
        return array;
    }
    return QJsonValue(node->value());
}

} // namespace ProductEditor
