// SPDX-License-Identifier: MIT
#pragma once

#include <StoreError.h>

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>

namespace ICalendar
{
class ZoneRegistry;
}

namespace FolderStore
{

// Remembers for a minute what saves have written.
//
// A program that looked at a file before a save, and renames its own text over it afterwards, overwrites what was
// saved: only it could have known. But it can be seen. A text that lacks the lines that a save wrote, and has those
// that it replaced or an older SEQUENCE, was not made from what was saved.
class RecentEdits final
{
public:
    explicit RecentEdits(ICalendar::ZoneRegistry &zones);

    // `error` is what the person is told should the edit be overwritten.
    void add(const QString &path, const QByteArray &before, const QByteArray &after, const StoreError &error,
        const QDateTime &now);
    // The edits that are not in the text by which another program has replaced the file; each is told once.
    QList<StoreError> overwrittenBy(const QString &path, const QByteArray &text, const QDateTime &now);
    // What was saved there was taken back.
    void forget(const QString &path) { m_edits.remove(path); }

private:
    using Lines = QSet<QByteArray>;
    // An item of a text, by UID and occurrence.
    struct ItemName {
        QString uid;
        QString recurrenceId;

        bool operator==(const ItemName &) const = default;
        friend size_t qHash(const ItemName &name, size_t seed = 0)
        {
            return qHashMulti(seed, name.uid, name.recurrenceId);
        }
    };
    struct ItemLines {
        Lines lines; // but for those that tell of a change
        int sequence = -1;
    };
    using Text = QHash<ItemName, ItemLines>;
    struct Change {
        Lines added;
        Lines removed;
        int sequence = -1; // after it
        bool isOfNewItem = false;
    };
    struct Edit {
        QHash<ItemName, Change> changes;
        StoreError error;
        QDateTime when;
    };

    Text textOf(const QString &path, const QByteArray &text) const;
    static Edit editBetween(const Text &before, const Text &after);
    // `isLaterLost`: so is a later edit of the same item.
    static bool isLostIn(const Text &text, const ItemName &name, const Change &change, bool isLaterLost);
    void forgetOld(const QDateTime &now);

    ICalendar::ZoneRegistry &m_zones;
    QHash<QString, QList<Edit>> m_edits; // by path, in the order in which they were made
};

} // namespace FolderStore
