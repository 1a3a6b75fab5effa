// SPDX-License-Identifier: MIT
#include "ModifierFlags.h"

#include <Localization.h>

#include <QStringList>

const std::array<Modifier, 4> modifiersInOrder { {
    { CarbonModifier::command, CocoaModifier::command, u'\u2318', QT_TRANSLATE_NOOP("Vantle", "Super") },
    { CarbonModifier::option, CocoaModifier::option, u'\u2325', QT_TRANSLATE_NOOP("Vantle", "Alt") },
    { CarbonModifier::control, CocoaModifier::control, u'\u2303', QT_TRANSLATE_NOOP("Vantle", "Ctrl") },
    { CarbonModifier::shift, CocoaModifier::shift, u'\u21E7', QT_TRANSLATE_NOOP("Vantle", "Shift") },
} };

quint64 SRCarbonToCocoaFlags(quint64 carbonFlags)
{
    quint64 cocoaFlags = 0;
    for (const Modifier &modifier : modifiersInOrder)
        if (carbonFlags & modifier.carbon)
            cocoaFlags |= modifier.cocoa;
    return cocoaFlags;
}

quint64 SRCocoaToCarbonFlags(quint64 cocoaFlags)
{
    quint64 carbonFlags = 0;
    for (const Modifier &modifier : modifiersInOrder)
        if (cocoaFlags & modifier.cocoa)
            carbonFlags |= modifier.carbon;
    return carbonFlags;
}

QString modifierGlyphs(quint64 carbonFlags)
{
    QString glyphs;
    for (const Modifier &modifier : modifiersInOrder)
        if (carbonFlags & modifier.carbon)
            glyphs += QChar(modifier.glyph);
    return glyphs;
}

QString modifierWords(quint64 carbonFlags)
{
    QStringList words;
    for (const Modifier &modifier : modifiersInOrder)
        if (carbonFlags & modifier.carbon)
            words.append(localizedString(modifier.word));
    return words.join(u'+');
}
