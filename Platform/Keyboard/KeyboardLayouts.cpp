// SPDX-License-Identifier: MIT
#include "KeyboardLayouts.h"

#include "NamedKeyboardLayouts.h"
#include "X11KeyboardLayouts.h"

#include <QCoreApplication>

namespace
{

KeyboardLayouts *replacement = nullptr;

std::unique_ptr<KeyboardLayouts> &ofThisDesktop()
{
    static std::unique_ptr<KeyboardLayouts> layouts;
    return layouts;
}

// An X server knows the layout in use; on Wayland the one for X programs is
// told the compositor's. Without any, what the system is set up for has to do.
std::unique_ptr<KeyboardLayouts> bestLayouts()
{
    if (auto layouts = X11KeyboardLayouts::create())
        return layouts;
    return std::make_unique<NamedKeyboardLayouts>(KeyboardNames::ofThisSystem());
}

} // namespace

KeyboardLayouts &KeyboardLayouts::current()
{
    if (replacement)
        return *replacement;

    std::unique_ptr<KeyboardLayouts> &layouts = ofThisDesktop();
    if (!layouts) {
        layouts = bestLayouts();
        // Its connection is watched by the event loop, which ends with the application object.
        qAddPostRoutine([] { ofThisDesktop().reset(); });
    }
    return *layouts;
}

void KeyboardLayouts::setCurrent(KeyboardLayouts *layouts)
{
    replacement = layouts;
}
