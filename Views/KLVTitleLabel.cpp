// SPDX-License-Identifier: MIT
#include "KLVTitleLabel.h"

#include "KLVMetrics.h"
#include "KLVText.h"

#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace
{

constexpr int fontSize = 17; // points
// Stated as 650. A family without that weight is to give its bold face, not the rows' semi-bold one.
constexpr int fontWeight = 660;

} // namespace

KLVTitleLabel::KLVTitleLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    takeFont();
}

void KLVTitleLabel::takeFont()
{
    setFont(KLVMetrics(QApplication::font()).font(fontSize, fontWeight));
}

QSize KLVTitleLabel::minimumSizeHint() const
{
    return { 0, QLabel::minimumSizeHint().height() };
}

QString KLVTitleLabel::shownText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideRight, width());
}

void KLVTitleLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const Qt::Alignment alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(rect(), static_cast<int>(alignment), shownText());
}

bool KLVTitleLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationFontChange)
        takeFont();
    if (event->type() == QEvent::ToolTip) {
        if (shownText() != text())
            QToolTip::showText(static_cast<const QHelpEvent *>(event)->globalPos(), KLVText::toolTip(text()), this);
        return true;
    }
    return QLabel::event(event);
}
