// SPDX-License-Identifier: MIT
#include "MergedCalendars.h"

#include "CalendarStoreBackend.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

using Entry = MergedCalendars::Entry;

constexpr QChar partSeparator = u'\x1f';
constexpr QChar escapeCharacter = u'\x1b';

// Parts come from files of other programs, so even the separator may occur in them.
QString escaped(QString part)
{
    if (!part.contains(partSeparator) && !part.contains(escapeCharacter))
        return part;
    return part.replace(escapeCharacter, u"\x1b\x1b"_s).replace(partSeparator, u"\x1bs"_s);
}

QString labelledPart(QChar label, const QString &part)
{
    return partSeparator + label + escaped(part);
}

CalCalendarPtr renamed(const CalCalendarPtr &calendar, const QString &uid)
{
    return std::make_shared<CalCalendar>(CalCalendar::Values {
        .uid = uid,
        .title = calendar->title(),
        .color = calendar->color(),
        .isEditable = calendar->isEditable(),
        .holdsEvents = calendar->holds(CalItemKind::Event),
        .holdsTasks = calendar->holds(CalItemKind::Task),
        .availability = calendar->availability(),
    });
}

QString firstFreeUid(const QString &uid, const QSet<QString> &taken)
{
    QString candidate;
    int number = 2;
    do {
        candidate = u"%1~%2"_s.arg(uid).arg(number++);
    } while (taken.contains(candidate));
    return candidate;
}

std::vector<Entry> inOrderOfBackends(const std::vector<std::unique_ptr<CalendarStoreBackend>> &backends)
{
    std::vector<Entry> entries;
    QSet<QString> ownUids;
    for (const auto &backend : backends) {
        for (const CalCalendarPtr &calendar : backend->calendars()) {
            entries.push_back({ backend.get(), calendar, calendar });
            ownUids.insert(calendar->uid());
        }
    }

    // A made-up uid must not be that of a real calendar either, also not of a later one.
    QSet<QString> taken;
    for (Entry &entry : entries) {
        if (taken.contains(entry.own->uid()))
            entry.shown = renamed(entry.own, firstFreeUid(entry.own->uid(), ownUids + taken));
        taken.insert(entry.shown->uid());
    }
    return entries;
}

// The first back end that knows the user's choice decides; null when none does.
const CalendarStoreBackend *backendOfDefault(const std::vector<std::unique_ptr<CalendarStoreBackend>> &backends)
{
    const auto found = std::ranges::find_if(
        backends, [](const auto &backend) { return backend->hasDeclaredDefault() && !backend->calendars().isEmpty(); });
    return found == backends.end() ? nullptr : found->get();
}

} // namespace

MergedCalendars::MergedCalendars(const std::vector<std::unique_ptr<CalendarStoreBackend>> &backends)
    : m_entries(inOrderOfBackends(backends))
{
    const auto declared = std::ranges::find(m_entries, backendOfDefault(backends), &Entry::backend);
    if (declared != m_entries.end())
        std::rotate(m_entries.begin(), declared, std::next(declared));
    const auto others = declared == m_entries.end() ? m_entries.begin() : std::next(m_entries.begin());
    std::stable_partition(others, m_entries.end(), [](const Entry &entry) { return entry.own->isEditable(); });

    int rank = 0;
    for (Entry &entry : m_entries) {
        entry.rank = rank++;
        m_ranksOfShown.insert(entry.shown->uid(), entry.rank);
        m_ranksOfOwn[entry.backend].insert(entry.own->uid(), entry.rank);
    }
}

const MergedCalendars::Entry *MergedCalendars::shownAs(const QString &uid) const
{
    const auto found = m_ranksOfShown.constFind(uid);
    return found == m_ranksOfShown.cend() ? nullptr : &m_entries.at(*found);
}

const MergedCalendars::Entry *MergedCalendars::ofBackend(
    const CalendarStoreBackend *backend, const QString &ownUid) const
{
    const auto ranks = m_ranksOfOwn.constFind(backend);
    if (ranks == m_ranksOfOwn.cend())
        return nullptr;
    const auto found = ranks->constFind(ownUid);
    return found == ranks->cend() ? nullptr : &m_entries.at(*found);
}

const MergedCalendars::Entry *MergedCalendars::ofBackend(
    const CalendarStoreBackend *backend, const CalCalendarPtr &own) const
{
    // Records carry the very calendars that are merged here, unless one changed just now.
    const auto found = std::ranges::find(m_entries, own, &Entry::own);
    return found != m_entries.end() && found->backend == backend ? &*found : ofBackend(backend, own->uid());
}

QString MergedCalendars::uidOfItem(const CalItemOrigin &origin, const Entry &calendar) const
{
    QString uid = escaped(origin.plainUid);
    if (!origin.recurrenceId.isEmpty())
        uid += labelledPart(u'r', origin.recurrenceId);
    // An item without a UID is known by what it is kept in.
    if (origin.plainUid.isEmpty())
        uid += labelledPart(u'f', origin.resource);
    if (origin.plainUid.isEmpty() || isHeldEarlier(origin.plainUid, calendar))
        uid += labelledPart(u'c', calendar.shown->uid());
    if (!origin.distinction.isEmpty())
        uid += labelledPart(u'd', origin.distinction);
    return uid;
}

bool MergedCalendars::isHeldEarlier(const QString &plainUid, const Entry &calendar) const
{
    return std::any_of(m_entries.cbegin(), m_entries.cbegin() + calendar.rank,
        [&](const Entry &earlier) { return earlier.backend->holdsUid(earlier.own->uid(), plainUid); });
}
