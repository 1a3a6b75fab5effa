// SPDX-License-Identifier: MIT
#include "KLVRevealStrip.h"

#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

namespace
{

// All in points.
constexpr double statedHeight = 14;
constexpr double chevronWidth = 10;
constexpr double chevronHeight = 4;
constexpr double strokeWidth = 1.4;
constexpr double focusWidth = 2;
constexpr double hoverShare = 0.05; // of the text's colour
constexpr int hairline = 1; // pixels

double points(double stated)
{
    return KLVMetrics(QApplication::font()).length(stated);
}

} // namespace

KLVRevealStrip::KLVRevealStrip(QWidget *parent)
    : QAbstractButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize KLVRevealStrip::sizeHint() const
{
    const auto height = static_cast<int>(points(statedHeight));
    return { height, height };
}

void KLVRevealStrip::paintEvent(QPaintEvent * /*event*/)
{
    const KLVTheme theme(palette());
    QPainter painter(this);
    if (underMouse() || isDown())
        painter.fillRect(rect(), KLVTheme::blended(theme.text(), hoverShare, theme.window()));
    painter.fillRect(0, height() - hairline, width(), hairline, theme.hairline());

    painter.setRenderHint(QPainter::Antialiasing);
    const double x = points(chevronWidth) / 2;
    const double y = points(chevronHeight) / 2;
    QPainterPath chevron(QPointF(-x, -y));
    chevron.lineTo(0, y);
    chevron.lineTo(x, -y);
    painter.setPen(QPen(theme.readable(theme.dimText(), theme.window()), points(strokeWidth), Qt::SolidLine,
        Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(chevron.translated(QRectF(rect()).center()));

    if (hasFocus()) {
        const double inset = points(focusWidth) / 2;
        painter.setPen(QPen(theme.accent(), points(focusWidth)));
        painter.drawRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset));
    }
}

void KLVRevealStrip::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        // The lists follow these; a button would pass the focus on.
        event->ignore();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}
