// SPDX-License-Identifier: MIT
#pragma once

#include <AssertionHandler.h>
#include <FixedAlertSounds.h>
#include <ManualClock.h>
#include <MemoryStore.h>
#include <RecordingAlerts.h>
#include <ScriptedFileChooser.h>
#include <TestRecords.h>
#include <VTEventEditController.h>
#include <VTTaskEditController.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTest>

#include <optional>

// The sheets over a plain window and a store in memory. It is Friday, 20 November
// 2026, 10:00 in local time.
struct EditSheetFixture {
    MemoryStore calendars;
    ManualClock clock { localInstant("2026-11-20T10:00") };
    RecordingAlerts alerts;
    ScriptedFileChooser fileChooser;
    FixedAlertSounds sounds;
    QMainWindow window;
    VTEventEditController events { services() };
    VTTaskEditController tasks { services() };

    EditSheetFixture()
    {
        window.resize(340, 600);
        window.show();
        window.activateWindow();
    }

    VTEditServices services() { return { calendars.store(), clock, alerts, fileChooser, sounds }; }
    MemoryBackend &backend() const { return *calendars.backend; }

    // As the store hands them out.
    CalEventPtr storedEvent(const QString &title) const
    {
        const CalPredicate everything = CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
            localInstant("2000-01-01T00:00"), localInstant("2100-01-01T00:00"), calendars.store().calendars());
        for (const CalEventPtr &event : calendars.store().eventsWithPredicate(everything)) {
            if (event->title() == title)
                return event;
        }
        return nullptr;
    }
    CalTaskPtr storedTask(const QString &title) const
    {
        const CalPredicate everything = CalCalendarStore::taskPredicateWithCalendars(calendars.store().calendars());
        for (const CalTaskPtr &task : calendars.store().tasksWithPredicate(everything)) {
            if (task->title() == title)
                return task;
        }
        return nullptr;
    }

    CalEventPtr addEvent(const QString &title, const CalAlarmList &alarms = {}) const
    {
        const CalEventPtr event
            = makeEvent(title, title, localInstant("2026-11-20T11:00"), localInstant("2026-11-20T12:30"));
        event->setAlarms(alarms);
        backend().addEvent(QStringLiteral("Home"), event);
        return storedEvent(title);
    }
    CalTaskPtr addTask(const QString &title, const CalAlarmList &alarms = {}) const
    {
        const CalTaskPtr task = makeTask(title, title);
        task->setAlarms(alarms);
        backend().addTask(QStringLiteral("Home"), task);
        return storedTask(title);
    }

    void open(const CalEventPtr &event) { events.showEventEditSheetWithEvent_attachToWindow(event, &window); }
    void open(const CalTaskPtr &task) { tasks.showTaskEditSheetWithTask_attachToWindow(task, &window); }
};

template <typename Control> Control *controlOf(const VTCalItemEditController &sheet, const QString &name)
{
    return sheet.window()->findChild<Control *>(name);
}

// Types over what is in a field.
inline void replaceText(QLineEdit *field, const QString &text)
{
    field->setFocus();
    field->selectAll();
    if (text.isEmpty())
        QTest::keyClick(field, Qt::Key_Delete);
    else
        QTest::keyClicks(field, text);
}

// What a programming error says, or nothing when none was found.
template <typename Action> std::optional<AssertionFailure> failureOf(const Action &action)
{
    try {
        action();
    } catch (const AssertionFailure &failure) {
        return failure;
    }
    return std::nullopt;
}
