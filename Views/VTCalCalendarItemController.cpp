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

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

// Asked for by every row; measured anew only when the font or the language is another one.
double widestCaption(const QFont &font)
{
    static QStringList measured;
    static double widest = 0;
    QStringList captions { font.key() };
    for (const char *caption : { QT_TRANSLATE_NOOP("Vantle", "location"), QT_TRANSLATE_NOOP("Vantle", "attendees"),
             QT_TRANSLATE_NOOP("Vantle", "url"), QT_TRANSLATE_NOOP("Vantle", "notes"),
             QT_TRANSLATE_NOOP("Vantle", "completed") })
        captions.append(QCoreApplication::translate("Vantle", caption));
    if (captions == measured)
        return widest;
    measured = captions;
    widest = 0;
    for (const QString &caption : captions.sliced(1))
        widest = std::max(widest, std::ceil(KLVText::width(caption, font)));
    return widest;
}

} // namespace

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

void VTCalCalendarItemController::widenCaptions(VTRowFrames &frames) const
{
    constexpr double least = 100.0; // of the row's width, for the values
    const double widest = widestCaption(VTRowFonts(KLVMetrics(personsFont())).caption);
    const double room = frames.value(u"notesField"_s).width() - least;
    const double more = std::min(widest - frames.value(u"notesLabel"_s).width(), room);
    if (more <= 0)
        return;
    for (auto frame = frames.begin(); frame != frames.end(); ++frame) {
        if (frame.key().endsWith(u"Label"_s))
            frame->setWidth(frame->width() + more);
    }
    for (const QString &value :
        { u"locationField"_s, u"attendeesMatrix"_s, u"urlButton"_s, u"notesField"_s, u"completedField"_s }) {
        if (frames.contains(value))
            frames[value].setLeft(frames.value(value).left() + more);
    }
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
