// SPDX-License-Identifier: MIT
#include "EditSheetFixture.h"

#include <LengthenedTexts.h>
#include <TestRegistry.h>

#include <QLabel>

using namespace Qt::StringLiterals;

namespace
{

CalEventPtr fullEvent()
{
    const CalEventPtr event
        = makeOccurrence(u"1"_s, u"Lunch"_s, localInstant("2026-11-20T11:00"), localInstant("2026-11-20T12:00"));
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=WEEKLY;BYDAY=MO,TU,WE,TH;INTERVAL=2;UNTIL=20271231" });
    event->setAlarms({ makeAlarm(-900), makeAlarm(-3600), makeAlarm(-86400), makeAlarm(0), makeAlarm(60) });
    return event;
}

QString described(const QWidget &control)
{
    return u"%1 has %2 by %3 and wants %4 by %5"_s.arg(control.objectName())
        .arg(control.width())
        .arg(control.height())
        .arg(control.sizeHint().width())
        .arg(control.sizeHint().height());
}

// What a person could not read whole, or see as one thing on top of another.
QStringList troubles(const KLVSheet &sheet)
{
    QStringList found;
    QList<QWidget *> controls;
    for (QWidget *control : sheet.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!control->isVisible() || control->isWindow())
            continue;
        if (!sheet.rect().contains(control->geometry()))
            found.append(described(*control) + u": outside"_s);
        for (const QWidget *other : controls) {
            if (other->geometry().intersects(control->geometry()))
                found.append(described(*control) + u": over "_s + other->objectName());
        }
        controls.append(control);
        const auto *label = qobject_cast<QLabel *>(control);
        const bool isWrapped = label && label->wordWrap();
        const int height = isWrapped ? label->heightForWidth(label->width()) : control->sizeHint().height();
        if ((label || qobject_cast<QAbstractButton *>(control))
            && ((!isWrapped && control->width() < control->sizeHint().width()) || control->height() < height))
            found.append(described(*control) + u": cut off"_s);
    }
    return found;
}

} // namespace

class VTSheetLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsCutOffOrCovered_data();
    void nothingIsCutOffOrCovered();
    void sheetGrowsAndShrinksWithItsAlarms();
    void longTitleOfACalendarLeavesTheWidth();
};

void VTSheetLayoutTest::nothingIsCutOffOrCovered_data()
{
    QTest::addColumn<bool>("isLonger");
    QTest::addColumn<int>("fontPixels");

    QTest::newRow("English") << false << 13;
    QTest::newRow("40 % longer") << true << 13;
    QTest::newRow("large font") << false << 20;
    QTest::newRow("40 % longer in a large font") << true << 20;
}

void VTSheetLayoutTest::nothingIsCutOffOrCovered()
{
    QFETCH(const bool, isLonger);
    QFETCH(const int, fontPixels);
    const QFont previous = QApplication::font();
    QFont font = previous;
    font.setPixelSize(fontPixels);
    QApplication::setFont(font);
    const auto longer = isLonger ? std::make_unique<LengthenedTexts>() : nullptr;
    {
        EditSheetFixture fixture;
        fixture.open(fullEvent());
        QCOMPARE(troubles(*fixture.events.window()), QStringList());
        fixture.events.showAlarmEditSheetWithNewAlarm();
        QCOMPARE(troubles(*fixture.events.alarmController()->window()), QStringList());
        fixture.events.alarmController()->cancelAlarmEditSheet();
        fixture.open(std::make_shared<CalEvent>());
        QCOMPARE(troubles(*fixture.events.window()), QStringList());
        fixture.events.cancelEventEditSheet();
        fixture.open(makeTaskDue(u"2"_s, u"Milk"_s, fixture.clock.now()));
        QCOMPARE(troubles(*fixture.tasks.window()), QStringList());
        fixture.tasks.showAlarmEditSheetWithNewAlarm();
        QCOMPARE(troubles(*fixture.tasks.alarmController()->window()), QStringList());
    }
    QApplication::setFont(previous);
}

void VTSheetLayoutTest::sheetGrowsAndShrinksWithItsAlarms()
{
    EditSheetFixture fixture;
    fixture.open(makeEvent(u"1"_s, u"Lunch"_s, fixture.clock.now(), fixture.clock.now().addSecs(60)));
    KLVSheet *const sheet = fixture.events.window();
    const int first = sheet->height();
    for (const double trigger : { -60.0, -120.0, -180.0 })
        fixture.events.updateAlarm_withAlarm(nullptr, makeAlarm(trigger));

    QTRY_VERIFY(sheet->height() > first);
    QCOMPARE(troubles(*sheet), QStringList());

    for (int row = 0; row < 3; ++row) {
        fixture.events.alarmsTable()->selectRow(0);
        fixture.events.removeSelectedAlarm();
    }
    QTRY_COMPARE(sheet->height(), first);
}

void VTSheetLayoutTest::longTitleOfACalendarLeavesTheWidth()
{
    EditSheetFixture fixture;
    fixture.open(fixture.addEvent(u"Lunch"_s));
    const int usual = fixture.events.window()->width();
    fixture.events.cancelEventEditSheet();
    fixture.backend().replaceCalendar(std::make_shared<CalCalendar>(
        CalCalendar::Values { .uid = u"Home"_s, .title = u"Home of all that is long "_s.repeated(10), .color = {} }));

    fixture.open(fixture.storedEvent(u"Lunch"_s));

    QCOMPARE(fixture.events.window()->width(), usual);
    QCOMPARE(troubles(*fixture.events.window()), QStringList());
}

VANTLE_TEST(VTSheetLayoutTest)
#include "VTSheetLayoutTest.moc"
