// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include <FixedAlertSounds.h>
#include <KLVTheme.h>
#include <LengthenedTexts.h>
#include <ManualClock.h>
#include <MemoryStore.h>
#include <RecordingAlerts.h>
#include <ScriptedFileChooser.h>
#include <TestRecords.h>
#include <VTEventEditController.h>
#include <VTTaskEditController.h>

#include <QApplication>
#include <QDir>
#include <QMainWindow>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

// The sheets over a store in memory, on Friday, 20 November 2026.
struct Sheets {
    MemoryStore calendars;
    ManualClock clock { localInstant("2026-11-20T10:00") };
    RecordingAlerts alerts;
    ScriptedFileChooser fileChooser;
    FixedAlertSounds sounds;
    QMainWindow window;
    VTEditServices services { calendars.store(), clock, alerts, fileChooser, sounds };
    VTEventEditController events { services };
    VTTaskEditController tasks { services };

    Sheets()
    {
        calendars.backend->removeCalendar(u"Work"_s);
        calendars.backend->addCalendar(std::make_shared<CalCalendar>(
            CalCalendar::Values { .uid = u"Work"_s, .title = u"Work"_s, .color = QColor(0xd6, 0x45, 0x5d) }));
        window.show();
    }

    CalCalendarPtr calendar() const { return calendars.store().calendars().last(); }
    QPixmap event(const CalEventPtr &event)
    {
        events.showEventEditSheetWithEvent_attachToWindow(event, &window);
        return pictureOf(*events.window());
    }
    QPixmap task(const CalTaskPtr &task)
    {
        tasks.showTaskEditSheetWithTask_attachToWindow(task, &window);
        return pictureOf(*tasks.window());
    }
    QPixmap alarm(const CalAlarmPtr &alarm)
    {
        VTAlarmEditController *const sheet = events.alarmController();
        sheet->editAlarm_allowRelativeTrigger_attachedToWindow_delegate(alarm, true, &window, &events);
        return pictureOf(*sheet->window());
    }
};

CalEventPtr fullEvent(const CalCalendarPtr &calendar)
{
    const CalEventPtr event = makeOccurrence(
        u"1"_s, u"Design review"_s, localInstant("2026-11-20T11:00"), localInstant("2026-11-20T12:30"));
    event->setCalendar(calendar);
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=WEEKLY" });
    event->setLocation(u"Studio 2, Harbour house"_s);
    event->setUrl(QUrl(u"https://meet.example.org/review"_s));
    event->setNotes(u"Bring the printed boards. We decide on the row layout and the date bar."_s);
    const CalAlarmPtr email = makeAlarm(-86400);
    email->setAction(CalAlarmActionEmail);
    email->setEmailAddress(u"ada@example.org"_s);
    event->setAlarms({ makeAlarm(-900), email });
    return event;
}

CalTaskPtr fullTask(const CalCalendarPtr &calendar)
{
    const CalTaskPtr task = makeTaskDue(u"2"_s, u"Order bulbs before the frost"_s, localInstant("2026-11-22T12:00"));
    task->setCalendar(calendar);
    task->setPriority(5);
    task->setNotes(u"Tulips and alliums, twenty each."_s);
    return task;
}

bool save(const QDir &folder, const QString &name, const QPalette &palette)
{
    QApplication::setPalette(palette);
    const auto sheets = std::make_unique<Sheets>();
    const CalAlarmPtr absolute = std::make_shared<CalAlarm>();
    absolute->setAbsoluteTrigger(localInstant("2026-11-20T10:45"));
    absolute->setAction(CalAlarmActionProcedure);
    const QList<QPixmap> filled { sheets->event(fullEvent(sheets->calendar())),
        sheets->task(fullTask(sheets->calendar())), sheets->alarm(makeAlarm(-900)) };
    const QList<QPixmap> empty { sheets->event(std::make_shared<CalEvent>()), sheets->task(std::make_shared<CalTask>()),
        sheets->alarm(absolute) };
    return beside(filled).save(folder.filePath(name + u"-filled.png"_s))
        && beside(empty).save(folder.filePath(name + u"-empty.png"_s));
}

} // namespace

// Takes pictures of the sheets, filled and empty, light and dark, mirrored, with longer texts and with a font of twice
// the size: sheet_pictures FOLDER
int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: sheet_pictures FOLDER\n");
        return 2;
    }
    if (!dressForPictures())
        return 1;
    const QDir folder(arguments.at(1));
    if (!save(folder, u"sheets-light"_s, KLVTheme::lightPalette())
        || !save(folder, u"sheets-dark"_s, KLVTheme::darkPalette()))
        return 1;
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    if (!save(folder, u"sheets-right-to-left"_s, KLVTheme::lightPalette()))
        return 1;
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    {
        const LengthenedTexts longer;
        if (!save(folder, u"sheets-longer"_s, KLVTheme::lightPalette()))
            return 1;
    }
    setFontPixels(26);
    return save(folder, u"sheets-large"_s, KLVTheme::darkPalette()) ? 0 : 1;
}
