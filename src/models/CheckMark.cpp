#include "models/CheckMark.h"

namespace ProductEditor {

QIcon CheckMarkIcon(bool member)
{
    return QIcon(member ? QStringLiteral(":/check.png") : QStringLiteral(":/uncheck.png"));
}

QVariant CheckMarkData(bool member, int role)
{
    if (role == Qt::DecorationRole)
        return CheckMarkIcon(member);
    if (role == Qt::UserRole)
        return member;
    return QVariant();
}

} // namespace ProductEditor
