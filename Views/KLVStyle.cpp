// SPDX-License-Identifier: MIT
#include "KLVStyle.h"

#include "KLVStyleShapes.h"
#include "KLVTheme.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFrame>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTextEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace KLVStyleShapes;

namespace
{

constexpr qreal arrowWidth = 8;
constexpr qreal arrowHeight = 5;

// Text is typed on the same face as in a field of one line.
QWidget *typingSurface(QWidget *widget)
{
    if (auto *edit = qobject_cast<QTextEdit *>(widget))
        return edit->viewport();
    if (auto *edit = qobject_cast<QPlainTextEdit *>(widget))
        return edit->viewport();
    return nullptr;
}

} // namespace

KLVStyle::KLVStyle()
    : QProxyStyle(QStyleFactory::create(u"fusion"_s))
{
}

bool KLVStyle::dressApplication()
{
    if (qobject_cast<KLVStyle *>(QApplication::style()))
        return true;
    if (QApplication::style()->name() != u"fusion"_s)
        return false;
    QApplication::setStyle(new KLVStyle); // owned by the application
    return true;
}

void KLVStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    if (QWidget *const surface = typingSurface(widget))
        surface->setBackgroundRole(QPalette::Button);
    // The frame around a list says that the keyboard is in it; the list itself repaints its inside only.
    if (qobject_cast<QAbstractScrollArea *>(widget))
        widget->installEventFilter(this);
}

void KLVStyle::unpolish(QWidget *widget)
{
    if (QWidget *const surface = typingSurface(widget))
        surface->setBackgroundRole(QPalette::Base);
    widget->removeEventFilter(this);
    QProxyStyle::unpolish(widget);
}

bool KLVStyle::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        static_cast<QWidget *>(watched)->update();
    return QProxyStyle::eventFilter(watched, event);
}

void KLVStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case PE_PanelButtonCommand:
    case PE_PanelButtonTool:
    case PE_PanelButtonBevel: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        return drawButtonFace(
            *painter, *option, button && button->features.testFlag(QStyleOptionButton::DefaultButton));
    }
    case PE_FrameDefaultButton:
    case PE_FrameGroupBox:
    case PE_FrameButtonBevel:
        return;
    case PE_IndicatorCheckBox:
        return drawCheckIndicator(*painter, *option);
    case PE_IndicatorRadioButton:
        return drawRadioIndicator(*painter, *option);
    case PE_PanelLineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        // Inside a pop-up or a stepper the field around it has been drawn.
        if (frame && frame->lineWidth > 0)
            drawField(*painter, *option, option->palette.color(QPalette::Button));
        return;
    }
    case PE_FrameLineEdit:
        return;
    case PE_Frame:
        return drawFrame(*painter, *option, widget);
    case PE_PanelMenu:
    case PE_FrameMenu:
        return drawMenuPanel(*painter, *option);
    case PE_PanelTipLabel:
        painter->fillRect(option->rect, option->palette.color(QPalette::ToolTipBase));
        painter->setPen(QPen(KLVTheme(option->palette).controlLine(), 1));
        painter->drawRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    case PE_FrameFocusRect:
        return drawRing(*painter, *option, QRectF(option->rect), points(4));
    case PE_IndicatorArrowDown:
        // One in the corner of a button that opens a menu would touch its text.
        if (qobject_cast<const QToolButton *>(widget))
            return;
        return drawArrow(*painter, option->rect, option->palette.color(QPalette::ButtonText), Qt::DownArrow);
    case PE_IndicatorArrowUp:
        return drawArrow(*painter, option->rect, option->palette.color(QPalette::ButtonText), Qt::UpArrow);
    case PE_IndicatorArrowLeft:
        return drawArrow(*painter, option->rect, option->palette.color(QPalette::ButtonText), Qt::LeftArrow);
    case PE_IndicatorArrowRight:
        return drawArrow(*painter, option->rect, option->palette.color(QPalette::ButtonText), Qt::RightArrow);
    default:
        return QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void KLVStyle::drawControl(
    ControlElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case CE_PushButtonBevel:
        return drawPrimitive(PE_PanelButtonCommand, option, painter, widget);
    case CE_PushButtonLabel:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option))
            return drawButtonLabel(*painter, *button, widget);
        break;
    case CE_PushButton:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            drawControl(CE_PushButtonBevel, option, painter, widget);
            return drawButtonLabel(*painter, *button, widget);
        }
        break;
    case CE_ComboBoxLabel:
        if (const auto *comboBox = qstyleoption_cast<const QStyleOptionComboBox *>(option);
            comboBox && !comboBox->editable)
            return drawComboBoxLabel(*painter, *comboBox, widget);
        break;
    case CE_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option))
            return drawMenuItem(*painter, *item, widget);
        break;
    case CE_MenuEmptyArea:
        painter->fillRect(option->rect, option->palette.color(QPalette::Base));
        return;
    case CE_HeaderSection:
    case CE_HeaderEmptyArea:
        return drawHeaderSection(*painter, *option);
    case CE_ShapedFrame: {
        // The list of a pop-up stands on the panel of a menu.
        if (widget && widget->inherits("QComboBoxPrivateContainer"))
            return;
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (frame && frame->frameShape == QFrame::StyledPanel)
            return drawFrame(*painter, *option, widget);
        break;
    }
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void KLVStyle::drawComplexControl(
    ComplexControl control, const QStyleOptionComplex *option, QPainter *painter, const QWidget *widget) const
{
    if (const auto *comboBox = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        comboBox && control == CC_ComboBox)
        return drawComboBox(*painter, *comboBox, widget);
    if (const auto *spinBox = qstyleoption_cast<const QStyleOptionSpinBox *>(option); spinBox && control == CC_SpinBox)
        return drawSpinBox(*painter, *spinBox, widget);
    if (control == CC_ScrollBar)
        return drawScrollBar(*painter, *option, widget);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int KLVStyle::styleHint(
    StyleHint hint, const QStyleOption *option, const QWidget *widget, QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_Widget_Animation_Duration:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ScrollBar_Transient:
        return 0;
    // Cancel, then the default button at the right.
    case SH_DialogButtonLayout:
        return QDialogButtonBox::GnomeLayout;
    case SH_ComboBox_PopupFrameStyle:
        return static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Plain);
    case SH_ToolTipLabel_Opacity:
        return 255;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

void KLVStyle::drawField(QPainter &painter, const QStyleOption &option, const QColor &face)
{
    const KLVTheme theme(option.palette);
    const bool isEnabled = option.state.testFlag(State_Enabled);
    const QRectF rect(option.rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isEnabled ? theme.controlLine() : halfway(theme.controlLine(), theme.window()), 1));
    painter.setBrush(isEnabled ? face : halfway(face, theme.window()));
    painter.drawPath(outline(rect, points(cornerRadius)));
    painter.restore();
    if (option.state.testFlag(State_HasFocus) && isEnabled)
        drawRing(painter, option, rect, points(cornerRadius));
}

void KLVStyle::drawRing(QPainter &painter, const QStyleOption &option, const QRectF &rect, qreal radius)
{
    const KLVTheme theme(option.palette);
    const qreal width = points(focusWidth);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.focusLine(), width));
    const qreal inset = width / 2;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

void KLVStyle::drawArrow(QPainter &painter, const QRectF &rect, const QColor &color, Qt::ArrowType type)
{
    const qreal width = points(arrowWidth);
    const qreal height = points(arrowHeight);
    QPolygonF triangle({ { -width / 2, -height / 2 }, { width / 2, -height / 2 }, { 0, height / 2 } });
    constexpr qreal quarterTurn = 90;
    QTransform turn;
    turn.translate(rect.center().x(), rect.center().y());
    turn.rotate(type == Qt::UpArrow  ? 2 * quarterTurn
            : type == Qt::LeftArrow  ? quarterTurn
            : type == Qt::RightArrow ? -quarterTurn
                                     : 0);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(turn.map(triangle));
    painter.restore();
}
