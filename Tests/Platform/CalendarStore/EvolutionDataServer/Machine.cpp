// SPDX-License-Identifier: MIT
//
// Vantle's store on one of a person's machines, without a window: for tests with
// several of them. Answers requests as AnsweringProgram has them.
//
//   calendars                   uid and title of each
//   day DATE                    times and title of each event, in the store's order
//   hold DATE TITLE             reads an event and keeps it for what follows, as a sheet does
//   set title VALUE             of the held event
//   set location VALUE
//   set later MINUTES           start and end
//   save SPAN                   the held event; SPAN is this or all
//   remove SPAN
//   add CALENDAR DATE TITLE     a new event from 09:00 to 10:00
//   undo                        puts the removed event back
//   refresh                     asks the servers for changes
#include <CalCalendarStore.h>
#include <CalendarStoreBackend.h>
#include <Clock.h>
#include <ServiceLoader.h>

#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTextStream>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int firstHour = 9;
constexpr int secondsPerMinute = 60;

struct Answer {
    bool isOk = true;
    QString text;
};

QString unescaped(const QString &text)
{
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) != u'\\' || i + 1 == text.size()) {
            result += text.at(i);
            continue;
        }
        ++i;
        result += text.at(i) == u'n' ? QChar(u'\n') : text.at(i) == u't' ? QChar(u'\t') : text.at(i);
    }
    return result;
}

QString escaped(QString text)
{
    return text.replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s).replace(u'\t', u"\\t"_s);
}

class Machine final : public QObject
{
public:
    Machine()
        : m_store(std::vector<std::unique_ptr<CalendarStoreBackend>>())
        , m_loader(m_clock)
        , m_input(STDIN_FILENO, QSocketNotifier::Read)
    {
        connect(&m_loader, &ServiceLoader::found, this, [this] {
            if (auto backend = m_loader.load())
                m_store.addBackend(std::move(backend));
        });
        connect(&m_input, &QSocketNotifier::activated, this, &Machine::read);
        m_loader.start();
    }

private:
    void read()
    {
        char bytes[4096];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) {
            QCoreApplication::quit();
            return;
        }
        m_pending.append(bytes, count);
        for (qsizetype end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
            const QString line = QString::fromUtf8(m_pending.left(end));
            m_pending.remove(0, end + 1);
            write(answer(line));
        }
    }

    static void write(const Answer &answer)
    {
        QTextStream(stdout) << (answer.isOk ? u"ok\t"_s : u"error\t"_s) << escaped(answer.text) << u'\n';
    }

    Answer answer(const QString &line)
    {
        QStringList fields;
        for (const QString &field : line.split(u'\t'))
            fields.append(unescaped(field));
        fields.resize(std::max<qsizetype>(fields.size(), 4)); // what is not given is empty
        const QString request = fields.takeFirst();
        if (request == u"calendars"_s)
            return calendars();
        if (request == u"day"_s)
            return { true, day(QDate::fromString(fields.at(0), Qt::ISODate)) };
        if (request == u"hold"_s)
            return hold(QDate::fromString(fields.at(0), Qt::ISODate), fields.at(1));
        if (request == u"set"_s)
            return set(fields.at(0), fields.at(1));
        if (request == u"add"_s)
            return add(fields.at(0), QDate::fromString(fields.at(1), Qt::ISODate), fields.at(2));
        StoreError error;
        if (request == u"save"_s)
            return result(m_held && m_store.saveEvent_span_error(m_held, span(fields.at(0)), &error), error);
        if (request == u"remove"_s)
            return result(m_held && m_store.removeEvent_span_error(m_held, span(fields.at(0)), &error), error);
        if (request == u"undo"_s)
            return result(m_store.undoRemoval_error(&error), error);
        if (request == u"refresh"_s) {
            m_store.refresh();
            return {};
        }
        return { false, u"no such request: "_s + request };
    }

    static CalSpan span(const QString &word) { return word == u"this"_s ? CalSpanThisEvent : CalSpanAllEvents; }

    static Answer result(bool isDone, const StoreError &error)
    {
        return isDone ? Answer {} : Answer { false, error.message() };
    }

    Answer calendars() const
    {
        QStringList lines;
        for (const CalCalendarPtr &calendar : m_store.calendars())
            lines.append(calendar->uid() + u' ' + calendar->title());
        return { true, lines.join(u'\n') };
    }

    CalEventList events(const QDate &date) const
    {
        return m_store.eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            date.startOfDay(), date.addDays(1).startOfDay().addSecs(-1), m_store.calendars()));
    }

    QString day(const QDate &date) const
    {
        QStringList lines;
        for (const CalEventPtr &event : events(date)) {
            lines.append(u"%1-%2 %3"_s.arg(event->startDate().toLocalTime().toString(u"HH:mm"_s),
                event->endDate().toLocalTime().toString(u"HH:mm"_s), event->title().value_or(QString())));
        }
        return lines.join(u'\n');
    }

    Answer hold(const QDate &date, const QString &title)
    {
        for (const CalEventPtr &event : events(date)) {
            if (event->title() == title) {
                m_held = event;
                return {};
            }
        }
        return { false, u"no such event: "_s + title };
    }

    Answer set(const QString &what, const QString &value)
    {
        if (!m_held)
            return { false, u"nothing is held"_s };
        if (what == u"title"_s)
            m_held->setTitle(value);
        else if (what == u"location"_s)
            m_held->setLocation(value);
        else if (what == u"later"_s) {
            m_held->setStartDate(m_held->startDate().addSecs(value.toInt() * secondsPerMinute));
            m_held->setEndDate(m_held->endDate().addSecs(value.toInt() * secondsPerMinute));
        } else
            return { false, u"no such field: "_s + what };
        return {};
    }

    Answer add(const QString &calendarUid, const QDate &date, const QString &title)
    {
        const auto event = std::make_shared<CalEvent>();
        event->setCalendar(m_store.calendarWithUID(calendarUid));
        event->setTitle(title);
        event->setStartDate(QDateTime(date, QTime(firstHour, 0)));
        event->setEndDate(QDateTime(date, QTime(firstHour + 1, 0)));
        StoreError error;
        return result(m_store.saveEvent_span_error(event, CalSpanAllEvents, &error), error);
    }

    SystemClock m_clock;
    CalCalendarStore m_store;
    ServiceLoader m_loader;
    QSocketNotifier m_input;
    QByteArray m_pending;
    CalEventPtr m_held;
};

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const Machine machine;
    return QGuiApplication::exec();
}
