// SPDX-License-Identifier: MIT
#include "KLVTextField.h"

#include "KLVText.h"
#include "KLVTheme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <cmath>

bool KLVTextField::looksLike(const KLVView &other) const
{
    if (!KLVView::looksLike(other))
        return false;
    if (isHidden())
        return true;
    const auto &field = static_cast<const KLVTextField &>(other);
    return m_stringValue == field.m_stringValue && m_font == field.m_font && m_textColor == field.m_textColor
        && m_alignment == field.m_alignment && m_lineBreak == field.m_lineBreak;
}

QColor KLVTextField::color(const KLVDrawingContext &drawing) const
{
    switch (m_textColor) {
    case TextColor::Dim:
        return drawing.theme.readable(drawing.theme.dimText(), drawing.background);
    case TextColor::Overdue:
        return drawing.theme.readable(drawing.theme.overdue(), drawing.background);
    case TextColor::Text:
        break;
    }
    return drawing.theme.readable(drawing.theme.text(), drawing.background);
}

void KLVTextField::draw(const KLVDrawingContext &drawing) const
{
    if (!m_stringValue || m_stringValue->isEmpty())
        return;
    drawing.painter.setPen(color(drawing));
    if (m_lineBreak == LineBreak::Wrapped)
        drawWrapped(drawing);
    else
        drawLine(drawing);
}

void KLVTextField::drawLine(const KLVDrawingContext &drawing) const
{
    const QFontMetricsF metrics(m_font);
    const QFontMetricsF lineMetrics(m_baselineFont.value_or(m_font));
    const QString shown = metrics.elidedText(KLVText::shown(*m_stringValue), Qt::ElideRight, frame().width());
    const double slack = frame().width() - metrics.horizontalAdvance(shown);
    const bool isAtRight = m_alignment.testFlag(Qt::AlignRight) != isRightToLeft();
    const double x = m_alignment.testFlag(Qt::AlignHCenter) ? slack / 2 : isAtRight ? slack : 0;
    // On whole points, so that captions and values stand on one line at every scale.
    const double baseline = std::round((frame().height() - lineMetrics.height()) / 2 + lineMetrics.ascent());
    drawing.painter.setFont(m_font);
    drawing.painter.drawText(QPointF(std::max(0.0, x), baseline), shown);
}

void KLVTextField::drawWrapped(const KLVDrawingContext &drawing) const
{
    QTextLayout layout;
    const double width = KLVText::wrappingWidth(frame().width());
    KLVText::layOut(layout, *m_stringValue, m_font, width, layoutDirection());
    // The first base line on a whole point, as captions and badges have theirs.
    const double ascent = layout.lineCount() > 0 ? layout.lineAt(0).ascent() : 0;
    const double x = isRightToLeft() ? std::max(0.0, frame().width() - width) : 0.0;
    layout.draw(&drawing.painter, QPointF(x, std::round(ascent) - ascent));
}
