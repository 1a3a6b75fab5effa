// SPDX-License-Identifier: MIT
#include "KLVText.h"

#include <QCache>
#include <QFontMetricsF>
#include <QTextLayout>
#include <QTextOption>

#include <cmath>
#include <tuple>

namespace
{

constexpr qsizetype longestShownText = 4000; // characters
constexpr int rememberedHeights = 4000;
constexpr double narrowing = 40.0; // points

struct MeasureKey {
    QString text;
    QString font;
    double width;

    bool operator==(const MeasureKey &) const = default;
};

size_t qHash(const MeasureKey &key, size_t seed = 0)
{
    return qHashMulti(seed, key.text, key.font, key.width);
}

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator
        || character == QChar::ParagraphSeparator;
}

} // namespace

QString KLVText::shown(const QString &text)
{
    if (text.size() <= longestShownText)
        return text;
    const bool splitsPair = text.at(longestShownText - 1).isHighSurrogate();
    return text.left(splitsPair ? longestShownText - 1 : longestShownText);
}

QString KLVText::singleLine(const QString &text)
{
    QString line;
    line.reserve(std::min(text.size(), longestShownText + 1));
    bool afterBreak = false;
    for (const QChar character : text) {
        if (line.size() > longestShownText)
            break;
        if (!isControl(character))
            line.append(character);
        else if (!afterBreak)
            line.append(u' ');
        afterBreak = isControl(character);
    }
    return line;
}

QString KLVText::severalLines(const QString &text)
{
    QString lines = shown(text);
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar &character : lines) {
        if (character == u'\r' || character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            character = u'\n';
        else if (character != u'\n' && isControl(character))
            character = u' ';
    }
    return lines;
}

QString KLVText::toolTip(const QString &text)
{
    if (text.isEmpty())
        return {};
    return QStringLiteral("<span>") + text.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"))
        + QStringLiteral("</span>");
}

double KLVText::wrappingWidth(double fieldWidth)
{
    return std::max(1.0, fieldWidth - narrowing);
}

void KLVText::layOut(
    QTextLayout &layout, const QString &text, const QFont &font, double width, Qt::LayoutDirection direction)
{
    QString paragraphs = shown(text);
    paragraphs.replace(u'\n', QChar::LineSeparator);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // All lines begin at the same edge, also those written the other way.
    option.setAlignment((direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute);
    layout.setText(paragraphs);
    layout.setFont(font);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);

    double y = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, y));
        y += line.height();
    }
    layout.endLayout();
}

double KLVText::wrappedHeight(const QString &text, const QFont &font, double width)
{
    static QCache<MeasureKey, double> heights(rememberedHeights);
    const MeasureKey key { shown(text), font.key(), width };
    if (const double *known = heights.object(key))
        return *known;

    QTextLayout layout;
    layOut(layout, text, font, width);
    double height = 0;
    for (int line = 0; line < layout.lineCount(); ++line)
        height += layout.lineAt(line).height();
    heights.insert(key, new double(height));
    return height;
}

double KLVText::lineHeight(const QFont &font)
{
    return std::ceil(QFontMetricsF(font).height());
}

double KLVText::width(const QString &text, const QFont &font)
{
    return QFontMetricsF(font).horizontalAdvance(text);
}
