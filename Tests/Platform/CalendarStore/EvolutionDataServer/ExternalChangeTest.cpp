// SPDX-License-Identifier: MIT
#include "ServiceWindow.h"

#include <KLVAccordionView.h>
#include <TestRegistry.h>
#include <VTMainWindow.h>

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{

constexpr int goal = 1000; // milliseconds
constexpr int limit = 3 * goal;
constexpr int patienceInMilliseconds = 30000;

bool isLong()
{
    return qEnvironmentVariableIsSet("VANTLE_LONG_TESTS");
}

QByteArray titled(const char *prefix, int number)
{
    return prefix + QByteArray::number(number);
}

} // namespace

// How soon the window shows what another program changed, one change right after the other.
class ExternalChangeTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ServiceWindow> m_window;
    QList<qint64> m_delays;

    QStringList shownToDos() const
    {
        QStringList titles;
        for (const CalTaskPtr &task : m_window->controller().tasks())
            titles.append(task->title().value_or(QString()));
        return titles;
    }
    // From the end of the change, as the other program sees it, to rows that tell of it.
    void measure(const std::function<void()> &change, const std::function<bool()> &isShown)
    {
        change();
        QElapsedTimer timer;
        timer.start();
        QTRY_VERIFY_WITH_TIMEOUT(isShown(), patienceInMilliseconds);
        m_delays.append(timer.elapsed());
    }

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<ServiceWindow>();
        QTRY_COMPARE_WITH_TIMEOUT(m_window->shownTitles(), QStringList { u"Standup"_s }, patienceInMilliseconds);
        m_delays.clear();
    }
    void cleanup() { m_window.reset(); }

    void changesRightAfterEachOtherAreShownSoon()
    {
        CalendarServiceNeighbour &neighbour = m_window->neighbour();
        const auto eventRows = [this] {
            return m_window->controller().eventsAccordion()->accordionViewItems().size()
                == m_window->controller().events().size();
        };
        const int rounds = isLong() ? 50 : 10;
        for (int round = 0; round < rounds; ++round) {
            const QByteArray title = titled("Lunch ", round);
            const QByteArray later = titled("Late lunch ", round);
            const QByteArray toDo = titled("Cat ", round);
            measure([&] { neighbour.put(m_window->events(), eventAt(11, "lunch", title)); },
                [&] { return m_window->event(QString::fromUtf8(title)) && eventRows(); });
            measure([&] { neighbour.put(m_window->events(), eventAt(13, "lunch", later)); },
                [&] { return m_window->event(QString::fromUtf8(later)) && eventRows(); });
            measure(
                [&] {
                    neighbour.put(m_window->toDos(), "BEGIN:VTODO\r\nUID:cat\r\nSUMMARY:" + toDo + "\r\nEND:VTODO\r\n");
                },
                [&] { return shownToDos() == QStringList { QString::fromUtf8(toDo) }; });
            measure([&] { neighbour.remove(m_window->events(), u"lunch"_s); },
                [&] { return !m_window->event(QString::fromUtf8(later)) && eventRows(); });
            measure([&] { neighbour.remove(m_window->toDos(), u"cat"_s); }, [&] { return shownToDos().isEmpty(); });
        }

        std::ranges::sort(m_delays);
        qInfo("%d changes: median %lld ms, worst %lld ms", static_cast<int>(m_delays.size()),
            m_delays.at(m_delays.size() / 2), m_delays.last());
        QVERIFY2(m_delays.last() < limit, qPrintable(QString::number(m_delays.last())));
    }

    // The components of a series come one by one and are asked for again by uid.
    void changesOfASeriesAreShownSoon()
    {
        CalendarServiceNeighbour &neighbour = m_window->neighbour();
        const auto series = [](const QByteArray &title, const QByteArray &titleOfTheDay) -> QByteArray {
            QByteArray master = eventAt(11, "series", title);
            master.replace("X-OTHER", "RRULE:FREQ=DAILY\r\nX-OTHER");
            QByteArray occurrence = eventAt(12, "series", titleOfTheDay);
            occurrence.replace("X-OTHER", "RECURRENCE-ID;TZID=Europe/Berlin:20260311T110000\r\nX-OTHER");
            return master + occurrence;
        };
        const int rounds = isLong() ? 50 : 10;
        for (int round = 0; round < rounds; ++round) {
            const QByteArray title = titled("Round ", round);
            measure([&] { neighbour.put(m_window->events(), series("All", title)); },
                [&] { return m_window->event(QString::fromUtf8(title)) != nullptr; });
        }

        std::ranges::sort(m_delays);
        qInfo("%d changes: median %lld ms, worst %lld ms", static_cast<int>(m_delays.size()),
            m_delays.at(m_delays.size() / 2), m_delays.last());
        QVERIFY2(m_delays.last() < limit, qPrintable(QString::number(m_delays.last())));
        neighbour.remove(m_window->events(), u"series"_s);
    }
};

VANTLE_TEST(ExternalChangeTest)

#include "ExternalChangeTest.moc"
