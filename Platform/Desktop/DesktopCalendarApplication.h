// SPDX-License-Identifier: MIT
#pragma once

#include "CalendarApplication.h"
#include "DesktopEntries.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>

class QTimer;

// The calendar program that this desktop has for the calendars of its calendar
// service: Evolution where it is the one that opens the addresses of events and
// to-dos, else GNOME Calendar, which shows events only.
//
// Which program that is, is asked anew each time. Never waits for a program:
// the steps of showing follow each other from the event loop, and a later wish
// takes the place of one whose steps are not over.
class DesktopCalendarApplication final : public QObject, public CalendarApplication
{
    Q_OBJECT

public:
    // The service's own name for the calendar that holds elements of this kind; empty where it has none.
    using SourceLookup = std::function<QString(const QString &calendarUid, ElementKind kind)>;

    explicit DesktopCalendarApplication(SourceLookup sourceOf, DesktopEntries entries = DesktopEntries(),
        const QDBusConnection &bus = QDBusConnection::sessionBus(), QObject *parent = nullptr);
    ~DesktopCalendarApplication() override;

    bool isInstalled() const override;
    bool hasCalendar(const QString &calendarUid) const override;
    bool hasElement(const Element &element) const override;
    void activate() override;
    void showElement(const Element &element) override;

private:
    struct Program;

    static const Program &evolution();
    static const Program &gnomeCalendar();
    // Null where there is none for this kind.
    const Program *program(ElementKind kind) const;
    std::optional<DesktopEntry> entryOf(const Program &program, ElementKind kind) const;
    void perform(const Program &program, const QStringList &first, const QStringList &second);
    void startFirst(const Program &program, const QStringList &first);
    void startSecond();
    void forget();

    SourceLookup m_sourceOf;
    DesktopEntries m_entries;
    QDBusConnection m_bus;
    QTimer *m_patience;
    QObject *m_steps = nullptr; // whose end ends all that is still waited for
    QStringList m_second;
};
