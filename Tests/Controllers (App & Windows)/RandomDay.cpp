// SPDX-License-Identifier: MIT
#include "RandomDay.h"

#include <KLVAccordionView.h>
#include <KLVPopUpButton.h>

#include <QLineEdit>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

constexpr int daysOfTwoWeeks = 14;
constexpr qint64 secondsPerHour = 3600;

} // namespace

RandomDay::RandomDay()
    : m_controller(m_fixture.wakeWithWindow())
{
    // What is drawn says nothing here.
    m_fixture.window->setUpdatesEnabled(false);
    m_fixture.backend().setCompletionInstant(m_fixture.clock.now());
}

void RandomDay::begin(quint32 seed)
{
    m_random.seed(seed);
    m_story.clear();
    m_fixture.backend().removeAllItems();
    m_stored.clear();
    m_day = today;
    for (int count = m_random.bounded(4); count > 0; --count)
        addEvent();
    for (int count = m_random.bounded(4); count > 0; --count)
        addTask();
    if (chance(40))
        addSeries();
    m_showsWork = true;
    m_controller.setUnselectedCalendarsUID(std::nullopt);
    m_controller.setDate(QDateTime(m_day, QTime(12, 0)));
    m_selected = std::nullopt;
    m_controller.setSelectedCalItemUID(m_selected);
    refetch();
}

void RandomDay::step()
{
    ++m_commands;
    using Step = void (RandomDay::*)();
    static constexpr std::array<std::pair<int, Step>, 11> steps { {
        { 18, &RandomDay::select },
        { 20, &RandomDay::move },
        { 14, &RandomDay::tick },
        { 10, &RandomDay::remove },
        { 8, &RandomDay::undo },
        { 8, &RandomDay::edit },
        { 3, &RandomDay::makeNew },
        { 6, &RandomDay::showAnotherDay },
        { 3, &RandomDay::hideOrShowACalendar },
        { 2, &RandomDay::sortOtherwise },
        { 8, &RandomDay::changeSomething },
    } };
    int number = m_random.bounded(100);
    for (const auto &[share, step] : steps) {
        number -= share;
        if (number < 0)
            return (this->*step)();
    }
}

// --- Changes of others ---

QDate RandomDay::randomDay()
{
    return mondayOf(today).addDays(m_random.bounded(daysOfTwoWeeks) - daysOfTwoWeeks / 2);
}

QString RandomDay::newTitle()
{
    return u"title %1"_s.arg(++m_lastNumber, 7, 10, QChar(u'0'));
}

QString RandomDay::randomCalendar()
{
    return chance(50) ? home : work;
}

void RandomDay::store(Item item)
{
    item.version = ++m_lastNumber;
    m_stored.insert(item.uid, item);
}

void RandomDay::addEvent()
{
    Item item;
    item.plainUid = item.uid = u"event-%1"_s.arg(++m_lastNumber);
    item.calendar = randomCalendar();
    item.title = newTitle();
    item.start = QDateTime(chance(70) ? m_day : randomDay(), QTime(8 + m_random.bounded(4), 0));
    m_fixture.backend().addEvent(
        item.calendar, makeEvent(item.uid, item.title, item.start, item.start.addSecs(secondsPerHour)));
    store(item);
    tell(u"others add "_s + item.uid);
}

void RandomDay::addSeries()
{
    const QString plainUid = u"series-%1"_s.arg(++m_lastNumber);
    const QString calendar = randomCalendar();
    const QString title = newTitle();
    for (int day = -1; day <= 1; ++day) {
        Item item;
        item.plainUid = plainUid;
        item.isSeries = true;
        item.calendar = calendar;
        item.title = title;
        item.start = QDateTime(today.addDays(day), QTime(10, 0));
        const CalEventPtr event = makeOccurrence(plainUid, title, item.start, item.start.addSecs(secondsPerHour));
        m_fixture.backend().addEvent(calendar, event);
        const CalCalendarStore &all = m_fixture.calendars.store();
        for (const CalEventPtr &stored :
            all.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
                item.start, item.start, all.calendars()))) {
            if (stored->origin().plainUid == plainUid)
                item.uid = stored->uid();
        }
        store(item);
    }
    tell(u"others add "_s + plainUid);
}

void RandomDay::addTask()
{
    Item item;
    item.isEvent = false;
    item.plainUid = item.uid = u"task-%1"_s.arg(++m_lastNumber);
    item.calendar = randomCalendar();
    item.title = newTitle();
    m_fixture.backend().addTask(item.calendar, makeTask(item.uid, item.title));
    store(item);
    tell(u"others add "_s + item.uid);
}

// As another program: the item is stored anew, with another title. A series goes as a whole.
void RandomDay::changeAtOthers(const QString &plainUid)
{
    QList<Item> items;
    for (const Item &item : std::as_const(m_stored)) {
        if (item.plainUid == plainUid)
            items.append(item);
    }
    if (items.isEmpty() || items.first().isSeries)
        return removeAtOthers(plainUid);
    Item item = items.first();
    item.title = newTitle();
    item.isDone = false;
    m_fixture.backend().removeItem(plainUid);
    if (item.isEvent)
        m_fixture.backend().addEvent(
            item.calendar, makeEvent(item.uid, item.title, item.start, item.start.addSecs(secondsPerHour)));
    else
        m_fixture.backend().addTask(item.calendar, makeTask(item.uid, item.title));
    store(item);
    tell(u"others change "_s + plainUid);
}

void RandomDay::removeAtOthers(const QString &plainUid)
{
    m_fixture.backend().removeItem(plainUid);
    m_stored.removeIf([&plainUid](const auto &entry) { return entry.value().plainUid == plainUid; });
    tell(u"others remove "_s + plainUid);
}

void RandomDay::changeSomething()
{
    const QStringList uids = m_stored.keys();
    const int kind = m_random.bounded(4);
    if (kind == 0 || uids.isEmpty())
        addEvent();
    else if (kind == 1)
        addTask();
    else if (kind == 2)
        changeAtOthers(m_stored.value(uids.at(m_random.bounded(static_cast<int>(uids.size())))).plainUid);
    else
        removeAtOthers(m_stored.value(uids.at(m_random.bounded(static_cast<int>(uids.size())))).plainUid);
    if (chance(60))
        notify();
}

// --- Commands ---

QStringList RandomDay::column() const
{
    QStringList uids;
    for (const Item &item : m_events)
        uids.append(item.uid);
    for (const Item &item : m_tasks)
        uids.append(item.uid);
    return uids;
}

int RandomDay::selectedPlace() const
{
    return m_selected ? static_cast<int>(column().indexOf(*m_selected)) : -1;
}

RandomDay::Item *RandomDay::shownItem(const QString &uid)
{
    for (QList<Item> *list : { &m_events, &m_tasks }) {
        const auto found = std::ranges::find(*list, uid, &Item::uid);
        if (found != list->end())
            return &*found;
    }
    return nullptr;
}

// Whether the store still has what the list shows.
bool RandomDay::isCurrent(const Item &shown) const
{
    return m_stored.value(shown.uid).version == shown.version;
}

void RandomDay::select()
{
    const QStringList uids = column();
    if (uids.isEmpty() || chance(10)) {
        m_selected = chance(50) ? std::nullopt : std::optional(u"gone"_s);
        m_controller.setSelectedCalItemUID(m_selected);
    } else {
        const int place = m_random.bounded(static_cast<int>(uids.size()));
        m_selected = uids.at(place);
        const bool isEvent = place < m_events.size();
        KeyValueObjectPtr item;
        if (isEvent)
            item = m_controller.events().at(place);
        else
            item = m_controller.tasks().at(place - m_events.size());
        m_controller.accordionView_mouseDown_forRepresentedObject(
            isEvent ? m_controller.eventsAccordion() : m_controller.tasksAccordion(),
            { .button = Qt::LeftButton, .modifiers = {}, .clickCount = 1, .location = {}, .globalPosition = {} }, item);
    }
    tell(u"select "_s + m_selected.value_or(u"nothing"_s));
}

void RandomDay::move()
{
    const QStringList uids = column();
    const int place = selectedPlace();
    const bool isUp = chance(50);
    const auto last = static_cast<int>(uids.size()) - 1;
    if (place < 0 && uids.isEmpty()) {
        m_selected = std::nullopt;
        ++m_beeps;
    } else if (place < 0) {
        m_selected = isUp ? uids.last() : uids.first();
    } else if (place == (isUp ? 0 : last)) {
        // Down from the last event with no to-do beneath it is given up without a beep.
        m_beeps += isUp || !m_tasks.isEmpty() ? 1 : 0;
    } else {
        m_selected = uids.at(isUp ? place - 1 : place + 1);
    }
    tell(isUp ? u"up"_s : u"down"_s);
    if (isUp)
        m_controller.moveUp();
    else
        m_controller.moveDown();
}

void RandomDay::tick()
{
    tell(u"return"_s);
    Item *const item = m_selected ? shownItem(*m_selected) : nullptr;
    m_controller.insertNewline();
    if (!item || item->isEvent)
        return;
    if (!isCurrent(*item))
        return notify(); // refused, without a word; the next refetch shows what is stored
    item->isDone = !item->isDone;
    store(*item);
    item->version = m_stored.value(item->uid).version;
    if (chance(50))
        notify();
}

void RandomDay::remove()
{
    tell(u"delete"_s);
    const Item *const item = m_selected ? shownItem(*m_selected) : nullptr;
    m_controller.delete_();
    if (!item)
        return;
    if (!isCurrent(*item)) {
        ++m_alerts;
        return notify();
    }
    m_removed = { m_stored.take(item->uid) };
    if (chance(50))
        notify();
}

void RandomDay::undo()
{
    tell(u"undo"_s);
    m_controller.undo();
    for (const Item &item : std::exchange(m_removed, {}))
        m_stored.insert(item.uid, item);
    if (chance(50))
        notify();
}

void RandomDay::edit()
{
    tell(u"edit"_s);
    m_controller.editSelectedItem();
    Item *const item = m_selected ? shownItem(*m_selected) : nullptr;
    if (!item) {
        if (m_controller.eventEditController()->isOpen() || m_controller.taskEditController()->isOpen())
            m_trouble = u"a sheet without an item"_s;
        return;
    }
    Item edited = *item;
    editOpenSheet(edited, false);
}

void RandomDay::makeNew()
{
    Item item;
    item.isEvent = chance(50);
    item.calendar = home;
    item.start = m_fixture.clock.now().addSecs(secondsPerHour);
    tell(item.isEvent ? u"new event"_s : u"new to-do"_s);
    if (item.isEvent)
        m_controller.showEventEditSheetWithNewEvent();
    else
        m_controller.showTaskEditSheetWithNewTask();
    editOpenSheet(item, true);
}

// Types a title, perhaps chooses a calendar and a day; others perhaps change something meanwhile.
void RandomDay::editOpenSheet(Item &item, bool isNew)
{
    VTEventEditController &events = *m_controller.eventEditController();
    VTTaskEditController &tasks = *m_controller.taskEditController();
    VTCalItemEditController &sheet
        = item.isEvent ? static_cast<VTCalItemEditController &>(events) : static_cast<VTCalItemEditController &>(tasks);
    if (!sheet.isOpen()) {
        m_trouble = u"no sheet"_s;
        return;
    }
    item.title = newTitle();
    sheet.titleField()->setText(item.title);
    if (chance(40)) {
        item.calendar = randomCalendar();
        sheet.calendarsPopUp()->choose(sheet.calendarsPopUp()->findText(item.calendar));
    }
    qint64 shift = 0;
    if (item.isEvent && chance(40)) {
        const QDateTime start = item.start.addDays(m_random.bounded(5) - 2);
        shift = item.start.secsTo(start);
        item.start = start;
        events.startDatePicker()->setDateTime(start);
        events.endDatePicker()->setDateTime(start.addSecs(secondsPerHour));
    }
    if (chance(30))
        changeSomething();
    if (sheet.titleField()->text() != item.title)
        m_trouble = u"what was typed is gone"_s;

    if (chance(25)) {
        tell(u"cancel"_s);
        item.isEvent ? events.cancelOperation() : tasks.cancelOperation();
    } else {
        tell(u"save"_s);
        const bool isRefused = !isNew && !isCurrent(item);
        item.isEvent ? events.insertNewline() : tasks.insertNewline();
        if (isRefused) {
            m_alerts += item.isEvent ? 2 : 1; // an event is saved in two steps
        } else {
            if (isNew)
                item.plainUid = item.uid = sheet.originalCalItem()->uid();
            store(item);
            if (item.isSeries)
                bumpSeries(item, shift);
        }
    }
    notify();
}

// An edit of a series goes to all that is left of it.
void RandomDay::bumpSeries(const Item &edited, qint64 shift)
{
    for (Item &item : m_stored) {
        if (item.plainUid != edited.plainUid || item.uid == edited.uid)
            continue;
        item.title = edited.title;
        item.calendar = edited.calendar;
        item.start = item.start.addSecs(shift);
        item.version = ++m_lastNumber;
    }
}

void RandomDay::showAnotherDay()
{
    m_day = chance(40) ? today : randomDay();
    tell(u"show "_s + m_day.toString(Qt::ISODate));
    m_controller.setDate(QDateTime(m_day, QTime(12, 0)));
    refetch();
}

void RandomDay::hideOrShowACalendar()
{
    m_showsWork = !m_showsWork;
    tell(m_showsWork ? u"show Work"_s : u"hide Work"_s);
    m_controller.setUnselectedCalendarsUID(m_showsWork ? std::nullopt : std::optional(QStringList(work)));
    refetch();
}

void RandomDay::sortOtherwise()
{
    m_sortMethod = (m_sortMethod + 1) % 3;
    tell(u"sort"_s);
    m_controller.setTaskSortMethod(m_sortMethod);
    sortShownTasks();
}
