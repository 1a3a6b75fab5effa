// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <StoreError.h>

#include <QTest>

using namespace Qt::StringLiterals;

class StoreErrorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageNamesItemCalendarAndReason();
    void messageWithoutCalendarNamesTheItem();
    void messageWithoutReasonIsOneLine();
    void messageTellsWhatWasRefused();
    void percentSignsInATitleStay();
    void longTitleLeavesRoomForTheReason();
    void titleStandsOnOneLine();
};

void StoreErrorTest::messageNamesItemCalendarAndReason()
{
    const StoreError error { StoreError::Code::Io, u"Buy milk"_s, u"Home"_s, u"The disk is full."_s };

    QCOMPARE(error.message(), u"“Buy milk” in the calendar “Home” was not saved.\nThe disk is full."_s);
}

void StoreErrorTest::messageWithoutCalendarNamesTheItem()
{
    const StoreError error { StoreError::Code::Io, u"Buy milk"_s, {}, u"The disk is full."_s };

    QCOMPARE(error.message(), u"“Buy milk” was not saved.\nThe disk is full."_s);
}

void StoreErrorTest::messageWithoutReasonIsOneLine()
{
    const StoreError error { StoreError::Code::Io, u"Buy milk"_s, u"Home"_s, {} };

    QCOMPARE(error.message(), u"“Buy milk” in the calendar “Home” was not saved."_s);
}

void StoreErrorTest::messageTellsWhatWasRefused()
{
    StoreError error { StoreError::Code::Io, u"Buy milk"_s, u"Home"_s, {} };

    error.action = StoreError::Action::Remove;
    QCOMPARE(error.message(), u"“Buy milk” in the calendar “Home” was not deleted."_s);
    error.action = StoreError::Action::Restore;
    QCOMPARE(error.message(), u"“Buy milk” in the calendar “Home” was not restored."_s);
    error.calendar.clear();
    QCOMPARE(error.message(), u"“Buy milk” was not restored."_s);
}

void StoreErrorTest::percentSignsInATitleStay()
{
    const StoreError error { StoreError::Code::Io, u"%2 off <b>today</b>"_s, u"%1"_s, {} };

    QCOMPARE(error.message(), u"“%2 off <b>today</b>” in the calendar “%1” was not saved."_s);
}

void StoreErrorTest::longTitleLeavesRoomForTheReason()
{
    // The last one that could stand there is one sign of two characters.
    const QString title = QString(199, u'W') + u"🎂"_s.repeated(500000);
    const StoreError error { StoreError::Code::Io, title, title, u"The disk is full."_s };

    const QString shown = QString(199, u'W') + u'…';
    QCOMPARE(error.message(), u"“%1” in the calendar “%1” was not saved.\nThe disk is full."_s.arg(shown));
    QCOMPARE(error.item, title);
}

void StoreErrorTest::titleStandsOnOneLine()
{
    const StoreError error { StoreError::Code::Io, u"Buy\nmilk\tand\u2028bread\u2029"_s, {}, {} };

    QCOMPARE(error.message(), u"“Buy milk and bread ” was not saved."_s);
}

VANTLE_TEST(StoreErrorTest)
#include "StoreErrorTest.moc"
