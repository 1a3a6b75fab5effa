// SPDX-License-Identifier: MIT
#include "HostileTitles.h"
#include "MainWindowFixture.h"
#include "TestRegistry.h"

#include <KLVAccordionView.h>
#include <KLVCalendarsDrawer.h>
#include <KLVText.h>
#include <KLVTextField.h>
#include <VTCalEventController.h>
#include <VTCalTaskController.h>

#include <QApplication>
#include <QLabel>
#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;

namespace
{

constexpr double frameLimit = 300; // milliseconds, three times the goal

// Spent by this program, whatever else the machine does.
double processorMilliseconds()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace

// What others write into a calendar: shown as it stands, at once, and never as anything but text.
class VTHostileTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void itIsShownAsItStands_data();
    void itIsShownAsItStands();
    void theWindowAnswersAtOnce();
    void itIsDeletedAtOnce();
    void noLabelOrTipTakesItForMarkup();
    void nothingIsOpened();

private:
    void add(const QString &title) const;

    std::unique_ptr<MainWindowFixture> m_fixture;
};

void VTHostileTextTest::init()
{
    m_fixture = std::make_unique<MainWindowFixture>();
}

// As the title, place and notes of an event and a to-do.
void VTHostileTextTest::add(const QString &title) const
{
    static int number = 0;
    const QString uid = u"hostile %1"_s.arg(++number);
    const QDateTime start = localInstant("2026-11-20T09:00");
    const CalEventPtr event = makeEvent(uid, title, start, start.addSecs(3600));
    event->setLocation(title);
    event->setNotes(title);
    event->setAttendees(QList<CalAttendee> { { title, QUrl(u"mailto:a@example.org"_s), CalAttendeeStatusAccepted } });
    m_fixture->backend().addEvent(u"Home"_s, event);
    const CalTaskPtr task = makeTask(uid + u" to-do"_s, title);
    task->setNotes(title);
    m_fixture->backend().addTask(u"Home"_s, task);
}

void VTHostileTextTest::itIsShownAsItStands_data()
{
    QTest::addColumn<QString>("title");
    const QStringList titles = hostileTitles();
    for (qsizetype index = 0; index < titles.size(); ++index)
        QTest::addRow("%lld", static_cast<long long>(index)) << titles.at(index);
}

void VTHostileTextTest::itIsShownAsItStands()
{
    QFETCH(QString, title);
    add(title);
    m_fixture->wakeWithWindow();

    const auto &event = dynamic_cast<const VTCalEventController &>(
        *m_fixture->window->eventsAccordion()->accordionViewItems().first());
    const auto &task
        = dynamic_cast<const VTCalTaskController &>(*m_fixture->window->tasksAccordion()->accordionViewItems().first());

    const QString line = KLVText::singleLine(title);
    QCOMPARE(event.titleField()->stringValue().value(), line);
    QCOMPARE(task.titleField()->stringValue().value(), line);
    QVERIFY(!line.contains(u'\n') && !line.contains(QChar::LineSeparator));
    // Long texts are cut, others lose nothing but breaks.
    if (title.size() < 1000) {
        QString words = title;
        words.replace(u"\r\n"_s, u" "_s);
        for (const QChar sign :
            { QChar(u'\n'), QChar(u'\t'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator) })
            words.replace(sign, u' ');
        QCOMPARE(line, words);
    }
    QVERIFY(event.accessibleText().startsWith(line));
}

void VTHostileTextTest::theWindowAnswersAtOnce()
{
    for (const QString &title : hostileTitles())
        add(title);
    VTMainWindowController &controller = m_fixture->wakeWithWindow();
    QApplication::processEvents();

    const CalEventList events = controller.events();
    const CalTaskList tasks = controller.tasks();
    QCOMPARE(events.size(), hostileTitles().size());
    QStringList uids = uidsOf(events) + uidsOf(tasks);
    for (const QString &uid : std::as_const(uids)) {
        const double start = processorMilliseconds();
        controller.setSelectedCalItemUID(uid);
        QApplication::processEvents();
        m_fixture->window->repaint();
        const double frame = processorMilliseconds() - start;
        QVERIFY2(frame < frameLimit, qPrintable(u"%1: %2 ms"_s.arg(uid).arg(frame)));
    }
    const double start = processorMilliseconds();
    controller.calStoreDidChange();
    QApplication::processEvents();
    const double refetch = processorMilliseconds() - start;
    QVERIFY2(refetch < frameLimit, qPrintable(QString::number(refetch)));
}

void VTHostileTextTest::itIsDeletedAtOnce()
{
    for (const QString &title : hostileTitles())
        add(title);
    VTMainWindowController &controller = m_fixture->wakeWithWindow();
    QApplication::processEvents();

    const QStringList uids = uidsOf(controller.tasks());
    for (const QString &uid : uids) {
        controller.setSelectedCalItemUID(uid);
        const double start = processorMilliseconds();
        controller.delete_();
        controller.updateControls();
        const double frame = processorMilliseconds() - start;
        QVERIFY2(frame < frameLimit, qPrintable(u"%1: %2 ms"_s.arg(uid).arg(frame)));
    }
    QCOMPARE(m_fixture->backend().storedTasks(), 0);
}

void VTHostileTextTest::noLabelOrTipTakesItForMarkup()
{
    add(hostileTitles().first());
    m_fixture->wakeWithWindow();
    m_fixture->controller->setShowCalendarDrawer(true);

    const auto labels = m_fixture->window->findChildren<QLabel *>();
    QVERIFY(!labels.isEmpty());
    for (const QLabel *label : labels) {
        QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->objectName()));
        QVERIFY(!label->openExternalLinks());
    }
    const auto widgets = m_fixture->window->findChildren<QWidget *>();
    for (const QWidget *widget : widgets)
        QVERIFY2(!Qt::mightBeRichText(widget->toolTip()), qPrintable(widget->toolTip()));
}

void VTHostileTextTest::nothingIsOpened()
{
    for (const QString &title : hostileTitles())
        add(title);
    VTMainWindowController &controller = m_fixture->wakeWithWindow();

    for (const QString &uid : uidsOf(controller.events())) {
        controller.setSelectedCalItemUID(uid);
        QTest::mouseMove(m_fixture->window->eventsAccordion(), QPoint(60, 15));
        QApplication::processEvents();
    }

    QVERIFY(m_fixture->workspace.openedUrls.isEmpty());
}

VANTLE_TEST(VTHostileTextTest)
#include "VTHostileTextTest.moc"
