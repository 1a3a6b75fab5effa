// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QTest>

#include <libical/ical.h>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

const QDate day(2026, 3, 11);
const QString title = u"Lunch; soup, \"bread\" & Käse"_s;
const QString place = u"Room 1, left"_s;
const QString notes
    = u"First\nsecond; a long line that has to be folded somewhere, 日本語 and more of it, twice over"_s;

struct FreeComponent {
    void operator()(icalcomponent *component) const { icalcomponent_free(component); }
};
using ComponentPtr = std::unique_ptr<icalcomponent, FreeComponent>;

QDateTime at(QDate date, int hour, int minute = 0)
{
    return { date, QTime(hour, minute) };
}

using Edit = std::function<void(CalEvent &)>;

// What is done to a series, by the day of the occurrence that it is done to.
struct SeriesEdit {
    enum class What { SaveThis, SaveAll, Remove };

    What what;
    QDate day;
    Edit edit = [](CalEvent &) {};
};
using SeriesEdits = QList<SeriesEdit>;

// The days over which series are looked at; a change of the clocks is among them.
const QDate firstDay(2026, 3, 1);
constexpr int dayCount = 60;

// "2026-03-11 09:00 Title" for each occurrence, in order.
QStringList sorted(QStringList lines)
{
    lines.removeAll(QString());
    lines.sort();
    return lines;
}

} // namespace

Q_DECLARE_METATYPE(Edit)
Q_DECLARE_METATYPE(SeriesEdits)

// What Vantle writes means the same to other programs: to khal, to todoman, and to whoever reads with libical.
class OtherReadersTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void anEventIsReadTheSame_data();
    void anEventIsReadTheSame();
    void aTaskIsReadTheSame_data();
    void aTaskIsReadTheSame();
    void aSeriesIsReadTheSame_data();
    void aSeriesIsReadTheSame();

private:
    // Every occurrence with its title, as each program sees it.
    QStringList seriesHere() const;
    QStringList seriesByKhal() const;
    QStringList seriesByLibical() const;
    void apply(const SeriesEdit &edit) const;

    // Its title, place, notes, start and end as each program reads them.
    QStringList byKhal(QDate first) const;
    QStringList byLibical(icalcomponent_kind kind) const;
    QJsonObject byTodoman() const;
    QByteArray writtenText() const;
    static QByteArray run(const QString &program, const QStringList &arguments);

    std::unique_ptr<CalendarFolder> m_folder;
    std::unique_ptr<FolderCalendarStore> m_store;
};

void OtherReadersTest::init()
{
    m_folder = std::make_unique<CalendarFolder>();
    m_folder->write(u"Home/displayname"_s, "Home");
    m_folder->write(u"../khal.conf"_s,
        "[calendars]\n[[home]]\npath = " + QFile::encodeName(m_folder->path(u"Home"_s))
            + "\n[sqlite]\npath = " + QFile::encodeName(m_folder->path(u"../khal.db"_s))
            + "\n[locale]\nlocal_timezone = Europe/Berlin\ndefault_timezone = Europe/Berlin\ntimeformat = %H:%M\n"
              "dateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\ndatetimeformat = %Y-%m-%d %H:%M\n"
              "longdatetimeformat = %Y-%m-%d %H:%M\n[default]\ndefault_calendar = home\n");
    m_folder->write(u"../todoman.py"_s,
        "path = '" + QFile::encodeName(m_folder->root()) + "/*'\ndefault_list = 'Home'\ncache_path = '"
            + QFile::encodeName(m_folder->path(u"../todoman.db"_s))
            + "'\ndate_format = '%Y-%m-%d'\ntime_format = '%H:%M'\n");
    m_store = m_folder->openWithoutWatching();
}

void OtherReadersTest::cleanup()
{
    m_store.reset();
    m_folder.reset();
}

QByteArray OtherReadersTest::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    process.waitForFinished(60'000);
    return process.readAllStandardOutput();
}

QStringList OtherReadersTest::byKhal(QDate first) const
{
    const QByteArray said = run(u"khal"_s,
        { u"-c"_s, m_folder->path(u"../khal.conf"_s), u"list"_s, u"--day-format"_s, QString(), u"--format"_s,
            u"{title}|{location}|{description}|{start-date} {start-time}|{end-date} {end-time}#"_s,
            first.toString(Qt::ISODate), u"1d"_s });
    QStringList values = QString::fromUtf8(said).section(u'#', 0, 0).trimmed().split(u'|');
    for (QString &value : values)
        value = value.trimmed();
    return values;
}

QByteArray OtherReadersTest::writtenText() const
{
    const QDir home(m_folder->path(u"Home"_s));
    return m_folder->read(u"Home/"_s + home.entryList({ u"*.ics"_s }).value(0));
}

QStringList OtherReadersTest::byLibical(icalcomponent_kind kind) const
{
    const ComponentPtr root(icalparser_parse_string(writtenText().constData()));
    icalcomponent *const item = root ? icalcomponent_get_first_component(root.get(), kind) : nullptr;
    if (!item || icalcomponent_count_errors(root.get()) > 0)
        return { u"libical finds an error in it"_s };
    const auto instant = [](const icaltimetype &time) {
        if (icaltime_is_null_time(time))
            return QString();
        if (icaltime_is_date(time))
            return QDate(time.year, time.month, time.day).toString(Qt::ISODate);
        const time_t seconds = icaltime_as_timet_with_zone(time, icaltime_get_timezone(time));
        return QDateTime::fromSecsSinceEpoch(seconds).toString(u"yyyy-MM-dd HH:mm"_s);
    };
    const icaltimetype end = kind == ICAL_VTODO_COMPONENT ? icalcomponent_get_due(item) : icalcomponent_get_dtend(item);
    return { QString::fromUtf8(icalcomponent_get_summary(item)), QString::fromUtf8(icalcomponent_get_location(item)),
        QString::fromUtf8(icalcomponent_get_description(item)), instant(icalcomponent_get_dtstart(item)),
        instant(end) };
}

QJsonObject OtherReadersTest::byTodoman() const
{
    const QByteArray said = run(u"todoman"_s,
        { u"--config"_s, m_folder->path(u"../todoman.py"_s), u"--porcelain"_s, u"list"_s, u"--status"_s, u"ANY"_s });
    return QJsonDocument::fromJson(said).array().first().toObject();
}

void OtherReadersTest::anEventIsReadTheSame_data()
{
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("end"); // for an all-day event its last day

    const auto row = [](const char *name, const Edit &edit, const QString &start, const QString &end) {
        QTest::newRow(name) << edit << start << end;
    };
    row(
        "new", [](CalEvent &) {}, u"2026-03-11 09:00"_s, u"2026-03-11 10:30"_s);
    row(
        "moved", [](CalEvent &event) { event.setStartDate(at(day, 7, 45)); }, u"2026-03-11 07:45"_s,
        u"2026-03-11 10:30"_s);
    row(
        "over midnight",
        [](CalEvent &event) {
            event.setStartDate(at(day, 22));
            event.setEndDate(at(day.addDays(1), 1));
        },
        u"2026-03-11 22:00"_s, u"2026-03-12 01:00"_s);
    row(
        "in summer time",
        [](CalEvent &event) {
            event.setStartDate(at(QDate(2026, 7, 1), 9));
            event.setEndDate(at(QDate(2026, 7, 1), 10));
        },
        u"2026-07-01 09:00"_s, u"2026-07-01 10:00"_s);
    row(
        "all day",
        [](CalEvent &event) {
            event.setIsAllDay(true);
            event.setStartDate(at(day, 0));
            event.setEndDate(QDateTime(day, QTime(23, 59, 59)));
        },
        u"2026-03-11"_s, u"2026-03-11"_s);
    row(
        "of three days",
        [](CalEvent &event) {
            event.setIsAllDay(true);
            event.setStartDate(at(day, 0));
            event.setEndDate(QDateTime(day.addDays(2), QTime(23, 59, 59)));
        },
        u"2026-03-11"_s, u"2026-03-13"_s);
}

void OtherReadersTest::anEventIsReadTheSame()
{
    QFETCH(const Edit, edit);
    QFETCH(const QString, start);
    QFETCH(const QString, end);
    CalEvent event;
    event.setCalendar(m_store->calendars().constFirst());
    event.setTitle(u"First"_s);
    event.setStartDate(at(day, 9));
    event.setEndDate(at(day, 10, 30));
    QVERIFY(m_store->saveEvent(event, CalSpanAllEvents).isOk());

    event.setTitle(title);
    event.setLocation(place);
    event.setNotes(notes);
    edit(event);
    QVERIFY(m_store->saveEvent(event, CalSpanAllEvents).isOk());

    QCOMPARE(byKhal(QDate::fromString(start.left(10), Qt::ISODate)), (QStringList { title, place, notes, start, end }));
    // Files say where an all-day event ends by the day after it.
    const QString written
        = event.isAllDay() ? QDate::fromString(end, Qt::ISODate).addDays(1).toString(Qt::ISODate) : end;
    QCOMPARE(byLibical(ICAL_VEVENT_COMPONENT), (QStringList { title, place, notes, start, written }));
}

void OtherReadersTest::aTaskIsReadTheSame_data()
{
    QTest::addColumn<bool>("isDay");
    QTest::addColumn<QString>("due");

    QTest::newRow("due at a time") << false << u"2026-03-11 17:30"_s;
    QTest::newRow("due on a day") << true << u"2026-03-11"_s;
}

void OtherReadersTest::aTaskIsReadTheSame()
{
    QFETCH(const bool, isDay);
    QFETCH(const QString, due);
    CalTask task;
    task.setCalendar(m_store->calendars().constFirst());
    task.setTitle(u"First"_s);
    QVERIFY(m_store->saveTask(task).isOk());

    task.setTitle(title);
    task.setNotes(notes);
    task.setPriority(5);
    task.setDueDate(isDay ? at(day, 0) : at(day, 17, 30));
    task.setIsDueDateOnly(isDay);
    task.setIsCompleted(true);
    QVERIFY(m_store->saveTask(task).isOk());

    const QJsonObject read = byTodoman();
    QCOMPARE(read[u"summary"_s].toString(), title);
    QCOMPARE(read[u"description"_s].toString(), notes);
    QCOMPARE(read[u"priority"_s].toInt(), 5);
    QVERIFY(read[u"completed"_s].toBool());
    QCOMPARE(read[u"due"_s].toInteger(), (isDay ? at(day, 0) : at(day, 17, 30)).toSecsSinceEpoch());
    QCOMPARE(byLibical(ICAL_VTODO_COMPONENT), (QStringList { title, QString(), notes, QString(), due }));
}

QStringList OtherReadersTest::seriesHere() const
{
    QStringList lines;
    const QDateTime end = firstDay.addDays(dayCount).startOfDay().addSecs(-1);
    for (const CalEventPtr &event : m_store->events(firstDay.startOfDay(), end, m_store->calendars())) {
        const QString start = event->startDate().toString(event->isAllDay() ? u"yyyy-MM-dd"_s : u"yyyy-MM-dd HH:mm"_s);
        lines << start + u' ' + event->title().value_or(QString());
    }
    return sorted(lines);
}

QStringList OtherReadersTest::seriesByKhal() const
{
    const QByteArray said = run(u"khal"_s,
        { u"-c"_s, m_folder->path(u"../khal.conf"_s), u"list"_s, u"--day-format"_s, QString(), u"--format"_s,
            u"{start-date} {start-time} {title}#"_s, firstDay.toString(Qt::ISODate), u"%1d"_s.arg(dayCount) });
    QStringList lines = QString::fromUtf8(said).split(u'#');
    for (QString &line : lines)
        line = line.simplified();
    return sorted(lines);
}

// Of the series by itself and of what stands in the place of its occurrences: libical does not put the two together.
QStringList OtherReadersTest::seriesByLibical() const
{
    const ComponentPtr root(icalparser_parse_string(writtenText().constData()));
    if (!root || icalcomponent_count_errors(root.get()) > 0)
        return { u"libical finds an error in it"_s };
    struct Reading {
        QString title;
        bool isAllDay = false;
        QMap<qint64, QString> lines; // by instant

        void add(qint64 instant)
        {
            // A day is expanded in UTC.
            const QDateTime time = QDateTime::fromSecsSinceEpoch(instant, isAllDay ? Qt::UTC : Qt::LocalTime);
            lines.insert(instant, time.toString(isAllDay ? u"yyyy-MM-dd"_s : u"yyyy-MM-dd HH:mm"_s) + u' ' + title);
        }
    } reading;
    const auto instantOf = [](const icaltimetype &time) {
        return static_cast<qint64>(icaltime_as_timet_with_zone(time, icaltime_get_timezone(time)));
    };
    const auto eachEvent = [&root](const std::function<void(icalcomponent *, bool)> &look) {
        for (icalcomponent *event = icalcomponent_get_first_component(root.get(), ICAL_VEVENT_COMPONENT); event;
             event = icalcomponent_get_next_component(root.get(), ICAL_VEVENT_COMPONENT))
            look(event, icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY) != nullptr);
    };
    eachEvent([&](icalcomponent *event, bool isOverride) {
        if (isOverride)
            return;
        reading.title = QString::fromUtf8(icalcomponent_get_summary(event));
        reading.isAllDay = icaltime_is_date(icalcomponent_get_dtstart(event)) != 0;
        const icaltimetype from = icaltime_from_day_of_year(firstDay.dayOfYear(), firstDay.year());
        icalcomponent_foreach_recurrence(
            event, from, icaltime_from_day_of_year(firstDay.dayOfYear() + dayCount, firstDay.year()),
            [](icalcomponent *, icaltime_span *span, void *data) { static_cast<Reading *>(data)->add(span->start); },
            &reading);
    });
    eachEvent([&](icalcomponent *event, bool isOverride) {
        if (isOverride)
            reading.lines.remove(instantOf(icalproperty_get_datetime_with_component(
                icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY), event)));
    });
    QStringList lines = reading.lines.values();
    eachEvent([&](icalcomponent *event, bool isOverride) {
        if (!isOverride)
            return;
        Reading own;
        own.title = QString::fromUtf8(icalcomponent_get_summary(event));
        own.isAllDay = icaltime_is_date(icalcomponent_get_dtstart(event)) != 0;
        own.add(instantOf(icalcomponent_get_dtstart(event)));
        lines += own.lines.values();
    });
    return sorted(lines);
}

void OtherReadersTest::apply(const SeriesEdit &edit) const
{
    const CalEventPtr event = eventsOn(*m_store, edit.day).value(0);
    QVERIFY(event);
    if (edit.what == SeriesEdit::What::Remove) {
        QVERIFY(m_store->removeEvent(*event, CalSpanThisEvent).isOk());
        return;
    }
    edit.edit(*event);
    const auto saved
        = m_store->saveEvent(*event, edit.what == SeriesEdit::What::SaveThis ? CalSpanThisEvent : CalSpanAllEvents);
    QVERIFY2(saved.isOk(), saved ? "" : qPrintable(saved.error().message()));
}

void OtherReadersTest::aSeriesIsReadTheSame_data()
{
    using What = SeriesEdit::What;

    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<SeriesEdits>("edits");
    QTest::addColumn<int>("count");

    const auto titled = [](const QString &text) { return [text](CalEvent &event) { event.setTitle(text); }; };
    const auto later = [](int seconds) {
        return [seconds](CalEvent &event) {
            event.setStartDate(event.startDate().addSecs(seconds));
            event.setEndDate(event.endDate().addSecs(seconds));
        };
    };
    const QByteArray berlin = "DTSTART;TZID=Europe/Berlin:20260302T090000\r\nDURATION:PT1H\r\n";
    const QByteArray newYork = "DTSTART;TZID=America/New_York:20260302T040000\r\nDTEND;TZID=America/New_York:"
                               "20260302T050000\r\n";
    const QByteArray days = "DTSTART;VALUE=DATE:20260302\r\nDTEND;VALUE=DATE:20260303\r\n";
    const QDate second(2026, 3, 9);

    QTest::newRow("an occurrence with a title and a time of its own, COUNT")
        << berlin + "RRULE:FREQ=WEEKLY;COUNT=6\r\n"
        << SeriesEdits { { What::SaveThis, second, titled(u"Once; other"_s) }, { What::SaveThis, second, later(7200) } }
        << 6;
    QTest::newRow("an occurrence removed, UNTIL") << berlin + "RRULE:FREQ=WEEKLY;UNTIL=20260413T070000Z\r\n"
                                                  << SeriesEdits { { What::Remove, second } } << 6;
    QTest::newRow("all moved to another day and time over a change of the clocks")
        << berlin + "RRULE:FREQ=WEEKLY;BYDAY=MO;UNTIL=20260413T070000Z\r\n"
        << SeriesEdits { { What::SaveAll, second, later(86'400 + 1800) } } << 7;
    QTest::newRow("all moved, with one removed and one of its own")
        << berlin + "RRULE:FREQ=WEEKLY;COUNT=6\r\n"
        << SeriesEdits { { What::Remove, second }, { What::SaveThis, second.addDays(7), titled(u"Own"_s) },
               { What::SaveAll, second.addDays(14), later(3600) } }
        << 5;
    QTest::newRow("all day, all moved to the next day, one removed")
        << days + "RRULE:FREQ=WEEKLY;BYDAY=MO;COUNT=5\r\n"
        << SeriesEdits { { What::SaveAll, second, later(86'400) }, { What::Remove, second.addDays(1) } } << 4;
    QTest::newRow("all day, one with a title of its own")
        << days + "RRULE:FREQ=WEEKLY;COUNT=5\r\n"
        << SeriesEdits { { What::SaveThis, second, titled(u"Own"_s) } } << 5;
    QTest::newRow("in another zone, all renamed and moved, one removed")
        << newYork + "RRULE:FREQ=WEEKLY;COUNT=7\r\n"
        << SeriesEdits { { What::SaveAll, second, titled(u"Renamed"_s) }, { What::SaveAll, second, later(1800) },
               { What::Remove, second.addDays(7) } }
        << 6;
    QTest::newRow("in another zone, one moved on its own")
        << newYork + "RRULE:FREQ=WEEKLY;COUNT=7\r\n"
        << SeriesEdits { { What::SaveThis, second, later(-3600) } } << 7;
}

void OtherReadersTest::aSeriesIsReadTheSame()
{
    QFETCH(const QByteArray, lines);
    QFETCH(const SeriesEdits, edits);
    QFETCH(const int, count);
    m_folder->write(u"Home/s.ics"_s,
        calendarText("BEGIN:VEVENT\r\nUID:s\r\nSUMMARY:Series\r\n"
                     "DTSTAMP:20260101T000000Z\r\n"
            + lines + "END:VEVENT\r\n"));
    m_store = m_folder->openWithoutWatching();

    for (const SeriesEdit &edit : edits) {
        apply(edit);
        if (QTest::currentTestFailed())
            return;
    }

    const QStringList here = seriesHere();
    QCOMPARE(here.size(), count);
    QCOMPARE(seriesByKhal(), here);
    QCOMPARE(seriesByLibical(), here);
}

VANTLE_TEST(OtherReadersTest)
#include "OtherReadersTest.moc"
