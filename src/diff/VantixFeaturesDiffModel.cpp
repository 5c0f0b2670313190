#include "diff/VantixFeaturesDiffModel.h"

#include "diff/JsonDiff.h"
#include "json/QJsonDiffTreeItem.h"


namespace ProductEditor {

VantixFeaturesDiffModel::VantixFeaturesDiffModel(QObject *parent)
    : QJsonModel(parent)
{
    // No tree until the first Regenerate.
    delete m_root;
    m_root = nullptr;
    m_headers.clear();
    m_headers << QStringLiteral("Key") << QStringLiteral("Current/Left") << QStringLiteral("Original/Right");
}

VantixFeaturesDiffModel::~VantixFeaturesDiffModel() = default;

bool VantixFeaturesDiffModel::Regenerate(const QJsonObject &left, const QJsonObject &right)
{
    beginResetModel();
    delete m_root;
    m_root = NewDiffRoot().release();
    const bool result = _BuildDiff(QJsonValue(left), QJsonValue(right), m_root);
    endResetModel();
    return result;
}

bool VantixFeaturesDiffModel::_BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonTreeItem *node)
{
    return BuildJsonDiff(left, right, static_cast<QJsonDiffTreeItem *>(node));
}

QJsonValue VantixFeaturesDiffModel::_GenPatch(QJsonTreeItem *node, QJsonValue value) const
{
    return PatchJson(static_cast<const QJsonDiffTreeItem *>(node), value);
}

void VantixFeaturesDiffModel::ApplyPatch(QJsonObject &target)
{
    target = _GenPatch(m_root, QJsonValue(target)).toObject();
}

const QJsonDiffTreeItem *VantixFeaturesDiffModel::GetRoot() const
{
    return static_cast<const QJsonDiffTreeItem *>(m_root);
}

int VantixFeaturesDiffModel::columnCount(const QModelIndex &) const
{
    return 3;
}

QVariant VantixFeaturesDiffModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const auto *node = static_cast<const QJsonDiffTreeItem *>(_Node(index));
    const int diffType = node->diffType();
    const int column = index.column();
    if (role == Qt::DisplayRole && (column == 1 || column == 2)) {
        const bool leftColumn = column == 1;
        if (diffType & QJsonDiffTreeItem::ValueChanged) {
            const QJsonValue side = leftColumn ? node->values().left : node->values().right;
            if (side.isString())
                return side.toString();
            if (side.isBool())
                return side.toBool();
            return QJsonModel::data(index, role);
        }
        // Each side asks first whether the item exists only there.
        const int ownFlag = leftColumn ? QJsonDiffTreeItem::LeftOnly : QJsonDiffTreeItem::RightOnly;
        const int otherFlag = leftColumn ? QJsonDiffTreeItem::RightOnly : QJsonDiffTreeItem::LeftOnly;
        if (diffType & ownFlag)
            return QStringLiteral("Yes");
        if (diffType & otherFlag)
            return QStringLiteral("No");
        return QJsonModel::data(index, role);
    }
    if (role == Qt::CheckStateRole && (diffType & QJsonDiffTreeItem::Choosable) && m_editableMode) {
        if (column == 1)
            return int(node->action() == UseLeft ? Qt::Checked : Qt::Unchecked);
        if (column == 2)
            return int(node->action() == UseRight ? Qt::Checked : Qt::Unchecked);
        return QVariant();
    }
    return QJsonModel::data(index, role);
}

Qt::ItemFlags VantixFeaturesDiffModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const auto *node = static_cast<const QJsonDiffTreeItem *>(_Node(index));
    if ((index.column() == 1 || index.column() == 2) && (node->diffType() & QJsonDiffTreeItem::Choosable))
        return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled;
}

bool VantixFeaturesDiffModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    auto *node = static_cast<QJsonDiffTreeItem *>(_Node(index));
    if (value.toBool()) {
        if (index.column() == 1)
            node->setDiffAction(UseLeft);
        else if (index.column() == 2)
            node->setDiffAction(UseRight);
    }
    // Names the top-level row with the node's row number whatever its depth; views
    // repaint on any change, so the new state shows anyway.
    const int row = index.row();
    emit dataChanged(this->index(row, 0, QModelIndex()), this->index(row, columnCount(), QModelIndex()),
                     {Qt::CheckStateRole});
    return true;
}

void VantixFeaturesDiffModel::setEditableMode(bool editableMode)
{
    m_editableMode = editableMode;
}

void VantixFeaturesDiffModel::setHeaders(const QStringList &headers)
{
    m_headers = headers;
}

} // namespace ProductEditor
