// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>

#include <optional>

namespace Items
{
class ProblemLog;
}

namespace FolderStore
{

// What the files `displayname`, `color` and `order` of a collection say.
// Whatever else they hold than a short text, a colour and a number counts as nothing.
struct CollectionDescription {
    QString displayName; // one line of plain text; empty when not given
    std::optional<QColor> color;
    std::optional<int> order;

    static CollectionDescription readFrom(const QString &folder, Items::ProblemLog &log);
    // Whether a file of that name in a collection describes it.
    static bool isDescriptionFile(const QString &fileName);

    bool operator==(const CollectionDescription &) const = default;
};

// #RGB, #RRGGBB, or with a transparency behind, which is left out: a calendar is never invisible.
std::optional<QColor> colorOfText(const QString &text);
// One line of plain text, as it can be shown as a name.
QString displayNameOfText(const QString &text);
// A pleasant colour for a calendar that has none; the same one for the same name.
QColor defaultColor(const QString &name);

} // namespace FolderStore
