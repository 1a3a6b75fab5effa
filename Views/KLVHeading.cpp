// SPDX-License-Identifier: MIT
#include "KLVHeading.h"

#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

namespace
{

constexpr int fontSize = 12; // points
constexpr int fontWeight = 600;

} // namespace

KLVHeading::KLVHeading(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
    takeFont();
}

void KLVHeading::takeFont()
{
    setFont(KLVMetrics(QApplication::font()).font(fontSize, fontWeight));
}

void KLVHeading::paintEvent(QPaintEvent * /*event*/)
{
    const KLVTheme theme(palette());
    QPainter painter(this);
    painter.setPen(theme.readable(theme.dimText(), theme.window()));
    const Qt::Alignment alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(rect(), static_cast<int>(alignment | Qt::TextSingleLine),
        fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

bool KLVHeading::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationFontChange)
        takeFont();
    return QLabel::event(event);
}
