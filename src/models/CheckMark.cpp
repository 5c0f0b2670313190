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

void SetCheckMark(QSet<QString> *set, const QString &name, bool member)
{
    if (!set)
        return;
    if (member)
        set->insert(name);
    else
        set->remove(name);
}

} // namespace ProductEditor
