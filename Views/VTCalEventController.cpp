// SPDX-License-Identifier: MIT
#include "VTCalEventController.h"

#include "KLVButtonMatrix.h"
#include "KLVIconsView.h"
#include "KLVImageView.h"
#include "KLVMiniBadge.h"
#include "KLVText.h"
#include "VTEventRowLayout.h"
#include "VTRowFonts.h"
#include "VTRowWords.h"
#include "ui_VTCalEvent.h"

#include <CalCalendar+VTHelper.h>
#include <CalEvent+VTHelper.h>
#include <Clock.h>
#include <Localization.h>
#include <Workspace.h>

#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr double titleTop = 7.0;

const VTRowTemplate &rowTemplate()
{
    static const VTRowTemplate read = [] {
        QWidget interface;
        Ui::VTCalEvent().setupUi(&interface);
        return VTRowTemplate(interface);
    }();
    return read;
}

QString accessibleIconText(const QString &icon)
{
    if (icon == u"repeat"_s)
        return QCoreApplication::translate("Vantle", "repeats");
    if (icon == u"alarm"_s)
        return QCoreApplication::translate("Vantle", "has an alarm");
    if (icon == u"attendees"_s)
        return QCoreApplication::translate("Vantle", "has attendees");
    if (icon == u"notes"_s)
        return QCoreApplication::translate("Vantle", "has notes");
    return QCoreApplication::translate("Vantle", "has a link");
}

} // namespace

CalEvent &VTCalEventController::event() const
{
    return dynamic_cast<CalEvent &>(*representedObject());
}

KLVAccordionViewItemPtr VTCalEventController::newItem() const
{
    return std::make_shared<VTCalEventController>(environment());
}

std::shared_ptr<KLVView> VTCalEventController::loadView()
{
    auto row = std::make_shared<KLVView>(u"VTCalEvent"_s);
    if (!dynamic_cast<const CalEvent *>(representedObject().get()))
        return row;
    connectOutlets(*row);
    fillIn();
    awakeFromNib();
    followReadingDirection(*row);
    return row;
}

// Details come in reading order: so does the keyboard through their controls.
void VTCalEventController::connectOutlets(KLVView &row)
{
    m_titleField = row.addSubview<KLVTextField>(u"titleField"_s);
    m_calendarDot = row.addSubview<KLVImageView>(u"calendarDot"_s);
    m_startBadge = row.addSubview<KLVMiniBadge>(u"startBadge"_s);
    m_endBadge = row.addSubview<KLVMiniBadge>(u"endBadge"_s);
    m_allDayBadge = row.addSubview<KLVMiniBadge>(u"allDayBadge"_s);
    m_icons = row.addSubview<KLVIconsView>(u"icons"_s);
    m_locationLabel = row.addSubview<KLVTextField>(u"locationLabel"_s);
    m_locationField = row.addSubview<KLVTextField>(u"locationField"_s);
    m_attendeesLabel = row.addSubview<KLVTextField>(u"attendeesLabel"_s);
    m_attendeesMatrix = row.addSubview<KLVButtonMatrix>(u"attendeesMatrix"_s);
    m_urlLabel = row.addSubview<KLVTextField>(u"urlLabel"_s);
    m_urlButton = row.addSubview<KLVButton>(u"urlButton"_s);
    m_notesLabel = row.addSubview<KLVTextField>(u"notesLabel"_s);
    m_notesField = row.addSubview<KLVTextField>(u"notesField"_s);
}

void VTCalEventController::fillIn()
{
    const VTRowFonts fonts((KLVMetrics(personsFont())));
    setUpTitle(*m_titleField, fonts.eventTitle);
    m_titleField->setStruckOut(event().isCancelled());
    fillInBadges();
    fillInIcons();

    setUpCaption(*m_locationLabel, QT_TRANSLATE_NOOP("Vantle", "location"));
    m_locationField->setFont(fonts.value);
    m_locationField->setHidden(true);
    if (event().location())
        m_locationField->setStringValue(KLVText::singleLine(*event().location()));
    setUpCaption(*m_attendeesLabel, QT_TRANSLATE_NOOP("Vantle", "attendees"));
    setUpCaption(*m_urlLabel, QT_TRANSLATE_NOOP("Vantle", "url"));
    setUpLink(*m_urlButton);
    setUpCaption(*m_notesLabel, QT_TRANSLATE_NOOP("Vantle", "notes"));
    setUpNotes(*m_notesField);
}

void VTCalEventController::fillInBadges()
{
    const VTRowFonts fonts((KLVMetrics(personsFont())));
    for (KLVMiniBadge *badge : { m_startBadge, m_endBadge, m_allDayBadge })
        badge->setFont(fonts.badge);
    m_allDayBadge->setHidden(!event().isAllDay());
    m_startBadge->setHidden(event().isAllDay());
    m_endBadge->setHidden(event().isAllDay());

    m_allDayBadge->setStringValue(QCoreApplication::translate("Vantle", "all day"));
    if (event().isAllDay())
        return;
    const QLocale locale;
    const QDateTime shown = environment().shownDate ? environment().shownDate() : QDateTime();
    m_startBadge->setStringValue(VTRowWords::startBadge(event().startDate(), shown, locale));
    m_endBadge->setStringValue(VTRowWords::endBadge(event().startDate(), event().endDate(), shown, locale));
    m_endBadge->setHidden(m_endBadge->stringValue()->isEmpty());
}

void VTCalEventController::fillInIcons()
{
    QStringList icons;
    if (event().recurrenceRule())
        icons.append(u"repeat"_s);
    if (!event().alarms().isEmpty())
        icons.append(u"alarm"_s);
    if (event().attendees() && !event().attendees()->isEmpty())
        icons.append(u"attendees"_s);
    if (!event().notes().value_or(QString()).isEmpty())
        icons.append(u"notes"_s);
    if (event().url())
        icons.append(u"link"_s);
    m_icons->setIcons(icons);
}

void VTCalEventController::awakeFromNib()
{
    const CalCalendarPtr calendar = event().calendar();
    if (calendar)
        m_calendarDot->setImage([calendar](qreal ratio) { return colorDot(*calendar, ratio); }, calendar->color());
    for (KLVMiniBadge *badge : { m_startBadge, m_endBadge, m_allDayBadge })
        badge->setBackgroundColor(tintColor());
    positionAndSizeFields();
}

// The frames of the interface file at this width and font, before the content moves them.
VTRowFrames VTCalEventController::loadedFrames() const
{
    constexpr double narrowing = 40.0;

    const KLVMetrics metrics(personsFont());
    const double badgePadding = metrics.length(6);
    const double badgeGap = metrics.length(4);
    const double titleGap = metrics.length(8);
    const VTRowFonts fonts(metrics);
    const double rowHeight = rowTemplate().height();
    VTRowFrames frames = rowTemplate().frames(rowWidth(), metrics);
    widenCaptions(frames);

    // Times of this locale may need more room than those that the file was drawn with.
    const QLocale locale;
    double badgeWidth = frames.value(u"endBadge"_s).width();
    for (const QTime &time : { QTime(10, 0), QTime(22, 0) }) {
        const double needed = KLVMiniBadge::textWidth(VTRowWords::time(time, locale), fonts.badge);
        badgeWidth = std::max(badgeWidth, std::ceil(needed + 2 * badgePadding));
    }
    // A day stands there instead of a time that lies beyond the shown day, and may be wider.
    const auto widthOf = [&](const KLVMiniBadge &badge) {
        const double needed = KLVMiniBadge::textWidth(badge.stringValue().value_or(QString()), fonts.badge);
        return std::max(badgeWidth, std::ceil(needed + 2 * badgePadding));
    };
    const double startWidth = widthOf(*m_startBadge);
    const double endWidth = widthOf(*m_endBadge);
    const double allDayWidth = std::max(frames.value(u"allDayBadge"_s).width(),
        std::ceil(KLVMiniBadge::textWidth(*m_allDayBadge->stringValue(), fonts.badge) + 2 * badgePadding));
    const double right = frames.value(u"endBadge"_s).right();
    const double firstLine = titleTop + KLVText::lineHeight(fonts.eventTitle) / 2;
    const double badgeHeight = metrics.height(frames.value(u"endBadge"_s).height(), fonts.badge);
    const auto placeBadge = [&](const QString &name, double badgeRight, double width) {
        frames[name] = VTRowGeometry::centred(QRectF(badgeRight - width, 0, width, badgeHeight), rowHeight, firstLine);
    };
    placeBadge(u"endBadge"_s, right, endWidth); // NOLINT(readability-suspicious-call-argument)
    // An event without length has one badge, at the right.
    placeBadge(u"startBadge"_s, m_endBadge->isHidden() ? right : right - endWidth - badgeGap, startWidth);
    placeBadge(u"allDayBadge"_s, right, allDayWidth);

    QRectF &dot = frames[u"calendarDot"_s];
    dot.setHeight(metrics.length(dot.height()));
    dot = VTRowGeometry::centred(dot, rowHeight, firstLine);
    QRectF &title = frames[u"titleField"_s];
    title.setWidth(right - startWidth - endWidth - badgeGap - titleGap - title.x() + narrowing);

    frames[u"locationField"_s].setHeight(metrics.height(frames.value(u"locationField"_s).height(), fonts.value));
    frames[u"locationLabel"_s].setHeight(frames.value(u"locationField"_s).height());
    frames[u"urlButton"_s].setHeight(metrics.height(frames.value(u"urlButton"_s).height(), fonts.value));
    // Captions stand where their value's line does, whatever the size: the layout lifts them by 4 and drops them by 2.
    frames[u"urlLabel"_s].setHeight(frames.value(u"urlButton"_s).height() - 8.0);
    frames[u"attendeesMatrix"_s].setHeight(metrics.height(frames.value(u"attendeesMatrix"_s).height(), fonts.value));
    frames[u"attendeesLabel"_s].setHeight(frames.value(u"attendeesMatrix"_s).height() - 4.0);
    frames[u"notesLabel"_s].setHeight(
        std::max(frames.value(u"notesLabel"_s).height(), KLVText::lineHeight(fonts.value)));
    return frames;
}

void VTCalEventController::fillInAttendees()
{
    m_attendeesMatrix->removeRow(0);
    const QFont font = VTRowFonts(KLVMetrics(personsFont())).value;
    const QList<CalAttendee> attendees = event().attendees().value_or(QList<CalAttendee>());
    for (const CalAttendee &attendee : attendees) {
        const int row = m_attendeesMatrix->numberOfRows();
        KLVButton *const cell = m_attendeesMatrix->addRow(font);
        cell->setTitle(titleForAttendeeButton(attendee));
        if (attendee.address.scheme().compare(u"mailto"_s, Qt::CaseInsensitive) != 0) {
            cell->setEnabled(false);
            continue;
        }
        cell->setAction([this, row] {
            m_attendeesMatrix->setSelectedRow(row);
            emailAttendee();
        });
    }
    m_attendeesMatrix->sizeToCells();
}

void VTCalEventController::positionAndSizeFields()
{
    VTRowFrames frames = loadedFrames();
    m_titleField->setFrame(frames.value(u"titleField"_s));
    m_notesField->setFrame(frames.value(u"notesField"_s));
    m_attendeesMatrix->setFrame(frames.value(u"attendeesMatrix"_s));
    m_attendeesMatrix->setCellHeight(frames.value(u"attendeesMatrix"_s).height());

    VTEventRowContent content;
    if (event().notes())
        content.notesHeight = snugVerticalFitForTextField(*m_notesField);
    content.hasUrl = event().url().has_value();
    content.hasAttendees = event().attendees().has_value();
    content.hasLocation = VTLocationIsAvalible(event());
    if (event().title())
        content.titleHeight = snugVerticalFitForTextField(*m_titleField);
    m_attendeesMatrix->setHidden(true);
    m_attendeesLabel->setHidden(true);
    if (content.hasAttendees) {
        fillInAttendees();
        frames[u"attendeesMatrix"_s] = m_attendeesMatrix->frame();
    }

    const VTRowLayout layout = layOutEventRow(frames, content);
    setSelectedHeight(layout.selectedHeight);
    setUnselectedHeight(layout.unselectedHeight);

    // The title area keeps its distance from the top, the details theirs from the bottom of the
    // selected row; from here on everything is pinned to the top.
    const auto place = [&](std::initializer_list<KLVView *> views, double height) {
        for (KLVView *view : views)
            view->setFrame(VTRowGeometry::flipped(layout.frames.value(view->name()), height));
    };
    place({ m_titleField, m_calendarDot, m_startBadge, m_endBadge, m_allDayBadge, m_icons }, rowTemplate().height());
    place({ m_locationLabel, m_locationField, m_attendeesLabel, m_attendeesMatrix, m_urlLabel, m_urlButton,
              m_notesLabel, m_notesField },
        static_cast<double>(layout.selectedHeight));

    if (content.hasLocation)
        addDetail({ m_locationLabel, m_locationField });
    if (content.hasAttendees)
        addDetail({ m_attendeesLabel, m_attendeesMatrix });
    if (content.hasUrl)
        addDetail({ m_urlLabel, m_urlButton });
    if (content.notesHeight)
        addDetail({ m_notesLabel, m_notesField });
}

QString VTCalEventController::titleForAttendeeButton(const CalAttendee &attendee) const
{
    QString mark = u"?  "_s;
    if (attendee.status == CalAttendeeStatusNeedsAction)
        mark = u"!  "_s;
    else if (attendee.status == CalAttendeeStatusAccepted)
        mark = u"\u2713  "_s;
    else if (attendee.status == CalAttendeeStatusDeclined)
        mark = u"\u2716  "_s;
    const QString name = attendee.commonName ? KLVText::singleLine(*attendee.commonName)
                                             : localizedString(QT_TRANSLATE_NOOP("Vantle", "Anon"));
    return QString(mark + name);
}

void VTCalEventController::emailAttendee()
{
    const int row = m_attendeesMatrix->selectedRow();
    const QList<CalAttendee> attendees = event().attendees().value_or(QList<CalAttendee>());
    if (row >= 0 && row < attendees.size())
        environment().workspace.openURL(attendees.at(row).address);
}

QString VTCalEventController::accessibleText() const
{
    if (!m_titleField || !representedObject())
        return {};
    QStringList parts { m_titleField->stringValue().value_or(QString()) };
    if (event().isAllDay())
        parts.append(*m_allDayBadge->stringValue());
    else if (m_endBadge->isHidden())
        parts.append(*m_startBadge->stringValue());
    else
        //: The start and the end of an event, for screen readers
        parts.append(QCoreApplication::translate("Vantle", "%1 to %2")
                         .arg(*m_startBadge->stringValue(), *m_endBadge->stringValue()));
    if (event().calendar())
        parts.append(KLVText::singleLine(event().calendar()->title()));
    if (event().isCancelled())
        parts.append(QCoreApplication::translate("Vantle", "cancelled"));
    for (const QString &icon : m_icons->icons())
        parts.append(accessibleIconText(icon));
    parts.removeAll(QString());
    return parts.join(u", "_s);
}
