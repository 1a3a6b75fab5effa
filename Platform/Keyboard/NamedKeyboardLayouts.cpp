// SPDX-License-Identifier: MIT
#include "NamedKeyboardLayouts.h"

#include "XkbKeyboardLayout.h"

#include <QFile>

#include <xkbcommon/xkbcommon.h>

using namespace Qt::StringLiterals;

namespace
{

// The file is a list of shell assignments.
KeyboardNames namesFromConfiguration(const QString &path)
{
    KeyboardNames names;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return names;

    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const auto sign = line.indexOf('=');
        if (sign < 0)
            continue;
        const QByteArray key = line.first(sign).trimmed();
        const QByteArray value = line.sliced(sign + 1).replace('"', "").replace('\'', "").trimmed();
        if (key == "XKBMODEL")
            names.model = value;
        else if (key == "XKBLAYOUT")
            names.layout = value;
        else if (key == "XKBVARIANT")
            names.variant = value;
    }
    return names;
}

XkbKeymapPtr keymapNamed(const XkbContextPtr &context, const KeyboardNames &names)
{
    // Null leaves the choice to the library; an empty text would not.
    const auto orNull = [](const QByteArray &text) { return text.isEmpty() ? nullptr : text.constData(); };
    const xkb_rule_names rules = { "evdev", orNull(names.model), orNull(names.layout), orNull(names.variant), nullptr };
    return XkbKeymapPtr(xkb_keymap_new_from_names(context.get(), &rules, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

} // namespace

KeyboardNames KeyboardNames::ofThisSystem(const QString &configurationFile)
{
    if (qEnvironmentVariableIsEmpty("XKB_DEFAULT_LAYOUT"))
        return namesFromConfiguration(configurationFile);
    return { qgetenv("XKB_DEFAULT_MODEL"), qgetenv("XKB_DEFAULT_LAYOUT"), qgetenv("XKB_DEFAULT_VARIANT") };
}

NamedKeyboardLayouts::NamedKeyboardLayouts(const KeyboardNames &names, quint32 group, QObject *parent)
    : KeyboardLayouts(parent)
{
    const XkbContextPtr context = makeXkbContext();
    XkbKeymapPtr keymap = keymapNamed(context, names);
    if (!keymap)
        keymap = keymapNamed(context, { .model = {}, .layout = "us", .variant = {} });
    auto layout = std::make_shared<XkbKeyboardLayout>(std::move(keymap), group);
    m_keyboardType = layout->keyboardType();
    m_layout = std::move(layout);
}
