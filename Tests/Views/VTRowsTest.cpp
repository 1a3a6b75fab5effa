// SPDX-License-Identifier: MIT
#include "RowFixture.h"
#include "TestRegistry.h"

#include <KLVAccordionScrollArea.h>
#include <KLVButtonMatrix.h>
#include <KLVCheckBox.h>
#include <KLVIconsView.h>
#include <KLVMiniBadge.h>
#include <KLVTheme.h>
#include <VTCalEventController.h>
#include <VTCalTaskController.h>

#include <QAccessible>
#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;

class VTRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void heightsWithAFontOfFourteenPoints();
    void heightsWithTheUsualFont();
    void titleAreaIsCentredOnTheFirstLine();
    void detailsShowOnlyWhileTheRowIsSelected();
    void absentDetailsNeverShow();
    void allDayEventHasOneBadge();
    void badgeIsWideEnoughForADay();
    void iconsSayWhatTheEventHas();
    void cancelledEventIsStruckOut();
    void mailtoInCapitalsMakesAnActiveButton();
    void otherSchemeMakesADisabledButtonWithATitle();
    void attendeeMarks_data();
    void attendeeMarks();
    void secondButtonOpensTheSecondAddress();
    void tickingSavesTheTaskOnce();
    void refusedTickShowsNothingAndIsNotRetried();
    void changeFromElsewhereSavesAllTheSame();
    void discardedRowNeverSaves();
    void replacedObjectIsWatchedInstead();
    void completedTaskIsDimAndNotOverdue();
    void markupIsShownAsItStands();
    void titleWithABreakIsOneLine();
    void titleOfAMegabyteIsLaidOutAtOnce();
    void tickThroughAccessibilityReachesTheStore();
    void refetchOfRowsPaintsNothing();

private:
    template <typename Controller> Controller &show(const KeyValueObjectPtr &object);

    std::unique_ptr<RowFixture> m_fixture;
    std::unique_ptr<RowDelegate> m_delegate;
    std::unique_ptr<KLVAccordionView> m_accordion;
};

void VTRowsTest::init()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    m_fixture = std::make_unique<RowFixture>();
    m_delegate = std::make_unique<RowDelegate>(*m_fixture);
    m_accordion = std::make_unique<KLVAccordionView>();
    m_accordion->resize(340, 20);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(12);
    m_accordion->setFont(font);
    m_accordion->setDelegate(m_delegate.get());
}

void VTRowsTest::cleanup()
{
    m_accordion.reset();
}

template <typename Controller> Controller &VTRowsTest::show(const KeyValueObjectPtr &object)
{
    m_accordion->setRepresentedObjects({ object });
    return dynamic_cast<Controller &>(*m_accordion->accordionViewItems().first());
}

void VTRowsTest::heightsWithAFontOfFourteenPoints()
{
    const auto event = RowFixture::event(u"Tea"_s, at(20, 9), at(20, 10), m_fixture->home);
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);

    QCOMPARE(show<VTCalEventController>(event).unselectedHeight(), 44.0F);
    QCOMPARE(show<VTCalEventController>(event).selectedHeight(), 44.0F);
    QCOMPARE(show<VTCalTaskController>(task).unselectedHeight(), 22.0F);
    QCOMPARE(show<VTCalTaskController>(task).selectedHeight(), 22.0F);
}

void VTRowsTest::heightsWithTheUsualFont()
{
    QFont font(u"Inter"_s);
    font.setPixelSize(13);
    m_accordion->setFont(font);
    const auto one = RowFixture::event(u"Tea"_s, at(20, 9), at(20, 10), m_fixture->home);
    const auto two = RowFixture::event(u"Breakfast with the harbour crew"_s, at(20, 9), at(20, 10), m_fixture->home);
    const auto bare = RowFixture::task(u"Tea"_s, m_fixture->home);
    const auto due = RowFixture::task(u"Tea"_s, m_fixture->home);
    due->setDueDate(at(21, 9));

    QCOMPARE(show<VTCalEventController>(one).unselectedHeight(), 46.0F);
    QCOMPARE(show<VTCalEventController>(two).unselectedHeight(), 62.0F);
    QCOMPARE(show<VTCalTaskController>(bare).unselectedHeight(), 24.0F);
    QCOMPARE(show<VTCalTaskController>(due).unselectedHeight(), 38.0F);
}

void VTRowsTest::titleAreaIsCentredOnTheFirstLine()
{
    QFont font(u"Inter"_s);
    font.setPixelSize(13);
    m_accordion->setFont(font);
    const auto event = RowFixture::event(u"Breakfast with the harbour crew"_s, at(20, 9), at(20, 10), m_fixture->home);

    const auto &row = show<VTCalEventController>(event);
    QCOMPARE(row.titleField()->frame().top(), 7.0);
    QCOMPARE(row.startBadge()->frame(), QRectF(232, 7, 46, 16));
    QCOMPARE(row.endBadge()->frame(), QRectF(282, 7, 46, 16));
    QCOMPARE(row.icons()->frame().top(), 43.0); // two lines, and a gap of 4
    const auto &task = show<VTCalTaskController>(RowFixture::task(u"Tea"_s, m_fixture->home));
    QCOMPARE(task.titleField()->frame().top(), 4.0);
    QCOMPARE(task.doneCheckBox()->frame(), QRectF(12, 5, 14, 14));
}

void VTRowsTest::detailsShowOnlyWhileTheRowIsSelected()
{
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);
    task->setNotes(u"Two cups."_s);
    const auto &row = show<VTCalTaskController>(task);
    QVERIFY(row.notesField()->isHidden());

    m_accordion->setSelectedObject(task);

    QVERIFY(!row.notesField()->isHidden());
    QVERIFY(row.notesField()->frame().bottom() <= static_cast<double>(row.selectedHeight()) - 8.0);
    m_accordion->setSelectedObjects({});
    QVERIFY(row.notesField()->isHidden());
}

void VTRowsTest::absentDetailsNeverShow()
{
    const auto event = RowFixture::event(u"Tea"_s, at(20, 9), at(20, 10), m_fixture->home);
    event->setLocation(QString());
    const auto &row = show<VTCalEventController>(event);

    m_accordion->setSelectedObject(event);

    QVERIFY(row.locationField()->isHidden());
    QVERIFY(row.attendeesMatrix()->isHidden());
    QVERIFY(row.attendeesLabel()->isHidden());
    QVERIFY(row.notesLabel()->isHidden());
}

void VTRowsTest::allDayEventHasOneBadge()
{
    const auto event = RowFixture::event(u"Fair"_s, at(20, 0), at(20, 23, 59), m_fixture->home);
    event->setIsAllDay(true);

    const auto &row = show<VTCalEventController>(event);

    QVERIFY(row.startBadge()->isHidden());
    QVERIFY(row.endBadge()->isHidden());
    QVERIFY(!row.allDayBadge()->isHidden());
    QCOMPARE(row.allDayBadge()->stringValue(), u"all day"_s);
    QCOMPARE(row.allDayBadge()->frame().right(), 328.0);
}

void VTRowsTest::badgeIsWideEnoughForADay()
{
    QFont font(u"Inter"_s);
    font.setPixelSize(13);
    m_accordion->setFont(font);
    QLocale::setDefault(QLocale(QLocale::German));
    const auto event = RowFixture::event(u"Night train"_s, at(19, 23), at(21, 6), m_fixture->home);
    m_fixture->shownDate = at(20, 10);

    const auto &row = show<VTCalEventController>(event);

    for (const KLVMiniBadge *badge : { row.startBadge(), row.endBadge() }) {
        const double room = badge->frame().width() - 2 * 6.0;
        const QString day = badge->stringValue().value();
        QVERIFY2(day.contains(u"Nov"_s), qPrintable(day));
        QVERIFY2(KLVMiniBadge::textWidth(day, badge->font()) <= room, qPrintable(day));
    }
    QCOMPARE(row.endBadge()->frame().right(), 328.0);
    QCOMPARE(row.startBadge()->frame().right(), row.endBadge()->frame().left() - 4.0);
    // Less the 40 points that its text does not use, the title ends before the badges.
    QCOMPARE(row.titleField()->frame().right() - 40.0, row.startBadge()->frame().left() - 8.0);
}

void VTRowsTest::iconsSayWhatTheEventHas()
{
    const auto event = RowFixture::event(u"Fair"_s, at(20, 9), at(20, 10), m_fixture->home);
    QVERIFY(show<VTCalEventController>(event).icons()->icons().isEmpty());
    event->setRecurrenceRule(CalRecurrenceRule { "FREQ=DAILY" });
    event->addAlarm(std::make_shared<CalAlarm>());
    event->setNotes(u"n"_s);
    event->setUrl(QUrl(u"https://example.org"_s));

    const QStringList expected { u"repeat"_s, u"alarm"_s, u"notes"_s, u"link"_s };
    QCOMPARE(show<VTCalEventController>(event).icons()->icons(), expected);
}

void VTRowsTest::cancelledEventIsStruckOut()
{
    const auto event = RowFixture::event(u"Fair"_s, at(20, 9), at(20, 10), m_fixture->home);
    event->setIsCancelled(true);

    QVERIFY(show<VTCalEventController>(event).titleField()->isStruckOut());
}

void VTRowsTest::mailtoInCapitalsMakesAnActiveButton()
{
    const auto event = RowFixture::event(u"Fair"_s, at(20, 9), at(20, 10), m_fixture->home);
    event->setAttendees(QList<CalAttendee> { RowFixture::attendee(u"Ada"_s, u"MAILTO:ada@example.org"_s, {}) });

    const auto &row = show<VTCalEventController>(event);

    QCOMPARE(row.attendeesMatrix()->numberOfRows(), 1);
    QVERIFY(row.attendeesMatrix()->cellAtRow(0)->isEnabled());
}

void VTRowsTest::otherSchemeMakesADisabledButtonWithATitle()
{
    const auto event = RowFixture::event(u"Fair"_s, at(20, 9), at(20, 10), m_fixture->home);
    event->setAttendees(QList<CalAttendee> { RowFixture::attendee(u"Room 4"_s, u"urn:uuid:4"_s, {}) });

    const auto &row = show<VTCalEventController>(event);

    QVERIFY(!row.attendeesMatrix()->cellAtRow(0)->isEnabled());
    QCOMPARE(row.attendeesMatrix()->cellAtRow(0)->title(), u"?  Room 4"_s);
}

void VTRowsTest::attendeeMarks_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<bool>("hasName");
    QTest::addColumn<QString>("title");

    QTest::newRow("asked") << CalAttendeeStatusNeedsAction << true << u"!  Ada"_s;
    QTest::newRow("accepted") << CalAttendeeStatusAccepted << true << u"\u2713  Ada"_s;
    QTest::newRow("declined") << CalAttendeeStatusDeclined << true << u"\u2716  Ada"_s;
    QTest::newRow("tentative") << CalAttendeeStatusTentative << true << u"?  Ada"_s;
    QTest::newRow("accepted without a name") << CalAttendeeStatusAccepted << false << u"\u2713  Anon"_s;
}

void VTRowsTest::attendeeMarks()
{
    QFETCH(QString, status);
    QFETCH(bool, hasName);
    QFETCH(QString, title);
    const VTCalEventController row(m_fixture->environment());
    CalAttendee attendee = RowFixture::attendee(u"Ada"_s, u"mailto:ada@example.org"_s, status);
    if (!hasName)
        attendee.commonName.reset();

    QCOMPARE(row.titleForAttendeeButton(attendee), title);
}

void VTRowsTest::secondButtonOpensTheSecondAddress()
{
    const auto event = RowFixture::event(u"Fair"_s, at(20, 9), at(20, 10), m_fixture->home);
    event->setAttendees(QList<CalAttendee> { RowFixture::attendee(u"Ada"_s, u"mailto:ada@example.org"_s, {}),
        RowFixture::attendee(u"Jun"_s, u"mailto:jun@example.org"_s, {}) });
    show<VTCalEventController>(event);
    m_accordion->setSelectedObject(event);

    QVERIFY(m_accordion->performControl({ event->uid(), u"attendeesMatrix.1"_s }));

    QCOMPARE(m_fixture->workspace.opened, QList<QUrl> { QUrl(u"mailto:jun@example.org"_s) });
}

void VTRowsTest::tickingSavesTheTaskOnce()
{
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);
    const auto &row = show<VTCalTaskController>(task);

    QVERIFY(m_accordion->performControl({ task->uid(), u"doneCheckBox"_s }));

    QCOMPARE(m_fixture->backend->saved.size(), 1);
    QVERIFY(m_fixture->backend->saved.first().isCompleted);
    QVERIFY(row.doneCheckBox()->isChecked());
}

void VTRowsTest::refusedTickShowsNothingAndIsNotRetried()
{
    m_fixture->backend->refuses = true;
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);
    show<VTCalTaskController>(task);

    m_accordion->performControl({ task->uid(), u"doneCheckBox"_s });
    QCoreApplication::processEvents();

    QCOMPARE(m_fixture->backend->saved.size(), 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void VTRowsTest::changeFromElsewhereSavesAllTheSame()
{
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);
    const auto &row = show<VTCalTaskController>(task);

    task->setIsCompleted(true);

    QCOMPARE(m_fixture->backend->saved.size(), 1);
    QVERIFY(row.doneCheckBox()->isChecked());
}

void VTRowsTest::discardedRowNeverSaves()
{
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);
    show<VTCalTaskController>(task);
    const KLVAccordionViewItemPtr row = m_accordion->accordionViewItems().first();

    m_accordion->setRepresentedObjects({});
    task->setIsCompleted(true);

    QVERIFY(m_fixture->backend->saved.isEmpty());
    QVERIFY(!task->isObserved(u"isCompleted"_s));
}

void VTRowsTest::replacedObjectIsWatchedInstead()
{
    const auto first = RowFixture::task(u"Tea"_s, m_fixture->home);
    const auto second = RowFixture::task(u"Coffee"_s, m_fixture->home);
    auto &row = show<VTCalTaskController>(first);

    row.setRepresentedObject(second);
    first->setIsCompleted(true);
    QVERIFY(m_fixture->backend->saved.isEmpty());
    second->setIsCompleted(true);

    QCOMPARE(m_fixture->backend->saved.size(), 1);
}

void VTRowsTest::completedTaskIsDimAndNotOverdue()
{
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);
    task->setDueDate(RowFixture::at(19, 18));
    QCOMPARE(show<VTCalTaskController>(task).dueDateField()->textColor(), KLVTextField::TextColor::Overdue);

    task->setIsCompleted(true);

    const auto &row = show<VTCalTaskController>(task);
    QCOMPARE(row.dueDateField()->textColor(), KLVTextField::TextColor::Dim);
    QCOMPARE(row.titleField()->textColor(), KLVTextField::TextColor::Dim);
    QCOMPARE(row.dueDateField()->stringValue(), u"due yesterday, 18:00"_s);
}

void VTRowsTest::markupIsShownAsItStands()
{
    const auto task = RowFixture::task(u"Buy <b>milk</b> <img src='file:///x'> &amp; tea"_s, m_fixture->home);

    const auto &row = show<VTCalTaskController>(task);

    QCOMPARE(row.titleField()->stringValue(), u"Buy <b>milk</b> <img src='file:///x'> &amp; tea"_s);
}

void VTRowsTest::titleWithABreakIsOneLine()
{
    const auto task = RowFixture::task(u"Tea\nand\tcake"_s, m_fixture->home);

    const auto &row = show<VTCalTaskController>(task);

    QCOMPARE(row.titleField()->stringValue(), u"Tea and cake"_s);
    QCOMPARE(row.unselectedHeight(), 22.0F);
    QCOMPARE(task->title(), u"Tea\nand\tcake"_s);
}

void VTRowsTest::titleOfAMegabyteIsLaidOutAtOnce()
{
    const auto event = RowFixture::event(QString(1'000'000, u'x'), at(20, 9), at(20, 10), m_fixture->home);
    const std::clock_t begin = std::clock();

    const auto &row = show<VTCalEventController>(event);
    m_accordion->grab();

    const std::clock_t used = std::clock() - begin;
    constexpr std::clock_t goal = 100 * CLOCKS_PER_SEC / 1000;
    QVERIFY2(used < 3 * goal, qPrintable(QString::number(used)));
    QVERIFY(row.unselectedHeight() > 100.0F);
    QCOMPARE(event->title()->size(), 1'000'000);
}

void VTRowsTest::tickThroughAccessibilityReachesTheStore()
{
    const auto task = RowFixture::task(u"Tea"_s, m_fixture->home);
    task->setDueDate(RowFixture::at(21, 9));
    show<VTCalTaskController>(task);
    QAccessibleInterface *const row = QAccessible::queryAccessibleInterface(m_accordion.get())->child(0);
    QAccessibleInterface *box = nullptr;
    for (int index = 0; index < row->childCount(); ++index) {
        if (row->child(index)->role() == QAccessible::CheckBox)
            box = row->child(index);
    }
    QVERIFY(box);
    QCOMPARE(box->text(QAccessible::Name), u"Tea"_s);
    QVERIFY(box->state().checkable);

    box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());

    QVERIFY(box->state().checked);
    QCOMPARE(m_fixture->backend->saved.size(), 1);
    QCOMPARE(row->text(QAccessible::Name), u"Tea, due tomorrow, 09:00, Home, completed"_s);
}

void VTRowsTest::refetchOfRowsPaintsNothing()
{
    class Counter final : public QObject
    {
    public:
        int paints = 0;

    protected:
        bool eventFilter(QObject * /*object*/, QEvent *event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    };
    const auto items = [&] {
        KLVRepresentedObjects objects;
        for (int hour = 8; hour < 20; ++hour) {
            const auto event
                = RowFixture::event(QString::number(hour), at(20, hour), at(20, hour + 1), m_fixture->work);
            event->setAttendees(QList<CalAttendee> { RowFixture::attendee(u"Ada"_s, u"mailto:a@b"_s, {}) });
            objects.append(event);
            const auto task = RowFixture::task(QString::number(hour), m_fixture->home);
            task->setPriority(1);
            task->setNotes(u"notes"_s);
            objects.append(task);
        }
        return objects;
    };
    KLVAccordionScrollArea area(m_accordion.release()); // owns it from here on
    KLVAccordionView &accordion = *area.accordion();
    area.resize(340, 400);
    area.show();
    QVERIFY(QTest::qWaitForWindowExposed(&area));
    const auto first = items();
    accordion.setRepresentedObjects(first);
    accordion.setSelectedObject(first.at(2));
    QCoreApplication::processEvents();
    const QImage before = area.grab().toImage();
    QCoreApplication::processEvents();
    Counter counter;
    accordion.installEventFilter(&counter);

    const auto second = items();
    accordion.setRepresentedObjects(second);
    accordion.setSelectedObjects({ second.at(2) });
    QCoreApplication::processEvents();

    QCOMPARE(counter.paints, 0);
    QCOMPARE(area.grab().toImage(), before);
}

VANTLE_TEST(VTRowsTest)
#include "VTRowsTest.moc"
