#include "models/IconDelegate.h"

#include <QStyle>
#include <QWidget>

namespace ProductEditor {

// The parent is not taken: the creator keeps the delegate alive while views use it.
IconDelegate::IconDelegate(QObject *) : QStyledItemDelegate(nullptr)
{
}

IconDelegate::~IconDelegate() = default;

void IconDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    option->decorationPosition = QStyleOptionViewItem::Top;
    option->decorationAlignment = Qt::AlignCenter;
    int margin = 0;
    if (option->widget)
        margin = option->widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, option,
                                                      option->widget)
                 + 1;
    option->decorationSize = option->rect.size() - QSize(margin, margin);
}

} // namespace ProductEditor
