// SPDX-License-Identifier: MIT
#include "HostileTitles.h"
#include "WholeApplication.h"

#include <ManualClock.h>
#include <VTMainWindow.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

const QDate shownDay(2026, 11, 20);

QByteArray escaped(const QString &text)
{
    QString written = text;
    written.replace(u'\\', u"\\\\"_s).replace(u"\r\n"_s, u"\\n"_s).replace(u'\n', u"\\n"_s);
    return written.replace(u';', u"\\;"_s).replace(u',', u"\\,"_s).toUtf8();
}

bool write(const QString &path, const QByteArray &kind, const QByteArray &uid, const QByteArray &text)
{
    QFile file(path);
    const QByteArray when = kind == "VEVENT" ? "DTSTART:20261120T090000\r\nDTEND:20261120T100000\r\n" : "";
    return file.open(QIODevice::WriteOnly)
        && file.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\nBEGIN:" + kind + "\r\nUID:" + uid
               + "\r\nDTSTAMP:20260101T000000Z\r\n" + when + "SUMMARY:" + text + "\r\nLOCATION:" + text
               + "\r\nDESCRIPTION:" + text + "\r\nEND:" + kind + "\r\nEND:VCALENDAR\r\n")
        > 0;
}

// An event and a to-do of each title, which is also its place and its notes.
class Calendars
{
public:
    Calendars()
    {
        const QDir folder(m_folder.path());
        m_isWritten = folder.mkdir(u"hostile"_s);
        int number = 0;
        for (const QString &title : hostileTitles()) {
            for (const char *kind : { "VEVENT", "VTODO" }) {
                const QByteArray uid = QByteArray::number(++number);
                m_isWritten
                    = m_isWritten && write(folder.filePath(u"hostile/%1.ics"_s.arg(number)), kind, uid, escaped(title));
            }
        }
    }

    QString path() const { return m_folder.path(); }
    bool isWritten() const { return m_isWritten; }

private:
    QTemporaryDir m_folder;
    bool m_isWritten = false;
};

struct Day {
    Calendars calendars;
    QTemporaryDir home;
    ManualClock clock { QDateTime(shownDay, QTime(10, 0)) };
    WholeApplication application { calendars.path(), home.path(), clock, QApplication::palette() };
};

// Made by main() after the application, and gone before it.
std::unique_ptr<Day> s_day;

// From the selection of a row to its painted frame, over all rows in turn; the counter is for the slowest one.
void BM_SelectHostileRow(benchmark::State &state)
{
    VTMainWindowController &controller = s_day->application.controller();
    QStringList uids;
    for (const CalEventPtr &event : controller.events())
        uids.append(event->uid());
    for (const CalTaskPtr &task : controller.tasks())
        uids.append(task->uid());
    if (uids.size() != 2 * hostileTitles().size()) {
        state.SkipWithError("not every hostile item is shown");
        return;
    }
    double slowest = 0;
    qsizetype index = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        controller.setSelectedCalItemUID(uids.at(index++ % uids.size()));
        QApplication::processEvents();
        s_day->application.window().repaint();
        const std::chrono::duration<double, std::milli> frame = std::chrono::steady_clock::now() - start;
        slowest = std::max(slowest, frame.count());
    }
    state.counters["slowest_ms"] = slowest;
}

// All rows made anew, as after a change in the store.
void BM_RefetchHostileRows(benchmark::State &state)
{
    for (auto _ : state) {
        s_day->application.controller().calStoreDidChange();
        QApplication::processEvents();
        s_day->application.window().repaint();
    }
}

BENCHMARK(BM_SelectHostileRow)->Unit(benchmark::kMillisecond)->Iterations(240);
BENCHMARK(BM_RefetchHostileRows)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    s_day = std::make_unique<Day>();
    if (!s_day->calendars.isWritten()) {
        std::fprintf(stderr, "The calendars cannot be written\n");
        return 1;
    }
    QApplication::processEvents();
    benchmark::RunSpecifiedBenchmarks();
    s_day.reset();
    benchmark::Shutdown();
    return 0;
}
