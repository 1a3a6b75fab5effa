// SPDX-License-Identifier: MIT
#include "TwoStepItem.h"

#include <QDir>

using namespace Qt::StringLiterals;

QByteArray TwoStep::textOf(Kind kind)
{
    if (kind == Kind::New)
        return {};
    const QByteArray once = eventText("item", "Lunch", "20260311T110000Z",
        "DTEND:20260311T120000Z\r\nX-KEEP:1\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nTRIGGER:-PT5M\r\nEND:VALARM\r\n");
    if (kind == Kind::Once)
        return calendarText(once);
    const QByteArray series = eventText("item", "Lunch", "20260309T110000Z",
        "DTEND:20260309T120000Z\r\nRRULE:FREQ=DAILY;COUNT=6\r\nEXDATE:20260310T110000Z\r\nX-KEEP:1\r\n");
    return calendarText(series
        + eventText(
            "item", "Late lunch", "20260312T130000Z", "DTEND:20260312T140000Z\r\nRECURRENCE-ID:20260312T110000Z\r\n"));
}

std::unique_ptr<CalCalendarStore> TwoStep::storeWith(const CalendarFolder &folder, HookedCalls &calls)
{
    FolderCalendarStore::Options options;
    options.root = folder.root();
    options.watchesForChanges = false;
    std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
    backends.push_back(std::make_unique<FolderCalendarStore>(options, folder.clock(), calls));
    return std::make_unique<CalCalendarStore>(std::move(backends));
}

CalEventList TwoStep::eventsOf(const CalCalendarStore &store, QDate from, QDate to)
{
    return store.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
        from.startOfDay(), to.endOfDay(), store.calendars()));
}

QStringList TwoStep::titles(const CalCalendarStore &store)
{
    QStringList titles;
    for (const CalEventPtr &event : eventsOf(store, day.addDays(-10), day.addDays(10)))
        titles << event->title().value_or(QString());
    return titles;
}

CalEventPtr TwoStep::edited(const CalCalendarStore &store, Kind kind)
{
    CalEventPtr event;
    if (kind == Kind::New) {
        event = std::make_shared<CalEvent>();
        event->setCalendar(store.calendars().constFirst());
        event->setStartDate(QDateTime(day, QTime(12, 0)));
        event->setEndDate(QDateTime(day, QTime(13, 0)));
    } else {
        event = eventsOf(store).constFirst();
    }
    event->setTitle(u"Meal"_s);
    event->setStartDate(event->startDate().addSecs(3600));
    event->setEndDate(event->endDate().addSecs(3600));
    return event;
}

QStringList TwoStep::namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QStringList TwoStep::itemsOf(const CalendarFolder &folder)
{
    return namesIn(folder.path(u"home"_s)).filter(u".ics"_s);
}

QByteArray TwoStep::contentOf(const CalendarFolder &folder)
{
    const QStringList names = itemsOf(folder);
    return names.size() == 1 ? folder.read(u"home/"_s + names.constFirst()) : QByteArray();
}

QStringList TwoStep::journal()
{
    return namesIn(qEnvironmentVariable("XDG_STATE_HOME") + u"/vantle/saves"_s).filter(u".save"_s);
}

void TwoStep::fill(const CalendarFolder &folder, Kind kind)
{
    QDir().mkpath(folder.path(u"home"_s));
    if (kind != Kind::New)
        folder.write(fileName, textOf(kind));
}

QByteArray TwoStep::savedAtOnce(Kind kind)
{
    const CalendarFolder folder;
    fill(folder, kind);
    const auto store = storeOver(folder);
    StoreError error;
    if (!store->saveEvent_span_error(edited(*store, kind), CalSpanAllEvents, &error))
        qFatal("%s", qPrintable(error.message()));
    return contentOf(folder);
}

QByteArray TwoStep::withoutUid(const QByteArray &text)
{
    QByteArrayList lines = text.split('\n');
    lines.removeIf([](const QByteArray &line) { return line.startsWith("UID:"); });
    return lines.join('\n');
}
