// SPDX-License-Identifier: MIT
#include "KLVSlimScrollBar.h"

#include "KLVTheme.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

KLVSlimScrollBar::KLVSlimScrollBar(QWidget *parent)
    : QScrollBar(Qt::Vertical, parent)
{
    setAttribute(Qt::WA_Hover);
}

QSize KLVSlimScrollBar::sizeHint() const
{
    return { barWidth, QScrollBar::sizeHint().height() };
}

void KLVSlimScrollBar::paintEvent(QPaintEvent * /*event*/)
{
    constexpr double handleWidth = 5.0;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF slot = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const QRectF handle((width() - handleWidth) / 2, slot.y() + 1, handleWidth, slot.height() - 2);
    QColor color = KLVTheme(palette()).dimText();
    color.setAlphaF(underMouse() || isSliderDown() ? 0.8F : 0.45F);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(handle, handleWidth / 2, handleWidth / 2);
}
