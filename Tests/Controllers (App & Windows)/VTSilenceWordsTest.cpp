// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVAccordionView.h>
#include <KLVNotice.h>
#include <TestRegistry.h>
#include <VTSilenceWords.h>

#include <QTest>

using namespace Qt::StringLiterals;

class VTSilenceWordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words_data();
    void words();
    void hostileNamesAreShortPlainText();
    void lineIsThereWhileAServiceIsSilent();
    void lastShownDayStaysWhileAServiceIsSilent();
    void lineStandsUnderTheDateBarAndTakesItsRoomFromTheLists();
    void hiddenCalendarsAreNotNamed();
    void renamedCalendarIsNamedAnew();
    void serviceThatWasNeverReachedHasNoNames();
    void lineOfTheStartIsThereAtOnce();
};

void VTSilenceWordsTest::words_data()
{
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << QStringList() << QString();
    QTest::newRow("one") << QStringList { u"Work"_s } << u"Work may be out of date: the service does not answer."_s;
    QTest::newRow("two") << QStringList { u"Work"_s, u"Home"_s }
                         << u"Work and Home may be out of date: the service does not answer."_s;
    QTest::newRow("three") << QStringList { u"Work"_s, u"Home"_s, u"Choir"_s }
                           << u"Work, Home and Choir may be out of date: the service does not answer."_s;
    QTest::newRow("many") << QStringList { u"Work"_s, u"Home"_s, u"a"_s, u"b"_s, u"c"_s }
                          << u"Work, Home and 3 more may be out of date: the service does not answer."_s;
    QTest::newRow("the same name twice") << QStringList { u"Work"_s, u"Work"_s }
                                         << u"Work may be out of date: the service does not answer."_s;
    QTest::newRow("without a name") << QStringList { QString() }
                                    << u"Some calendars may be out of date: their service does not answer."_s;
    QTest::newRow("a name that is a place for another") << QStringList { u"%2"_s, u"%3"_s, u"a"_s,
        u"%1"_s } << u"%2, %3 and 2 more may be out of date: the service does not answer."_s;
}

void VTSilenceWordsTest::words()
{
    QFETCH(const QStringList, titles);
    QFETCH(const QString, expected);

    QCOMPARE(VTSilenceWords(titles, QLocale(u"en_GB"_s)), expected);
}

void VTSilenceWordsTest::hostileNamesAreShortPlainText()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();

    const QString title = u"<b>a</b>\n<img src='file:///x'>"_s + QString(1'000'000, u'z');
    fixture.backend().addCalendar(std::make_shared<CalCalendar>(
        CalCalendar::Values { .uid = u"hostile"_s, .title = title, .color = Qt::darkCyan }));
    fixture.backend().setSilentCalendars({ u"hostile"_s });

    KLVNotice *const notice = fixture.window->notice();
    QTRY_VERIFY(notice->isVisible());
    QCOMPARE(notice->textFormat(), Qt::PlainText);
    QVERIFY(notice->text().startsWith(u"<b>a</b> <img src="_s));
    QVERIFY(notice->text().size() < 120);
}

void VTSilenceWordsTest::lineIsThereWhileAServiceIsSilent()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();
    KLVNotice *const notice = fixture.window->notice();
    QVERIFY(!notice->isVisible());

    fixture.backend().setSilentCalendars({ u"Work"_s });
    QTRY_VERIFY(notice->isVisible());
    QCOMPARE(notice->accessibleName(), u"Work may be out of date: the service does not answer."_s);

    fixture.backend().setSilentCalendars({});
    QTRY_VERIFY(!notice->isVisible());
}

void VTSilenceWordsTest::lastShownDayStaysWhileAServiceIsSilent()
{
    MainWindowFixture fixture;
    fixture.addEvent("event");
    fixture.addTask("task");
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    fixture.backend().setSilentCalendars({ u"Work"_s });
    QTRY_VERIFY(fixture.window->notice()->isVisible());

    QCOMPARE(controller.eventsAccordion()->accordionViewItems().size(), 1);
    QCOMPARE(controller.tasksAccordion()->accordionViewItems().size(), 1);
    QCOMPARE(controller.selectedCalItemUID().value_or(QString()), u"event"_s);
}

void VTSilenceWordsTest::lineStandsUnderTheDateBarAndTakesItsRoomFromTheLists()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowExposed(fixture.window.get()));
    const QSize size = fixture.window->size();
    const int lists = fixture.window->splitView()->height();

    fixture.backend().setSilentCalendars({ u"Work"_s });

    const KLVNotice *notice = fixture.window->notice();
    QTRY_VERIFY(notice->isVisible() && fixture.window->splitView()->height() < lists);
    QCOMPARE(fixture.window->size(), size);
    QCOMPARE(fixture.window->splitView()->height(), lists - notice->height());
    QCOMPARE(notice->geometry().bottom() + 1, fixture.window->splitView()->geometry().top());
    QCOMPARE(notice->height(), notice->heightForWidth(notice->width()));
}

void VTSilenceWordsTest::hiddenCalendarsAreNotNamed()
{
    MainWindowFixture fixture;
    VTMainWindowController &controller = fixture.wakeWithWindow();
    KLVNotice *const notice = fixture.window->notice();
    fixture.backend().setSilentCalendars({ u"Home"_s, u"Work"_s });
    QTRY_COMPARE(notice->text(), VTSilenceWords({ u"Home"_s, u"Work"_s }));

    controller.setUnselectedCalendarsUID(QStringList { u"Work"_s });
    QCOMPARE(notice->text(), u"Home may be out of date: the service does not answer."_s);
    controller.setUnselectedCalendarsUID(QStringList { u"Work"_s, u"Home"_s });
    QVERIFY(!notice->isVisible());
    fixture.backend().setDesktopSource(u"Work"_s, CalItemKind::Task, u"to-dos of work"_s);
    controller.setUnselectedCalendarsUID(QStringList { u"to-dos of work"_s, u"Home"_s });
    QVERIFY(!notice->isVisible());
    controller.setUnselectedCalendarsUID(std::nullopt);
    QVERIFY(notice->isVisible());
}

void VTSilenceWordsTest::renamedCalendarIsNamedAnew()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();
    fixture.backend().setSilentCalendars({ u"Work"_s });
    QTRY_VERIFY(fixture.window->notice()->isVisible());

    fixture.backend().replaceCalendar(std::make_shared<CalCalendar>(
        CalCalendar::Values { .uid = u"Work"_s, .title = u"Office"_s, .color = Qt::darkCyan }));
    fixture.backend().postCalendarsChange();

    QTRY_COMPARE(fixture.window->notice()->text(), u"Office may be out of date: the service does not answer."_s);
}

void VTSilenceWordsTest::serviceThatWasNeverReachedHasNoNames()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();

    fixture.backend().setUnreached(true);

    QTRY_COMPARE(
        fixture.window->notice()->text(), u"The desktop’s calendars are missing: their service does not answer."_s);
}

void VTSilenceWordsTest::lineOfTheStartIsThereAtOnce()
{
    MainWindowFixture fixture;
    fixture.backend().setSilentCalendars({ u"Work"_s });

    fixture.wakeWithWindow();

    QVERIFY(fixture.window->notice()->isVisible());
}

VANTLE_TEST(VTSilenceWordsTest)
#include "VTSilenceWordsTest.moc"
