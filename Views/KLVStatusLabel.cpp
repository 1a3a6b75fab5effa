// SPDX-License-Identifier: MIT
#include "KLVStatusLabel.h"

#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QAccessible>
#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <cmath>

namespace
{

// All in points.
constexpr int fontSize = 12;
constexpr double signSize = 8;
constexpr double signGap = 6;
constexpr double strokeWidth = 1.5;

double points(double stated)
{
    return KLVMetrics(QApplication::font()).length(stated);
}

QColor colorOf(KLVStatusLabel::Sign sign, const KLVTheme &theme)
{
    switch (sign) {
    case KLVStatusLabel::Sign::Good:
        return theme.readable(QColor(0x2f, 0x9e, 0x63), theme.window());
    case KLVStatusLabel::Sign::Problem:
        return theme.readable(QColor(0xc2, 0x41, 0x0c), theme.window());
    case KLVStatusLabel::Sign::Waiting:
    case KLVStatusLabel::Sign::Absent:
    case KLVStatusLabel::Sign::None:
        break;
    }
    return theme.readable(theme.dimText(), theme.window());
}

} // namespace

KLVStatusLabel::KLVStatusLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    takeFont();
}

void KLVStatusLabel::setStatus(Sign sign, const QString &word, const QString &accessibleText)
{
    if (sign == m_sign && word == text() && accessibleText == accessibleName())
        return;
    m_sign = sign;
    setText(word);
    setAccessibleName(accessibleText);
    updateGeometry();
    update();
}

QSize KLVStatusLabel::sizeHint() const
{
    const double width = points(signSize) + points(signGap) + fontMetrics().horizontalAdvance(text());
    return { qCeil(width), fontMetrics().height() };
}

QSize KLVStatusLabel::minimumSizeHint() const
{
    return sizeHint();
}

void KLVStatusLabel::takeFont()
{
    setFont(KLVMetrics(QApplication::font()).font(fontSize));
}

void KLVStatusLabel::paintEvent(QPaintEvent * /*event*/)
{
    if (m_sign == Sign::None)
        return;
    const QColor color = colorOf(m_sign, KLVTheme(palette()));
    const double size = points(signSize);
    const QRectF sign((isRightToLeft() ? width() - size : 0.0), (height() - size) / 2, size, size);
    const int indent = qRound(size + points(signGap));
    const QRect words = isRightToLeft() ? rect().adjusted(0, 0, -indent, 0) : rect().adjusted(indent, 0, 0, 0);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawSign(painter, sign, color);
    painter.setPen(color);
    const Qt::Alignment alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(words, static_cast<int>(alignment | Qt::TextSingleLine), text());
}

void KLVStatusLabel::drawSign(QPainter &painter, const QRectF &place, const QColor &color) const
{
    const double stroke = points(strokeWidth);
    const QRectF inside = place.adjusted(stroke / 2, stroke / 2, -stroke / 2, -stroke / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    if (m_sign == Sign::Good) {
        painter.drawEllipse(place);
    } else if (m_sign == Sign::Problem) {
        QPainterPath triangle(QPointF(place.center().x(), place.top()));
        triangle.lineTo(place.bottomRight());
        triangle.lineTo(place.bottomLeft());
        painter.drawPath(triangle);
    } else {
        painter.setPen(QPen(color, stroke));
        painter.setBrush(Qt::NoBrush);
        if (m_sign == Sign::Waiting)
            painter.drawEllipse(inside);
        else
            painter.drawLine(QPointF(inside.left(), place.center().y()), QPointF(inside.right(), place.center().y()));
    }
}

bool KLVStatusLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationFontChange)
        takeFont();
    return QLabel::event(event);
}
