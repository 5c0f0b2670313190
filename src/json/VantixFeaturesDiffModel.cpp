#include "json/VantixFeaturesDiffModel.h"

#include "json/JsonValueIndex.h"
#include "json/QJsonDiffTreeItem.h"

#include <QJsonArray>
#include <QVector>

#include <memory>
#include <vector>

namespace ProductEditor {

namespace {

const QString IdKey = QStringLiteral("id");

void AppendOneSide(QJsonDiffTreeItem *node, const QString &key, const QJsonValue &value, bool left, int diffType)
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
}

struct SidePool;

bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonDiffTreeItem *node, bool knownDifferent,
               SidePool &pool);

bool BuildObjectDiff(const QJsonObject &lo, const QJsonObject &ro, QJsonDiffTreeItem *node, SidePool &pool)
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
        if (BuildDiff(l, r, child, true, pool)) {
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

// One array's elements as the matching reads them, converted once: the kind of each,
// the objects (empty for other elements), the text of string elements and string ids
// (kept end to end in one buffer), and, once asked for, the indexes of ids (null when
// absent or not an object) and of non-object elements. Elements sharing an id are
// chained in array order, so that matching an element walks only the elements with its id.
struct ArraySide
{
    enum Kind : quint8 { StringIdObject, OtherIdObject, String, Other };

    void Reset(const QJsonArray &elements)
    {
        array = elements;
        objectCount = 0;
        kinds.clear();
        objects.clear();
        arena.resize(0);
        textStarts.clear();
        first.clear();
        last.clear();
        firstDifferent.clear();
        next.clear();
        const int size = array.size();
        kinds.reserve(size);
        objects.reserve(size);
        textStarts.reserve(size + 1);
        for (const QJsonValue value : array) {
            textStarts.append(arena.size());
            if (value.isObject()) {
                ++objectCount;
                const QJsonObject object = value.toObject();
                const QJsonValue id = object.value(IdKey);
                objects.append(object);
                const bool stringId = id.isString();
                kinds.append(stringId ? StringIdObject : OtherIdObject);
                if (stringId)
                    arena.append(id.toString());
            } else {
                objects.append(QJsonObject());
                const bool string = value.isString();
                kinds.append(string ? String : Other);
                if (string)
                    arena.append(value.toString());
            }
        }
        textStarts.append(arena.size());
    }

    int size() const { return kinds.size(); }
    // String elements' text, objects' string id (the node key), else empty.
    QStringView text(int position) const
    {
        const int start = textStarts.at(position);
        return QStringView(arena).mid(start, textStarts.at(position + 1) - start);
    }
    bool isObject(int position) const { return kinds.at(position) <= OtherIdObject; }
    QJsonValue value(int position) const { return array.at(position); }

    // The id as the matching compares it; only asked for ids that are not strings.
    QJsonValue otherId(int position) const
    {
        if (kinds.at(position) != OtherIdObject)
            return QJsonValue();
        const QJsonValue id = objects.at(position).value(IdKey);
        return id.isUndefined() ? QJsonValue() : id;
    }

    void IndexIds(bool chain)
    {
        ids.reset(objectCount + 1);
        if (chain)
            next.fill(-1, size());
        for (int position = 0; position < size(); ++position) {
            const int idClass = kinds.at(position) == StringIdObject ? ids.insertString(text(position))
                                                                     : ids.insert(otherId(position));
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
        scalars.reset(size() - objectCount);
        for (int position = 0; position < size(); ++position) {
            if (kinds.at(position) == String)
                scalars.insertString(text(position));
            else if (kinds.at(position) == Other)
                scalars.insert(value(position));
        }
    }

    // The id class here of the element at `position` of `other`, or -1.
    int findId(const ArraySide &other, int position) const
    {
        return other.kinds.at(position) == StringIdObject ? ids.findString(other.text(position))
                                                          : ids.find(other.otherId(position));
    }

    // Whether the non-object element at `position` of `other` occurs here.
    bool containsScalar(const ArraySide &other, int position) const
    {
        const int found = other.kinds.at(position) == String ? scalars.findString(other.text(position))
                                                             : scalars.find(other.value(position));
        return found >= 0;
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

    QJsonArray array;
    int objectCount = 0;
    QVector<Kind> kinds;
    QVector<QJsonObject> objects;
    QString arena; // the texts, end to end
    QVector<int> textStarts; // position -> start of its text in the arena; one more for the end
    JsonValueIndex ids;
    JsonValueIndex scalars;
    QVector<int> first; // id class -> first position
    QVector<int> last; // id class -> last position
    QVector<int> firstDifferent; // id class -> see firstDifferentOf
    QVector<int> next; // position -> next position with the same id, or -1
};

// Scratch sides for the array comparisons of one diff, a pair per nesting level, reused
// so that every compared array does not allocate its buffers afresh.
struct SidePool
{
    std::vector<std::unique_ptr<ArraySide>> sides;
    int depth = 0;
};

bool BuildArrayDiff(const QJsonArray &la, const QJsonArray &ra, QJsonDiffTreeItem *node, SidePool &pool)
{
    const int level = pool.depth++;
    while (int(pool.sides.size()) < 2 * level + 2)
        pool.sides.push_back(std::make_unique<ArraySide>());
    ArraySide &left = *pool.sides.at(2 * level);
    ArraySide &right = *pool.sides.at(2 * level + 1);
    left.Reset(la);
    right.Reset(ra);
    const int leftOthers = left.size() - left.objectCount;
    const int rightOthers = right.size() - right.objectCount;
    if (left.objectCount > 0)
        right.IndexIds(true);
    if (leftOthers > 0)
        right.IndexScalars();
    if (right.objectCount > 0)
        left.IndexIds(false);
    if (rightOthers > 0)
        left.IndexScalars();

    const int before = node->childCount();
    for (int position = 0; position < left.size(); ++position) {
        if (!left.isObject(position)) {
            if (!right.containsScalar(left, position))
                AppendOneSide(node, left.text(position).toString(), left.value(position), true,
                              QJsonDiffTreeItem::LeftOnly);
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
            if (BuildDiff(QJsonValue(object), QJsonValue(right.objects.at(found)), child, true, pool)) {
                child->setKey(left.text(position).toString());
                child->setType(QJsonValue::Object);
                child->setDiffType(QJsonDiffTreeItem::IdMatched);
                node->appendChild(child);
            } else {
                delete child;
            }
        }
        if (found < 0 || right.objects.at(found).isEmpty()) {
            AppendOneSide(node, left.text(position).toString(), QJsonValue(object), true,
                          QJsonDiffTreeItem::LeftOnly | QJsonDiffTreeItem::IdMatched);
        }
    }
    for (int position = 0; position < right.size(); ++position) {
        if (!right.isObject(position)) {
            if (!left.containsScalar(right, position))
                AppendOneSide(node, right.text(position).toString(), right.value(position), false,
                              QJsonDiffTreeItem::RightOnly);
            continue;
        }
        if (left.findId(right, position) < 0) {
            AppendOneSide(node, right.text(position).toString(), QJsonValue(right.objects.at(position)), false,
                          QJsonDiffTreeItem::RightOnly | QJsonDiffTreeItem::IdMatched);
        }
    }
    --pool.depth;
    return node->childCount() > before;
}

bool BuildDiff(const QJsonValue &left, const QJsonValue &right, QJsonDiffTreeItem *node, bool knownDifferent,
               SidePool &pool)
{
    if (!knownDifferent && left == right)
        return false;
    if (left.isObject())
        return BuildObjectDiff(left.toObject(), right.toObject(), node, pool);
    if (left.isArray())
        return BuildArrayDiff(left.toArray(), right.toArray(), node, pool);
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
    SidePool pool;
    return BuildDiff(left, right, static_cast<QJsonDiffTreeItem *>(node), false, pool);
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
        // Children grouped by key; an element goes to the first child holding its key,
        // as a front-to-back search would find it.
        QVector<QString> childKeys(count); // the index keeps views into these
        JsonValueIndex keys(count);
        QVector<int> firstWithKey; // key class -> first child
        QVector<int> keyOfChild(count);
        for (int i = 0; i < count; ++i) {
            childKeys[i] = node->child(i)->key();
            const int keyClass = keys.insertString(childKeys.at(i));
            if (keyClass == firstWithKey.size())
                firstWithKey.append(i);
            keyOfChild[i] = keyClass;
        }
        std::vector<bool> handled(firstWithKey.size(), false);

        QJsonArray output;
        for (const QJsonValue element : value.toArray()) {
            const bool isObject = element.isObject();
            if (!isObject && !element.isString()) {
                output.append(element);
                continue;
            }
            const QString key = isObject ? element.toObject().value(IdKey).toString() : element.toString();
            const int keyClass = keys.findString(key);
            if (keyClass < 0) {
                output.append(element);
                continue;
            }
            handled[keyClass] = true;
            auto *child = static_cast<QJsonDiffTreeItem *>(node->child(firstWithKey.at(keyClass)));
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
            if (handled[keyOfChild.at(i)])
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
