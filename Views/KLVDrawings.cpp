// SPDX-License-Identifier: MIT
#include "KLVDrawings.h"

#include "KLVMetrics.h"
#include "KLVTheme.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{

constexpr double selectedRadius = 9.0;
constexpr double selectedLineWidth = 3.0;

QRectF selectedRectangle(const QRectF &frame)
{
    constexpr double inset = 2.0;
    return frame.adjusted(inset, inset, -inset, -inset);
}

} // namespace

QFont KLVDrawings::placeholderFont(const QFont &personsFont)
{
    // Where there is no Helvetica the desktop would put any face in its place; the person's own is better.
    static const bool hasHelvetica = QFontDatabase::families().contains(u"Helvetica"_s);
    constexpr int size = 12;
    QFont font = KLVMetrics(personsFont).font(size, QFont::Bold);
    if (hasHelvetica)
        font.setFamily(u"Helvetica"_s);
    return font;
}

void KLVDrawings::drawPlaceholder(
    QPainter &painter, const KLVTheme &theme, const QString &text, const QRectF &frame, const QFont &personsFont)
{
    constexpr double top = 5.0;
    const QFont font = placeholderFont(personsFont);
    const QFontMetricsF metrics(font);
    const auto width = static_cast<float>(metrics.boundingRect(QRectF(QPointF(), frame.size()), 0, text).width());
    const double x = (frame.width() - width) / 2;

    painter.save();
    painter.setFont(font);
    painter.setPen(theme.dimText());
    painter.drawText(QPointF(x, top + metrics.ascent()), text);
    painter.restore();
}

QPainterPath KLVDrawings::selectedRing(const QRectF &frame)
{
    QPainterPath line;
    line.addRoundedRect(selectedRectangle(frame), selectedRadius, selectedRadius);
    QPainterPathStroker pen;
    pen.setWidth(selectedLineWidth);
    return pen.createStroke(line);
}

void KLVDrawings::drawSelectedBackground(QPainter &painter, const QRectF &frame, const QColor &color)
{
    const QRectF rect = selectedRectangle(frame);
    QColor fill = color;
    fill.setAlphaF(static_cast<float>(selectedBackgroundAlpha));

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(rect, selectedRadius, selectedRadius);
    painter.setPen(QPen(color, selectedLineWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect, selectedRadius, selectedRadius);
    painter.restore();
}

void KLVDrawings::drawScrollHandle(
    QPainter &painter, const KLVTheme &theme, const QRectF &slot, Qt::Orientation orientation, bool isTouched)
{
    constexpr double thickness = 5.0;
    const QRectF handle = orientation == Qt::Vertical
        ? QRectF(slot.center().x() - thickness / 2, slot.y() + 1, thickness, slot.height() - 2)
        : QRectF(slot.x() + 1, slot.center().y() - thickness / 2, slot.width() - 2, thickness);
    QColor color = theme.dimText();
    color.setAlphaF(isTouched ? 0.8F : 0.45F);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(handle, thickness / 2, thickness / 2);
    painter.restore();
}
