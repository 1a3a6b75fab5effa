// SPDX-License-Identifier: MIT
#include "PTKeyCodesTable.h"

#include <Localization.h>
#include <PropertyList.h>

#include <algorithm>
#include <array>
#include <string_view>

using namespace Qt::StringLiterals;

namespace
{

// The translation's tools read no property lists, so the words of the table
// stand here once more. F1 and its like are the same everywhere.
constexpr auto translatableNames = std::to_array<const char *>({
    QT_TRANSLATE_NOOP("Vantle", "Return"),
    QT_TRANSLATE_NOOP("Vantle", "Tab"),
    QT_TRANSLATE_NOOP("Vantle", "Space"),
    QT_TRANSLATE_NOOP("Vantle", "Backspace"),
    QT_TRANSLATE_NOOP("Vantle", "Escape"),
    QT_TRANSLATE_NOOP("Vantle", "Right Super"),
    QT_TRANSLATE_NOOP("Vantle", "Super"),
    QT_TRANSLATE_NOOP("Vantle", "Shift"),
    QT_TRANSLATE_NOOP("Vantle", "Caps Lock"),
    QT_TRANSLATE_NOOP("Vantle", "Alt"),
    QT_TRANSLATE_NOOP("Vantle", "Ctrl"),
    QT_TRANSLATE_NOOP("Vantle", "Right Shift"),
    QT_TRANSLATE_NOOP("Vantle", "Right Alt"),
    QT_TRANSLATE_NOOP("Vantle", "Right Ctrl"),
    QT_TRANSLATE_NOOP("Vantle", "Fn"),
    QT_TRANSLATE_NOOP("Vantle", "Num Lock"),
    QT_TRANSLATE_NOOP("Vantle", "Volume Up"),
    QT_TRANSLATE_NOOP("Vantle", "Volume Down"),
    QT_TRANSLATE_NOOP("Vantle", "Mute"),
    QT_TRANSLATE_NOOP("Vantle", "Pad Enter"),
    QT_TRANSLATE_NOOP("Vantle", "Pad ,"),
    QT_TRANSLATE_NOOP("Vantle", "Eisu"),
    QT_TRANSLATE_NOOP("Vantle", "Kana"),
    QT_TRANSLATE_NOOP("Vantle", "Menu"),
    QT_TRANSLATE_NOOP("Vantle", "Insert"),
    QT_TRANSLATE_NOOP("Vantle", "Home"),
    QT_TRANSLATE_NOOP("Vantle", "Page Up"),
    QT_TRANSLATE_NOOP("Vantle", "Delete"),
    QT_TRANSLATE_NOOP("Vantle", "End"),
    QT_TRANSLATE_NOOP("Vantle", "Page Down"),
    QT_TRANSLATE_NOOP("Vantle", "Left"),
    QT_TRANSLATE_NOOP("Vantle", "Right"),
    QT_TRANSLATE_NOOP("Vantle", "Down"),
    QT_TRANSLATE_NOOP("Vantle", "Up"),
    QT_TRANSLATE_NOOP("Vantle", "Pad"),
});

QString localizedName(const QString &name)
{
    const QByteArray key = name.toUtf8();
    const bool isTranslatable = std::ranges::any_of(
        translatableNames, [&key](std::string_view candidate) { return key == QByteArrayView(candidate); });
    return isTranslatable ? localizedString(key.constData()) : name;
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
