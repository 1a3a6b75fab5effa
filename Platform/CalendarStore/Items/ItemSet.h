// SPDX-License-Identifier: MIT
#pragma once

#include <ICalendarItem.h>

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace ICalendar
{
class ZoneRegistry;
}

namespace Items
{

// One thing of a text that is shown by itself: an event that happens once, a
// series with its overridden occurrences, overrides whose series is not there,
// or a to-do.
struct ItemGroup {
    ICalendar::Item::Kind kind = ICalendar::Item::Kind::Event;
    bool needsExpansion = false;
    int master = -1; // index of the item; -1 for overrides without their series
    // How many earlier groups of the set have the same UID: both of two equals are shown.
    int ordinal = 0;
    ICalendar::Seldom<QList<int>> overrides; // indexes of items

    // Instants that bound every occurrence in whichever zone days and floating
    // times are meant, so that an index by them outlives a change of zone.
    // Without a start the group is at no time at all; without an end it goes on for ever.
    std::optional<ICalendar::UtcSeconds> earliest;
    std::optional<ICalendar::UtcSeconds> latest;
};

// The items that are kept together under one name: in a file, or whatever a service
// keeps under one identifier. What is known of their text, in the state in which it
// was read. Never changes, and is shared by all who look at it. Holds values,
// nothing of the parsed text.
class ItemSet
{
public:
    // `name` is one among the sets of a calendar.
    ItemSet(QString name, const QByteArray &text, ICalendar::ZoneRegistry &zones);
    // Of a version that is not that of all bytes: what it leaves out may change under it.
    ItemSet(QString name, const QByteArray &text, ICalendar::ZoneRegistry &zones, QByteArray version);
    virtual ~ItemSet() = default;
    ItemSet(const ItemSet &) = delete;
    ItemSet &operator=(const ItemSet &) = delete;

    const QString &name() const { return m_name; }
    // Of the text's bytes, unless it was given: the version of all its items.
    const QByteArray &version() const { return m_version; }
    static QByteArray versionOf(const QByteArray &text);
    const ICalendar::Document &document() const { return m_document; }
    const std::vector<ItemGroup> &groups() const { return m_groups; }

    const ICalendar::Item &item(int index) const { return m_document.items.at(index); }
    // All UIDs of the items, each once.
    QStringList uids() const;
    // The UID by which the item is known: its own, or one made of the set's name when it has none.
    const QString &uidOf(const ItemGroup &group) const;
    const ICalendar::Item &representative(const ItemGroup &group) const;

private:
    // By UID, while groups are made.
    struct Grouping {
        QHash<QString, int> groups; // how many
        QHash<QString, int> series; // index of the group
    };

    void nameTheNameless();
    void makeGroups();
    void addTask(int index, Grouping &grouping);
    void addEvent(int index, Grouping &grouping);
    void boundTimes(ItemGroup &group) const;

    // Thousands of sets are kept, most of them of one item: what follows from the rest is not kept beside it.
    QString m_name;
    QByteArray m_version;
    ICalendar::Document m_document;
    std::vector<ItemGroup> m_groups;
};

using ItemSetPtr = std::shared_ptr<const ItemSet>;

} // namespace Items
