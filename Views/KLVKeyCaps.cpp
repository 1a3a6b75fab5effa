// SPDX-License-Identifier: MIT
#include "KLVKeyCaps.h"

#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr int fontSize = 12;
constexpr double capHeight = 20;
constexpr double capMargin = 7;
constexpr double gap = 6;
constexpr double cornerRadius = 5;

int pixels(double points)
{
    return qRound(KLVMetrics(QApplication::font()).length(points));
}

} // namespace

KLVKeyCaps::KLVKeyCaps(const QList<QKeySequence> &shortcuts, QWidget *parent)
    : QWidget(parent)
{
    for (const QKeySequence &keys : shortcuts)
        m_texts.append(keys.toString(QKeySequence::NativeText));
    setAccessibleName(m_texts.join(u", "_s));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    takeFont();
}

void KLVKeyCaps::takeFont()
{
    setFont(KLVMetrics(QApplication::font()).font(fontSize));
    updateGeometry();
}

int KLVKeyCaps::capWidth(const QString &text) const
{
    return std::max(pixels(capHeight), fontMetrics().horizontalAdvance(text) + 2 * pixels(capMargin));
}

QSize KLVKeyCaps::sizeHint() const
{
    int width = 0;
    for (const QString &text : m_texts)
        width += capWidth(text) + (width > 0 ? pixels(gap) : 0);
    return { width, pixels(capHeight) };
}

void KLVKeyCaps::paintEvent(QPaintEvent * /*event*/)
{
    const KLVTheme theme(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    int x = 0;
    for (const QString &text : m_texts) {
        const QRect cap = QStyle::visualRect(layoutDirection(), rect(), QRect(x, 0, capWidth(text), pixels(capHeight)));
        painter.setPen(QPen(theme.controlLine(), 1));
        painter.setBrush(palette().color(QPalette::Button));
        painter.drawRoundedRect(QRectF(cap).adjusted(0.5, 0.5, -0.5, -0.5), pixels(cornerRadius), pixels(cornerRadius));
        painter.setPen(palette().color(QPalette::ButtonText));
        painter.drawText(cap, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextForceLeftToRight, text);
        x += cap.width() + pixels(gap);
    }
}

bool KLVKeyCaps::event(QEvent *event)
{
    if (event->type() == QEvent::ApplicationFontChange)
        takeFont();
    return QWidget::event(event);
}
