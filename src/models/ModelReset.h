#pragma once

#include "ProductEditorExport.h"

#include <QMetaObject>
#include <QVector>

#include <functional>

class QAbstractItemModel;

namespace ProductEditor {

class VantixJsonData;

// Runs `change` inside a reset of every model in `models`. For changes that
// replace the store's records behind the models' backs, where the store's own
// signals would reach only the feature-side models.
PRODUCT_EDITOR_EXPORT void ResetAround(const QVector<QAbstractItemModel *> &models,
                                       const std::function<void()> &change);

// The models at the bottom of the proxy chains of `shown`, each once: the ones to reset.
PRODUCT_EDITOR_EXPORT QVector<QAbstractItemModel *> SourceModels(const QVector<QAbstractItemModel *> &shown);

// Resets `model` around every rebuild the store announces of its feature-side records,
// bumping the row epoch at both ends; the two connections, to drop them early.
PRODUCT_EDITOR_EXPORT QVector<QMetaObject::Connection> FollowStoreResets(QAbstractItemModel &model,
                                                                         VantixJsonData &data);

} // namespace ProductEditor
