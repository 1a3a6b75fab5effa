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
    void lineOfTheStartIsThereAtOnce();
};

void VTSilenceWordsTest::words_data()
{
    QTest::addColumn<QStringList>("services");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << QStringList() << QString();
    QTest::newRow("one") << QStringList { u"Personal"_s }
                         << u"Personal calendars may be out of date: the service does not answer."_s;
    QTest::newRow("two") << QStringList { u"Personal"_s, u"Office"_s }
                         << u"Personal and Office calendars may be out of date: the services do not answer."_s;
    QTest::newRow("the same name twice") << QStringList { u"Office"_s, u"Office"_s }
                                         << u"Office calendars may be out of date: the service does not answer."_s;
    QTest::newRow("without a name") << QStringList { QString() }
                                    << u"Some calendars may be out of date: their service does not answer."_s;
    QTest::newRow("many") << QStringList { u"a"_s, u"b"_s, u"c"_s, u"d"_s }
                          << u"Some calendars may be out of date: their service does not answer."_s;
}

void VTSilenceWordsTest::words()
{
    QFETCH(const QStringList, services);
    QFETCH(const QString, expected);

    QCOMPARE(VTSilenceWords(services, QLocale(u"en_GB"_s)), expected);
}

void VTSilenceWordsTest::hostileNamesAreShortPlainText()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();

    fixture.backend().setSilentServices({ u"<b>a</b>\n<img src='file:///x'>"_s + QString(1'000'000, u'z') });

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

    fixture.backend().setSilentServices({ u"Personal"_s });
    QTRY_VERIFY(notice->isVisible());
    QCOMPARE(notice->accessibleName(), u"Personal calendars may be out of date: the service does not answer."_s);

    fixture.backend().setSilentServices({});
    QTRY_VERIFY(!notice->isVisible());
}

void VTSilenceWordsTest::lastShownDayStaysWhileAServiceIsSilent()
{
    MainWindowFixture fixture;
    fixture.addEvent("event");
    fixture.addTask("task");
    const VTMainWindowController &controller = fixture.wakeWithWindow();

    fixture.backend().setSilentServices({ u"Personal"_s });
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

    fixture.backend().setSilentServices({ u"Personal"_s });

    const KLVNotice *notice = fixture.window->notice();
    QTRY_VERIFY(notice->isVisible() && fixture.window->splitView()->height() < lists);
    QCOMPARE(fixture.window->size(), size);
    QCOMPARE(fixture.window->splitView()->height(), lists - notice->height());
    QCOMPARE(notice->geometry().bottom() + 1, fixture.window->splitView()->geometry().top());
    QCOMPARE(notice->height(), notice->heightForWidth(notice->width()));
}

void VTSilenceWordsTest::lineOfTheStartIsThereAtOnce()
{
    MainWindowFixture fixture;
    fixture.backend().setSilentServices({ u"Personal"_s });

    fixture.wakeWithWindow();

    QVERIFY(fixture.window->notice()->isVisible());
}

VANTLE_TEST(VTSilenceWordsTest)
#include "VTSilenceWordsTest.moc"
