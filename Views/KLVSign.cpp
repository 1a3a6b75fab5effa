// SPDX-License-Identifier: MIT
#include "KLVSign.h"

#include <QLineF>
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
constexpr qreal plusSize = 9;
constexpr int gearTeeth = 8;
constexpr qreal gearHub = 1.9; // radii
constexpr qreal gearRim = 3.6;
constexpr qreal gearTip = 5.6;
constexpr qreal warningWidth = 12.4;
constexpr qreal warningHeight = 10.8;
constexpr qreal warningStrokeTop = -1.9; // downwards from the middle of the triangle's height
constexpr qreal warningStrokeBottom = 1.7;
constexpr qreal warningDotTop = 2.6;
constexpr qreal warningDotBottom = 4;

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

QPainterPath minus()
{
    QPainterPath path(QPointF(-plusSize / 2, 0));
    path.lineTo(plusSize / 2, 0);
    return path;
}

QPainterPath plus()
{
    QPainterPath path = minus();
    path.moveTo(0, -plusSize / 2);
    path.lineTo(0, plusSize / 2);
    return path;
}

QPainterPath gear()
{
    QPainterPath path;
    path.addEllipse(QPointF(), gearHub, gearHub);
    path.addEllipse(QPointF(), gearRim, gearRim);
    for (int tooth = 0; tooth < gearTeeth; ++tooth) {
        const QLineF line = QLineF::fromPolar(1, tooth * 360.0 / gearTeeth);
        path.moveTo(line.p2() * gearRim);
        path.lineTo(line.p2() * gearTip);
    }
    return path;
}

// A triangle with an exclamation mark.
QPainterPath warning()
{
    QPainterPath path(QPointF(0, -warningHeight / 2));
    path.lineTo(warningWidth / 2, warningHeight / 2);
    path.lineTo(-warningWidth / 2, warningHeight / 2);
    path.closeSubpath();
    path.moveTo(0, warningStrokeTop);
    path.lineTo(0, warningStrokeBottom);
    path.moveTo(0, warningDotTop);
    path.lineTo(0, warningDotBottom);
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
    case KLVSign::Plus:
        return plus();
    case KLVSign::Minus:
        return minus();
    case KLVSign::Gear:
        return gear();
    case KLVSign::Warning:
        return warning();
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
