#include "json/VantixFeaturesDiffModel.h"

#include "json/JsonValueIndex.h"
#include "json/QJsonDiffTreeItem.h"

#include <QJsonArray>
#include <QVector>

#include <vector>

namespace ProductEditor {

namespace {

const QString IdKey = QStringLiteral("id");

// The "id" of an array element as the matching sees it: null when absent or not an object.
QJsonValue ElementId(const QJsonValue &element)
{
    const QJsonValue id = element.toObject().value(IdKey);
    return id.isUndefined() ? QJsonValue() : id;
}

QJsonDiffTreeItem *AppendOneSide(QJsonDiffTreeItem *node, const QString &key, const QJsonValue &value,
                                 bool left, int diffType)
{
    auto *child = new QJsonDiffTreeItem(node);
    child->setKey(key);
    child->setType(value.type());
    if (left)
        child->setLeftValue(value);
    else
        child->setRightValue(value);
    child->setDiffType(diffType);
    node->appendChild(child);
    return child;
}

bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonDiffTreeItem *node, bool knownDifferent);

bool BuildObjectDiff(const QJsonObject &lo, const QJsonObject &ro, QJsonDiffTreeItem *node)
{
    const QString lid = lo.value(IdKey).toString();
    const QString rid = ro.value(IdKey).toString();
    if ((!lid.isEmpty() || !rid.isEmpty()) && lid != rid)
        return false;

    const int before = node->childCount();
    for (auto it = lo.constBegin(); it != lo.constEnd(); ++it) {
        if (!ro.contains(it.key()))
            AppendOneSide(node, it.key(), it.value(), true, QJsonDiffTreeItem::LeftOnly);
    }
    for (auto it = ro.constBegin(); it != ro.constEnd(); ++it) {
        if (!lo.contains(it.key()))
            AppendOneSide(node, it.key(), it.value(), false, QJsonDiffTreeItem::RightOnly);
    }
    for (auto it = lo.constBegin(); it != lo.constEnd(); ++it) {
        const QJsonValue l = it.value();
        const QJsonValue r = ro.value(it.key());
        if (l.isUndefined() || r.isUndefined() || l == r)
            continue;
        auto *child = new QJsonDiffTreeItem(node);
        if (BuildDiff(l, r, child, true)) {
            child->setKey(it.key());
            child->setType(l.type());
            child->setDiffType(QJsonDiffTreeItem::Changed);
            node->appendChild(child);
        } else {
            delete child;
        }
    }
    return node->childCount() > before;
}

// Elements of one array grouped by their "id", so that matching an element walks only
// the elements that share its id, in array order.
struct IdGroups
{
    explicit IdGroups(const QVector<QJsonValue> &elements)
        : next(elements.size(), -1)
    {
        ids.reserve(elements.size());
        for (int position = 0; position < elements.size(); ++position) {
            const int group = ids.insert(ElementId(elements.at(position)));
            if (group == first.size()) {
                first.append(position);
                last.append(position);
                firstDifferent.append(Unknown);
            } else {
                next[last.at(group)] = position;
                last[group] = position;
            }
        }
    }

    enum { None = -1, Unknown = -2 };

    JsonValueIndex ids;
    QVector<int> first; // group -> first position
    QVector<int> last; // group -> last position
    QVector<int> firstDifferent; // group -> first position whose object differs from the first's
    QVector<int> next; // position -> next position in the same group, or -1
};

bool BuildArrayDiff(const QJsonArray &la, const QJsonArray &ra, QJsonDiffTreeItem *node)
{
    QVector<QJsonValue> lv;
    lv.reserve(la.size());
    for (const QJsonValue element : la)
        lv.append(element);
    QVector<QJsonValue> rv;
    rv.reserve(ra.size());
    for (const QJsonValue element : ra)
        rv.append(element);
    // Objects as the walk sees them; non-objects stand for the empty object.
    QVector<QJsonObject> rObjects;
    rObjects.reserve(rv.size());
    JsonValueIndex rScalars;
    for (const QJsonValue &element : rv) {
        rObjects.append(element.toObject());
        if (!element.isObject())
            rScalars.insert(element);
    }
    JsonValueIndex lScalars;
    for (const QJsonValue &element : lv) {
        if (!element.isObject())
            lScalars.insert(element);
    }
    IdGroups rGroups(rv);
    IdGroups lGroups(lv);

    const int before = node->childCount();
    for (const QJsonValue &element : lv) {
        if (!element.isObject()) {
            if (rScalars.find(element) < 0)
                AppendOneSide(node, element.toString(), element, true, QJsonDiffTreeItem::LeftOnly);
            continue;
        }
        const QJsonObject object = element.toObject();
        const QJsonValue id = ElementId(element);
        const int group = rGroups.ids.find(id);
        // The walk over the right array goes on past equal partners and stops at the
        // first differing one; `found` is the last partner it looked at.
        int found = -1;
        bool stopped = false;
        if (group >= 0) {
            const int head = rGroups.first.at(group);
            if (rObjects.at(head) != object) {
                found = head;
                stopped = true;
            } else {
                // Equal to the head, so "differs from the element" means "differs from the head".
                int &different = rGroups.firstDifferent[group];
                if (different == IdGroups::Unknown) {
                    different = IdGroups::None;
                    for (int p = rGroups.next.at(head); p >= 0; p = rGroups.next.at(p)) {
                        if (rObjects.at(p) != rObjects.at(head)) {
                            different = p;
                            break;
                        }
                    }
                }
                stopped = different != IdGroups::None;
                found = stopped ? different : rGroups.last.at(group);
            }
        }
        if (stopped) {
            auto *child = new QJsonDiffTreeItem(node);
            if (BuildDiff(QJsonValue(object), QJsonValue(rObjects.at(found)), child, true)) {
                child->setKey(id.toString());
                child->setType(element.type());
                child->setDiffType(QJsonDiffTreeItem::IdMatched);
                node->appendChild(child);
            } else {
                delete child;
            }
        }
        if (found < 0 || rObjects.at(found).isEmpty()) {
            AppendOneSide(node, id.toString(), element, true,
                          QJsonDiffTreeItem::LeftOnly | QJsonDiffTreeItem::IdMatched);
        }
    }
    for (const QJsonValue &element : rv) {
        if (!element.isObject()) {
            if (lScalars.find(element) < 0)
                AppendOneSide(node, element.toString(), element, false, QJsonDiffTreeItem::RightOnly);
            continue;
        }
        const QJsonValue id = ElementId(element);
        if (lGroups.ids.find(id) < 0) {
            AppendOneSide(node, id.toString(), element, false,
                          QJsonDiffTreeItem::RightOnly | QJsonDiffTreeItem::IdMatched);
        }
    }
    return node->childCount() > before;
}

bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonDiffTreeItem *node, bool knownDifferent)
{
    if (!knownDifferent && left == right)
        return false;
    if (left.isObject())
        return BuildObjectDiff(left.toObject(), right.toObject(), node);
    if (left.isArray())
        return BuildArrayDiff(left.toArray(), right.toArray(), node);
    node->setLeftValue(left);
    node->setRightValue(right);
    node->setDiffType(QJsonDiffTreeItem::ValueChanged);
    return true;
}

} // namespace

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
    auto *root = new QJsonDiffTreeItem(nullptr);
    root->setKey(QStringLiteral("root"));
    root->setType(QJsonValue::Object);
    m_root = root;
    const bool result = _BuildDiff(QJsonValue(left), QJsonValue(right), root);
    endResetModel();
    return result;
}

bool VantixFeaturesDiffModel::_BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonTreeItem *node)
{
    return BuildDiff(left, right, static_cast<QJsonDiffTreeItem *>(node), false);
}

void VantixFeaturesDiffModel::ApplyPatch(QJsonObject &target)
{
    target = _GenPatch(m_root, QJsonValue(target)).toObject();
}

const QJsonDiffTreeItem *VantixFeaturesDiffModel::GetRoot() const
{
    return static_cast<const QJsonDiffTreeItem *>(m_root);
}

QJsonValue VantixFeaturesDiffModel::_GenPatch(QJsonTreeItem *treeNode, QJsonValue value) const
{
    if (!treeNode)
        return value;
    const auto *node = static_cast<const QJsonDiffTreeItem *>(treeNode);
    const int count = node->childCount();
    if (node->type() == QJsonValue::Array) {
        // The first child holding each key, as a front-to-back search would find it.
        QHash<QString, int> firstWithKey;
        firstWithKey.reserve(count);
        for (int i = count - 1; i >= 0; --i)
            firstWithKey.insert(node->child(i)->key(), i);
        std::vector<bool> handled(count, false);

        QJsonArray output;
        for (const QJsonValue element : value.toArray()) {
            const bool isObject = element.isObject();
            if (!isObject && !element.isString()) {
                output.append(element);
                continue;
            }
            const QString key = isObject ? element.toObject().value(IdKey).toString() : element.toString();
            const int match = firstWithKey.value(key, -1);
            if (match < 0) {
                output.append(element);
                continue;
            }
            handled[match] = true;
            auto *child = static_cast<QJsonDiffTreeItem *>(node->child(match));
            const int diffType = child->diffType();
            const DiffAction action = child->action();
            if (isObject) {
                if (diffType & QJsonDiffTreeItem::LeftOnly) {
                    if (action == UseLeft)
                        output.append(_GenPatch(child, element));
                } else if (diffType & QJsonDiffTreeItem::RightOnly) {
                    if (action == UseRight)
                        output.append(_GenPatch(child, element));
                } else {
                    output.append(_GenPatch(child, element));
                }
            } else {
                if (diffType & QJsonDiffTreeItem::LeftOnly) {
                    if (action == UseLeft)
                        output.append(element);
                } else if (!(diffType & QJsonDiffTreeItem::RightOnly) || action == UseRight) {
                    output.append(element);
                }
            }
        }
        for (int i = 0; i < count; ++i) {
            const auto *child = static_cast<const QJsonDiffTreeItem *>(node->child(i));
            if (handled[firstWithKey.value(child->key())])
                continue;
            if ((child->diffType() & QJsonDiffTreeItem::LeftOnly) && child->action() == UseLeft)
                output.append(child->values().left);
            else if ((child->diffType() & QJsonDiffTreeItem::RightOnly) && child->action() == UseRight)
                output.append(child->values().right);
        }
        return output;
    }
    if (node->type() == QJsonValue::Object) {
        if (!value.isObject())
            return value;
        QJsonObject object = value.toObject();
        bool changed = false;
        for (int i = 0; i < count; ++i) {
            auto *child = static_cast<QJsonDiffTreeItem *>(node->child(i));
            const QString key = child->key();
            // A patch neither adds nor removes members: the right-only member taken and the
            // left-only member dropped are both left as they are.
            if (!object.contains(key))
                continue;
            if (child->diffType() == QJsonDiffTreeItem::LeftOnly && child->action() == UseRight)
                continue;
            object.insert(key, _GenPatch(child, object.value(key)));
            changed = true;
        }
        return changed ? QJsonValue(object) : value;
    }
    return node->action() == UseLeft ? node->values().left : node->values().right;
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
        if (diffType & QJsonDiffTreeItem::LeftOnly)
            return leftColumn ? QStringLiteral("Yes") : QStringLiteral("No");
        if (diffType & QJsonDiffTreeItem::RightOnly)
            return leftColumn ? QStringLiteral("No") : QStringLiteral("Yes");
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
