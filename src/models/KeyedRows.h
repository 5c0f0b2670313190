#pragma once

#include "ProductEditorExport.h"
#include "models/ModelText.h"
#include "models/RowCursor.h"

#include <QMap>
#include <QModelIndex>
#include <QString>
#include <QVariant>

#include <functional>
#include <iterator>
#include <optional>
#include <utility>

class QAbstractItemModel;

namespace ProductEditor {

// The row changes of the table models whose rows are the entries of a store map in key
// order. Each announces one row to the model's views around the change itself and bumps
// the row epoch, so no row cursor outlives the change.
namespace KeyedRows {

PRODUCT_EDITOR_EXPORT void Remove(QAbstractItemModel &model, int row, const std::function<void()> &remove);
PRODUCT_EDITOR_EXPORT void Insert(QAbstractItemModel &model, int row, const std::function<void()> &insert);

// The row that `key` has, or would have, in `map`.
template <typename T>
int RowOf(const QMap<QString, T> &map, const QString &key)
{
    return int(std::distance(map.constBegin(), map.lowerBound(key)));
}

// Moves the entry at `row` from key `from` to key `to`. A rename is a remove and an
// insert so views keep their selection model consistent.
template <typename T>
void Rename(QAbstractItemModel &model, QMap<QString, T> &map, int row, const QString &from, const QString &to)
{
    const T record = map.value(from);
    Remove(model, row, [&] { map.remove(from); });
    Insert(model, RowOf(map, to), [&] { map.insert(to, record); });
}

// Rename, unless `to` is already a key: then the "id exists" tool tip and false.
template <typename T>
bool RenameToFreeKey(QAbstractItemModel &model, QMap<QString, T> &map, int row, const QString &from,
                     const QString &to)
{
    if (map.contains(to)) {
        ShowIdExistsToolTip();
        return false;
    }
    Rename(model, map, row, from, to);
    return true;
}

// The key of the row that `index` edits with `value`, or none when the edit is refused
// before it starts: another role than the edit role, no such row, or a text equal to the
// row's own key (refused for every column).
template <typename T>
std::optional<QString> EditedKey(MapRowCursor<QString, T> &cursor, const QMap<QString, T> &map,
                                 const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return std::nullopt;
    const auto it = cursor.At(map, index.row());
    if (it == map.constEnd() || value.toString() == it.key())
        return std::nullopt;
    return it.key();
}

// The setData of a keyed table: the key column renames the row's entry (to a free key
// only), any other column goes to `setField(record, column, value)`; then dataChanged.
template <typename T, typename SetField>
bool Edit(QAbstractItemModel &model, MapRowCursor<QString, T> &cursor, QMap<QString, T> &map, int keyColumn,
          const QModelIndex &index, const QVariant &value, int role, SetField setField)
{
    const std::optional<QString> key = EditedKey(cursor, std::as_const(map), index, value, role);
    if (!key)
        return false;
    if (index.column() != keyColumn)
        setField(map[*key], index.column(), value);
    else if (!RenameToFreeKey(model, map, index.row(), *key, value.toString()))
        return false;
    emit model.dataChanged(index, index);
    return true;
}

} // namespace KeyedRows

} // namespace ProductEditor
