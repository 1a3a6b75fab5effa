// SPDX-License-Identifier: MIT
#include "ItemSets.h"

#include <EventIndex.h>
#include <TestRegistry.h>

#include <QDateTime>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using ICalendar::UtcSeconds;
using Items::EventIndex;
using Items::GroupRef;

namespace
{

constexpr qint64 secondsPerDay = 86400;
constexpr int longestEvent = 20; // days
constexpr int daysOfTheYear = 365;

QByteArray instant(UtcSeconds seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(u"yyyyMMdd'T'HHmmss'Z'"_s).toLatin1();
}

const UtcSeconds newYear = QDateTime(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC).toSecsSinceEpoch();

// What a look at every group finds.
std::vector<GroupRef> touching(const std::vector<Items::ItemSetPtr> &sets, UtcSeconds from, UtcSeconds to)
{
    std::vector<GroupRef> found;
    for (const Items::ItemSetPtr &set : sets) {
        for (int index = 0; index < static_cast<int>(set->groups().size()); ++index) {
            const GroupRef ref { set.get(), index };
            if (*ref.get().earliest <= to && (!ref.get().latest || *ref.get().latest >= from))
                found.push_back(ref);
        }
    }
    std::ranges::sort(found);
    return found;
}

} // namespace

class EventIndexTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatALookAtEveryEventFinds();
    void anEventWithoutAStartIsNowhere();
};

void EventIndexTest::findsWhatALookAtEveryEventFinds()
{
    QRandomGenerator random(20260311);
    ItemSets made;
    EventIndex index;
    std::vector<Items::ItemSetPtr> sets;
    for (int number = 0; number < 400; ++number) {
        const UtcSeconds start = newYear + random.bounded(daysOfTheYear * secondsPerDay);
        const UtcSeconds end = start + random.bounded(longestEvent * secondsPerDay);
        const QByteArray repeats = number % 40 == 0 ? "\r\nRRULE:FREQ=WEEKLY;COUNT=3" : "";
        sets.push_back(made.event(QString::number(number),
            "UID:" + QByteArray::number(number) + "\r\nDTSTART:" + instant(start) + "\r\nDTEND:" + instant(end)
                + repeats));
        index.add(*sets.back());
    }
    const auto compare = [&] {
        for (const int days : { 0, 1, 7, 30, 2 * daysOfTheYear }) {
            for (int question = 0; question < 50; ++question) {
                const UtcSeconds from = newYear + random.bounded(daysOfTheYear * secondsPerDay);
                const UtcSeconds to = from + days * secondsPerDay;
                QVERIFY(index.candidates(from, to) == touching(sets, from, to));
            }
        }
    };
    compare();

    for (int number = 0; number < 200; ++number) {
        index.remove(*sets.back());
        sets.pop_back();
    }
    compare();
}

void EventIndexTest::anEventWithoutAStartIsNowhere()
{
    ItemSets made;
    const auto set = made.event(u"a"_s, "UID:a\r\nSUMMARY:Sometime");
    EventIndex index;
    index.add(*set);

    QVERIFY(index.candidates(newYear - daysOfTheYear * secondsPerDay, newYear + daysOfTheYear * secondsPerDay).empty());
    index.remove(*set);
}

VANTLE_TEST(EventIndexTest)
#include "EventIndexTest.moc"
