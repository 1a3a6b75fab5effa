// SPDX-License-Identifier: MIT
#include "KLVStyle.h"

#include "KLVDrawings.h"
#include "KLVStyleShapes.h"
#include "KLVTableView.h"
#include "KLVTheme.h"

#include <QAbstractScrollArea>
#include <QDateTimeEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOption>
#include <QTextDocument>
#include <QTextEdit>

using namespace KLVStyleShapes;

namespace
{

// All in points.
constexpr qreal comboArrowArea = 26;
constexpr qreal spinButtonWidth = 18;
constexpr qreal scrollBarWidth = 10;
constexpr qreal tableFrame = 3; // inside it a square corner does not touch the rounded one
constexpr qreal checkBoxSpacing = 7;
constexpr qreal menuMargin = 4;
constexpr qreal spacing = 8;
constexpr qreal tipMargin = 4;

// A date picker keeps its figures from left to right everywhere; its arrow stands where those of the pop-ups around it
// do.
Qt::LayoutDirection directionOf(const QStyleOption &option, const QWidget *widget)
{
    const bool isPicker = qobject_cast<const QDateTimeEdit *>(widget);
    return isPicker && widget->parentWidget() ? widget->parentWidget()->layoutDirection() : option.direction;
}

// Its document has a margin of its own on all sides.
int sideOfTypingSurface(const QWidget *widget)
{
    const auto *plain = qobject_cast<const QPlainTextEdit *>(widget);
    const auto *rich = qobject_cast<const QTextEdit *>(widget);
    const QTextDocument *document = plain ? plain->document() : rich ? rich->document() : nullptr;
    return document ? std::max(0, points(fieldMargin) - points(tableFrame) - qRound(document->documentMargin())) : 0;
}

// A scroll bar has no trough: it stands on what it scrolls.
QPalette::ColorRole roleBehindScrollBar(const QWidget *bar)
{
    for (const QWidget *widget = bar; widget; widget = widget->parentWidget()) {
        if (const auto *area = qobject_cast<const QAbstractScrollArea *>(widget))
            return area->viewport()->backgroundRole();
    }
    return QPalette::Base;
}

} // namespace

void KLVStyle::drawComboBox(QPainter &painter, const QStyleOptionComboBox &option, const QWidget *widget) const
{
    drawField(painter, option, option.palette.color(QPalette::Button));
    if (!option.subControls.testFlag(SC_ComboBoxArrow))
        return;
    const QPalette::ColorGroup group = option.state.testFlag(State_Enabled) ? QPalette::Active : QPalette::Disabled;
    const QRect arrow = comboBoxRect(option, SC_ComboBoxArrow, widget);
    drawArrow(painter, arrow, option.palette.color(group, QPalette::ButtonText), Qt::DownArrow);
}

// A small icon with a gap beside it as between a box and its words, and the text; also the one that stands for no
// choice.
void KLVStyle::drawComboBoxLabel(QPainter &painter, const QStyleOptionComboBox &option, const QWidget *widget) const
{
    const QRect room = proxy()->subControlRect(CC_ComboBox, &option, SC_ComboBoxEditField, widget);
    const bool isEnabled = option.state.testFlag(State_Enabled);
    QRect text = room.adjusted(1, 0, 0, 0);
    if (!option.currentIcon.isNull()) {
        QRect icon(QPoint(), option.iconSize);
        icon.moveCenter(room.center());
        icon.moveLeft(text.left());
        option.currentIcon.paint(&painter, visualRect(option.direction, room, icon), Qt::AlignCenter,
            isEnabled ? QIcon::Normal : QIcon::Disabled);
        text.setLeft(icon.right() + 1 + points(checkBoxSpacing));
    }
    painter.save();
    painter.setPen(option.palette.color(isEnabled ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    const Qt::Alignment alignment = visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter);
    painter.drawText(visualRect(option.direction, room, text), static_cast<int>(alignment) | Qt::TextSingleLine,
        option.fontMetrics.elidedText(option.currentText, Qt::ElideRight, text.width()));
    painter.restore();
}

QRect KLVStyle::comboBoxRect(const QStyleOptionComplex &option, SubControl subControl, const QWidget *widget)
{
    const Qt::LayoutDirection direction = directionOf(option, widget);
    const QRect rect = option.rect;
    const int arrow = points(comboArrowArea);
    switch (subControl) {
    case SC_ComboBoxArrow:
        return visualRect(direction, rect, QRect(rect.right() + 1 - arrow, rect.top(), arrow, rect.height()));
    case SC_ComboBoxEditField:
        return visualRect(direction, rect, rect.adjusted(points(fieldMargin) - 1, 1, -arrow, -1));
    default:
        return rect;
    }
}

void KLVStyle::drawSpinBox(QPainter &painter, const QStyleOptionSpinBox &option, const QWidget *widget) const
{
    if (option.frame)
        drawField(painter, option, option.palette.color(QPalette::Button));
    if (option.buttonSymbols == QAbstractSpinBox::NoButtons)
        return;
    const auto draw = [&](SubControl part, QAbstractSpinBox::StepEnabledFlag step, Qt::ArrowType type) {
        const bool isEnabled = option.state.testFlag(State_Enabled) && option.stepEnabled.testFlag(step);
        const QColor color
            = option.palette.color(isEnabled ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
        drawArrow(painter, proxy()->subControlRect(CC_SpinBox, &option, part, widget), color, type);
    };
    draw(SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled, Qt::UpArrow);
    draw(SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled, Qt::DownArrow);
}

void KLVStyle::drawScrollBar(QPainter &painter, const QStyleOptionComplex &option, const QWidget *widget) const
{
    painter.fillRect(option.rect, option.palette.color(roleBehindScrollBar(widget)));
    const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(&option);
    if (!slider || slider->minimum >= slider->maximum)
        return;
    const QRect handle = proxy()->subControlRect(CC_ScrollBar, &option, SC_ScrollBarSlider, widget);
    KLVDrawings::drawScrollHandle(painter, KLVTheme(option.palette), handle, slider->orientation,
        option.state.testAnyFlags({ State_MouseOver, State_Sunken }));
}

void KLVStyle::drawFrame(QPainter &painter, const QStyleOption &option, const QWidget *widget)
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(widget);
    const QPalette::ColorRole role = area ? area->viewport()->backgroundRole() : QPalette::Window;
    drawField(painter, option, option.palette.color(role));
}

void KLVStyle::drawHeaderSection(QPainter &painter, const QStyleOption &option)
{
    const KLVTheme theme(option.palette);
    painter.fillRect(option.rect, theme.window());
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), theme.hairline());
}

QRect KLVStyle::subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const
{
    switch (element) {
    case SE_LineEditContents: {
        const QRect rect = QProxyStyle::subElementRect(element, option, widget);
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        // The line edit adds two pixels of its own.
        const int margin = frame && frame->lineWidth > 0 ? points(fieldMargin) - 2 - frame->lineWidth : 0;
        return rect.adjusted(margin, 0, -margin, 0);
    }
    case SE_ShapedFrameContents: {
        const int side = sideOfTypingSurface(widget);
        return QProxyStyle::subElementRect(element, option, widget).adjusted(side, 0, -side, 0);
    }
    case SE_CheckBoxFocusRect:
    case SE_RadioButtonFocusRect:
        return option->rect;
    default:
        return QProxyStyle::subElementRect(element, option, widget);
    }
}

QRect KLVStyle::subControlRect(
    ComplexControl control, const QStyleOptionComplex *option, SubControl subControl, const QWidget *widget) const
{
    if (control == CC_ComboBox)
        return comboBoxRect(*option, subControl, widget);
    if (const auto *spinBox = qstyleoption_cast<const QStyleOptionSpinBox *>(option); spinBox && control == CC_SpinBox)
        return spinBoxRect(*spinBox, subControl);
    if (const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option); slider && control == CC_ScrollBar)
        return scrollBarRect(*slider, subControl, widget);
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QRect KLVStyle::spinBoxRect(const QStyleOptionSpinBox &option, SubControl subControl)
{
    constexpr int inset = 2; // pixels between the buttons and the field's edge
    const bool hasButtons = option.buttonSymbols != QAbstractSpinBox::NoButtons;
    const int buttons = hasButtons ? points(spinButtonWidth) : 0;
    const int margin = points(fieldMargin) - inset;
    const QRect rect = option.rect;
    const int middle = rect.height() / 2;
    const int left = rect.right() + 1 - buttons - (hasButtons ? inset : 0);
    QRect part = rect;
    if (subControl == SC_SpinBoxUp)
        part = QRect(left, rect.top() + inset, buttons, middle - inset);
    else if (subControl == SC_SpinBoxDown)
        part = QRect(left, rect.top() + middle, buttons, rect.height() - middle - inset);
    else if (subControl == SC_SpinBoxEditField)
        part = QRect(margin, 1, left - 2 * margin, rect.height() - 2);
    return visualRect(option.direction, rect, part);
}

// No arrows at the ends of a scroll bar: the whole length is its groove.
QRect KLVStyle::scrollBarRect(const QStyleOptionSlider &option, SubControl subControl, const QWidget *widget) const
{
    const QRect rect = option.rect;
    const bool isHorizontal = option.orientation == Qt::Horizontal;
    const int length = isHorizontal ? rect.width() : rect.height();
    const qint64 range = static_cast<qint64>(option.maximum) - option.minimum;
    int handle = length;
    if (range > 0) {
        handle = static_cast<int>(static_cast<qint64>(option.pageStep) * length / (range + option.pageStep));
        handle = std::min(length, std::max(handle, pixelMetric(PM_ScrollBarSliderMin, &option, widget)));
    }
    const int start = sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, length - handle, option.upsideDown);
    const auto part = [&](int from, int to) {
        const QRect own = isHorizontal ? QRect(rect.left() + from, rect.top(), to - from, rect.height())
                                       : QRect(rect.left(), rect.top() + from, rect.width(), to - from);
        return visualRect(option.direction, rect, own);
    };
    switch (subControl) {
    case SC_ScrollBarGroove:
        return rect;
    case SC_ScrollBarSlider:
        return part(start, start + handle);
    case SC_ScrollBarSubPage:
        return part(0, start);
    case SC_ScrollBarAddPage:
        return part(start + handle, length);
    default:
        return {};
    }
}

QSize KLVStyle::sizeFromContents(
    ContentsType type, const QStyleOption *option, const QSize &size, const QWidget *widget) const
{
    switch (type) {
    case CT_PushButton:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option))
            return buttonSize(*button, widget);
        break;
    case CT_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option))
            return menuItemSize(*item, size, widget);
        break;
    case CT_LineEdit: {
        // A field with a larger font of its own, such as a title, is higher.
        constexpr qreal room = 5;
        return { size.width() + 2 * points(fieldMargin),
            std::max(lineBox(fieldHeight), size.height() + 2 * points(room)) };
    }
    case CT_ComboBox:
        return { size.width() + points(fieldMargin) + points(comboArrowArea), lineBox(fieldHeight) };
    case CT_SpinBox:
        return { size.width() + 2 * points(fieldMargin), lineBox(fieldHeight) };
    case CT_CheckBox:
    case CT_RadioButton: {
        const QSize base = QProxyStyle::sizeFromContents(type, option, size, widget);
        return { base.width() + 2, std::max(base.height(), points(indicatorSize) + points(focusWidth) * 2) };
    }
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

int KLVStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return points(indicatorSize);
    case PM_MessageBoxIconSize:
        return points(messageIconSize);
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return points(checkBoxSpacing);
    case PM_ScrollBarExtent:
        return points(scrollBarWidth);
    case PM_ScrollBarSliderMin:
        return points(2 * scrollBarWidth);
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ScrollView_ScrollBarOverlap:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_MenuPanelWidth:
        return 1;
    case PM_DefaultFrameWidth:
        return qobject_cast<const QAbstractScrollArea *>(widget) ? points(tableFrame) : 1;
    // The text of a row stands under that of the fields above; Qt adds one pixel.
    case PM_FocusFrameHMargin:
        return qobject_cast<const KLVTableView *>(widget) ? points(fieldMargin) - points(tableFrame) - 1
                                                          : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        return points(spacing);
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return points(menuMargin);
    case PM_ToolTipLabelFrameWidth:
        return points(tipMargin);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}
