// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendarStore.h>

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

// A store over one back end, as the contract tests want it, and the hand of
// another program on the same data.
//
// A fresh one holds the calendars "Home" and "Work", in this order, which can be
// changed, and behind them a third one, which cannot; all are empty, but for what
// was put into them. To put a back end under contract, make a fixture for it and add it to
// storeFixtures(): the cases themselves stay as they are.
class StoreFixture
{
public:
    StoreFixture() = default;
    virtual ~StoreFixture() = default;
    StoreFixture(const StoreFixture &) = delete;
    StoreFixture &operator=(const StoreFixture &) = delete;

    // Made with the first call: what is put before it has been there from the start.
    virtual CalCalendarStore &store() = 0;
    // The uid of the calendar that cannot be changed.
    virtual QString readOnlyUid() const = 0;

    // As another program does it: stores the components, which have one UID together, in the place
    // of whatever the calendar holds under that UID. Also into the calendar that cannot be changed.
    virtual void put(const QString &calendarUid, const QString &plainUid, const QByteArray &components) = 0;
    virtual void takeAway(const QString &calendarUid, const QString &plainUid) = 0;
    virtual void addCalendar(const QString &uid) = 0;
    virtual void takeCalendarAway(const QString &uid) = 0;
    // From now on the system refuses whatever is to be written.
    virtual void breakTheDisk() = 0;

    // Whether an item keeps a time whose zone nobody knows. Where the desktop's service holds the items, it makes
    // such a time one of UTC before anybody can read it.
    virtual bool keepsUnknownZones() const { return true; }
    // Whether a line that no program should write is kept to the byte. The desktop's service reads and writes every
    // item by a library that changes odd values.
    virtual bool keepsOddLines() const { return true; }

    // Questions to the store, in short.
    CalCalendarPtr calendar(const QString &uid) { return store().calendarWithUID(uid); }
    // Of the day, from its first to its last second, in all calendars.
    CalEventList eventsOn(QDate day);
    CalEventList eventsBetween(const QDateTime &start, const QDateTime &end);
    CalTaskList tasks();
    // Fresh from the store; null when it is not there. An event by its title, of the day.
    CalEventPtr eventOn(QDate day, const QString &title);
    CalTaskPtr task(const QString &title);
};

struct NamedFixture {
    const char *name;
    std::function<std::unique_ptr<StoreFixture>()> make;
    // Whether it keeps items as texts, which can go into other back ends.
    bool keepsTexts = true;
};

// Every back end that is under contract.
const std::vector<NamedFixture> &storeFixtures();

// What a list of events says, in the order of the list: "09:00-10:00 Title" for each.
QStringList shown(const CalEventList &events);
QStringList titlesOf(const CalEventList &events);
QStringList titlesOf(const CalTaskList &tasks);

// The day on which the contract tests live: a Wednesday, far from a change of the clocks.
inline const QDate contractDay { 2026, 3, 11 };
// A time of that day, or of another one.
QDateTime at(const char *time, QDate day = contractDay);
