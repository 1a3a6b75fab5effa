// SPDX-License-Identifier: MIT
#include "FolderFixture.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr uid_t nobody = 65534;
constexpr mode_t readable = 0755;
constexpr mode_t unwritable = 0555;

} // namespace

FolderFixture::FolderFixture()
{
    QDir().mkpath(m_folder.path(u"Home"_s));
    QDir().mkpath(m_folder.path(u"Work"_s));
    m_folder.write(u"Shared.ics"_s, calendarText({}));
}

FolderFixture::~FolderFixture()
{
    m_store.reset();
    if (m_isUnprivileged && ::seteuid(0) != 0)
        qFatal("The test cannot become administrator again");
    for (const QString &uid : { u"Home"_s, u"Work"_s })
        ::chmod(QFile::encodeName(m_folder.path(uid)).constData(), readable);
}

CalCalendarStore &FolderFixture::store()
{
    if (!m_store) {
        std::vector<std::unique_ptr<CalendarStoreBackend>> backends;
        backends.push_back(m_folder.open());
        m_store = std::make_unique<CalCalendarStore>(std::move(backends));
    }
    return *m_store;
}

void FolderFixture::put(const QString &calendarUid, const QString &plainUid, const QByteArray &components)
{
    if (calendarUid == readOnlyUid()) {
        m_shared.insert(plainUid, components);
        m_folder.writeByRenaming(calendarUid, calendarText(m_shared.values().join()));
        return;
    }
    m_folder.writeByRenaming(u"%1/%2.ics"_s.arg(calendarUid, plainUid), calendarText(components));
}

void FolderFixture::takeAway(const QString &calendarUid, const QString &plainUid)
{
    if (!m_folder.remove(u"%1/%2.ics"_s.arg(calendarUid, plainUid)))
        qFatal("There is no such item to take away");
}

void FolderFixture::addCalendar(const QString &uid)
{
    QDir().mkpath(m_folder.path(uid));
}

void FolderFixture::takeCalendarAway(const QString &uid)
{
    QDir(m_folder.path(uid)).removeRecursively();
}

void FolderFixture::breakTheDisk()
{
    // Permissions mean nothing to the administrator.
    for (const QString &uid : { u"Home"_s, u"Work"_s })
        ::chmod(QFile::encodeName(m_folder.path(uid)).constData(), unwritable);
    ::chmod(QFile::encodeName(m_folder.path(u".."_s)).constData(), readable);
    if (::geteuid() == 0)
        m_isUnprivileged = ::seteuid(nobody) == 0;
}
