// SPDX-License-Identifier: MIT
#include "KLVMiniBadge.h"

#include "KLVTheme.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{

double figureWidth(const QFontMetricsF &metrics)
{
    double width = 0;
    for (char16_t figure = u'0'; figure <= u'9'; ++figure)
        width = std::max(width, metrics.horizontalAdvance(QChar(figure)));
    return width;
}

bool isFigure(QChar character)
{
    return character >= u'0' && character <= u'9';
}

// Only text of figures and simple signs can be set sign by sign.
bool isTime(const QString &text)
{
    return std::ranges::all_of(
        text, [](QChar character) { return isFigure(character) || character == u':' || character == u'.'; });
}

} // namespace

double KLVMiniBadge::textWidth(const QString &text, const QFont &font)
{
    const QFontMetricsF metrics(font);
    if (!isTime(text))
        return metrics.horizontalAdvance(text);
    const double figure = figureWidth(metrics);
    double width = 0;
    for (const QChar character : text)
        width += isFigure(character) ? figure : metrics.horizontalAdvance(character);
    return width;
}

bool KLVMiniBadge::looksLike(const KLVView &other) const
{
    return KLVTextField::looksLike(other)
        && (isHidden() || m_backgroundColor == static_cast<const KLVMiniBadge &>(other).m_backgroundColor);
}

void KLVMiniBadge::draw(const KLVDrawingContext &drawing) const
{
    if (stringValue().value_or(QString()).isEmpty())
        return;

    const auto width = static_cast<float>(frame().width());
    const auto height = static_cast<float>(frame().height());
    const QRectF pill(0, frame().height() - static_cast<double>(height), width, height);
    // Both radii are at most half a side, so the ends are half circles.
    const double xRadius = std::min(static_cast<double>(height) * 0.5, pill.width() / 2);
    const double yRadius = std::min(static_cast<double>(height), pill.height() / 2);

    drawing.painter.save();
    drawing.painter.setRenderHint(QPainter::Antialiasing);
    drawing.painter.setPen(Qt::NoPen);
    drawing.painter.setBrush(drawing.theme.badge(m_backgroundColor));
    drawing.painter.drawRoundedRect(pill, xRadius, yRadius);
    drawText(drawing);
    drawing.painter.restore();
}

void KLVMiniBadge::drawText(const KLVDrawingContext &drawing) const
{
    constexpr double padding = 2.0;
    const QFontMetricsF metrics(font());
    const double room = frame().width() - 2 * padding;
    QString text = *stringValue();
    if (!isTime(text))
        text = metrics.elidedText(text, Qt::ElideRight, room);
    const double figure = figureWidth(metrics);
    const double baseline = std::round((frame().height() - metrics.height()) / 2 + metrics.ascent());
    double x = padding + (room - textWidth(text, font())) / 2;

    drawing.painter.setFont(font());
    drawing.painter.setPen(KLVTheme::textOnBadge(drawing.theme.badge(m_backgroundColor)));
    if (!isTime(text)) {
        drawing.painter.drawText(QPointF(x, baseline), text);
        return;
    }
    for (const QChar character : text) {
        const double own = metrics.horizontalAdvance(character);
        const double cell = isFigure(character) ? figure : own;
        drawing.painter.drawText(QPointF(x + (cell - own) / 2, baseline), character);
        x += cell;
    }
}
