// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "TestRegistry.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// How a folder too big for one go is read: piece by piece.
class FirstReadingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstReadingGoesOnAfterItsBudget();
};

void FirstReadingTest::theFirstReadingGoesOnAfterItsBudget()
{
    constexpr int files = 2000;
    const CalendarFolder folder;
    for (int index = 0; index < files; ++index)
        folder.write(u"c/%1.ics"_s.arg(index), calendarText(taskText(QByteArray::number(index), "Task")));
    FolderCalendarStore::Options options;
    options.readingBudget = 0ms;

    const auto store = folder.open(options);
    QSignalSpy loaded(store.get(), &FolderCalendarStore::loaded);
    QSignalSpy changed(store.get(), &FolderCalendarStore::changed);
    QVERIFY(!store->isComplete());
    QCOMPARE(store->calendars().size(), 1);
    QVERIFY(allTasks(*store).size() < files);

    QVERIFY(loaded.wait());
    QVERIFY(store->isComplete());
    QCOMPARE(allTasks(*store).size(), files);
    QTRY_VERIFY(!changed.isEmpty());
    QCOMPARE(loaded.size(), 1);
}

VANTLE_TEST(FirstReadingTest)
#include "FirstReadingTest.moc"
