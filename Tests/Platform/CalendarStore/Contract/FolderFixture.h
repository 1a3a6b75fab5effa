// SPDX-License-Identifier: MIT
#pragma once

#include "StoreFixture.h"

#include <CalendarFolder.h>

#include <QMap>

// The store over real files in a folder.
class FolderFixture final : public StoreFixture
{
public:
    FolderFixture();
    ~FolderFixture() override;

    CalCalendarStore &store() override;
    QString readOnlyUid() const override { return QStringLiteral("Shared.ics"); }
    void put(const QString &calendarUid, const QString &plainUid, const QByteArray &components) override;
    void takeAway(const QString &calendarUid, const QString &plainUid) override;
    void addCalendar(const QString &uid) override;
    void takeCalendarAway(const QString &uid) override;
    void breakTheDisk() override;

private:
    CalendarFolder m_folder;
    QMap<QString, QByteArray> m_shared; // what the single file of the read-only calendar holds, by UID
    bool m_isUnprivileged = false;
    std::unique_ptr<CalCalendarStore> m_store;
};
