// SPDX-License-Identifier: MIT
#pragma once

#include "FileReading.h"

#include <ICalendarItem.h>

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace ICalendar
{
class ZoneRegistry;
}

namespace FolderStore
{

// One thing of a file that is shown by itself: an event that happens once, a
// series with its overridden occurrences, overrides whose series is not there,
// or a to-do.
struct ItemGroup {
    ICalendar::Item::Kind kind = ICalendar::Item::Kind::Event;
    int master = -1; // index of the item; -1 for overrides without their series
    QList<int> overrides; // indexes of items
    // How many earlier groups of the file have the same UID: both of two equals are shown.
    int ordinal = 0;

    // Instants that bound every occurrence in whichever zone days and floating
    // times are meant, so that an index by them outlives a change of zone.
    // Without a start the group is at no time at all; without an end it goes on for ever.
    std::optional<ICalendar::UtcSeconds> earliest;
    std::optional<ICalendar::UtcSeconds> latest;

    bool needsExpansion = false;
};

// What is known of one file, in the state in which it was read. Never changes,
// and is shared by all who look at it. Holds values, nothing of the parsed text.
class FileSnapshot final
{
public:
    FileSnapshot(QString fileName, const FileContent &content, ICalendar::ZoneRegistry &zones);

    const QString &fileName() const { return m_fileName; }
    const FileState &state() const { return m_state; }
    // Of the file's bytes: the version of all its items.
    const QByteArray &hash() const { return m_hash; }
    // Where the file lies if its name is a link; empty otherwise.
    const QString &linkTarget() const { return m_linkTarget; }
    const ICalendar::Document &document() const { return m_document; }
    const std::vector<ItemGroup> &groups() const { return m_groups; }

    const ICalendar::Item &item(int index) const { return m_document.items.at(index); }
    // All UIDs of the file's items, each once.
    const QStringList &uids() const { return m_uids; }
    // The UID by which the item is known: its own, or one made of the file's name when it has none.
    const QString &uidOf(const ItemGroup &group) const;
    const ICalendar::Item &representative(const ItemGroup &group) const;

    // Whether the file looks as if somebody were still writing it.
    bool looksUnfinished() const { return m_looksUnfinished; }

private:
    void nameTheNameless();
    void makeGroups();
    void addTask(int index);
    void addEvent(int index, QHash<QString, int> &seriesByUid);
    void boundTimes(ItemGroup &group) const;

    QString m_fileName;
    FileState m_state;
    QByteArray m_hash;
    QString m_linkTarget;
    ICalendar::Document m_document;
    std::vector<ItemGroup> m_groups;
    QStringList m_uids;
    QHash<QString, int> m_groupsByUid;
    bool m_looksUnfinished = false;
};

using FileSnapshotPtr = std::shared_ptr<const FileSnapshot>;

} // namespace FolderStore
