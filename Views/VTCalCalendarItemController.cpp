// SPDX-License-Identifier: MIT
#include "VTCalCalendarItemController.h"

#include "KLVAccordionView.h"
#include "KLVButton.h"
#include "KLVText.h"
#include "KLVTextField.h"
#include "VTRowFonts.h"
#include "VTRowWords.h"

#include <Workspace.h>

#include <QApplication>

#include <cmath>

VTCalCalendarItemController::VTCalCalendarItemController(const VTRowEnvironment &environment)
    : m_environment(environment)
{
}

CalCalendarItem *VTCalCalendarItemController::calendarItem() const
{
    return dynamic_cast<CalCalendarItem *>(representedObject().get());
}

void VTCalCalendarItemController::openURL()
{
    const CalCalendarItem *const item = calendarItem();
    if (item && item->url())
        m_environment.workspace.openURL(*item->url());
}

float VTCalCalendarItemController::snugVerticalFitForTextField(const KLVTextField &field) const
{
    if (!field.stringValue())
        return 0.0F;
    const double width = KLVText::wrappingWidth(field.frame().width());
    return static_cast<float>(std::ceil(KLVText::wrappedHeight(*field.stringValue(), field.font(), width)));
}

QColor VTCalCalendarItemController::tintColor() const
{
    const CalCalendarItem *const item = calendarItem();
    return item && item->calendar() ? item->calendar()->color() : QColor(Qt::gray);
}

void VTCalCalendarItemController::updateForSelection()
{
    for (KLVView *detail : m_details)
        detail->setHidden(!isSelected());
}

QFont VTCalCalendarItemController::personsFont() const
{
    return accordionView() ? accordionView()->font() : QApplication::font();
}

double VTCalCalendarItemController::rowWidth() const
{
    constexpr double usualWidth = 340.0;
    return accordionView() ? accordionView()->width() : usualWidth;
}

void VTCalCalendarItemController::followReadingDirection(KLVView &row) const
{
    const bool isMirrored = accordionView() ? accordionView()->isRightToLeft() : QGuiApplication::isRightToLeft();
    if (!isMirrored)
        return;
    for (const auto &view : row.subviews()) {
        const QRectF frame = view->frame();
        view->setFrame(QRectF(rowWidth() - frame.right(), frame.y(), frame.width(), frame.height()));
    }
    row.setLayoutDirection(Qt::RightToLeft);
}

void VTCalCalendarItemController::setUpCaption(KLVTextField &caption, const char *text) const
{
    const VTRowFonts fonts((KLVMetrics(personsFont())));
    caption.setStringValue(QCoreApplication::translate("Vantle", text));
    caption.setFont(fonts.caption);
    caption.setBaselineFont(fonts.value);
    caption.setTextColor(KLVTextField::TextColor::Dim);
    caption.setAlignment(Qt::AlignRight);
    caption.setHidden(true);
}

void VTCalCalendarItemController::setUpTitle(KLVTextField &title, const QFont &font) const
{
    title.setFont(font);
    title.setLineBreak(KLVTextField::LineBreak::Wrapped);
    if (calendarItem()->title())
        title.setStringValue(KLVText::singleLine(*calendarItem()->title()));
}

void VTCalCalendarItemController::setUpNotes(KLVTextField &notes) const
{
    notes.setFont(VTRowFonts(KLVMetrics(personsFont())).value);
    notes.setLineBreak(KLVTextField::LineBreak::Wrapped);
    if (calendarItem()->notes())
        notes.setStringValue(KLVText::severalLines(*calendarItem()->notes()));
    notes.setHidden(true);
}

void VTCalCalendarItemController::setUpLink(KLVButton &button)
{
    button.setFont(VTRowFonts(KLVMetrics(personsFont())).value);
    button.setKind(KLVButton::Kind::Link);
    if (calendarItem()->url())
        button.setTitle(VTRowWords::link(*calendarItem()->url()));
    button.setAction([this] { openURL(); });
    button.setHidden(true);
}

void VTCalCalendarItemController::addDetail(std::initializer_list<KLVView *> views)
{
    m_details.insert(m_details.end(), views);
}
