// SPDX-License-Identifier: MIT
#include "ItemExtract.h"

#include <TextPatcher.h>

#include <QSet>

#include <algorithm>

namespace Items
{

namespace
{

using ICalendar::Component;

// The text's components, and which of them belong to the group.
class Partition final
{
public:
    Partition(const ItemSet &set, int group, const QByteArray &text)
        : m_patcher(text)
    {
        const ItemGroup &members = set.groups().at(static_cast<size_t>(group));
        if (members.master >= 0)
            m_ofGroup.insert(set.item(members.master).component);
        for (const int index : *members.overrides)
            m_ofGroup.insert(set.item(index).component);
    }

    bool hasOthers() const
    {
        return anyItem([this](int item) { return !m_ofGroup.contains(item); });
    }

    QByteArray withoutItems(bool ofGroup)
    {
        for (int index = 0; index < count(); ++index) {
            if (isItem(index) && m_ofGroup.contains(index) == ofGroup)
                m_patcher.removeComponent(index);
            else if (isEmptyWithout(index, ofGroup))
                m_patcher.removeComponent(index);
        }
        return m_patcher.patchedText();
    }

private:
    int count() const { return static_cast<int>(components().size()); }
    const std::vector<Component> &components() const { return m_patcher.lines().components(); }
    const Component &at(int index) const { return components()[static_cast<size_t>(index)]; }

    // What stands by itself in the text, or right within a calendar.
    bool isItem(int index) const
    {
        const Component &component = at(index);
        const bool isOnTop = component.parent < 0 || at(component.parent).name == "VCALENDAR";
        return isOnTop && component.name != "VCALENDAR" && component.name != "VTIMEZONE";
    }

    template <typename Condition> bool anyItem(Condition condition) const
    {
        for (int index = 0; index < count(); ++index) {
            if (isItem(index) && condition(index))
                return true;
        }
        return false;
    }

    // One calendar of several in the text, of which nothing but zones would be left.
    bool isEmptyWithout(int index, bool ofGroup) const
    {
        const auto isIn = [this, index](int item) { return at(item).parent == index; };
        return at(index).name == "VCALENDAR" && anyItem(isIn)
            && !anyItem([&](int item) { return isIn(item) && m_ofGroup.contains(item) != ofGroup; });
    }

    ICalendar::TextPatcher m_patcher;
    QSet<int> m_ofGroup;
};

} // namespace

bool holdsNothingElse(const ItemSet &set, int group, const QByteArray &text)
{
    return !Partition(set, group, text).hasOthers();
}

QByteArray textOfGroupAlone(const ItemSet &set, int group, const QByteArray &text)
{
    return Partition(set, group, text).withoutItems(false);
}

QByteArray textWithoutGroup(const ItemSet &set, int group, const QByteArray &text)
{
    return Partition(set, group, text).withoutItems(true);
}

} // namespace Items
