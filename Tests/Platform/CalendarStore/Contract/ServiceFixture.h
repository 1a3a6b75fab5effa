// SPDX-License-Identifier: MIT
#pragma once

#include "StoreFixture.h"

// The store over the desktop's real calendar service, and another program that uses it.
//
// The service and its calendars last as long as the process; each fixture finds them empty.
class ServiceFixture final : public StoreFixture
{
public:
    ServiceFixture();
    ~ServiceFixture() override;

    CalCalendarStore &store() override;
    QString readOnlyUid() const override { return QStringLiteral("Shared"); }
    void put(const QString &calendarUid, const QString &plainUid, const QByteArray &components) override;
    void takeAway(const QString &calendarUid, const QString &plainUid) override;
    void addCalendar(const QString &uid) override;
    void takeCalendarAway(const QString &uid) override;
    // The service keeps the disk to itself: from the store's side it ends to answer.
    void breakTheDisk() override;
    bool keepsUnknownZones() const override { return false; }
    bool keepsOddLines() const override { return false; }

private:
    bool showsNothingBut(const QStringList &uids);

    std::unique_ptr<CalCalendarStore> m_store;
    bool m_isStopped = false;
};
