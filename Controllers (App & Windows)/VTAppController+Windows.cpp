// SPDX-License-Identifier: MIT
#include "VTAppController.h"
#include "VTPreferencesWindow.h"

#include <Presence.h>

// The windows beside the main window.

void VTAppController::showPreferences(QObject * /*sender*/)
{
    presence().bringToFront(*m_preferencesWindow);
}
