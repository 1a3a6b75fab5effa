// SPDX-License-Identifier: MIT
#include "VTMainWindowController.h"

#include "VTMainWindow.h"

#include <CalCalendarStore+VTHelper.h>
#include <CalCalendarStore.h>
#include <DesktopAlerts.h>
#include <KLVAccordionView.h>
#include <KLVCalendarsDrawer.h>
#include <KLVColoredButtonCell.h>
#include <KLVDatePicker.h>
#include <Workspace.h>

#include <QCoreApplication>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

QString remarkOn(const CalCalendar &calendar)
{
    switch (calendar.availability()) {
    case CalCalendar::Availability::CredentialsRequired:
        return QCoreApplication::translate("Vantle",
            "The account asks for its password. Until it is given in the account settings, "
            "this calendar may be out of date.");
    case CalCalendar::Availability::Offline:
        return QCoreApplication::translate(
            "Vantle", "The server is not reached. Until it is, this calendar may be out of date.");
    case CalCalendar::Availability::Available:
        break;
    }
    return {};
}

bool asksForCredentials(const CalCalendarPtr &calendar)
{
    return calendar->availability() == CalCalendar::Availability::CredentialsRequired;
}

} // namespace

void VTMainWindowController::connectDrawer()
{
    const KLVCalendarsDrawer *drawer = m_window->calendarsDrawer();
    connect(drawer->allButton(), &QPushButton::clicked, this, [this] { selectAllCalendars(); });
    connect(drawer->noneButton(), &QPushButton::clicked, this, [this] { unselectAllCalendars(); });
    connect(drawer->accountSettingsButton(), &QPushButton::clicked, this, [this] { showAccountSettings(); });
    connect(drawer->textDatePicker(), &KLVDatePicker::dateChanged, this, &VTMainWindowController::showPickedDate);
    connect(drawer->textDatePicker(), &KLVDatePicker::focusLeft, this, &VTMainWindowController::updateDatePicker);
    connect(drawer, &KLVCalendarsDrawer::cancelled, this, [this] { makeFirstResponder(listOfSelection()); });
    drawer->textDatePicker()->setDisplayFormat(VTPatternForTyping(QLocale().dateFormat(QLocale::ShortFormat)));
    drawer->calendarsTable()->setDataSource(this);
    m_bindings.push_back(
        std::make_unique<KeyValueBinding>(*this, u"showCalendarDrawer"_s, [this](const QVariant &show) {
            if (m_window)
                m_window->setDrawerVisible(show.toBool());
        }));
}

KLVCheckBoxTable *VTMainWindowController::calendarsTable() const
{
    return m_window ? m_window->calendarsDrawer()->calendarsTable() : nullptr;
}

KLVDatePicker *VTMainWindowController::textDatePicker() const
{
    return m_window ? m_window->calendarsDrawer()->textDatePicker() : nullptr;
}

void VTMainWindowController::toogleCalendarDrawer(QObject * /*sender*/)
{
    willChangeValueForKey(u"showHideCalendarDrawerMenuTitle"_s);
    setShowCalendarDrawer(!m_showCalendarDrawer);
    didChangeValueForKey(u"showHideCalendarDrawerMenuTitle"_s);
}

QString VTMainWindowController::showHideCalendarDrawerMenuTitle() const
{
    return m_showCalendarDrawer ? QCoreApplication::translate("Vantle", "Hide Calendars Drawer")
                                : QCoreApplication::translate("Vantle", "Show Calendars Drawer");
}

void VTMainWindowController::jumpToDate(QObject * /*sender*/)
{
    disarmFirstSelection();
    setShowCalendarDrawer(true);
    if (KLVDatePicker *picker = textDatePicker())
        picker->setFocus(Qt::ShortcutFocusReason);
}

void VTMainWindowController::selectAllCalendars(QObject * /*sender*/)
{
    disarmFirstSelection();
    setUnselectedCalendarsUID(std::nullopt);
}

void VTMainWindowController::unselectAllCalendars(QObject * /*sender*/)
{
    disarmFirstSelection();
    setUnselectedCalendarsUID(calendarsUID(m_services.store));
}

int VTMainWindowController::numberOfRowsInTableView(KLVCheckBoxTable * /*view*/)
{
    return static_cast<int>(m_services.store.calendars().size());
}

bool VTMainWindowController::tableView_objectValueForRow(KLVCheckBoxTable * /*view*/, int row)
{
    const QString uid = m_services.store.calendars().at(row)->uid();
    return !VTIsUnselected(m_services.store, uid, m_unselectedCalendarsUID.value_or(QStringList()));
}

void VTMainWindowController::tableView_setObjectValue_forRow(KLVCheckBoxTable * /*view*/, bool /*value*/, int row)
{
    disarmFirstSelection();
    const QString uid = m_services.store.calendars().at(row)->uid();
    QStringList unselected = m_unselectedCalendarsUID.value_or(QStringList());
    const QStringList identifiers = VTIdentifiersOfCalendar(m_services.store, uid);
    if (unselected.removeIf([&](const QString &each) { return identifiers.contains(each); }) == 0)
        unselected.append(uid);
    setUnselectedCalendarsUID(unselected);
}

void VTMainWindowController::tableView_willDisplayCell_forRow(
    KLVCheckBoxTable * /*view*/, KLVColoredButtonCell &cell, int row)
{
    const CalCalendarPtr calendar = m_services.store.calendars().at(row);
    cell.setImageTintColor(calendar->color());
    cell.setTitle(calendar->title());
    cell.setRemark(remarkOn(*calendar));
    cell.setRepresentedObject(std::const_pointer_cast<CalCalendar>(calendar));
}

void VTMainWindowController::reloadCalendars()
{
    calendarsTable()->reloadData();
    m_window->calendarsDrawer()->accountSettingsButton()->setVisible(
        std::ranges::any_of(m_services.store.calendars(), asksForCredentials));
}

void VTMainWindowController::showAccountSettings()
{
    if (m_services.workspace.openAccountSettings())
        return;
    m_services.alerts.runModal(QCoreApplication::translate("Vantle",
        "Vantle cannot open the account settings of this desktop.\n"
        "Give the account's password in the program that manages your calendars."));
}

// The clock never writes into a picker that the person is in; nor does anything into a date half typed.
void VTMainWindowController::updateDatePicker() const
{
    KLVDatePicker *picker = textDatePicker();
    const QDate day = date().toLocalTime().date();
    if (picker->date() == day || (picker->hasFocus() && (m_isTicking || picker->hasPendingEdit())))
        return;
    const QSignalBlocker blocker(picker);
    picker->setDate(day);
}

void VTMainWindowController::showPickedDate(const QDate &day)
{
    disarmFirstSelection();
    setDate(QDateTime(day, date().toLocalTime().time()));
}

KLVAccordionView *VTMainWindowController::listOfSelection() const
{
    const auto task = std::dynamic_pointer_cast<CalTask>(selectedCalItem());
    return task ? tasksAccordion() : eventsAccordion();
}
