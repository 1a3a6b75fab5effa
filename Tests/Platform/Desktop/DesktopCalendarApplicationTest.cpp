// SPDX-License-Identifier: MIT
#include "InstalledPrograms.h"
#include "PrivateBus.h"
#include "TestRegistry.h"

#include <DesktopCalendarApplication.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

using Element = CalendarApplication::Element;
using Kind = CalendarApplication::ElementKind;

const QStringList evolutionTypes { u"x-scheme-handler/calendar"_s, u"x-scheme-handler/task"_s };
const Element meeting { .calendarUid = u"Personal"_s, .plainUid = u"meeting"_s, .day = QDate(2027, 3, 10) };
const Element errand { .calendarUid = u"Personal"_s, .kind = Kind::Todo, .plainUid = u"errand"_s };

} // namespace

class DesktopCalendarApplicationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void withoutProgramNothingIsShown();
    void calendarOfAFolderIsNotListed();
    void runningEvolutionIsGivenTheAddress_data();
    void runningEvolutionIsGivenTheAddress();
    void evolutionIsStartedBeforeItGetsTheAddress();
    void evolutionThatHandsItselfOverGetsTheAddress();
    void evolutionIsBroughtToTheFront();
    void gnomeCalendarIsLedToTheDayFirst();
    void gnomeCalendarShowsAnOccurrence();
    void gnomeCalendarShowsNoToDos();
    void otherHandlerOfTheAddressIsNotTaken();
    void laterWishTakesThePlaceOfTheEarlier();
    void withoutBusTheProgramIsStillStarted();

private:
    void installEvolution(const QString &lastingArgument = u"-"_s)
    {
        m_programs->install(u"org.gnome.Evolution.desktop"_s, u"evolution"_s, evolutionTypes, lastingArgument);
    }
    void installGnomeCalendar()
    {
        m_programs->install(u"org.gnome.Calendar.desktop"_s, u"gnome-calendar"_s, { u"text/calendar"_s });
    }
    std::unique_ptr<DesktopCalendarApplication> application(const QDBusConnection &bus)
    {
        // The service has an events source and a tasks source in one calendar; a folder has none.
        return std::make_unique<DesktopCalendarApplication>(
            [](const QString &calendarUid, Kind kind) {
                if (calendarUid != u"Personal"_s)
                    return QString();
                return kind == Kind::Event ? u"source-1"_s : u"list&2"_s;
            },
            m_programs->entries(), bus);
    }
    void show(const Element &element)
    {
        QVERIFY(m_application->hasCalendar(element.calendarUid));
        QVERIFY(m_application->hasElement(element));
        m_application->activate();
        m_application->showElement(element);
    }

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<InstalledPrograms> m_programs;
    std::unique_ptr<DesktopCalendarApplication> m_application;
};

void DesktopCalendarApplicationTest::init()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY2(m_bus->start(), qPrintable(m_bus->failure()));
    m_programs = std::make_unique<InstalledPrograms>();
    m_application = application(m_bus->connect());
}

void DesktopCalendarApplicationTest::cleanup()
{
    m_application.reset();
    m_programs.reset();
    m_bus.reset();
}

void DesktopCalendarApplicationTest::withoutProgramNothingIsShown()
{
    QVERIFY(!m_application->isInstalled());
    QVERIFY(!m_application->hasElement(meeting));

    m_application->activate();
    m_application->showElement(meeting);

    QVERIFY(m_programs->calls().isEmpty());
}

void DesktopCalendarApplicationTest::calendarOfAFolderIsNotListed()
{
    installEvolution();

    QVERIFY(m_application->isInstalled());
    QVERIFY(!m_application->hasCalendar(u"Home"_s));
    QVERIFY(!m_application->hasElement({ .calendarUid = u"Home"_s, .plainUid = u"meeting"_s }));
    QVERIFY(!m_application->hasElement({ .calendarUid = u"Personal"_s, .plainUid = {} }));
}

void DesktopCalendarApplicationTest::runningEvolutionIsGivenTheAddress_data()
{
    QTest::addColumn<Element>("element");
    QTest::addColumn<QString>("call");

    Element occurrence = meeting;
    occurrence.recurrenceId = u"20270310T090000"_s;
    Element odd = meeting;
    odd.plainUid = u"a&b=c d/é"_s;
    QTest::newRow("event") << meeting << u"evolution calendar:///?source-uid=source-1&comp-uid=meeting"_s;
    QTest::newRow("to-do") << errand << u"evolution task:///?source-uid=list%262&comp-uid=errand"_s;
    QTest::newRow("occurrence")
        << occurrence << u"evolution calendar:///?source-uid=source-1&comp-uid=meeting&comp-rid=20270310T090000"_s;
    QTest::newRow("odd signs") << odd
                               << u"evolution calendar:///?source-uid=source-1&comp-uid=a%26b%3Dc%20d%2F%C3%A9"_s;
}

void DesktopCalendarApplicationTest::runningEvolutionIsGivenTheAddress()
{
    QFETCH(const Element, element);
    QFETCH(const QString, call);
    installEvolution();
    QVERIFY(m_bus->connect().registerService(u"org.gnome.Evolution"_s));

    show(element);

    QTRY_COMPARE(m_programs->calls(), QStringList { call });
}

void DesktopCalendarApplicationTest::evolutionIsStartedBeforeItGetsTheAddress()
{
    installEvolution(u"calendar"_s);

    show(meeting);
    QTRY_COMPARE(m_programs->calls(), QStringList { u"evolution -c calendar"_s });
    QVERIFY(m_bus->connect().registerService(u"org.gnome.Evolution"_s));

    QTRY_COMPARE(m_programs->calls().size(), 2);
    QCOMPARE(m_programs->calls().last(), u"evolution calendar:///?source-uid=source-1&comp-uid=meeting"_s);
}

void DesktopCalendarApplicationTest::evolutionThatHandsItselfOverGetsTheAddress()
{
    installEvolution();

    show(errand);

    QTRY_COMPARE(m_programs->calls().size(), 2);
    QCOMPARE(m_programs->calls().first(), u"evolution -c calendar"_s);
}

void DesktopCalendarApplicationTest::evolutionIsBroughtToTheFront()
{
    installEvolution();
    QVERIFY(m_bus->connect().registerService(u"org.gnome.Evolution"_s));

    m_application->activate();

    QTRY_COMPARE(m_programs->calls(), QStringList { u"evolution -c calendar"_s });
}

void DesktopCalendarApplicationTest::gnomeCalendarIsLedToTheDayFirst()
{
    installGnomeCalendar();

    show(meeting);

    // The tests' locale writes dates as GNOME Calendar reads them there.
    QTRY_COMPARE(m_programs->calls(),
        (QStringList { u"gnome-calendar --date 03/10/27"_s, u"gnome-calendar --uuid source-1:meeting"_s }));
}

void DesktopCalendarApplicationTest::gnomeCalendarShowsAnOccurrence()
{
    installGnomeCalendar();
    Element occurrence = meeting;
    occurrence.recurrenceId = u"20270310T090000"_s;

    show(occurrence);

    QTRY_COMPARE(m_programs->calls().size(), 2);
    QCOMPARE(m_programs->calls().last(), u"gnome-calendar --uuid source-1:meeting:20270310T090000"_s);
}

void DesktopCalendarApplicationTest::gnomeCalendarShowsNoToDos()
{
    installGnomeCalendar();

    QVERIFY(m_application->hasCalendar(errand.calendarUid));
    QVERIFY(!m_application->hasElement(errand));
}

void DesktopCalendarApplicationTest::otherHandlerOfTheAddressIsNotTaken()
{
    installGnomeCalendar();
    m_programs->install(u"other.desktop"_s, u"other"_s, evolutionTypes);

    show(meeting);

    QTRY_COMPARE(m_programs->calls().size(), 2);
    QVERIFY(m_programs->calls().first().startsWith(u"gnome-calendar"_s));
}

void DesktopCalendarApplicationTest::laterWishTakesThePlaceOfTheEarlier()
{
    installEvolution(u"calendar"_s);

    show(meeting);
    QTRY_COMPARE(m_programs->calls().size(), 1);
    QVERIFY(m_bus->connect().registerService(u"org.gnome.Evolution"_s));
    m_application->showElement(errand);

    QTRY_COMPARE(m_programs->calls().size(), 2);
    QVERIFY(m_programs->calls().last().contains(u"errand"_s));
}

void DesktopCalendarApplicationTest::withoutBusTheProgramIsStillStarted()
{
    installGnomeCalendar();
    m_application = application(QDBusConnection(u"no bus at all"_s));

    show(meeting);

    QTRY_COMPARE(m_programs->calls(),
        (QStringList { u"gnome-calendar --date 03/10/27"_s, u"gnome-calendar --uuid source-1:meeting"_s }));
}

VANTLE_TEST(DesktopCalendarApplicationTest)
#include "DesktopCalendarApplicationTest.moc"
