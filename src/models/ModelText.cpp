#include "models/ModelText.h"

#include <QCursor>
#include <QStringList>
#include <QToolTip>

namespace ProductEditor {

void ShowIdExistsToolTip()
{
    QToolTip::showText(QCursor::pos(), QStringLiteral("This ID is already exist"));
}

QString JoinNames(const QSet<QString> &names)
{
    return QStringList(names.begin(), names.end()).join(QStringLiteral(", "));
}

} // namespace ProductEditor
