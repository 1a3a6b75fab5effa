// SPDX-License-Identifier: MIT
#include "KLVStyle.h"

#include "KLVMetrics.h"
#include "KLVStyleShapes.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QDialog>
#include <QFontMetrics>
#include <QPainter>
#include <QStyleOption>

using namespace KLVStyleShapes;

namespace
{

// All in points.
constexpr qreal dialogButtonHeight = 30;
constexpr qreal dialogButtonMargin = 15; // beside the text
constexpr qreal buttonHeight = 26;
constexpr qreal buttonMargin = 11;
constexpr qreal signButtonWidth = 28;
constexpr qreal iconGap = 6;
constexpr int textSize = 13;
constexpr int textWeight = 600;
constexpr qreal indicatorRadius = 4;

constexpr double pressedShare = 0.16; // of the text's colour on the face
constexpr double hoverShare = 0.05;

QFont buttonFont()
{
    return KLVMetrics(QApplication::font()).font(textSize, textWeight);
}

bool isOfDialog(const QStyleOptionButton &option, const QWidget *widget)
{
    return option.features.testFlag(QStyleOptionButton::DefaultButton)
        || (widget && qobject_cast<const QDialog *>(widget->window()));
}

QColor touched(const QColor &face, const QColor &text, const QStyleOption &option)
{
    if (!option.state.testFlag(QStyle::State_Enabled))
        return face;
    if (option.state.testAnyFlags({ QStyle::State_Sunken, QStyle::State_On }))
        return KLVTheme::blended(text, pressedShare, face);
    return option.state.testFlag(QStyle::State_MouseOver) ? KLVTheme::blended(text, hoverShare, face) : face;
}

struct IndicatorColors {
    QColor face, line, mark;
};

IndicatorColors indicatorColors(const QStyleOption &option)
{
    const KLVTheme theme(option.palette);
    const bool isOn = option.state.testAnyFlags({ QStyle::State_On, QStyle::State_NoChange });
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    QColor face = isOn ? theme.accent() : option.palette.color(QPalette::Button);
    QColor line = isOn ? theme.accent() : theme.controlLine();
    if (!isEnabled) {
        face = halfway(face, theme.window());
        line = halfway(line, theme.window());
    }
    face = touched(face, theme.text(), option.state.testFlag(QStyle::State_On) ? QStyleOption() : option);
    return { face, line, KLVTheme::textOn(face) };
}

// In the middle of what it is given, a square.
QRectF indicatorRect(const QStyleOption &option)
{
    const int side = std::min({ points(indicatorSize), option.rect.width(), option.rect.height() });
    QRect square(0, 0, side, side);
    square.moveCenter(option.rect.center());
    return QRectF(square);
}

} // namespace

void KLVStyle::drawButtonFace(QPainter &painter, const QStyleOption &option, bool isDefault)
{
    const KLVTheme theme(option.palette);
    const bool isEnabled = option.state.testFlag(State_Enabled);
    const bool isAccented = isDefault && isEnabled;
    const QColor face = isAccented ? theme.accent() : option.palette.color(QPalette::Button);
    const QColor text = isAccented ? KLVTheme::textOn(face) : option.palette.color(QPalette::ButtonText);
    const QColor line = isAccented ? face : theme.controlLine();
    const QRectF rect(option.rect);
    const qreal radius = points(cornerRadius);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isEnabled ? line : halfway(line, theme.window()), 1));
    painter.setBrush(isEnabled ? touched(face, text, option) : halfway(face, theme.window()));
    painter.drawPath(outline(rect, radius));
    if (option.state.testFlag(State_HasFocus) && isAccented) {
        // The accent would not be seen on itself.
        const qreal width = points(focusWidth);
        const qreal inset = 1.5 * width;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(text, width));
        painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    } else if (option.state.testFlag(State_HasFocus)) {
        drawRing(painter, option, rect, radius);
    }
    painter.restore();
}

void KLVStyle::drawButtonLabel(QPainter &painter, const QStyleOptionButton &option, const QWidget * /*widget*/) const
{
    const bool isEnabled = option.state.testFlag(State_Enabled);
    const bool isDefault = option.features.testFlag(QStyleOptionButton::DefaultButton);
    const QColor color = !isEnabled ? option.palette.color(QPalette::Disabled, QPalette::ButtonText)
        : isDefault                 ? KLVTheme::textOn(KLVTheme(option.palette).accent())
                                    : option.palette.color(QPalette::ButtonText);
    painter.save();
    painter.setFont(buttonFont());
    painter.setPen(color);
    const QFontMetrics metrics(buttonFont());
    QRect rect = option.rect;
    if (!option.icon.isNull()) {
        const int textWidth = option.text.isEmpty() ? 0 : metrics.horizontalAdvance(option.text) + points(iconGap);
        QRect iconRect(QPoint(), option.iconSize);
        iconRect.moveCenter(rect.center());
        iconRect.moveLeft(rect.left() + (rect.width() - textWidth - iconRect.width()) / 2);
        option.icon.paint(&painter, visualRect(option.direction, rect, iconRect), Qt::AlignCenter,
            isEnabled ? QIcon::Normal : QIcon::Disabled);
        rect.setLeft(rect.left() + iconRect.width() + points(iconGap));
        rect = visualRect(option.direction, option.rect, rect);
    }
    int flags = Qt::AlignCenter | Qt::TextSingleLine;
    flags |= styleHint(SH_UnderlineShortcut, &option) != 0 ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
    painter.drawText(rect, flags, metrics.elidedText(option.text, Qt::ElideRight, rect.width(), flags));
    painter.restore();
}

QSize KLVStyle::buttonSize(const QStyleOptionButton &option, const QWidget *widget)
{
    const bool isWide = isOfDialog(option, widget);
    const QFontMetrics metrics(buttonFont());
    const int textWidth = metrics.size(Qt::TextShowMnemonic, option.text).width();
    const int iconWidth = option.icon.isNull() ? 0 : option.iconSize.width();
    const bool isSign = option.text.size() <= 1;
    const int gap = iconWidth > 0 && !option.text.isEmpty() ? points(iconGap) : 0;
    const int margin = points(isWide ? dialogButtonMargin : buttonMargin);
    const int width
        = isSign ? std::max(points(signButtonWidth), textWidth + iconWidth) : textWidth + gap + iconWidth + 2 * margin;
    return { width, lineBox(isWide && !isSign ? dialogButtonHeight : buttonHeight) };
}

void KLVStyle::drawCheckIndicator(QPainter &painter, const QStyleOption &option)
{
    const QRectF rect = indicatorRect(option);
    const IndicatorColors colors = indicatorColors(option);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.line, 1));
    painter.setBrush(colors.face);
    painter.drawPath(outline(rect, points(indicatorRadius)));

    const qreal unit = rect.width() / indicatorSize;
    painter.translate(rect.topLeft());
    painter.scale(unit, unit);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.mark, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (option.state.testFlag(State_On))
        painter.drawPolyline(QPolygonF({ { 3.6, 7.4 }, { 6.0, 9.8 }, { 10.4, 4.6 } }));
    else if (option.state.testFlag(State_NoChange))
        painter.drawLine(QPointF(4, 7), QPointF(10, 7));
    painter.restore();
}

void KLVStyle::drawRadioIndicator(QPainter &painter, const QStyleOption &option)
{
    const QRectF rect = indicatorRect(option).adjusted(0.5, 0.5, -0.5, -0.5);
    const IndicatorColors colors = indicatorColors(option);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.line, 1));
    painter.setBrush(colors.face);
    painter.drawEllipse(rect);
    if (option.state.testFlag(State_On)) {
        constexpr qreal dotShare = 0.2; // of the side
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.mark);
        painter.drawEllipse(rect.center(), dotShare * rect.width(), dotShare * rect.width());
    }
    painter.restore();
}
