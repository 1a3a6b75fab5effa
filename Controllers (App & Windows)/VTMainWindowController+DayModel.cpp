// SPDX-License-Identifier: MIT
#include "VTMainWindowController.h"

#include "VTSettings.h"

#include <CalCalendarStore.h>
#include <QDateTime+VTHelper.h>
#include <Termination.h>
#include <UserDefaults.h>

#include <QCoreApplication>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace
{

constexpr std::chrono::seconds refreshInterval { 10 };

const QString dateKey = u"date"_s;
const QString taskSortMethodKey = u"taskSortMethod"_s;

} // namespace

template <typename Value> void VTMainWindowController::assign(const QString &key, Value &field, const Value &value)
{
    willChangeValueForKey(key);
    field = value;
    didChangeValueForKey(key);
}

void VTMainWindowController::awakeFromNib()
{
    readSettings();
    setWeekStartDay(VTMonday);
    setDate(m_services.clock.now());
    observeSettings();
    connect(&m_services.store, &CalCalendarStore::notificationPosted, this, &VTMainWindowController::calStoreDidChange);
    connect(&m_services.store, &CalCalendarStore::loaded, this, &VTMainWindowController::storeWasLoaded);
    connect(&m_services.termination, &Termination::willTerminate, this, &VTMainWindowController::saveDefaults);
    setShowCalendarDrawer(m_services.defaults.boolForKey(VTShowCalendarDrawerKey));
    setUpLists();
    calStoreDidChange();
    for (const auto &key : { u"showHideDateBarMenuTitle"_s, u"showHideCalendarDrawerMenuTitle"_s }) {
        willChangeValueForKey(key);
        didChangeValueForKey(key);
    }
    selectFirstItem();
    armFirstSelection();
}

void VTMainWindowController::readSettings()
{
    const UserDefaults &defaults = m_services.defaults;
    setShowAllCompletedTasks(defaults.integerForKey(VTIncludeAllCompletedTasksKey) != 0);
    setHideTasksDueAfterThisWeek(defaults.integerForKey(VTRestrictTasksToCurrentWeekKey) != 0);
    setUnselectedCalendarsUID(defaults.arrayForKey(VTUnselectedCalendarsUIDKey));
    setTaskSortMethod(static_cast<qint32>(defaults.integerForKey(VTSelectedTaskSortMethodKey)));
}

void VTMainWindowController::observeSettings()
{
    for (const auto &key : { u"weekStartDay"_s, u"showAllCompletedTasks"_s, u"hideTasksDueAfterThisWeek"_s,
             u"unselectedCalendarsUID"_s, dateKey, taskSortMethodKey })
        addObserver_forKeyPath_options_context(this, key);
}

void VTMainWindowController::saveDefaults()
{
    UserDefaults &defaults = m_services.defaults;
    defaults.setBool_forKey(m_showAllCompletedTasks, VTIncludeAllCompletedTasksKey);
    defaults.setBool_forKey(m_hideTasksDueAfterThisWeek, VTRestrictTasksToCurrentWeekKey);
    defaults.setArray_forKey(m_unselectedCalendarsUID, VTUnselectedCalendarsUIDKey);
    defaults.setInteger_forKey(m_taskSortMethod, VTSelectedTaskSortMethodKey);
    defaults.setBool_forKey(m_showCalendarDrawer, VTShowCalendarDrawerKey);
}

void VTMainWindowController::observeValueForKeyPath_ofObject_change_context(
    const QString &keyPath, KeyValueObject * /*object*/, const KeyValueChange & /*change*/, void * /*context*/)
{
    const bool wasShown = selectedCalItem() != nullptr;
    refresh([&] {
        if (keyPath != taskSortMethodKey)
            updateCalItems();
        updateControls();
        sortTasks();
        // The selected item came into sight or went out of it: the lists are to show no other selection
        // than the one that commands act on.
        if ((selectedCalItem() != nullptr) != wasShown)
            setSelectedCalItemUID(m_selectedCalItemUID);
    });
}

void VTMainWindowController::setDateProperty(const QDateTime &date)
{
    assign(u"dateProperty"_s, m_dateProperty, date);
}

void VTMainWindowController::setDate(const QDateTime &date)
{
    // Another day is read from its beginning; a refetch of the same one stays where the person is.
    if (date.toLocalTime().date() != m_dateProperty.toLocalTime().date())
        scrollEventsToTop();

    willChangeValueForKey(dateKey);
    setDateProperty(date);
    updateDateRefresher();
    didChangeValueForKey(dateKey);
}

void VTMainWindowController::updateDateRefresher()
{
    // Whole seconds: an instant in the last fraction of the day still belongs to it. Else a tick
    // there would end the timer, and the window would not follow into the next day.
    const QDateTime now = m_services.clock.now();
    const qint64 second = m_dateProperty.toSecsSinceEpoch();
    const bool isToday
        = second >= firstSecondOfDay(now).toSecsSinceEpoch() && second <= lastSecondOfDay(now).toSecsSinceEpoch();

    if (!isToday)
        m_dateRefresher.reset();
    else if (!m_dateRefresher)
        m_dateRefresher = m_services.clock.repeat(refreshInterval, [this] { tick(); });
}

void VTMainWindowController::tick()
{
    const QScopedValueRollback guard(m_isTicking, true);
    setDateToNow();
}

void VTMainWindowController::setDateToNow(QObject * /*sender*/)
{
    setDate(m_services.clock.now());
}

void VTMainWindowController::setEvents(const CalEventList &events)
{
    assign(u"events"_s, m_events, events);
}

void VTMainWindowController::setTasks(const CalTaskList &tasks)
{
    assign(u"tasks"_s, m_tasks, tasks);
}

void VTMainWindowController::setUnselectedCalendarsUID(const std::optional<QStringList> &uids)
{
    assign(u"unselectedCalendarsUID"_s, m_unselectedCalendarsUID, uids);
}

void VTMainWindowController::setShowAllCompletedTasks(bool showAll)
{
    assign(u"showAllCompletedTasks"_s, m_showAllCompletedTasks, showAll);
}

void VTMainWindowController::setHideTasksDueAfterThisWeek(bool hide)
{
    assign(u"hideTasksDueAfterThisWeek"_s, m_hideTasksDueAfterThisWeek, hide);
}

void VTMainWindowController::setWeekStartDay(qint32 weekday)
{
    assign(u"weekStartDay"_s, m_weekStartDay, weekday);
}

void VTMainWindowController::setTaskSortMethod(qint32 method)
{
    assign(taskSortMethodKey, m_taskSortMethod, method);
}

void VTMainWindowController::setShowCalendarDrawer(bool show)
{
    assign(u"showCalendarDrawer"_s, m_showCalendarDrawer, show);
}

QString VTMainWindowController::firstEventUID() const
{
    return m_events.first()->uid();
}

std::optional<QString> VTMainWindowController::lastEventUID() const
{
    return m_events.isEmpty() ? std::nullopt : std::optional(m_events.last()->uid());
}

QString VTMainWindowController::firstTaskUID() const
{
    return m_tasks.first()->uid();
}

std::optional<QString> VTMainWindowController::lastTaskUID() const
{
    return m_tasks.isEmpty() ? std::nullopt : std::optional(m_tasks.last()->uid());
}

VTDayQuestion VTMainWindowController::dayQuestion() const
{
    return { m_dateProperty, m_weekStartDay, m_unselectedCalendarsUID, m_showAllCompletedTasks,
        m_hideTasksDueAfterThisWeek };
}

void VTMainWindowController::updateCalItems()
{
    const VTDayQuestion question = dayQuestion();
    setEvents(VTEventsOfDay(m_services.store, question));
    setTasks(VTTasksOfDay(m_services.store, question));
}

void VTMainWindowController::sortTasks()
{
    setTasks(VTSortedTasks(m_tasks, m_taskSortMethod));
}

void VTMainWindowController::calStoreDidChange()
{
    // The lists look at the selection anew when it is taken away and put back.
    refresh([this] {
        const auto selected = m_selectedCalItemUID;
        setSelectedCalItemUID(std::nullopt);
        updateCalItems();
        updateControls();
        sortTasks();
        setSelectedCalItemUID(selected);
    });

    if (m_firstSelectionIsArmed)
        selectFirstItem();
}

void VTMainWindowController::selectFirstItem()
{
    if (!m_events.isEmpty()) {
        setSelectedCalItemUID(firstEventUID());
        makeFirstResponder(eventsAccordion());
    } else if (!m_tasks.isEmpty()) {
        setSelectedCalItemUID(firstTaskUID());
        makeFirstResponder(tasksAccordion());
    } else {
        setSelectedCalItemUID(std::nullopt);
    }
}

void VTMainWindowController::armFirstSelection()
{
    if (m_services.store.isComplete())
        return;
    m_firstSelectionIsArmed = true;
    QCoreApplication::instance()->installEventFilter(this);
}

void VTMainWindowController::disarmFirstSelection()
{
    if (!m_firstSelectionIsArmed)
        return;
    m_firstSelectionIsArmed = false;
    QCoreApplication::instance()->removeEventFilter(this);
}

void VTMainWindowController::storeWasLoaded()
{
    calStoreDidChange();
    disarmFirstSelection();
}

// Hears of input to the whole application while the first selection is armed, and only then.
bool VTMainWindowController::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::Wheel:
        disarmFirstSelection();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
