// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarServiceNeighbour.h>
#include <CalendarServiceSession.h>
#include <Clock.h>
#include <ServiceLoader.h>
#include <WholeApplication.h>

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>

// How long the event loop, and with it the window, ever went without turning.
class AnswerWatch final : public QObject
{
    Q_OBJECT

public:
    AnswerWatch();

    // Begins anew: what was before does not count.
    void restart();
    // In milliseconds. What lasts at this moment counts, too.
    qint64 longestSilence() const;

private:
    QTimer m_heart;
    QElapsedTimer m_sinceBeat;
    qint64 m_longest = 0;
};

// The real window on a machine with the real calendar service, which holds the
// calendar "Work" with one event at nine on the shown day. One may run at a time.
class ServiceWindow final
{
public:
    ServiceWindow();
    ~ServiceWindow();
    ServiceWindow(const ServiceWindow &) = delete;
    ServiceWindow &operator=(const ServiceWindow &) = delete;

    static CalendarServiceSession &session() { return CalendarServiceSession::ofThisProcess(); }
    CalendarServiceNeighbour &neighbour() const { return *m_neighbour; }
    // What "Work" consists of. Another source for each window: the service keeps what one held for a while, under its
    // uid.
    const QString &events() const { return m_events; }
    const QString &toDos() const { return m_toDos; }
    WholeApplication &application() const { return *m_application; }
    CalCalendarStore &store() const { return m_application->store(); }
    VTMainWindowController &controller() const { return m_application->controller(); }

    static QDate day() { return { 2026, 3, 11 }; }
    void show(const QDate &day) const;
    QStringList shownTitles() const;
    // Null when the window does not show it.
    CalEventPtr event(const QString &title) const;
    QString notice() const;

    // A program whose service was killed notices it at some time after; again until it is done.
    void putInTheEnd(const QByteArray &components) const;

private:
    static int s_windows;

    const QString m_events = QStringLiteral("work-%1").arg(++s_windows);
    const QString m_toDos = m_events + QStringLiteral("-tasks");
    QTemporaryDir m_folder;
    SystemClock m_clock;
    ServiceLoader m_loader { m_clock };
    std::unique_ptr<CalendarServiceNeighbour> m_neighbour;
    std::unique_ptr<WholeApplication> m_application;
};

// An event at nine or at another hour of the shown day.
QByteArray eventAt(int hour, const QByteArray &uid, const QByteArray &title);
