// SPDX-License-Identifier: MIT
#include "KLVIconsView.h"

#include "KLVImages.h"
#include "KLVTheme.h"

#include <QPainter>

bool KLVIconsView::looksLike(const KLVView &other) const
{
    return KLVView::looksLike(other) && m_icons == static_cast<const KLVIconsView &>(other).m_icons;
}

void KLVIconsView::draw(const KLVDrawingContext &drawing) const
{
    constexpr double gap = 6.0;
    const double side = frame().height();
    const qreal ratio = KLVImages::devicePixelRatio(drawing.painter);
    double x = 0;
    for (const QString &icon : m_icons) {
        const QImage image = KLVImages::image(icon, QSizeF(side, side), ratio, drawing.theme.dimText());
        const double left = isRightToLeft() ? frame().width() - x - side : x;
        drawing.painter.drawImage(QRectF(left, 0, side, side), image);
        x += side + gap;
    }
}
