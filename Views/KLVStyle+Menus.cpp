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
    const int side = points(sideMargin);
    const auto placed = [&](const QRect &logical) { return visualRect(option.direction, rect, logical); };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isInPopUp)
        painter.fillRect(option.rect, theme.base());

    if (option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty()) {
        painter.fillRect(QRect(rect.left() + side, rect.center().y(), rect.width() - 2 * side, 1), theme.hairline());
        painter.restore();
        return;
    }

    const bool isHeading = option.menuItemType == QStyleOptionMenuItem::Separator;
    const bool isEnabled = option.state.testFlag(State_Enabled) && !isHeading;
    const bool isSelected = option.state.testFlag(State_Selected) && isEnabled;
    if (isSelected) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.accent());
        painter.drawRoundedRect(rect, points(itemRadius), points(itemRadius));
    } else if (option.state.testFlag(State_Selected)) {
        drawRing(painter, option, QRectF(rect), points(itemRadius));
    }
    const QColor text = isSelected ? KLVTheme::textOnBadge(theme.accent())
        : isHeading                ? theme.dimText()
        : isEnabled                ? option.palette.color(QPalette::Text)
                                   : option.palette.color(QPalette::Disabled, QPalette::Text);

    int left = rect.left() + side;
    if (option.menuHasCheckableItems) {
        const QRect mark = placed(QRect(left, rect.top(), points(markArea) - side / 2, rect.height()));
        if (option.checked)
            drawTick(painter, mark, text, option.checkType == QStyleOptionMenuItem::Exclusive);
        left += points(markArea);
    }
    if (!option.icon.isNull()) {
        const int iconSide = points(indicatorSize);
        const QRect icon = placed(QRect(left, rect.center().y() - iconSide / 2, iconSide, iconSide));
        option.icon.paint(&painter, icon, Qt::AlignCenter, isEnabled ? QIcon::Normal : QIcon::Disabled);
    }

    const ItemTexts texts = textsOf(option);
    const bool isSubmenu = option.menuItemType == QStyleOptionMenuItem::SubMenu;
    const int right = rect.right() + 1 - side - (isSubmenu ? points(arrowArea) : 0);
    const int textLeft = rect.left() + (isHeading ? side : leftOfText(option, widget));
    const QRect textRect = placed(QRect(textLeft, rect.top(), right - textLeft, rect.height()));
    const int mnemonic = styleHint(SH_UnderlineShortcut, &option) != 0 ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
    const int flags = Qt::AlignVCenter | Qt::TextSingleLine | mnemonic;
    painter.setFont(isHeading ? headingFont() : option.font);
    painter.setPen(text);
    const QString title = painter.fontMetrics().elidedText(texts.title, Qt::ElideRight, textRect.width(), flags);
    painter.drawText(textRect, flags | static_cast<int>(visualAlignment(option.direction, Qt::AlignLeft)), title);
    if (!texts.shortcut.isEmpty()) {
        painter.setPen(isSelected || !isEnabled ? text : theme.dimText());
        painter.drawText(textRect,
            Qt::AlignVCenter | Qt::TextSingleLine | static_cast<int>(visualAlignment(option.direction, Qt::AlignRight)),
            texts.shortcut);
    }
    if (isSubmenu) {
        const QRect arrow = placed(QRect(right, rect.top(), points(arrowArea), rect.height()));
        drawArrow(painter, arrow, text, option.direction == Qt::RightToLeft ? Qt::LeftArrow : Qt::RightArrow);
    }
    painter.restore();
}

QSize KLVStyle::menuItemSize(const QStyleOptionMenuItem &option, const QSize &contents, const QWidget *widget)
{
    if (option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty())
        return { contents.width(), points(separatorHeight) };
    const bool isHeading = option.menuItemType == QStyleOptionMenuItem::Separator;
    const QFontMetrics metrics(isHeading ? headingFont() : option.font);
    const ItemTexts texts = textsOf(option);
    int width
        = leftOfText(option, widget) + metrics.size(Qt::TextShowMnemonic, texts.title).width() + points(sideMargin);
    // The menu adds the width of the longest shortcut itself.
    if (!texts.shortcut.isEmpty())
        width += points(shortcutGap);
    if (qobject_cast<const QComboBox *>(widget))
        width += 2 * points(popUpMargin);
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu)
        width += points(arrowArea);
    return { width, lineBox(itemHeight) };
}
