// SPDX-License-Identifier: MIT
#include "KLVCheckBox.h"

QRectF KLVCheckBox::clickableRect() const
{
    // A little more than the picture, which is small.
    constexpr double margin = 4.0;
    return QRectF(QPointF(0, 0), frame().size()).adjusted(-margin, -margin, margin, margin);
}

bool KLVCheckBox::looksLike(const KLVView &other) const
{
    if (!KLVControl::looksLike(other))
        return false;
    const KLVColoredButtonCell &cell = static_cast<const KLVCheckBox &>(other).m_cell;
    return m_cell.integerValue() == cell.integerValue() && m_cell.imageTintColor() == cell.imageTintColor();
}

void KLVCheckBox::draw(const KLVDrawingContext &drawing) const
{
    m_cell.drawImage_withFrame_inView({}, QRectF(QPointF(0, 0), frame().size()), drawing.painter, drawing.theme);
    drawCurrentMark(drawing);
}
