// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <CalendarFolder.h>
#include <HookedCalls.h>
#include <TestRegistry.h>
#include <UnprivilegedScope.h>

#include <QDir>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{

const QString eventFile = u"home/lunch.ics"_s;
const QString taskFile = u"home/milk.ics"_s;

// Wednesday, 11 March 2026, 12:00 in Berlin.
QByteArray eventFileText(const QByteArray &stamp, const QByteArray &title, const QByteArray &more = {})
{
    return calendarText("BEGIN:VEVENT\r\nUID:lunch\r\nDTSTAMP:" + stamp + "\r\nDTSTART:20260311T110000Z\r\nSUMMARY:"
        + title + "\r\nDTEND:20260311T120000Z\r\nX-KEEP:1\r\n" + more + "END:VEVENT\r\n");
}

QByteArray seriesFileText(const QByteArray &stamp, const QByteArray &title, const QByteArray &more = {})
{
    return calendarText("BEGIN:VEVENT\r\nUID:lunch\r\nDTSTAMP:" + stamp + "\r\nDTSTART:20260309T110000Z\r\nSUMMARY:"
        + title + "\r\nDTEND:20260309T120000Z\r\nRRULE:FREQ=DAILY;COUNT=6\r\nEXDATE:20260310T110000Z\r\n" + more
        + "END:VEVENT\r\n");
}

QByteArray taskFileText(const QByteArray &stamp, const QByteArray &title, const QByteArray &more = {})
{
    return calendarText("BEGIN:VTODO\r\nUID:milk\r\nDTSTAMP:" + stamp + "\r\nSUMMARY:" + title + "\r\nX-KEEP:1\r\n"
        + more + "END:VTODO\r\n");
}

const QByteArray before = "20260101T000000Z";
const QByteArray saved = "20260311T110000Z"; // the clock's time
const QByteArray savedOnce = "LAST-MODIFIED:20260311T110000Z\r\nSEQUENCE:1\r\n";

// The sheets over the store as the application has it: a folder of files.
struct FolderSheets {
    CalendarFolder folder;
    HookedCalls calls;
    std::unique_ptr<CalCalendarStore> store;
    RecordingAlerts alerts;
    ScriptedFileChooser fileChooser;
    FixedAlertSounds sounds;
    QMainWindow window;
    std::unique_ptr<VTEventEditController> events;
    std::unique_ptr<VTTaskEditController> tasks;

    enum class Watching { No, Yes };

    explicit FolderSheets(
        const QByteArray &eventText = eventFileText(before, "Lunch"), Watching watching = Watching::No)
    {
        folder.write(u"home/displayname"_s, "Home");
        folder.write(eventFile, eventText);
        folder.write(taskFile, taskFileText(before, "Milk"));
        FolderCalendarStore::Options options;
        options.root = folder.root();
        options.watchesForChanges = watching == Watching::Yes;
        std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
        backends.push_back(std::make_unique<FolderCalendarStore>(options, folder.clock(), calls));
        store = std::make_unique<CalCalendarStore>(std::move(backends));
        const VTEditServices services { *store, folder.clock(), alerts, fileChooser, sounds };
        events = std::make_unique<VTEventEditController>(services);
        tasks = std::make_unique<VTTaskEditController>(services);
        window.show();
    }
    ~FolderSheets()
    {
        events.reset();
        tasks.reset();
        QDir(qEnvironmentVariable("XDG_STATE_HOME")).removeRecursively();
    }

    CalEventPtr shownEvent() const
    {
        const QDate day(2026, 3, 11);
        return store
            ->eventsWithPredicate(CalCalendarStore::eventPredicateWithStartDate_endDate_calendars(
                day.startOfDay(), day.endOfDay(), store->calendars()))
            .value(0);
    }
    CalTaskPtr shownTask() const
    {
        return store->tasksWithPredicate(CalCalendarStore::taskPredicateWithCalendars(store->calendars())).value(0);
    }
    void openEvent() { events->showEventEditSheetWithEvent_attachToWindow(shownEvent(), &window); }
    void openTask() { tasks->showTaskEditSheetWithTask_attachToWindow(shownTask(), &window); }
    void retitleEvent(const QString &title) const
    {
        replaceText(events->titleField(), title);
        QTest::keyClick(events->titleField(), Qt::Key_Return);
    }
    void retitleTask(const QString &title) const
    {
        replaceText(tasks->titleField(), title);
        QTest::keyClick(tasks->titleField(), Qt::Key_Return);
    }
    QStringList files() const { return QDir(folder.path(u"home"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    static QStringList journal()
    {
        return QDir(qEnvironmentVariable("XDG_STATE_HOME") + u"/vantle/saves"_s)
            .entryList({ u"*.save"_s }, QDir::Files);
    }
    QStringList firstLines() const
    {
        QStringList lines;
        for (const QString &message : alerts.messages)
            lines.append(message.section(u'\n', 0, 0));
        return lines;
    }
};

} // namespace

class VTSheetsOverFoldersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void programmingErrorsAreNamedAndWriteNothing();
    void bothStepsWriteTheFileAndLeaveOneEdit();
    void aSeriesIsAsAfterOneEdit();
    void aToDoIsWrittenOnce();
    void cancellingWritesNothing();
    void aFirstStepThatFailsShowsOneAlert();
    void bothStepsFailingShowTwoAlerts();
    void aSecondStepThatFailsShowsOneAlertAndLeavesTheFile();
    void aFileChangedUnderneathIsKept_data();
    void aFileChangedUnderneathIsKept();
    void aFileRemovedUnderneathIsNotBroughtBack_data();
    void aFileRemovedUnderneathIsNotBroughtBack();
    void aReadOnlyFolderIsNamed_data();
    void aReadOnlyFolderIsNamed();
    void whatWasRefusedCanBeSavedAgain();
    void whatIsTypedSurvivesAChangeOfTheFile();

private:
    static void addKinds();
};

void VTSheetsOverFoldersTest::addKinds()
{
    QTest::addColumn<bool>("isEvent");

    QTest::newRow("event") << true;
    QTest::newRow("to-do") << false;
}

void VTSheetsOverFoldersTest::programmingErrorsAreNamedAndWriteNothing()
{
    FolderSheets sheets;
    const auto said = [](const auto &action) {
        const auto failure = failureOf(action);
        return failure ? u"%1 (%2, %3)"_s.arg(failure->message(), failure->sourceName()).arg(failure->line())
                       : QString();
    };

    QCOMPARE(said([&] { sheets.events->showEventEditSheetWithEvent_attachToWindow(nullptr, &sheets.window); }),
        u"showEventEditSheetWithEvent: invoked with oEvent == nil "
        "(Controllers (App & Windows)/VTEventEditController, 102)"_s);
    QCOMPARE(said([&] { sheets.events->showEventEditSheetWithEvent_attachToWindow(sheets.shownEvent(), nullptr); }),
        u"showEventEditSheetWithEvent: invoked with targetWindow == nil "
        "(Controllers (App & Windows)/VTEventEditController, 103)"_s);
    QCOMPARE(said([&] { sheets.tasks->showTaskEditSheetWithTask_attachToWindow(nullptr, &sheets.window); }),
        u"showTaskEditSheetWithTask:attachToWindow: invoked with oTask == nil "
        "(Controllers (App & Windows)/VTTaskEditController, 91)"_s);
    QCOMPARE(said([&] { sheets.tasks->showTaskEditSheetWithTask_attachToWindow(sheets.shownTask(), nullptr); }),
        u"showTaskEditSheetWithTask:attachToWindow: invoked with parentWindow == nil "
        "(Controllers (App & Windows)/VTTaskEditController, 92)"_s);
    QCOMPARE(said([&] {
        sheets.events->alarmController()->editAlarm_allowRelativeTrigger_attachedToWindow_delegate(
            nullptr, true, &sheets.window, sheets.events.get());
    }),
        u"editAlarm:allowRelativeTrigger:attachedToWindow:delegate: invoked with oAlarm == nil "
        "(Controllers (App & Windows)/VTAlarmEditController, 129)"_s);

    QCOMPARE(sheets.folder.read(eventFile), eventFileText(before, "Lunch"));
    QCOMPARE(sheets.folder.read(taskFile), taskFileText(before, "Milk"));
    QVERIFY(sheets.alerts.messages.isEmpty());
}

void VTSheetsOverFoldersTest::bothStepsWriteTheFileAndLeaveOneEdit()
{
    FolderSheets sheets;
    QByteArrayList replaced; // what each write takes the place of
    sheets.calls.hook = [&](HookedCalls::Call call) {
        if (call == HookedCalls::Call::Exchange)
            replaced.append(sheets.folder.read(eventFile));
        return 0;
    };
    sheets.openEvent();

    sheets.retitleEvent(u"Dinner"_s);

    QCOMPARE(sheets.alerts.messages, QStringList());
    QCOMPARE(
        replaced, (QByteArrayList { eventFileText(before, "Lunch"), eventFileText(saved, "DUMBY Dinner", savedOnce) }));
    QCOMPARE(sheets.folder.read(eventFile), eventFileText(saved, "Dinner", savedOnce));
    QCOMPARE(sheets.files(), (QStringList { u"displayname"_s, u"lunch.ics"_s, u"milk.ics"_s }));
    QCOMPARE(FolderSheets::journal(), QStringList());
}

void VTSheetsOverFoldersTest::aSeriesIsAsAfterOneEdit()
{
    FolderSheets sheets(seriesFileText(before, "Lunch"));
    sheets.openEvent();

    sheets.retitleEvent(u"Dinner"_s);

    QCOMPARE(sheets.alerts.messages, QStringList());
    QCOMPARE(sheets.folder.read(eventFile), seriesFileText(saved, "Dinner", savedOnce));
    QCOMPARE(FolderSheets::journal(), QStringList());
}

void VTSheetsOverFoldersTest::aToDoIsWrittenOnce()
{
    FolderSheets sheets;
    int writes = 0;
    sheets.calls.hook = [&](HookedCalls::Call call) {
        writes += call == HookedCalls::Call::Exchange ? 1 : 0;
        return 0;
    };
    sheets.openTask();

    sheets.retitleTask(u"Bread"_s);

    QCOMPARE(writes, 1);
    QCOMPARE(sheets.folder.read(taskFile), taskFileText(saved, "Bread", savedOnce));
    QCOMPARE(sheets.alerts.messages, QStringList());
}

void VTSheetsOverFoldersTest::cancellingWritesNothing()
{
    FolderSheets sheets;
    sheets.openEvent();
    replaceText(sheets.events->titleField(), u"Dinner"_s);
    QTest::keyClick(sheets.events->titleField(), Qt::Key_Escape);
    sheets.openTask();
    replaceText(sheets.tasks->titleField(), u"Bread"_s);
    QTest::keyClick(sheets.tasks->titleField(), Qt::Key_Escape);

    QCOMPARE(sheets.folder.read(eventFile), eventFileText(before, "Lunch"));
    QCOMPARE(sheets.folder.read(taskFile), taskFileText(before, "Milk"));
}

void VTSheetsOverFoldersTest::aFirstStepThatFailsShowsOneAlert()
{
    FolderSheets sheets;
    int creations = 0;
    sheets.calls.hook
        = [&](HookedCalls::Call call) { return call == HookedCalls::Call::Create && creations++ == 0 ? EDQUOT : 0; };
    sheets.openEvent();

    sheets.retitleEvent(u"Dinner"_s);

    QCOMPARE(sheets.firstLines(), QStringList { u"“Lunch” in the calendar “Home” was not saved."_s });
    QVERIFY2(
        sheets.alerts.messages.first().contains(qt_error_string(EDQUOT)), qPrintable(sheets.alerts.messages.first()));
    QCOMPARE(sheets.folder.read(eventFile), eventFileText(saved, "Dinner", savedOnce));
    QCOMPARE(FolderSheets::journal(), QStringList());
}

void VTSheetsOverFoldersTest::bothStepsFailingShowTwoAlerts()
{
    FolderSheets sheets;
    sheets.calls.hook = [](HookedCalls::Call call) { return call == HookedCalls::Call::Write ? ENOSPC : 0; };
    sheets.openEvent();

    sheets.retitleEvent(u"Dinner"_s);

    QCOMPARE(sheets.alerts.messages.size(), 2);
    for (const QString &message : sheets.alerts.messages) {
        QVERIFY2(message.contains(u"in the calendar “Home” was not saved."_s), qPrintable(message));
        QVERIFY2(message.contains(qt_error_string(ENOSPC)), qPrintable(message));
    }
    QCOMPARE(sheets.folder.read(eventFile), eventFileText(before, "Lunch"));
    QCOMPARE(sheets.files(), (QStringList { u"displayname"_s, u"lunch.ics"_s, u"milk.ics"_s }));
}

void VTSheetsOverFoldersTest::aSecondStepThatFailsShowsOneAlertAndLeavesTheFile()
{
    FolderSheets sheets;
    bool hasFailed = false;
    sheets.calls.hook = [&](HookedCalls::Call call) {
        const bool isSecondStep = sheets.folder.read(eventFile).contains("DUMBY");
        const bool fails = call == HookedCalls::Call::Create && isSecondStep && !hasFailed;
        hasFailed = hasFailed || fails;
        return fails ? ENOSPC : 0;
    };
    sheets.openEvent();

    sheets.retitleEvent(u"Dinner"_s);

    QCOMPARE(sheets.alerts.messages.size(), 1);
    QCOMPARE(sheets.folder.read(eventFile), eventFileText(before, "Lunch"));
    QCOMPARE(FolderSheets::journal(), QStringList());
}

void VTSheetsOverFoldersTest::aFileChangedUnderneathIsKept_data()
{
    addKinds();
}

void VTSheetsOverFoldersTest::aFileChangedUnderneathIsKept()
{
    QFETCH(const bool, isEvent);
    FolderSheets sheets;
    const QString file = isEvent ? eventFile : taskFile;
    const QByteArray theirs = isEvent ? eventFileText(before, "Brunch") : taskFileText(before, "Butter");
    isEvent ? sheets.openEvent() : sheets.openTask();
    sheets.folder.writeByRenaming(file, theirs);

    isEvent ? sheets.retitleEvent(u"Dinner"_s) : sheets.retitleTask(u"Bread"_s);

    QCOMPARE(sheets.alerts.messages.size(), isEvent ? 2 : 1);
    for (const QString &message : sheets.alerts.messages)
        QVERIFY2(message.contains(u"in the calendar “Home” was not saved.\n"_s), qPrintable(message));
    QCOMPARE(sheets.folder.read(file), theirs);
    QCOMPARE(FolderSheets::journal(), QStringList());
}

void VTSheetsOverFoldersTest::aFileRemovedUnderneathIsNotBroughtBack_data()
{
    addKinds();
}

void VTSheetsOverFoldersTest::aFileRemovedUnderneathIsNotBroughtBack()
{
    QFETCH(const bool, isEvent);
    FolderSheets sheets;
    const QString file = isEvent ? eventFile : taskFile;
    isEvent ? sheets.openEvent() : sheets.openTask();
    QVERIFY(sheets.folder.remove(file));

    isEvent ? sheets.retitleEvent(u"Dinner"_s) : sheets.retitleTask(u"Bread"_s);

    QCOMPARE(sheets.alerts.messages.size(), isEvent ? 2 : 1);
    QCOMPARE(sheets.files().size(), 2);
    QVERIFY(!QFile::exists(sheets.folder.path(file)));
}

void VTSheetsOverFoldersTest::aReadOnlyFolderIsNamed_data()
{
    addKinds();
}

void VTSheetsOverFoldersTest::aReadOnlyFolderIsNamed()
{
    QFETCH(const bool, isEvent);
    FolderSheets sheets;
    const QString folder = sheets.folder.path(u"home"_s);
    const QString home = QFileInfo(qEnvironmentVariable("XDG_STATE_HOME")).path();
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    isEvent ? sheets.openEvent() : sheets.openTask();
    {
        const UnprivilegedScope unprivileged({ sheets.folder.path(u"../.."_s), sheets.folder.root(), folder,
            sheets.folder.path(eventFile), sheets.folder.path(taskFile), home });
        isEvent ? sheets.retitleEvent(u"Dinner"_s) : sheets.retitleTask(u"Bread"_s);
    }
    const QFile::Permissions permissions = QFile::permissions(folder);
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

    QCOMPARE(sheets.alerts.messages.size(), isEvent ? 2 : 1);
    for (const QString &message : sheets.alerts.messages) {
        QVERIFY2(message.contains(u"in the calendar “Home” was not saved.\n"_s), qPrintable(message));
        QVERIFY2(message.contains(qt_error_string(EACCES)), qPrintable(message));
    }
    QVERIFY(!permissions.testFlag(QFile::WriteOwner));
    QCOMPARE(sheets.folder.read(eventFile), eventFileText(before, "Lunch"));
    QCOMPARE(sheets.folder.read(taskFile), taskFileText(before, "Milk"));
}

void VTSheetsOverFoldersTest::whatWasRefusedCanBeSavedAgain()
{
    FolderSheets sheets;
    sheets.calls.hook = [](HookedCalls::Call call) { return call == HookedCalls::Call::Create ? ENOSPC : 0; };
    const CalEventPtr record = sheets.shownEvent();
    sheets.events->showEventEditSheetWithEvent_attachToWindow(record, &sheets.window);
    sheets.retitleEvent(u"Dinner"_s);
    QCOMPARE(record->title(), u"Dinner"_s);

    sheets.calls.hook = [](HookedCalls::Call) { return 0; };
    sheets.events->showEventEditSheetWithEvent_attachToWindow(record, &sheets.window);
    QCOMPARE(sheets.events->titleField()->text(), u"Dinner"_s);
    QTest::keyClick(sheets.events->titleField(), Qt::Key_Return);

    QCOMPARE(sheets.alerts.messages.size(), 2);
    QCOMPARE(sheets.folder.read(eventFile), eventFileText(saved, "Dinner", savedOnce));
}

void VTSheetsOverFoldersTest::whatIsTypedSurvivesAChangeOfTheFile()
{
    FolderSheets sheets(eventFileText(before, "Lunch"), FolderSheets::Watching::Yes);
    sheets.openEvent();
    replaceText(sheets.events->titleField(), u"Dinner"_s);
    replaceText(controlOf<QLineEdit>(*sheets.events, u"locationField"_s), u"At home"_s);
    QTest::keyClicks(controlOf<QPlainTextEdit>(*sheets.events, u"notesView"_s), u"Soup"_s);

    sheets.folder.writeByRenaming(eventFile, eventFileText(before, "Brunch"));
    sheets.folder.write(u"work/displayname"_s, "Work");
    QTRY_COMPARE(sheets.shownEvent()->title(), u"Brunch"_s);
    QTRY_COMPARE(sheets.events->calendarsPopUp()->count(), 2);

    QVERIFY(sheets.events->isOpen());
    QCOMPARE(sheets.events->titleField()->text(), u"Dinner"_s);
    QCOMPARE(controlOf<QLineEdit>(*sheets.events, u"locationField"_s)->text(), u"At home"_s);
    QCOMPARE(controlOf<QPlainTextEdit>(*sheets.events, u"notesView"_s)->toPlainText(), u"Soup"_s);
}

VANTLE_TEST(VTSheetsOverFoldersTest)
#include "VTSheetsOverFoldersTest.moc"
