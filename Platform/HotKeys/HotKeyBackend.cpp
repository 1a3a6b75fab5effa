// SPDX-License-Identifier: MIT
#include "HotKeyBackend.h"

#include <QCoreApplication>

namespace HotKeyRefusal
{

Error keysAreTaken()
{
    return { QCoreApplication::translate("Vantle", "Another program already uses these keys. Choose others.") };
}

Error keysAreTakenByUs()
{
    return { QCoreApplication::translate(
        "Vantle", "These keys already belong to another hot key of Vantle. Choose others.") };
}

Error keyIsMissing()
{
    return { QCoreApplication::translate("Vantle", "This keyboard does not have that key. Choose another.") };
}

Error modifierIsMissing()
{
    return { QCoreApplication::translate(
        "Vantle", "This keyboard does not have that modifier key. Choose another combination.") };
}

} // namespace HotKeyRefusal
