// SPDX-License-Identifier: MIT
#pragma once

#include "KLVView.h"

#include <QFont>

#include <optional>

// Plain text in a row: on one line, elided, or wrapped.
//
// A wrapped field breaks its text 40 points before its right edge, as it is
// measured, so its frame may reach beyond what is next to it. Text of more than
// 4,000 characters is cut for drawing and measuring.
class KLVTextField : public KLVView
{
public:
    enum class LineBreak { Elided, Wrapped };
    enum class TextColor { Text, Dim, Overdue };

    using KLVView::KLVView;

    // Absent and empty are different: an absent text takes no room.
    const std::optional<QString> &stringValue() const { return m_stringValue; }
    void setStringValue(const std::optional<QString> &text) { m_stringValue = text; }

    const QFont &font() const { return m_font; }
    void setFont(const QFont &font) { m_font = font; }
    TextColor textColor() const { return m_textColor; }
    void setTextColor(TextColor color) { m_textColor = color; }
    Qt::Alignment alignment() const { return m_alignment; }
    void setAlignment(Qt::Alignment alignment) { m_alignment = alignment; }
    LineBreak lineBreak() const { return m_lineBreak; }
    void setLineBreak(LineBreak lineBreak) { m_lineBreak = lineBreak; }
    bool isStruckOut() const { return m_font.strikeOut(); }
    void setStruckOut(bool isStruckOut) { m_font.setStrikeOut(isStruckOut); }
    // A caption stands on the base line of the value beside it, which has another font.
    void setBaselineFont(const QFont &font) { m_baselineFont = font; }

    bool looksLike(const KLVView &other) const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::StaticText; }
    QString accessibleText() const override { return m_stringValue.value_or(QString()); }

protected:
    void draw(const KLVDrawingContext &drawing) const override;
    QColor color(const KLVDrawingContext &drawing) const;

private:
    void drawLine(const KLVDrawingContext &drawing) const;
    void drawWrapped(const KLVDrawingContext &drawing) const;

    std::optional<QString> m_stringValue;
    QFont m_font;
    std::optional<QFont> m_baselineFont;
    TextColor m_textColor = TextColor::Text;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    LineBreak m_lineBreak = LineBreak::Elided;
};
