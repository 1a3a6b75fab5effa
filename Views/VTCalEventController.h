// SPDX-License-Identifier: MIT
#pragma once

#include "VTCalCalendarItemController.h"

#include <CalEvent.h>

class KLVButton;
class KLVButtonMatrix;
class KLVIconsView;
class KLVImageView;
class KLVMiniBadge;

// The row of one event: title, dot, badges and icons above; location,
// attendees, link and notes below, shown while the row is selected.
//
// Lays itself out once, when its view is loaded, and observes nothing: a change
// in the store makes new rows. Outlets are null before the view is loaded.
class VTCalEventController final : public VTCalCalendarItemController
{
public:
    using VTCalCalendarItemController::VTCalCalendarItemController;

    KLVTextField *titleField() const { return m_titleField; }
    void setTitleField(KLVTextField *field) { m_titleField = field; }
    KLVImageView *calendarDot() const { return m_calendarDot; }
    void setCalendarDot(KLVImageView *dot) { m_calendarDot = dot; }
    KLVMiniBadge *startBadge() const { return m_startBadge; }
    void setStartBadge(KLVMiniBadge *badge) { m_startBadge = badge; }
    KLVMiniBadge *endBadge() const { return m_endBadge; }
    void setEndBadge(KLVMiniBadge *badge) { m_endBadge = badge; }
    KLVMiniBadge *allDayBadge() const { return m_allDayBadge; }
    void setAllDayBadge(KLVMiniBadge *badge) { m_allDayBadge = badge; }
    KLVIconsView *icons() const { return m_icons; }
    void setIcons(KLVIconsView *icons) { m_icons = icons; }
    KLVTextField *locationLabel() const { return m_locationLabel; }
    void setLocationLabel(KLVTextField *label) { m_locationLabel = label; }
    KLVTextField *locationField() const { return m_locationField; }
    void setLocationField(KLVTextField *field) { m_locationField = field; }
    KLVTextField *attendeesLabel() const { return m_attendeesLabel; }
    void setAttendeesLabel(KLVTextField *label) { m_attendeesLabel = label; }
    KLVButtonMatrix *attendeesMatrix() const { return m_attendeesMatrix; }
    void setAttendeesMatrix(KLVButtonMatrix *matrix) { m_attendeesMatrix = matrix; }
    KLVTextField *urlLabel() const { return m_urlLabel; }
    void setUrlLabel(KLVTextField *label) { m_urlLabel = label; }
    KLVButton *urlButton() const { return m_urlButton; }
    void setUrlButton(KLVButton *button) { m_urlButton = button; }
    KLVTextField *notesLabel() const { return m_notesLabel; }
    void setNotesLabel(KLVTextField *label) { m_notesLabel = label; }
    KLVTextField *notesField() const { return m_notesField; }
    void setNotesField(KLVTextField *field) { m_notesField = field; }

    // A mark for the answer, then the name.
    QString titleForAttendeeButton(const CalAttendee &attendee) const;
    // Opens the address of the attendee whose button was used last.
    void emailAttendee();

    QString accessibleText() const override;

protected:
    KLVAccordionViewItemPtr newItem() const override;
    std::shared_ptr<KLVView> loadView() override;

private:
    CalEvent &event() const;
    void connectOutlets(KLVView &row);
    void fillIn();
    void fillInBadges();
    void fillInIcons();
    void fillInAttendees();
    void awakeFromNib();
    void positionAndSizeFields();
    VTRowFrames loadedFrames() const;

    KLVTextField *m_titleField = nullptr;
    KLVImageView *m_calendarDot = nullptr;
    KLVMiniBadge *m_startBadge = nullptr;
    KLVMiniBadge *m_endBadge = nullptr;
    KLVMiniBadge *m_allDayBadge = nullptr;
    KLVIconsView *m_icons = nullptr;
    KLVTextField *m_locationLabel = nullptr;
    KLVTextField *m_locationField = nullptr;
    KLVTextField *m_attendeesLabel = nullptr;
    KLVButtonMatrix *m_attendeesMatrix = nullptr;
    KLVTextField *m_urlLabel = nullptr;
    KLVButton *m_urlButton = nullptr;
    KLVTextField *m_notesLabel = nullptr;
    KLVTextField *m_notesField = nullptr;
};
