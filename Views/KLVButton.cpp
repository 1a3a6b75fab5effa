// SPDX-License-Identifier: MIT
#include "KLVButton.h"

#include "KLVText.h"
#include "KLVTheme.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

QRectF KLVButton::clickableRect() const
{
    constexpr double margin = 4.0;
    const double width = std::min(KLVText::width(KLVText::shown(m_title), m_font) + margin, frame().width());
    const double left = isRightToLeft() ? frame().width() - width : -margin;
    return { left, 0, width + margin, frame().height() };
}

bool KLVButton::looksLike(const KLVView &other) const
{
    if (!KLVControl::looksLike(other))
        return false;
    const auto &button = static_cast<const KLVButton &>(other);
    return isHidden() || (m_title == button.m_title && m_font == button.m_font && m_kind == button.m_kind);
}

QAccessible::Role KLVButton::accessibleRole() const
{
    return m_kind == Kind::Link ? QAccessible::Link : QAccessible::Button;
}

void KLVButton::draw(const KLVDrawingContext &drawing) const
{
    const QFontMetricsF metrics(m_font);
    const double baseline = std::round((frame().height() - metrics.height()) / 2 + metrics.ascent());
    const QColor color = !isEnabled() ? drawing.theme.dimText()
        : m_kind == Kind::Link        ? drawing.theme.accent()
                                      : drawing.theme.text();
    drawing.painter.setFont(m_font);
    drawing.painter.setPen(drawing.theme.readable(color, drawing.background));
    const QString shown = metrics.elidedText(KLVText::shown(m_title), Qt::ElideRight, frame().width());
    const double x = isRightToLeft() ? std::max(0.0, frame().width() - metrics.horizontalAdvance(shown)) : 0.0;
    // A mark before a name stands at the side where the reading begins; a link runs from left to right everywhere.
    const bool isMirrored = isRightToLeft() && m_kind != Kind::Link;
    drawing.painter.setLayoutDirection(isMirrored ? Qt::RightToLeft : Qt::LayoutDirectionAuto);
    drawing.painter.drawText(QPointF(x, baseline), shown);
    drawing.painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    drawCurrentMark(drawing);
}
