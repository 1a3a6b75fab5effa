// SPDX-License-Identifier: MIT
#include "TestRecords.h"
#include "TestRegistry.h"

#include <CalTask+VTHelpers.h>
#include <KeyValueObject.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

CalTaskPtr makeTaskOfPriority(int priority, const QColor &color = QColor(200, 100, 0))
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    task->setCalendar(makeCalendar(u"Home"_s, color));
    task->setPriority(priority);
    return task;
}

// The share of each row that is painted, from 0 to 255, the lowest row first.
QList<int> rowsFromBottom(const QImage &image, int column = 0)
{
    QList<int> rows;
    for (int y = image.height() - 1; y >= 0; --y)
        rows.append(qAlpha(image.pixel(column, y)));
    return rows;
}

// How opaque each bar is that has a row of pixels to itself.
QList<int> barOpacities(const QImage &image, const QList<int> &rowsInsideBars)
{
    const QList<int> rows = rowsFromBottom(image);
    QList<int> opacities;
    for (const int row : rowsInsideBars)
        opacities.append(rows.at(row));
    return opacities;
}

QString differences(const QList<int> &actual, const QList<int> &expected, int tolerance)
{
    if (actual.size() != expected.size())
        return u"%1 rows instead of %2"_s.arg(actual.size()).arg(expected.size());
    QStringList all;
    for (qsizetype row = 0; row < actual.size(); ++row) {
        if (std::abs(actual.at(row) - expected.at(row)) > tolerance)
            all.append(u"row %1: %2 instead of %3"_s.arg(row).arg(actual.at(row)).arg(expected.at(row)));
    }
    return all.join(u", "_s);
}

// Parts of full opacity, from shares of a row.
QList<int> shares(const QList<double> &values)
{
    QList<int> all;
    for (const double value : values)
        all.append(qRound(value * 255));
    return all;
}

class KeyRecorder final : public KeyValueObserver
{
public:
    explicit KeyRecorder(KeyValueObject &object)
    {
        for (const QString &key : { u"calendar"_s, u"title"_s, u"url"_s, u"notes"_s, u"completedDate"_s, u"dueDate"_s,
                 u"isCompleted"_s, u"priority"_s, u"alarms"_s })
            object.addObserver_forKeyPath_options_context(this, key);
    }
    void observeValueForKeyPath_ofObject_change_context(const QString &keyPath, KeyValueObject * /*object*/,
        const KeyValueChange & /*change*/, void * /*context*/) override
    {
        keys.append(keyPath);
    }

    QStringList keys;
};

} // namespace

class CalTaskVTHelpersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void priorityIsNoneForZeroOnly();
    void dueDateIsSetOrNot();
    void copyHasEqualButDistinctAlarms();
    void alarmsOfACopyHaveAllValues();
    void removingAnAlarmFromTheCopyLeavesTheOriginal();
    void editingAnAlarmOfTheCopyLeavesTheOriginal();
    void copyHoldsEveryProperty();
    void updateTakesOverTheListedProperties();
    void updateTakesOverNothingElse();
    void updateTakesOverTheAlarmRecordsThemselves();
    void updateFromACopyWithoutAlarmsLeavesNone();
    void updateHappensInOrder();
    void updateFromItselfChangesNothing();
    void linkIsAvailable_data();
    void linkIsAvailable();
    void tickingOffTwiceRestoresTheState();
    void tickingOffTouchesNothingElse();

    void barsOfEachPriority_data();
    void barsOfEachPriority();
    void barsKeepTheCalendarsColour();
    void fadedBarsKeepTheCalendarsColour();
    void barsOfTwelvePointsLieBetweenPixels();
    void barsOfTwelvePointsAreSharpAtTwice();
    void barsAtFivefoldLieOnPixels();
    void fourthBarIsCutOffAtTwentyPoints();
    void thirdBarIsCutOffBelowEightAndAHalfPoints();
    void barsFillTheWholeWidth_data();
    void barsFillTheWholeWidth();
    void imageHasItsSizeInPoints_data();
    void imageHasItsSizeInPoints();
    void barsOfNoSizeAreNoImage();
    void barsWithoutCalendarAreEmpty();
};

void CalTaskVTHelpersTest::priorityIsNoneForZeroOnly()
{
    QVERIFY(VTPriorityIsNone(*makeTaskOfPriority(0)));
    QVERIFY(!VTPriorityIsNone(*makeTaskOfPriority(1)));
    QVERIFY(!VTPriorityIsNone(*makeTaskOfPriority(9)));
}

void CalTaskVTHelpersTest::dueDateIsSetOrNot()
{
    const CalTaskPtr due = makeTaskDue(u"uid"_s, u"Buy milk"_s, localInstant("2026-03-11T09:00"));
    const CalTaskPtr open = makeTask(u"uid"_s, u"Buy milk"_s);

    QVERIFY(VTDueDateIsSet(*due));
    QVERIFY(!VTDueDateIsNotSet(*due));
    QVERIFY(!VTDueDateIsSet(*open));
    QVERIFY(VTDueDateIsNotSet(*open));
}

void CalTaskVTHelpersTest::copyHasEqualButDistinctAlarms()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    task->setAlarms({ makeAlarm(-60), makeAlarm(-600), makeAlarm(-3600) });

    const CalTaskPtr copy = VTDeepCopy(*task);

    QCOMPARE(copy->alarms().size(), 3);
    for (qsizetype index = 0; index < 3; ++index) {
        QVERIFY(copy->alarms().at(index) != task->alarms().at(index));
        QCOMPARE(copy->alarms().at(index)->relativeTrigger(), task->alarms().at(index)->relativeTrigger());
    }
}

void CalTaskVTHelpersTest::alarmsOfACopyHaveAllValues()
{
    const CalAlarmPtr mail = makeFullAlarm();
    const auto record = makeTask(u"uid"_s, u"Buy milk"_s);
    record->setAlarms({ mail });

    const CalAlarmPtr copied = VTDeepCopy(*record)->alarms().first();

    QVERIFY(copied != mail);
    QCOMPARE(copied->action(), mail->action());
    QCOMPARE(copied->sound(), mail->sound());
    QCOMPARE(copied->emailAddress(), mail->emailAddress());
    QCOMPARE(copied->url(), mail->url());
    QCOMPARE(copied->absoluteTrigger(), mail->absoluteTrigger());
    QCOMPARE(copied->isRelatedToEnd(), mail->isRelatedToEnd());
    QCOMPARE(copied->storedIndex(), mail->storedIndex());
}

void CalTaskVTHelpersTest::removingAnAlarmFromTheCopyLeavesTheOriginal()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    task->setAlarms({ makeAlarm(-60), makeAlarm(-600), makeAlarm(-3600) });
    const CalTaskPtr copy = VTDeepCopy(*task);

    copy->removeAlarm(copy->alarms().first());

    QCOMPARE(copy->alarms().size(), 2);
    QCOMPARE(task->alarms().size(), 3);
}

void CalTaskVTHelpersTest::editingAnAlarmOfTheCopyLeavesTheOriginal()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    task->setAlarms({ makeAlarm(-60) });
    const CalTaskPtr copy = VTDeepCopy(*task);

    copy->alarms().first()->setRelativeTrigger(-1);

    QCOMPARE(task->alarms().first()->relativeTrigger(), -60.0);
}

void CalTaskVTHelpersTest::copyHoldsEveryProperty()
{
    const CalTaskPtr task = makeCompletedTask(u"uid"_s, u"Buy milk"_s, localInstant("2026-03-10T08:00"));
    task->setCalendar(makeCalendar(u"Home"_s));
    task->setNotes(u"Two bottles"_s);
    task->setUrl(QUrl(u"https://example.org"_s));
    task->setDueDate(localInstant("2026-03-11T00:00"));
    task->setIsDueDateOnly(true);
    task->setPriority(5);
    task->markAsRead();

    const CalTaskPtr copy = VTDeepCopy(*task);

    QVERIFY(copy != task);
    QCOMPARE(copy->uid(), u"uid"_s);
    QCOMPARE(copy->origin().plainUid, u"uid"_s);
    QCOMPARE(copy->calendar(), task->calendar());
    QCOMPARE(copy->title(), u"Buy milk"_s);
    QCOMPARE(copy->notes(), u"Two bottles"_s);
    QCOMPARE(copy->url(), QUrl(u"https://example.org"_s));
    QCOMPARE(copy->dueDate(), localInstant("2026-03-11T00:00"));
    QVERIFY(copy->isDueDateOnly());
    QVERIFY(copy->isCompleted());
    QCOMPARE(copy->completedDate(), localInstant("2026-03-10T08:00"));
    QCOMPARE(copy->priority(), 5);
    QCOMPARE(copy->asRead(), task->asRead());
}

void CalTaskVTHelpersTest::updateTakesOverTheListedProperties()
{
    const CalTaskPtr source = makeCompletedTask(u"source"_s, u"Buy milk"_s, localInstant("2026-03-10T08:00"));
    source->setCalendar(makeCalendar(u"Work"_s));
    source->setNotes(u"Two bottles"_s);
    source->setUrl(QUrl(u"https://example.org"_s));
    source->setDueDate(localInstant("2026-03-11T00:00"));
    source->setIsDueDateOnly(true);
    source->setPriority(5);
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy bread"_s);

    VTUpdatePropertiesFromTask(*task, *source);

    QCOMPARE(task->calendar()->uid(), u"Work"_s);
    QCOMPARE(task->title(), u"Buy milk"_s);
    QCOMPARE(task->notes(), u"Two bottles"_s);
    QCOMPARE(task->url(), QUrl(u"https://example.org"_s));
    QCOMPARE(task->dueDate(), localInstant("2026-03-11T00:00"));
    QVERIFY(task->isDueDateOnly());
    QVERIFY(task->isCompleted());
    QCOMPARE(task->completedDate(), localInstant("2026-03-10T08:00"));
    QCOMPARE(task->priority(), 5);
}

void CalTaskVTHelpersTest::updateTakesOverNothingElse()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy bread"_s);

    VTUpdatePropertiesFromTask(*task, *makeTask(u"source"_s, u"Buy milk"_s));

    QCOMPARE(task->uid(), u"uid"_s);
    QCOMPARE(task->origin().plainUid, u"uid"_s);
    QCOMPARE(task->asRead()->title(), u"Buy bread"_s);
}

void CalTaskVTHelpersTest::updateTakesOverTheAlarmRecordsThemselves()
{
    const CalTaskPtr source = makeTask(u"source"_s, u"Buy milk"_s);
    source->setAlarms({ makeAlarm(-60), makeAlarm(-600) });
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy bread"_s);
    task->setAlarms({ makeAlarm(-1) });

    VTUpdatePropertiesFromTask(*task, *source);

    QCOMPARE(task->alarms(), source->alarms());
}

void CalTaskVTHelpersTest::updateFromACopyWithoutAlarmsLeavesNone()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    task->setAlarms({ makeAlarm(-60), makeAlarm(-600) });
    const CalTaskPtr copy = VTDeepCopy(*task);
    copy->removeAlarms(copy->alarms());

    VTUpdatePropertiesFromTask(*task, *copy);

    QVERIFY(task->alarms().isEmpty());
}

void CalTaskVTHelpersTest::updateHappensInOrder()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy bread"_s);
    const KeyRecorder recorder(*task);

    VTUpdatePropertiesFromTask(*task, *makeTask(u"source"_s, u"Buy milk"_s));

    // The alarms change twice: all go, then the source's come.
    QCOMPARE(recorder.keys,
        (QStringList { u"calendar"_s, u"title"_s, u"url"_s, u"notes"_s, u"completedDate"_s, u"dueDate"_s,
            u"isCompleted"_s, u"priority"_s, u"alarms"_s, u"alarms"_s }));
}

void CalTaskVTHelpersTest::updateFromItselfChangesNothing()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy bread"_s);
    task->setAlarms({ makeAlarm(-60) });

    VTUpdatePropertiesFromTask(*task, *task);

    QCOMPARE(task->title(), u"Buy bread"_s);
    QCOMPARE(task->alarms().size(), 1);
}

void CalTaskVTHelpersTest::linkIsAvailable_data()
{
    QTest::addColumn<std::optional<QUrl>>("url");
    QTest::addColumn<bool>("isAvailable");

    const auto url = [](const char *text) { return std::optional(QUrl(QString::fromLatin1(text))); };
    QTest::newRow("none") << std::optional<QUrl>() << false;
    QTest::newRow("web") << url("https://example.org/a") << true;
    QTest::newRow("mail address") << url("mailto:a@example.org") << true;
    QTest::newRow("mailitem") << url("mailitem:1") << false;
    QTest::newRow("MailItem") << url("MailItem:1") << false;
    QTest::newRow("MAILITEM") << url("MAILITEM:1") << false;
    QTest::newRow("scheme that begins like it") << url("mailitems:1") << true;
    QTest::newRow("no scheme") << url("example.org/a") << true;
    QTest::newRow("path named like it") << url("mailitem/1") << true;
}

void CalTaskVTHelpersTest::linkIsAvailable()
{
    QFETCH(const std::optional<QUrl>, url);
    QFETCH(const bool, isAvailable);
    const CalTaskPtr task = makeTask(u"uid"_s, u"Read mail"_s);

    task->setUrl(url);

    QCOMPARE(VTIsUrlAvailable(*task), isAvailable);
}

void CalTaskVTHelpersTest::tickingOffTwiceRestoresTheState()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);

    VTToogleCompletedStatus(*task);
    QVERIFY(task->isCompleted());
    VTToogleCompletedStatus(*task);

    QVERIFY(!task->isCompleted());
}

void CalTaskVTHelpersTest::tickingOffTouchesNothingElse()
{
    const CalTaskPtr task = makeTask(u"uid"_s, u"Buy milk"_s);
    const KeyRecorder recorder(*task);

    VTToogleCompletedStatus(*task);

    QCOMPARE(recorder.keys, QStringList(u"isCompleted"_s));
    QVERIFY(!task->completedDate());
}

void CalTaskVTHelpersTest::barsOfEachPriority_data()
{
    QTest::addColumn<int>("priority");
    QTest::addColumn<int>("fullBars");

    QTest::newRow("none") << 0 << 0;
    QTest::newRow("low") << 9 << 1;
    QTest::newRow("medium") << 5 << 2;
    QTest::newRow("high") << 1 << 3;
    QTest::newRow("two") << 2 << 4;
    QTest::newRow("three") << 3 << 4;
    QTest::newRow("eight") << 8 << 4;
    QTest::newRow("outside the range") << -4 << 4;
}

void CalTaskVTHelpersTest::barsOfEachPriority()
{
    QFETCH(const int, priority);
    QFETCH(const int, fullBars);
    QList<int> expected;
    for (int bar = 0; bar < 4; ++bar)
        expected.append(bar < fullBars ? 255 : 77);

    // 36 points high, the bars are 7.8 high and start at 0, 9.3, 18.6 and 27.9.
    const QImage image = VTPriorityBars(*makeTaskOfPriority(priority), QSizeF(16, 36), 1);

    QCOMPARE(differences(barOpacities(image, { 3, 13, 22, 31 }), expected, 1), QString());
    QCOMPARE(barOpacities(image, { 8, 17, 27 }).count(0), 1); // only the row that lies in a gap as a whole
}

void CalTaskVTHelpersTest::barsKeepTheCalendarsColour()
{
    const QColor color(200, 100, 50);

    const QImage image = VTPriorityBars(*makeTaskOfPriority(3, color), QSizeF(16, 12), 1);

    QCOMPARE(image.pixelColor(8, 11), color);
}

void CalTaskVTHelpersTest::fadedBarsKeepTheCalendarsColour()
{
    const QColor color(200, 100, 50);

    const QColor faded = VTPriorityBars(*makeTaskOfPriority(0, color), QSizeF(16, 12), 1).pixelColor(8, 11);

    QVERIFY(std::abs(faded.alphaF() - 0.3F) < 0.01F);
    QVERIFY(std::abs(faded.red() - 200) <= 3);
    QVERIFY(std::abs(faded.green() - 100) <= 3);
    QVERIFY(std::abs(faded.blue() - 50) <= 3);
}

void CalTaskVTHelpersTest::barsOfTwelvePointsLieBetweenPixels()
{
    // 2.6 high, from 0, 4.1 and 8.2; the fourth would start above the top edge.
    const QList<int> expected = shares({ 1, 1, 0.6, 0, 0.9, 1, 0.7, 0, 0.8, 1, 0.8, 0 });

    const QImage image = VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 12), 1);

    QCOMPARE(differences(rowsFromBottom(image), expected, 4), QString());
}

void CalTaskVTHelpersTest::barsOfTwelvePointsAreSharpAtTwice()
{
    // 5.2 pixels high, from 0, 8.2 and 16.4.
    const QList<int> expected
        = shares({ 1, 1, 1, 1, 1, 0.2, 0, 0, 0.8, 1, 1, 1, 1, 0.4, 0, 0, 0.6, 1, 1, 1, 1, 0.6, 0, 0 });

    const QImage image = VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 12), 2);

    QCOMPARE(differences(rowsFromBottom(image), expected, 4), QString());
}

void CalTaskVTHelpersTest::barsAtFivefoldLieOnPixels()
{
    // 13 pixels high, from 0, 20.5 and 41.
    const QList<int> rows = rowsFromBottom(VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 12), 5));

    QVERIFY(rows.at(12) >= 251);
    QVERIFY(rows.at(13) <= 4);
    QVERIFY(rows.at(40) <= 4);
    QVERIFY(rows.at(41) >= 251);
    QVERIFY(rows.at(53) >= 251);
    QVERIFY(rows.at(54) <= 4);
}

void CalTaskVTHelpersTest::fourthBarIsCutOffAtTwentyPoints()
{
    // 4.3333 high; the fourth is from 17.5 to the top edge.
    const QList<int> rows = rowsFromBottom(VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 20), 1));

    QVERIFY(std::abs(rows.at(17) - 128) <= 4);
    QCOMPARE(rows.at(18), 255);
    QCOMPARE(rows.at(19), 255);
    QCOMPARE(rows.at(16), 0);
}

void CalTaskVTHelpersTest::thirdBarIsCutOffBelowEightAndAHalfPoints()
{
    // 1.7333 high, from 0, 3.2333 and 6.4667; the third would end at 8.2.
    const QList<int> rows = rowsFromBottom(VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 8), 1));

    QCOMPARE(differences(rows, shares({ 1, 0.7333, 0, 0.7667, 0.9667, 0, 0.5333, 1 }), 4), QString());
}

void CalTaskVTHelpersTest::barsFillTheWholeWidth_data()
{
    QTest::addColumn<double>("ratio");

    QTest::newRow("1x") << 1.0;
    QTest::newRow("2x") << 2.0;
}

void CalTaskVTHelpersTest::barsFillTheWholeWidth()
{
    QFETCH(const double, ratio);

    const QImage image = VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 12), ratio);

    for (int x = 0; x < image.width(); ++x)
        QCOMPARE(rowsFromBottom(image, x), rowsFromBottom(image, 0));
}

void CalTaskVTHelpersTest::imageHasItsSizeInPoints_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("pixels");

    QTest::newRow("1x") << 1.0 << QSize(16, 12);
    QTest::newRow("1.5x") << 1.5 << QSize(24, 18);
    QTest::newRow("2x") << 2.0 << QSize(32, 24);
}

void CalTaskVTHelpersTest::imageHasItsSizeInPoints()
{
    QFETCH(const double, ratio);
    QFETCH(const QSize, pixels);

    const QImage image = VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 12), ratio);

    QCOMPARE(image.size(), pixels);
    QCOMPARE(image.deviceIndependentSize(), QSizeF(16, 12));
}

void CalTaskVTHelpersTest::barsOfNoSizeAreNoImage()
{
    QVERIFY(VTPriorityBars(*makeTaskOfPriority(3), QSizeF(), 1).isNull());
    QVERIFY(VTPriorityBars(*makeTaskOfPriority(3), QSizeF(16, 0), 1).isNull());
}

void CalTaskVTHelpersTest::barsWithoutCalendarAreEmpty()
{
    const QImage image = VTPriorityBars(*makeTask(u"uid"_s, u"Buy milk"_s), QSizeF(16, 12), 1);

    QCOMPARE(rowsFromBottom(image), QList<int>(12, 0));
}

VANTLE_TEST(CalTaskVTHelpersTest)
#include "CalTaskVTHelpersTest.moc"
