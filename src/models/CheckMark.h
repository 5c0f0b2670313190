#pragma once

#include "ProductEditorExport.h"

#include <QIcon>
#include <QSet>
#include <QString>
#include <QVariant>

namespace ProductEditor {

// The check-mark convention of the relation tables: the decoration role
// answers an icon, the user role the same fact as a bool, other roles nothing.
PRODUCT_EDITOR_EXPORT QIcon CheckMarkIcon(bool member);
PRODUCT_EDITOR_EXPORT QVariant CheckMarkData(bool member, int role);
// A ticked check mark puts `name` into `set`, a cleared one takes it out; no set, no change.
PRODUCT_EDITOR_EXPORT void SetCheckMark(QSet<QString> *set, const QString &name, bool member);

} // namespace ProductEditor
