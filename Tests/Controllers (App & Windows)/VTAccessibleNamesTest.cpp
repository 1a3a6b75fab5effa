// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"
#include "MainWindowFixture.h"

#include <DesktopAlerts.h>
#include <DesktopWorkspace.h>
#include <KLVNotice.h>
#include <ProgramWindows.h>
#include <TestRegistry.h>
#include <VTShortcutsWindow.h>
#include <VTStatusbarMenu.h>

#include <QAccessible>
#include <QMenu>
#include <QMessageBox>
#include <QMetaEnum>
#include <QTimer>

#include <set>

using namespace Qt::StringLiterals;

namespace
{

// What only holds other things together; a screen reader passes it by.
bool isStructure(QAccessible::Role role)
{
    static const std::set<QAccessible::Role> structure { QAccessible::NoRole, QAccessible::Client, QAccessible::Pane,
        QAccessible::Grouping, QAccessible::LayeredPane, QAccessible::Separator };
    return structure.contains(role);
}

QString described(const QAccessibleInterface &node, const QString &path)
{
    const QString name = node.object() ? node.object()->objectName() : QString();
    return u"%1 > %2 %3"_s.arg(
        path, QLatin1String(QMetaEnum::fromType<QAccessible::Role>().valueToKey(node.role())), name);
}

// Everything below the node that can be used or has a role, and does not say what it is.
void collectNameless(const QAccessibleInterface &node, const QString &path, QStringList &nameless)
{
    const QAccessible::State state = node.state();
    if (state.invisible)
        return;
    const bool isOfNote = !isStructure(node.role()) || state.focusable;
    if (isOfNote && node.text(QAccessible::Name).isEmpty() && node.text(QAccessible::Value).isEmpty())
        nameless.append(described(node, path));
    for (int index = 0; index < node.childCount(); ++index) {
        if (const QAccessibleInterface *child = node.child(index))
            collectNameless(*child, path + u"/"_s + node.text(QAccessible::Name), nameless);
    }
}

QStringList namelessIn(QWidget &window)
{
    QCoreApplication::processEvents();
    QStringList nameless;
    if (const QAccessibleInterface *root = QAccessible::queryAccessibleInterface(&window))
        collectNameless(*root, window.objectName(), nameless);
    else
        nameless.append(u"no interface"_s);
    return nameless;
}

} // namespace
Q_DECLARE_METATYPE(PreferencesState)

// Whoever does not see the window is told what everything in it is.
class VTAccessibleNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void partsOfTheMainWindow();
    void menus();
    void keysInTheWindowOfShortcuts();
    void sheets();
    void menuOfTheStatusIcon();
    void preferences_data();
    void preferences();
    void windowsOnTheProgram();
    void alertsAndQuestions();
    void aNamelessPartIsFound();
};

void VTAccessibleNamesTest::partsOfTheMainWindow()
{
    MainWindowFixture fixture;
    fixture.addEvent("Tea");
    fixture.addTask("Milk");
    fixture.wakeWithWindow();
    fixture.controller->setShowCalendarDrawer(true);
    fixture.window->findChild<KLVNotice *>()->say(u"Personal calendars may be out of date."_s);
    QCOMPARE(namelessIn(*fixture.window).join(u'\n'), QString());

    fixture.window->setDateBarVisible(false);
    QCOMPARE(namelessIn(*fixture.window).join(u'\n'), QString());
}

void VTAccessibleNamesTest::menus()
{
    MainWindowFixture fixture;
    fixture.addEvent("Tea");
    fixture.wakeWithWindow();

    const auto menus = fixture.window->findChildren<QMenu *>();
    QVERIFY(menus.size() >= 6);
    for (QMenu *menu : menus) {
        menu->popup(QPoint(0, 0));
        QCOMPARE(namelessIn(*menu).join(u'\n'), QString());
        menu->close();
    }
}

void VTAccessibleNamesTest::keysInTheWindowOfShortcuts()
{
    VTShortcutsWindow window;
    window.show();

    QCOMPARE(namelessIn(window).join(u'\n'), QString());
}

void VTAccessibleNamesTest::sheets()
{
    EditSheetFixture fixture;
    const CalEventPtr event
        = makeOccurrence(u"1"_s, u"Lunch"_s, localInstant("2026-11-20T11:00"), localInstant("2026-11-20T12:00"));
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=WEEKLY" });
    event->setAlarms({ makeAlarm(-900), makeAlarm(-3600) });
    fixture.open(event);
    QCOMPARE(namelessIn(*fixture.events.window()).join(u'\n'), QString());

    fixture.events.showAlarmEditSheetWithNewAlarm();
    QCOMPARE(namelessIn(*fixture.events.alarmController()->window()).join(u'\n'), QString());
    fixture.events.alarmController()->cancelAlarmEditSheet();
    fixture.events.cancelEventEditSheet();

    fixture.open(makeTaskDue(u"2"_s, u"Milk"_s, fixture.clock.now()));
    QCOMPARE(namelessIn(*fixture.tasks.window()).join(u'\n'), QString());
}

void VTAccessibleNamesTest::menuOfTheStatusIcon()
{
    VTStatusbarMenu menu;
    menu.popup(QPoint(0, 0));

    QCOMPARE(namelessIn(menu).join(u'\n'), QString());
}

void VTAccessibleNamesTest::preferences_data()
{
    QTest::addColumn<PreferencesState>("state");

    QTest::newRow("usual") << PreferencesState::Usual;
    QTest::newRow("key taken") << PreferencesState::KeyTaken;
    QTest::newRow("asks the person") << PreferencesState::AsksThePerson;
    QTest::newRow("no hot keys") << PreferencesState::WithoutHotKeys;
    QTest::newRow("no start at login") << PreferencesState::CannotStartAtLogin;
}

void VTAccessibleNamesTest::preferences()
{
    QFETCH(const PreferencesState, state);
    PreferencesInState preferences(state);
    preferences.window().show();

    QCOMPARE(namelessIn(preferences.window()).join(u'\n'), QString());
    // What its person is about to record.
    preferences.window().addEventShortcutRecorder()->setFocus();
    QCOMPARE(namelessIn(preferences.window()).join(u'\n'), QString());
}

void VTAccessibleNamesTest::windowsOnTheProgram()
{
    AboutInState about;
    about.window().show();
    QCOMPARE(namelessIn(about.window()).join(u'\n'), QString());

    FeedbackInState feedback;
    feedback.window().show();
    QCOMPARE(namelessIn(feedback.window()).join(u'\n'), QString());

    FeedbackInState offer(exampleOfCrashReport());
    offer.window().show();
    QCOMPARE(namelessIn(offer.window()).join(u'\n'), QString());
}

void VTAccessibleNamesTest::alertsAndQuestions()
{
    QStringList shown;
    QStringList nameless;
    const auto lookAtNext = [&shown, &nameless] {
        QTimer::singleShot(0, [&shown, &nameless] {
            QWidget *const box = QApplication::activeModalWidget();
            shown << box->objectName();
            nameless << namelessIn(*box);
            box->close();
        });
    };

    lookAtNext();
    SystemAlerts().runModal(u"The event “Tea” could not be saved.\nThe calendar is full."_s);
    lookAtNext();
    DesktopWorkspace().openURL(QUrl(u"tel:+49301234"_s));

    QCOMPARE(shown, (QStringList { u"alert"_s, u"openTargetQuestion"_s }));
    QCOMPARE(nameless.join(u'\n'), QString());
}

void VTAccessibleNamesTest::aNamelessPartIsFound()
{
    QWidget window;
    const QCheckBox box(&window);
    window.show();

    QCOMPARE(namelessIn(window).size(), 1);
}

VANTLE_TEST(VTAccessibleNamesTest)
#include "VTAccessibleNamesTest.moc"
