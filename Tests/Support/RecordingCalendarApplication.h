// SPDX-License-Identifier: MIT
#pragma once

#include <CalendarApplication.h>

#include <QSet>
#include <QStringList>

// A calendar program that knows what a test tells it and remembers what it was asked to do.
class RecordingCalendarApplication final : public CalendarApplication
{
public:
    void addCalendar(const QString &calendarUid) { m_calendars.insert(calendarUid); }
    void addElement(const QString &calendarUid, ElementKind kind, const QString &plainUid);

    // What it was asked to do, in order: "activate", "show event Home/uid-1", "show todo Home/uid-2".
    const QStringList &commands() const { return m_commands; }
    // The element that it was asked to show last.
    const Element &shown() const { return m_shown; }

    bool isInstalled() const override { return true; }
    bool hasCalendar(const QString &calendarUid) const override { return m_calendars.contains(calendarUid); }
    bool hasElement(const Element &element) const override;
    void activate() override;
    void showElement(const Element &element) override;

private:
    QSet<QString> m_calendars;
    QSet<QString> m_elements; // in the form of the commands
    QStringList m_commands;
    Element m_shown;
};
