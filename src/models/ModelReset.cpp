#include "models/ModelReset.h"

#include "models/RowCursor.h"
#include "store/VantixJsonData.h"

#include <QAbstractItemModel>
#include <QAbstractProxyModel>

namespace ProductEditor {

namespace {

// Reaches the protected reset notifications of any model; never instantiated.
struct ResetAccess : QAbstractItemModel
{
    using QAbstractItemModel::beginResetModel;
    using QAbstractItemModel::endResetModel;
};

} // namespace

void ResetAround(const QVector<QAbstractItemModel *> &models, const std::function<void()> &change)
{
    BumpRowEpoch();
    for (QAbstractItemModel *model : models)
        (model->*(&ResetAccess::beginResetModel))();
    change();
    BumpRowEpoch();
    for (auto it = models.rbegin(); it != models.rend(); ++it)
        ((*it)->*(&ResetAccess::endResetModel))();
}

QVector<QAbstractItemModel *> SourceModels(const QVector<QAbstractItemModel *> &shown)
{
    QVector<QAbstractItemModel *> sources;
    for (QAbstractItemModel *model : shown) {
        while (auto *proxy = qobject_cast<QAbstractProxyModel *>(model))
            model = proxy->sourceModel();
        if (model && !sources.contains(model))
            sources << model;
    }
    return sources;
}

QVector<QMetaObject::Connection> FollowStoreResets(QAbstractItemModel &model, VantixJsonData &data)
{
    QAbstractItemModel *target = &model;
    return {QObject::connect(&data, &VantixJsonData::featuresDataAboutToBeReset, target,
                             [target] {
                                 BumpRowEpoch();
                                 (target->*(&ResetAccess::beginResetModel))();
                             }),
            QObject::connect(&data, &VantixJsonData::featuresDataReseted, target, [target] {
                BumpRowEpoch();
                (target->*(&ResetAccess::endResetModel))();
            })};
}

} // namespace ProductEditor
