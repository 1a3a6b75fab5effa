// SPDX-License-Identifier: MIT
#include "KLVStyle.h"

#include "KLVMetrics.h"
#include "KLVStyleShapes.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QPainter>
#include <QStyleOption>

using namespace KLVStyleShapes;

namespace
{

// All in points.
constexpr qreal itemHeight = 26;
constexpr qreal separatorHeight = 9;
constexpr qreal itemRadius = 5;
constexpr qreal sideMargin = 9;
constexpr qreal markArea = 18; // at the left, for a tick or an icon
constexpr qreal shortcutGap = 22;
constexpr qreal arrowArea = 16;
constexpr qreal arrowGap = 8; // before it
constexpr qreal popUpMargin = 4;
constexpr int textSize = 13;
constexpr int headingWeight = 600;

struct ItemTexts {
    QString title, shortcut;
};

ItemTexts textsOf(const QStyleOptionMenuItem &option)
{
    const qsizetype tab = option.text.indexOf(u'\t');
    if (tab < 0)
        return { option.text, {} };
    return { option.text.left(tab), option.text.mid(tab + 1) };
}

bool isLine(const QStyleOptionMenuItem &option)
{
    return option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty();
}

bool isHeading(const QStyleOptionMenuItem &option)
{
    return option.menuItemType == QStyleOptionMenuItem::Separator && !option.text.isEmpty();
}

bool isUsable(const QStyleOptionMenuItem &option)
{
    return option.state.testFlag(QStyle::State_Enabled) && !isHeading(option);
}

QColor itemColor(const QStyleOptionMenuItem &option)
{
    const KLVTheme theme(option.palette);
    if (isHeading(option))
        return theme.dimText();
    if (!isUsable(option))
        return option.palette.color(QPalette::Disabled, QPalette::Text);
    return option.state.testFlag(QStyle::State_Selected) ? KLVTheme::textOn(theme.accent())
                                                         : option.palette.color(QPalette::Text);
}

QFont headingFont()
{
    return KLVMetrics(QApplication::font()).font(textSize, headingWeight);
}

// From the item's edge to its text. A pop-up's list always tells of room for icons, also when it has none.
int leftOfText(const QStyleOptionMenuItem &option, const QWidget *widget)
{
    const bool isInMenu = !qobject_cast<const QComboBox *>(widget);
    const bool hasIcons = !option.icon.isNull() || (isInMenu && option.maxIconWidth > 0);
    const int icon = hasIcons ? points(markArea) : 0;
    const int tick = option.menuHasCheckableItems ? points(markArea) : 0;
    return points(sideMargin) + icon + tick;
}

void drawTick(QPainter &painter, const QRectF &rect, const QColor &color, bool isExclusive)
{
    constexpr qreal side = 14;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center());
    painter.scale(points(side) / side, points(side) / side);
    if (isExclusive) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(QPointF(0, 0), 2.8, 2.8);
    } else {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF({ { -3.6, 0.4 }, { -1.0, 3.0 }, { 3.6, -2.6 } }));
    }
    painter.restore();
}

} // namespace

void KLVStyle::drawMenuPanel(QPainter &painter, const QStyleOption &option)
{
    painter.fillRect(option.rect, option.palette.color(QPalette::Base));
    painter.setPen(QPen(KLVTheme(option.palette).controlLine(), 1));
    painter.drawRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
}

void KLVStyle::drawMenuItem(QPainter &painter, const QStyleOptionMenuItem &option, const QWidget *widget) const
{
    const KLVTheme theme(option.palette);
    const bool isInPopUp = qobject_cast<const QComboBox *>(widget);
    // A menu has its margin around the items; the list of a pop-up leaves it to them.
    const int margin = isInPopUp ? points(popUpMargin) : 0;
    const QRect rect = option.rect.adjusted(margin, 0, -margin, 0);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isInPopUp)
        painter.fillRect(option.rect, theme.base());
    if (isLine(option)) {
        const int side = points(sideMargin);
        painter.fillRect(QRect(rect.left() + side, rect.center().y(), rect.width() - 2 * side, 1), theme.hairline());
    } else {
        drawMenuItemFace(painter, option, rect);
        drawMenuItemMark(painter, option, rect);
        drawMenuItemTexts(painter, option, rect, leftOfText(option, widget));
    }
    painter.restore();
}

void KLVStyle::drawMenuItemFace(QPainter &painter, const QStyleOptionMenuItem &option, const QRect &rect)
{
    if (!option.state.testFlag(State_Selected))
        return;
    if (!isUsable(option))
        return drawRing(painter, option, QRectF(rect), points(itemRadius));
    painter.setPen(Qt::NoPen);
    painter.setBrush(KLVTheme(option.palette).accent());
    painter.drawRoundedRect(rect, points(itemRadius), points(itemRadius));
}

void KLVStyle::drawMenuItemMark(QPainter &painter, const QStyleOptionMenuItem &option, const QRect &rect)
{
    int left = rect.left() + points(sideMargin);
    if (option.menuHasCheckableItems) {
        const QRect column(left, rect.top(), points(markArea) - points(sideMargin) / 2, rect.height());
        if (option.checked)
            drawTick(painter, visualRect(option.direction, rect, column), itemColor(option),
                option.checkType == QStyleOptionMenuItem::Exclusive);
        left += points(markArea);
    }
    if (option.icon.isNull())
        return;
    const int side = points(indicatorSize);
    const QRect icon(left, rect.center().y() - side / 2, side, side);
    option.icon.paint(&painter, visualRect(option.direction, rect, icon), Qt::AlignCenter,
        isUsable(option) ? QIcon::Normal : QIcon::Disabled);
}

void KLVStyle::drawMenuItemTexts(
    QPainter &painter, const QStyleOptionMenuItem &option, const QRect &rect, int textOffset) const
{
    const QColor color = itemColor(option);
    const bool isSubmenu = option.menuItemType == QStyleOptionMenuItem::SubMenu;
    const int right = rect.right() + 1 - points(sideMargin) - (isSubmenu ? points(arrowArea) : 0);
    const int left = rect.left() + (isHeading(option) ? points(sideMargin) : textOffset);
    const QRect texts = visualRect(option.direction, rect, QRect(left, rect.top(), right - left, rect.height()));
    const auto flags = [&](Qt::Alignment alignment) {
        return Qt::AlignVCenter | Qt::TextSingleLine | static_cast<int>(visualAlignment(option.direction, alignment));
    };
    const int mnemonic = styleHint(SH_UnderlineShortcut, &option) != 0 ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
    const ItemTexts words = textsOf(option);

    painter.setFont(isHeading(option) ? headingFont() : option.font);
    painter.setPen(color);
    painter.drawText(texts, flags(Qt::AlignLeft) | mnemonic,
        painter.fontMetrics().elidedText(words.title, Qt::ElideRight, texts.width(), mnemonic));
    if (!words.shortcut.isEmpty()) {
        const bool isPlain = isUsable(option) && !option.state.testFlag(State_Selected);
        painter.setPen(isPlain ? KLVTheme(option.palette).dimText() : color);
        // Keys stand in their order, whichever way people read.
        painter.setLayoutDirection(Qt::LeftToRight);
        painter.drawText(texts, flags(Qt::AlignRight), words.shortcut);
        painter.setLayoutDirection(option.direction);
    }
    if (isSubmenu) {
        const QRect arrow(right, rect.top(), points(arrowArea), rect.height());
        drawArrow(painter, visualRect(option.direction, rect, arrow), color,
            option.direction == Qt::RightToLeft ? Qt::LeftArrow : Qt::RightArrow);
    }
}

QSize KLVStyle::menuItemSize(const QStyleOptionMenuItem &option, const QSize &contents, const QWidget *widget)
{
    if (isLine(option))
        return { contents.width(), points(separatorHeight) };
    const QFontMetrics metrics(isHeading(option) ? headingFont() : option.font);
    const ItemTexts texts = textsOf(option);
    int width
        = leftOfText(option, widget) + metrics.size(Qt::TextShowMnemonic, texts.title).width() + points(sideMargin);
    // The menu adds the width of the longest shortcut itself.
    if (!texts.shortcut.isEmpty())
        width += points(shortcutGap);
    if (qobject_cast<const QComboBox *>(widget))
        width += 2 * points(popUpMargin);
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
        width += points(arrowGap) + points(arrowArea);
    return { width, lineBox(itemHeight) };
}
