// SPDX-License-Identifier: MIT
#include "ServiceWindow.h"

#include <CalendarStoreBackend.h>
#include <KLVNotice.h>
#include <KLVTheme.h>
#include <VTMainWindow.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr auto heartbeat = 10ms;
constexpr int patienceInMilliseconds = 30000;

} // namespace

int ServiceWindow::s_windows = 0;

AnswerWatch::AnswerWatch()
{
    m_heart.setTimerType(Qt::PreciseTimer);
    connect(&m_heart, &QTimer::timeout, this, [this] { m_longest = std::max(m_longest, m_sinceBeat.restart()); });
    restart();
    m_heart.start(heartbeat);
}

void AnswerWatch::restart()
{
    m_longest = 0;
    m_sinceBeat.start();
}

qint64 AnswerWatch::longestSilence() const
{
    return std::max(m_longest, m_sinceBeat.elapsed());
}

ServiceWindow::ServiceWindow()
{
    session();
    m_neighbour = std::make_unique<CalendarServiceNeighbour>(session());
    m_neighbour->addCalendar(m_events, CalItemKind::Event, u"Work"_s);
    m_neighbour->addCalendar(m_toDos, CalItemKind::Task, u"Work"_s);
    m_neighbour->put(m_events, eventAt(9, "standup", "Standup"));
    m_application = std::make_unique<WholeApplication>(
        m_folder.filePath(u"calendars"_s), m_folder.path(), m_clock, KLVTheme::lightPalette());
    QSignalSpy found(&m_loader, &ServiceLoader::found);
    m_loader.start();
    if (found.isEmpty() && !found.wait(patienceInMilliseconds))
        qFatal("The bus does not tell of the calendar service");
    auto backend = m_loader.load();
    if (!backend)
        qFatal("The module for the calendar service cannot be loaded");
    store().addBackend(std::move(backend));
    show(day());
}

ServiceWindow::~ServiceWindow()
{
    m_application.reset();
    for (const QString &source : { m_events, m_toDos })
        m_neighbour->request({ u"remove-source"_s, source });
}

void ServiceWindow::show(const QDate &day) const
{
    controller().setDate(day.startOfDay().addSecs(12LL * 3600));
}

QStringList ServiceWindow::shownTitles() const
{
    QStringList titles;
    for (const CalEventPtr &event : controller().events())
        titles.append(event->title().value_or(QString()));
    return titles;
}

CalEventPtr ServiceWindow::event(const QString &title) const
{
    return std::dynamic_pointer_cast<CalEvent>(application().itemTitled(title));
}

QString ServiceWindow::notice() const
{
    return application().window().notice()->text();
}

void ServiceWindow::putInTheEnd(const QByteArray &components) const
{
    const QStringList request { u"put"_s, m_events,
        u"BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"_s + QString::fromUtf8(components) + u"END:VCALENDAR\r\n"_s };
    QTRY_VERIFY_WITH_TIMEOUT(m_neighbour->request(request).isOk, patienceInMilliseconds);
}

QByteArray eventAt(int hour, const QByteArray &uid, const QByteArray &title)
{
    const auto time
        = [hour](int later) -> QByteArray { return QByteArray::number(hour + later).rightJustified(2, '0') + "0000"; };
    const QByteArray date = ServiceWindow::day().toString(u"yyyyMMdd"_s).toLatin1();
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTART;TZID=Europe/Berlin:" + date + 'T' + time(0)
        + "\r\nDTEND;TZID=Europe/Berlin:" + date + 'T' + time(1) + "\r\nSUMMARY:" + title
        + "\r\nX-OTHER-PROGRAM:stays\r\nEND:VEVENT\r\n";
}
