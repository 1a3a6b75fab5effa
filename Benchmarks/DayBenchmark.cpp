// SPDX-License-Identifier: MIT
#include "WholeApplication.h"

#include <ManualClock.h>
#include <VTDayContents.h>
#include <VTMainWindow.h>

#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

// The generated calendars hold as many events on each day around this one, whatever their size.
const QDate focusDay(2026, 3, 11);
constexpr int focusDaysEachWay = 7;
constexpr int eventsOfADay = 12;
constexpr int openTodos = 40;
constexpr std::chrono::seconds tick { 10 };

class Workload
{
public:
    Workload()
        : m_clock(QDateTime(focusDay, QTime(10, 0)))
        , m_application(calendars(), m_home.path(), m_clock, QApplication::palette())
    {
        QApplication::processEvents();
    }

    static QString calendars()
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/calendars"_s;
    }

    ManualClock &clock() { return m_clock; }
    WholeApplication &application() { return m_application; }

    // A wrong answer is a failure, not a time.
    bool isRight()
    {
        const auto isOpen = [](const CalTaskPtr &task) { return !task->isCompleted(); };
        const CalTaskList &tasks = m_application.controller().tasks();
        return m_application.controller().events().size() == eventsOfADay
            && std::count_if(tasks.begin(), tasks.end(), isOpen) == openTodos;
    }

private:
    QTemporaryDir m_home;
    ManualClock m_clock;
    WholeApplication m_application;
};

// Made by main() after the application, and gone before it.
std::unique_ptr<Workload> s_workload;

Workload &workload()
{
    return *s_workload;
}

// The events of one day and its to-dos, sorted: walks the days around the focus.
void BM_DayQuery(benchmark::State &state)
{
    const CalCalendarStore &store = workload().application().store();
    int offset = 0;
    qsizetype items = 0;
    for (auto _ : state) {
        VTDayQuestion question;
        question.date = QDateTime(focusDay.addDays(offset % focusDaysEachWay), QTime(10, 0));
        const CalEventList events = VTEventsOfDay(store, question);
        const CalTaskList tasks = VTSortedTasks(VTTasksOfDay(store, question), VTSortByDueDate);
        items = events.size() + tasks.size();
        ++offset;
    }
    state.counters["items"] = static_cast<double>(items);
}

// What the ten-second timer does when nothing has changed, to the painted frame.
void BM_TickUnchanged(benchmark::State &state)
{
    Workload &one = workload();
    if (!one.isRight()) {
        state.SkipWithError("the day does not hold what was generated");
        return;
    }
    for (auto _ : state) {
        one.clock().advance(tick);
        QApplication::processEvents();
    }
    state.counters["rows"] = static_cast<double>(
        one.application().controller().events().size() + one.application().controller().tasks().size());
}

// The next day and back, to the painted frame.
void BM_DaySwitch(benchmark::State &state)
{
    Workload &one = workload();
    int days = 1; // from the focus
    for (auto _ : state) {
        one.application().controller().setDate(QDateTime(focusDay.addDays(days), QTime(10, 0)));
        QApplication::processEvents();
        days = 1 - days;
    }
    one.application().controller().setDate(one.clock().now());
}

BENCHMARK(BM_DayQuery)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TickUnchanged)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DaySwitch)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (!QFileInfo::exists(Workload::calendars())) {
        std::fprintf(stderr, "There are no generated calendars; run script/benchmark\n");
        return 1;
    }
    s_workload = std::make_unique<Workload>();
    benchmark::RunSpecifiedBenchmarks();
    s_workload.reset();
    benchmark::Shutdown();
    return 0;
}
