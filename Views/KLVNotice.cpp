// SPDX-License-Identifier: MIT
#include "KLVNotice.h"

#include "KLVMetrics.h"
#include "KLVReadingDirection.h"
#include "KLVTheme.h"

#include <QAccessible>
#include <QApplication>
#include <QPainter>

namespace
{

// All in points.
constexpr double sideMargin = 12;
constexpr double endMargin = 6;
constexpr int fontSize = 12;
constexpr int hairline = 1; // pixels

} // namespace

KLVNotice::KLVNotice(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    KLVFollowReadingDirection(*this);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    takeFont();
    hide();
}

void KLVNotice::say(const QString &text)
{
    if (text == this->text())
        return;
    setText(text);
    setAccessibleName(text);
    setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void KLVNotice::takeFont()
{
    const KLVMetrics metrics(QApplication::font());
    setFont(metrics.font(fontSize));
    const int side = qRound(metrics.length(sideMargin));
    const int end = qRound(metrics.length(endMargin));
    setContentsMargins(side, end, side, end + hairline);
}

void KLVNotice::paintEvent(QPaintEvent *event)
{
    const KLVTheme theme(palette());
    {
        QPainter painter(this);
        painter.fillRect(rect(), theme.notice());
        painter.fillRect(0, height() - hairline, width(), hairline, theme.hairline());
    }
    QLabel::paintEvent(event);
}

bool KLVNotice::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationFontChange)
        takeFont();
    return QLabel::event(event);
}
