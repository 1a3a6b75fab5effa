// SPDX-License-Identifier: MIT
#include "KLVControl.h"

#include "KLVTheme.h"

#include <QPainter>

void KLVControl::performClick()
{
    if (m_isEnabled)
        sendAction();
}

void KLVControl::sendAction()
{
    // A copy: the action may end the life of this control.
    const Action action = m_action;
    if (action)
        action();
}

bool KLVControl::looksLike(const KLVView &other) const
{
    return KLVView::looksLike(other) && m_isEnabled == static_cast<const KLVControl &>(other).m_isEnabled;
}

std::vector<KLVControl *> KLVControl::usableControls()
{
    if (isHidden() || !m_isEnabled)
        return {};
    return { this };
}

void KLVControl::drawCurrentMark(const KLVDrawingContext &drawing) const
{
    if (drawing.currentControl.isEmpty() || drawing.currentControl != name())
        return;

    constexpr double radius = 5.0;
    drawing.painter.save();
    drawing.painter.setRenderHint(QPainter::Antialiasing);
    drawing.painter.setBrush(Qt::NoBrush);
    drawing.painter.setPen(QPen(drawing.theme.readable(drawing.theme.accent(), drawing.background), 2.0));
    drawing.painter.drawRoundedRect(clickableRect(), radius, radius);
    drawing.painter.restore();
}
