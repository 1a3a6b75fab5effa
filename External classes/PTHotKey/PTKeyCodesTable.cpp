// SPDX-License-Identifier: MIT
#include "PTKeyCodesTable.h"

#include <PropertyList.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

struct TranslatableName {
    const char *name;
    const char *role; // tells the key Home from the calendar Home
};

// The translation's tools read no property lists, so the words of the table
// stand here once more. F1 and its like are the same everywhere.
constexpr auto translatableNames = std::to_array<TranslatableName>({
    QT_TRANSLATE_NOOP3("Vantle", "Return", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Tab", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Space", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Backspace", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Escape", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Right Super", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Super", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Shift", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Caps Lock", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Alt", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Ctrl", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Right Shift", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Right Alt", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Right Ctrl", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Fn", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Num Lock", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Volume Up", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Volume Down", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Mute", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Pad Enter", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Pad ,", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Eisu", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Kana", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Menu", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Insert", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Home", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Page Up", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Delete", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "End", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Page Down", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Left", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Right", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Down", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Up", "key"),
    QT_TRANSLATE_NOOP3("Vantle", "Pad", "key"),
});

QString localizedName(const QString &name)
{
    const QByteArray wanted = name.toUtf8();
    const auto *const found = std::ranges::find_if(
        translatableNames, [&wanted](const TranslatableName &candidate) { return wanted == candidate.name; });
    return found == translatableNames.end() ? name : QCoreApplication::translate("Vantle", found->name, found->role);
}

QVariantMap localizedTable(QVariantMap table)
{
    if (const auto place = table.find(u"unmappedKeys"_s); place != table.end()) {
        QVariantMap names = place->toMap();
        for (QVariant &name : names)
            name = localizedName(name.toString());
        *place = names;
    }
    if (const auto place = table.find(u"padKeyString"_s); place != table.end())
        *place = localizedName(place->toString());
    return table;
}

} // namespace

PTKeyCodesTable::PTKeyCodesTable(QString path)
    : m_path(std::move(path))
{
}

const QVariantMap &PTKeyCodesTable::dictionary()
{
    if (m_dictionary.isEmpty())
        if (Result<QVariantMap> table = readPropertyListDictionary(m_path))
            m_dictionary = localizedTable(std::move(table).value());
    return m_dictionary;
}
