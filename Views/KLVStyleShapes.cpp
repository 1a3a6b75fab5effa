// SPDX-License-Identifier: MIT
#include "KLVStyleShapes.h"

#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QFontMetrics>

int KLVStyleShapes::points(qreal stated)
{
    return qRound(KLVMetrics(QApplication::font()).length(stated));
}

int KLVStyleShapes::lineBox(qreal stated)
{
    constexpr qreal room = 4;
    return std::max(points(stated), QFontMetrics(QApplication::font()).height() + 2 * points(room));
}

QPainterPath KLVStyleShapes::outline(const QRectF &rect, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    return path;
}

QColor KLVStyleShapes::halfway(const QColor &one, const QColor &other)
{
    return KLVTheme::blended(one, 0.5, other);
}
