// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "CorpusFiles.h"
#include "TestRegistry.h"

#include <ContentLines.h>
#include <ICalendarReader.h>
#include <PropertyLine.h>
#include <ZoneRegistry.h>

#include <QSet>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int fewestFiles = 300;

const QSet<QByteArray> &linesOfAChangedTitle()
{
    static const QSet<QByteArray> names { "SUMMARY", "DTSTAMP", "LAST-MODIFIED", "SEQUENCE" };
    return names;
}

// Every line but those that a change of the title of these components may touch, to the byte.
QByteArrayList otherLines(const QByteArray &text, const QSet<int> &components)
{
    const ICalendar::ContentLines lines(text);
    QByteArrayList others;
    for (const ICalendar::ContentLine &line : lines.lines()) {
        const bool mayChange = components.contains(line.component)
            && linesOfAChangedTitle().contains(ICalendar::propertyName(lines.unfolded(line)));
        if (!mayChange)
            others << text.sliced(line.begin, line.end - line.begin);
    }
    return others;
}

// What a change of the item's title concerns: its own component; of a series also those of its exceptions that share
// its title.
QSet<int> componentsOf(const ICalendar::Item &item, const ICalendar::Document &document)
{
    QSet<int> components { item.component };
    for (const ICalendar::Item &each : document.items) {
        if (!item.repetition->recurrenceId && each.repetition->recurrenceId && each.uid == item.uid
            && each.summary == item.summary)
            components << each.component;
    }
    return components;
}

// The valid files of the corpus that hold an event that has a start, or a to-do.
QStringList validFiles()
{
    QStringList paths = calendarFilesBelow(QStringLiteral(VANTLE_CORPUS));
    paths.removeIf([](const QString &path) { return !path.contains(u"/valid/"_s); });
    return paths;
}

bool canBeShown(const ICalendar::Item &item)
{
    return item.kind == ICalendar::Item::Kind::Task || item.start;
}

// The first record of the file, of the item that stands first in it and can be shown.
CalCalendarItemPtr recordOf(const FolderCalendarStore &store, const ICalendar::Item &item)
{
    if (item.kind == ICalendar::Item::Kind::Task)
        return allTasks(store).value(0);
    const auto local = ICalendar::ZoneRegistry::localZone();
    const QDateTime start = QDateTime::fromSecsSinceEpoch(item.start->toUtc(*local));
    // The first occurrence may be excluded.
    const CalEventList events = store.events(start, start.addYears(10), store.calendars());
    const auto found = std::ranges::find_if(events, [&](const CalEventPtr &event) {
        const bool isAtItsTime = !item.repetition->recurrenceId || event->startDate() == start;
        return isAtItsTime && event->title().value_or(QString()) == item.summary;
    });
    return found == events.end() ? nullptr : *found;
}

// An exception by itself, everything else as a whole.
Result<void, StoreError> save(FolderCalendarStore &store, const CalCalendarItemPtr &record, bool isException)
{
    if (const auto task = std::dynamic_pointer_cast<CalTask>(record))
        return store.saveTask(*task);
    return store.saveEvent(
        *std::dynamic_pointer_cast<CalEvent>(record), isException ? CalSpanThisEvent : CalSpanAllEvents);
}

} // namespace

// Calendar files of other projects: what Vantle does not change stays as it is, to the byte.
class RoundTripTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangedTitleChangesFourLinesAtMost();

private:
    // What is wrong after the title of that item of the text was changed; empty when nothing is. No lines but those
    // four, and of these components alone, may be any different.
    static QString faultAfterAChangeOf(const ICalendar::Item &item, const QSet<int> &components,
        const ICalendar::Document &document, const QByteArray &bytes);
};

QString RoundTripTest::faultAfterAChangeOf(const ICalendar::Item &item, const QSet<int> &components,
    const ICalendar::Document &document, const QByteArray &bytes)
{
    const CalendarFolder folder;
    folder.write(u"c/sample.ics"_s, bytes);
    const auto store = folder.openWithoutWatching();
    if (folder.read(u"c/sample.ics"_s) != bytes)
        return u"reading alone has changed it"_s;
    const CalCalendarItemPtr record = recordOf(*store, item);
    if (!record)
        return u"the item is not shown"_s;

    const QString title = u"Changed, to \"this\"; über\\den"_s;
    record->setTitle(title);
    if (const auto saved = save(*store, record, item.repetition->recurrenceId.has_value()); !saved)
        return u"refused: "_s + saved.error().reason;

    const QByteArray after = folder.read(u"c/sample.ics"_s);
    ICalendar::ZoneRegistry zones;
    const ICalendar::Document changed = ICalendar::readDocument(after, zones);
    if (changed.items.size() != document.items.size())
        return u"it holds another number of items"_s;
    if (changed.items.at(&item - document.items.constData()).summary != title)
        return u"the title is not in it"_s;
    return otherLines(after, components) == otherLines(bytes, components) ? QString() : u"other lines have changed"_s;
}

// An item whose change concerns one component alone: of a series that shares its title with an exception, that one.
void RoundTripTest::aChangedTitleChangesFourLinesAtMost()
{
    QStringList faults;
    int held = 0;
    int shared = 0;
    ICalendar::ZoneRegistry zones;
    for (const QString &path : validFiles()) {
        const QByteArray bytes = bytesOf(path);
        const ICalendar::Document document = ICalendar::readDocument(bytes, zones);
        const auto item = std::ranges::find_if(document.items, canBeShown);
        if (item == document.items.end())
            continue;
        ++held;
        const QSet<int> concerned = componentsOf(*item, document);
        const auto single = std::ranges::find_if(document.items, [&](const ICalendar::Item &each) {
            return concerned.size() == 1 ? each.component == item->component
                                         : each.repetition->recurrenceId && concerned.contains(each.component);
        });
        QString fault = faultAfterAChangeOf(*single, { single->component }, document, bytes);
        if (concerned.size() > 1 && fault.isEmpty()) {
            ++shared;
            fault = faultAfterAChangeOf(*item, concerned, document, bytes);
        }
        if (!fault.isEmpty())
            faults << path + u": "_s + fault;
    }

    qInfo("%d files with an event or a to-do, %d well; of them %d series also as a whole", held,
        held - int(faults.size()), shared);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
    QVERIFY(held >= fewestFiles);
}

VANTLE_TEST(RoundTripTest)
#include "RoundTripTest.moc"
