// SPDX-License-Identifier: MIT
#include "KLVStyle.h"

#include "KLVStyleShapes.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

using namespace KLVStyleShapes;

namespace
{

// In a square of that side.
constexpr qreal side = messageIconSize;
constexpr qreal rounding = 3;
constexpr qreal markWidth = 2.8;
constexpr qreal inset = 3;
const QColor problem(0xc2, 0x41, 0x0c);

void drawFace(QPainter &painter, const QPainterPath &path, const QColor &color)
{
    painter.setBrush(color);
    painter.setPen(QPen(color, rounding, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
}

void drawMark(QPainter &painter, const QPainterPath &stroke, const QPointF &dot, const QColor &color)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, markWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(stroke);
    painter.drawPoint(dot);
}

// A triangle with an exclamation mark.
void drawWarning(QPainter &painter, const KLVTheme &theme)
{
    const QColor color = theme.readable(problem, theme.window());
    QPainterPath triangle(QPointF(side / 2, inset + 1));
    triangle.lineTo(side - inset, side - inset - 1);
    triangle.lineTo(inset, side - inset - 1);
    triangle.closeSubpath();
    drawFace(painter, triangle, color);
    QPainterPath stroke(QPointF(side / 2, 12.5));
    stroke.lineTo(side / 2, 18.5);
    drawMark(painter, stroke, QPointF(side / 2, 23.6), KLVTheme::textOn(color));
}

// A disc with a question mark.
void drawQuestion(QPainter &painter, const KLVTheme &theme)
{
    QPainterPath disc;
    disc.addEllipse(QPointF(side / 2, side / 2), side / 2 - inset, side / 2 - inset);
    drawFace(painter, disc, theme.accent());
    QPainterPath stroke(QPointF(12.4, 12.8));
    stroke.cubicTo(12.4, 7.6, 19.8, 7.6, 19.8, 12.6);
    stroke.cubicTo(19.8, 15.6, 16, 15.6, 16, 18.6);
    drawMark(painter, stroke, QPointF(side / 2, 23.6), KLVTheme::textOn(theme.accent()));
}

} // namespace

QIcon KLVStyle::standardIcon(StandardPixmap kind, const QStyleOption *option, const QWidget *widget) const
{
    if (kind != SP_MessageBoxWarning && kind != SP_MessageBoxCritical && kind != SP_MessageBoxQuestion)
        return QProxyStyle::standardIcon(kind, option, widget);
    const qreal ratio = widget ? widget->devicePixelRatioF() : qApp->devicePixelRatio();
    const int size = points(side);
    QPixmap pixmap(QSizeF(size * ratio, size * ratio).toSize());
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / side, size / side);
    const KLVTheme theme(widget ? widget->palette() : QApplication::palette());
    if (kind == SP_MessageBoxQuestion)
        drawQuestion(painter, theme);
    else
        drawWarning(painter, theme);
    return QIcon(pixmap);
}
