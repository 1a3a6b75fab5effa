// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QString>

class QTextLayout;

// Text of other people's calendars: measured, laid out and made fit to be shown.
namespace KLVText
{

// What of a text is shown and measured: the first 4,000 characters.
QString shown(const QString &text);
// Line breaks and control characters become single blanks.
QString singleLine(const QString &text);
// Line breaks stay, in one form; other control characters become blanks.
QString severalLines(const QString &text);
// For a tool tip, which takes what looks like markup for markup: shown as it is, broken where it is long.
QString toolTip(const QString &text);

// The column in which a field of that width wraps its text: 40 points less.
double wrappingWidth(double fieldWidth);
// At word boundaries; a word that is too long for a line is broken.
void layOut(QTextLayout &layout, const QString &text, const QFont &font, double width,
    Qt::LayoutDirection direction = Qt::LeftToRight);
// Height of the wrapped text; remembered, since rows are made again and again.
double wrappedHeight(const QString &text, const QFont &font, double width);
// Height of one line, rounded up.
double lineHeight(const QFont &font);
double width(const QString &text, const QFont &font);

} // namespace KLVText
