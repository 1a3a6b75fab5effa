// SPDX-License-Identifier: MIT
#include "KLVSlimScrollBar.h"

#include "KLVDrawings.h"
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
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF slot = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const QRectF handle(0, slot.y(), width(), slot.height());
    QPainter painter(this);
    if (m_cover) {
        QPainterPath whole;
        whole.addRect(rect());
        painter.setClipPath(whole.subtracted(m_cover()));
    }
    KLVDrawings::drawScrollHandle(painter, KLVTheme(palette()), handle, Qt::Vertical, underMouse() || isSliderDown());
}
