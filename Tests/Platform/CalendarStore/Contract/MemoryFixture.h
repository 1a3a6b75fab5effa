// SPDX-License-Identifier: MIT
#pragma once

#include "StoreFixture.h"

#include <MemoryBackend.h>

// The store over the double that other tests use: what holds for the real one must hold for it.
class MemoryFixture final : public StoreFixture
{
public:
    MemoryFixture();

    CalCalendarStore &store() override;
    QString readOnlyUid() const override { return QStringLiteral("Shared"); }
    void put(const QString &calendarUid, const QString &plainUid, const QByteArray &components) override;
    void takeAway(const QString &calendarUid, const QString &plainUid) override;
    void addCalendar(const QString &uid) override;
    void takeCalendarAway(const QString &uid) override;
    void breakTheDisk() override;

private:
    // What was there from the start is no news.
    void post(const CalBackendChange &change);

    MemoryBackend *m_backend; // the store's
    std::unique_ptr<CalCalendarStore> m_store;
    bool m_isInUse = false;
};
