#include "models/KeyedRows.h"

#include "models/RowCursor.h"

#include <QAbstractItemModel>

namespace ProductEditor {

namespace {

// Reaches the protected row notifications of any model; never instantiated.
struct RowAccess : QAbstractItemModel
{
    using QAbstractItemModel::beginInsertRows;
    using QAbstractItemModel::beginRemoveRows;
    using QAbstractItemModel::endInsertRows;
    using QAbstractItemModel::endRemoveRows;
};

} // namespace

namespace KeyedRows {

void Remove(QAbstractItemModel &model, int row, const std::function<void()> &remove)
{
    (model.*(&RowAccess::beginRemoveRows))(QModelIndex(), row, row);
    remove();
    BumpRowEpoch();
    (model.*(&RowAccess::endRemoveRows))();
}

void Insert(QAbstractItemModel &model, int row, const std::function<void()> &insert)
{
    (model.*(&RowAccess::beginInsertRows))(QModelIndex(), row, row);
    insert();
    BumpRowEpoch();
    (model.*(&RowAccess::endInsertRows))();
}

} // namespace KeyedRows

} // namespace ProductEditor
