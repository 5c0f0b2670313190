#include "json/VantixFeaturesDiffModel.h"

#include "json/JsonValueIndex.h"
#include "json/QJsonDiffTreeItem.h"

#include <QJsonArray>
#include <QVector>

#include <vector>

namespace ProductEditor {

namespace {

const QString IdKey = QStringLiteral("id");

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

// One array's elements as the matching reads them, converted once: the objects (empty
// for other elements), the "id" of each (null when absent or not an object), the text
// of string elements and string ids, and, once asked for, the indexes of ids and of
// non-object elements. Elements sharing an id are chained in array order, so that
// matching an element walks only the elements with its id.
struct ArraySide
{
    explicit ArraySide(const QJsonArray &array)
    {
        const int size = array.size();
        values.reserve(size);
        objects.reserve(size);
        idValues.reserve(size);
        texts.reserve(size);
        for (const QJsonValue value : array) {
            values.append(value);
            if (value.isObject()) {
                ++objectCount;
                const QJsonObject object = value.toObject();
                const QJsonValue id = object.value(IdKey);
                objects.append(object);
                idValues.append(id.isUndefined() ? QJsonValue() : id);
                texts.append(id.isString() ? id.toString() : QString());
            } else {
                objects.append(QJsonObject());
                idValues.append(QJsonValue());
                texts.append(value.isString() ? value.toString() : QString());
            }
        }
    }

    void IndexIds(bool chain)
    {
        const int size = values.size();
        ids = JsonValueIndex(objectCount + 1);
        if (chain)
            next.fill(-1, size);
        for (int position = 0; position < size; ++position) {
            const QJsonValue &id = idValues.at(position);
            const int idClass = id.isString() ? ids.insertString(texts.at(position)) : ids.insert(id);
            if (!chain)
                continue;
            if (idClass == first.size()) {
                first.append(position);
                last.append(position);
                firstDifferent.append(Unknown);
            } else {
                next[last.at(idClass)] = position;
                last[idClass] = position;
            }
        }
    }

    void IndexScalars()
    {
        scalars = JsonValueIndex(values.size() - objectCount);
        for (int position = 0; position < values.size(); ++position) {
            const QJsonValue &value = values.at(position);
            if (value.isString())
                scalars.insertString(texts.at(position));
            else if (!value.isObject())
                scalars.insert(value);
        }
    }

    // The id class here of the element at `position` of `other`, or -1.
    int findId(const ArraySide &other, int position) const
    {
        const QJsonValue &id = other.idValues.at(position);
        return id.isString() ? ids.findString(other.texts.at(position)) : ids.find(id);
    }

    // Whether the non-object element at `position` of `other` occurs here.
    bool containsScalar(const ArraySide &other, int position) const
    {
        const QJsonValue &value = other.values.at(position);
        return (value.isString() ? scalars.findString(other.texts.at(position)) : scalars.find(value)) >= 0;
    }

    // The position of the first element of an id class whose object differs from the
    // first one's, or None.
    int firstDifferentOf(int idClass)
    {
        int &different = firstDifferent[idClass];
        if (different == Unknown) {
            different = None;
            const int head = first.at(idClass);
            for (int p = next.at(head); p >= 0; p = next.at(p)) {
                if (objects.at(p) != objects.at(head)) {
                    different = p;
                    break;
                }
            }
        }
        return different;
    }

    enum { None = -1, Unknown = -2 };

    int objectCount = 0;
    QVector<QJsonValue> values;
    QVector<QJsonObject> objects;
    QVector<QJsonValue> idValues;
    QVector<QString> texts; // string elements' text, objects' string id (the node key), else empty
    JsonValueIndex ids;
    JsonValueIndex scalars;
    QVector<int> first; // id class -> first position
    QVector<int> last; // id class -> last position
    QVector<int> firstDifferent; // id class -> see firstDifferentOf
    QVector<int> next; // position -> next position with the same id, or -1
};

bool BuildArrayDiff(const QJsonArray &la, const QJsonArray &ra, QJsonDiffTreeItem *node)
{
    ArraySide left(la);
    ArraySide right(ra);
    const int leftOthers = left.values.size() - left.objectCount;
    const int rightOthers = right.values.size() - right.objectCount;
    if (left.objectCount > 0)
        right.IndexIds(true);
    if (leftOthers > 0)
        right.IndexScalars();
    if (right.objectCount > 0)
        left.IndexIds(false);
    if (rightOthers > 0)
        left.IndexScalars();

    const int before = node->childCount();
    for (int position = 0; position < left.values.size(); ++position) {
        const QJsonValue &element = left.values.at(position);
        if (!element.isObject()) {
            if (!right.containsScalar(left, position))
                AppendOneSide(node, left.texts.at(position), element, true, QJsonDiffTreeItem::LeftOnly);
            continue;
        }
        const QJsonObject &object = left.objects.at(position);
        const int idClass = right.findId(left, position);
        // The walk over the right array goes on past equal partners and stops at the
        // first differing one; `found` is the last partner it looked at.
        int found = -1;
        bool stopped = false;
        if (idClass >= 0) {
            const int head = right.first.at(idClass);
            if (right.objects.at(head) != object) {
                found = head;
                stopped = true;
            } else {
                // Equal to the head, so "differs from the element" means "differs from the head".
                const int different = right.firstDifferentOf(idClass);
                stopped = different != ArraySide::None;
                found = stopped ? different : right.last.at(idClass);
            }
        }
        if (stopped) {
            auto *child = new QJsonDiffTreeItem(node);
            if (BuildDiff(element, QJsonValue(right.objects.at(found)), child, true)) {
                child->setKey(left.texts.at(position));
                child->setType(element.type());
                child->setDiffType(QJsonDiffTreeItem::IdMatched);
                node->appendChild(child);
            } else {
                delete child;
            }
        }
        if (found < 0 || right.objects.at(found).isEmpty()) {
            AppendOneSide(node, left.texts.at(position), element, true,
                          QJsonDiffTreeItem::LeftOnly | QJsonDiffTreeItem::IdMatched);
        }
    }
    for (int position = 0; position < right.values.size(); ++position) {
        const QJsonValue &element = right.values.at(position);
        if (!element.isObject()) {
            if (!left.containsScalar(right, position))
                AppendOneSide(node, right.texts.at(position), element, false, QJsonDiffTreeItem::RightOnly);
            continue;
        }
        if (left.findId(right, position) < 0) {
            AppendOneSide(node, right.texts.at(position), element, false,
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
