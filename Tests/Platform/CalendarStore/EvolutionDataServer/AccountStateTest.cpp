// SPDX-License-Identifier: MIT
#include "ServiceWindow.h"

#include <CalDavServer.h>
#include <KLVCalendarsDrawer.h>
#include <KLVCheckBoxTable.h>
#include <KLVCheckBoxTableRow.h>
#include <TestRegistry.h>
#include <VTMainWindow.h>

#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patienceInMilliseconds = 30000;

} // namespace

// What the drawer says of the desktop's calendars while they change.
class AccountStateTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ServiceWindow> m_window;

    KLVCalendarsDrawer *drawer() const { return m_window->application().window().calendarsDrawer(); }
    // Null when the drawer lists no calendar of that name.
    KLVCheckBoxTableRow *row(const QString &name) const
    {
        for (KLVCheckBoxTableRow *row : drawer()->calendarsTable()->rows()) {
            if (row->accessibleName() == name)
                return row;
        }
        return nullptr;
    }
    QString remarkOn(const QString &name) const
    {
        const KLVCheckBoxTableRow *const found = row(name);
        return found ? found->accessibleDescription() : QString();
    }

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<ServiceWindow>();
        m_window->controller().setShowCalendarDrawer(true);
        QTRY_VERIFY_WITH_TIMEOUT(row(u"Work"_s), patienceInMilliseconds);
    }
    void cleanup() { m_window.reset(); }

    void accountWithoutItsPasswordSaysSoAndThenIsThere()
    {
        CalDavServer server;
        server.addCollection(u"choir"_s);
        QVERIFY2(server.start(), qPrintable(server.failure()));
        CalendarServiceNeighbour &neighbour = m_window->neighbour();

        neighbour.addCalDav(u"choir"_s, CalItemKind::Event, u"Choir"_s, server.url(u"choir"_s), CalDavServer::user());
        QTRY_VERIFY_WITH_TIMEOUT(
            remarkOn(u"Choir"_s).startsWith(u"The account asks for its password."_s), patienceInMilliseconds);
        QVERIFY(drawer()->accountSettingsButton()->isVisible());
        QVERIFY(remarkOn(u"Work"_s).isEmpty());

        neighbour.authenticate(u"choir"_s, CalDavServer::user(), CalDavServer::password());
        QTRY_VERIFY_WITH_TIMEOUT(row(u"Choir"_s) && remarkOn(u"Choir"_s).isEmpty(), patienceInMilliseconds);
        QTRY_VERIFY(!drawer()->accountSettingsButton()->isVisible());
        neighbour.removeSource(u"choir"_s);
    }

    // The service looks at it when it opens the calendar.
    void calendarThatBecomesReadOnlyIsFollowed()
    {
        CalendarServiceNeighbour &neighbour = m_window->neighbour();
        const QTemporaryDir folder;
        neighbour.addReadOnlyCalendar(
            u"fixtures"_s, CalItemKind::Event, u"Fixtures"_s, folder.filePath(u"fixtures.ics"_s));
        const auto isEditable = [this] {
            const CalCalendarPtr calendar = m_window->store().calendarWithUID(u"fixtures"_s);
            return calendar && calendar->isEditable();
        };
        QTRY_VERIFY(row(u"Fixtures"_s));
        QVERIFY(!isEditable());
        // Those that can be changed come first.
        QCOMPARE(m_window->store().calendars().last()->isEditable(), false);

        neighbour.setWritable(u"fixtures"_s, true);
        QVERIFY(ServiceWindow::session().kill(CalendarServiceSession::Part::Factory));
        QTRY_VERIFY_WITH_TIMEOUT(isEditable(), patienceInMilliseconds);
        neighbour.setWritable(u"fixtures"_s, false);
        QVERIFY(ServiceWindow::session().kill(CalendarServiceSession::Part::Factory));
        QTRY_VERIFY_WITH_TIMEOUT(!isEditable(), patienceInMilliseconds);
        neighbour.removeSource(u"fixtures"_s);
        QTRY_VERIFY(!row(u"Fixtures"_s));
    }

    void renamedRecolouredAndRemovedCalendarsAreFollowed()
    {
        CalendarServiceNeighbour &neighbour = m_window->neighbour();
        neighbour.addCalendar(u"garden"_s, CalItemKind::Event, u"Garden"_s, u"#112233"_s);
        QTRY_VERIFY(row(u"Garden"_s));
        QCOMPARE(row(u"Garden"_s)->cell().imageTintColor(), QColor(u"#112233"_s));

        neighbour.rename(u"garden"_s, u"Allotment"_s);
        QTRY_VERIFY(row(u"Allotment"_s));
        neighbour.recolour(u"garden"_s, u"#445566"_s);
        QTRY_COMPARE(row(u"Allotment"_s)->cell().imageTintColor(), QColor(u"#445566"_s));
        neighbour.setEnabled(u"garden"_s, false);
        QTRY_VERIFY(!row(u"Allotment"_s));
        neighbour.setEnabled(u"garden"_s, true);
        QTRY_VERIFY(row(u"Allotment"_s));

        neighbour.removeSource(u"garden"_s);
        QTRY_VERIFY(!row(u"Allotment"_s));
    }
};

VANTLE_TEST(AccountStateTest)

#include "AccountStateTest.moc"
