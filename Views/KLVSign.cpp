// SPDX-License-Identifier: MIT
#include "KLVSign.h"

#include <QPainter>
#include <QPainterPath>

namespace
{

// All in points.
constexpr qreal strokeWidth = 1.4;
constexpr qreal chevronWidth = 3.2;
constexpr qreal chevronHeight = 6.6;
constexpr qreal chevronStep = 4.2; // from one of a pair to the other
constexpr qreal menuWidth = 11;
constexpr qreal menuStep = 4; // from line to line

// Its tip at the origin, pointing to the right.
QPainterPath chevron()
{
    QPainterPath path(QPointF(-chevronWidth, -chevronHeight / 2));
    path.lineTo(0, 0);
    path.lineTo(-chevronWidth, chevronHeight / 2);
    return path;
}

QPainterPath chevrons(int count)
{
    const qreal width = chevronWidth + (count - 1) * chevronStep;
    QPainterPath path;
    for (int i = 0; i < count; ++i)
        path.addPath(chevron().translated(width / 2 - i * chevronStep, 0));
    return path;
}

QPainterPath threeLines()
{
    QPainterPath path;
    for (int line = -1; line <= 1; ++line) {
        path.moveTo(-menuWidth / 2, line * menuStep);
        path.lineTo(menuWidth / 2, line * menuStep);
    }
    return path;
}

QPainterPath shapeOf(KLVSign sign)
{
    const QTransform mirror = QTransform::fromScale(-1, 1);
    switch (sign) {
    case KLVSign::BackTwice:
        return mirror.map(chevrons(2));
    case KLVSign::Back:
        return mirror.map(chevrons(1));
    case KLVSign::Forward:
        return chevrons(1);
    case KLVSign::ForwardTwice:
        return chevrons(2);
    case KLVSign::Menu:
        return threeLines();
    case KLVSign::None:
        break;
    }
    return {};
}

} // namespace

void KLVDrawSign(QPainter &painter, KLVSign sign, const QRectF &rectangle, const QColor &color, qreal unit,
    Qt::LayoutDirection direction)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rectangle.center());
    painter.scale(direction == Qt::RightToLeft ? -unit : unit, unit);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, strokeWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.drawPath(shapeOf(sign));
    painter.restore();
}
