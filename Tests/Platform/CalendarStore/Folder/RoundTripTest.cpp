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

// The item's own component; of a series also those of its exceptions that share its title.
QSet<int> componentsOf(const ICalendar::Item &item, const ICalendar::Document &document)
{
    QSet<int> components { item.component };
    for (const ICalendar::Item &each : document.items) {
        if (!item.recurrenceId && each.recurrenceId && each.uid == item.uid && each.summary == item.summary)
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
        const bool isAtItsTime = !item.recurrenceId || event->startDate() == start;
        return isAtItsTime && event->title().value_or(QString()) == item.summary.value_or(QString());
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
    // What is wrong after the title of an item of the file was changed; empty when nothing is.
    static QString faultAfterAChangeIn(const QByteArray &bytes, bool &isHeld);
};

QString RoundTripTest::faultAfterAChangeIn(const QByteArray &bytes, bool &isHeld)
{
    ICalendar::ZoneRegistry zones;
    const ICalendar::Document document = ICalendar::readDocument(bytes, zones);
    const auto item = std::ranges::find_if(document.items, canBeShown);
    isHeld = item != document.items.end();
    if (!isHeld)
        return {};
    const CalendarFolder folder;
    folder.write(u"c/sample.ics"_s, bytes);
    const auto store = folder.openWithoutWatching();
    if (folder.read(u"c/sample.ics"_s) != bytes)
        return u"reading alone has changed it"_s;
    const CalCalendarItemPtr record = recordOf(*store, *item);
    if (!record)
        return u"its first item is not shown"_s;

    const QString title = u"Changed, to \"this\"; über\\den"_s;
    record->setTitle(title);
    if (const auto saved = save(*store, record, item->recurrenceId.has_value()); !saved)
        return u"refused: "_s + saved.error().reason;

    const QByteArray after = folder.read(u"c/sample.ics"_s);
    const ICalendar::Document changed = ICalendar::readDocument(after, zones);
    if (changed.items.size() != document.items.size())
        return u"it holds another number of items"_s;
    if (changed.items.at(item - document.items.begin()).summary != title)
        return u"the title is not in it"_s;
    const QSet<int> components = componentsOf(*item, document);
    return otherLines(after, components) == otherLines(bytes, components) ? QString() : u"other lines have changed"_s;
}

void RoundTripTest::aChangedTitleChangesFourLinesAtMost()
{
    QStringList faults;
    int held = 0;
    for (const QString &path : validFiles()) {
        bool isHeld = false;
        const QString fault = faultAfterAChangeIn(bytesOf(path), isHeld);
        held += isHeld ? 1 : 0;
        if (!fault.isEmpty())
            faults << path + u": "_s + fault;
    }

    qInfo("%d files with an event or a to-do, %d well", held, held - int(faults.size()));
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
    QVERIFY(held >= fewestFiles);
}

VANTLE_TEST(RoundTripTest)
#include "RoundTripTest.moc"
