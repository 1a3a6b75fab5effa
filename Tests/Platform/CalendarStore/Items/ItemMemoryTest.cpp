// SPDX-License-Identifier: MIT
#include "ItemSets.h"

#include <ItemIndex.h>
#include <TestRegistry.h>

#include <QDate>
#include <QTest>

#include <malloc.h>

#if defined(__SANITIZE_ADDRESS__)
// The sanitizer's own; the compiler brings no header for them.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(
    void (*noteAllocation)(const volatile void *, std::size_t), void (*noteRelease)(const volatile void *));
std::size_t __sanitizer_get_allocated_size(const volatile void *block);
}
#endif

using namespace Qt::StringLiterals;

namespace
{

// Ten thousand events are to take less than 12 MiB, and a sixth of that may be what a service's library keeps in
// reserve.
constexpr qint64 mostBytesOfAnEvent = 1024;
constexpr int events = 2000;
constexpr int eventsPerSeries = 50;

#if defined(__SANITIZE_ADDRESS__)

// What was asked for, without what the sanitizer keeps around it.
qint64 allocated = 0;

void noteAllocation(const volatile void * /*block*/, std::size_t size)
{
    allocated += static_cast<qint64>(size);
}

void noteRelease(const volatile void *block)
{
    if (block)
        allocated -= static_cast<qint64>(__sanitizer_get_allocated_size(block));
}

qint64 allocatedBytes()
{
    static const int installed = __sanitizer_install_malloc_and_free_hooks(noteAllocation, noteRelease);
    return installed > 0 ? allocated : -1;
}

#else

qint64 allocatedBytes()
{
    const struct mallinfo2 heap = ::mallinfo2();
    return static_cast<qint64>(heap.uordblks) + static_cast<qint64>(heap.hblkhd);
}

#endif

QByteArray linesOf(int number)
{
    const QByteArray day = QDate(2020, 1, 1).addDays(number % 3650).toString(u"yyyyMMdd"_s).toLatin1();
    return "UID:event-" + QByteArray::number(number) + "@example.org\r\nDTSTART;TZID=Europe/Berlin:" + day
        + "T090000\r\nDTEND;TZID=Europe/Berlin:" + day + "T100000\r\nSUMMARY:Appointment number "
        + QByteArray::number(number) + "\r\nLOCATION:Room " + QByteArray::number(number % 40)
        + (number % eventsPerSeries == 0 ? "\r\nRRULE:FREQ=WEEKLY" : "");
}

} // namespace

class ItemMemoryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEventTakesLessThanAKibibyte();
};

void ItemMemoryTest::anEventTakesLessThanAKibibyte()
{
    ItemSets made;
    const auto set = [&](int number) { return made.event(u"event-%1@example.org"_s.arg(number), linesOf(number)); };
    // Zones are kept once, however many events there are.
    set(0);
    const qint64 before = allocatedBytes();
    QVERIFY(before >= 0);

    QHash<QString, Items::ItemSetPtr> sets;
    Items::ItemIndex index;
    for (int number = 0; number < events; ++number) {
        const Items::ItemSetPtr event = set(number);
        index.add(*event);
        sets.insert(event->name(), event);
    }

    const qint64 each = (allocatedBytes() - before) / events;
    QVERIFY2(each < mostBytesOfAnEvent, qPrintable(u"%1 bytes for each"_s.arg(each)));
    // Else what was counted was something else.
    QVERIFY2(each > static_cast<qint64>(sizeof(ICalendar::Item)), qPrintable(u"%1 bytes for each"_s.arg(each)));
}

VANTLE_TEST(ItemMemoryTest)
#include "ItemMemoryTest.moc"
