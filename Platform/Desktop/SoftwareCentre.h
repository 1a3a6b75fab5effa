// SPDX-License-Identifier: MIT
#pragma once

#include "DesktopEntries.h"

// The desktop's own program for installing and renewing programs, found by the
// addresses that it opens (appstream://).
class SoftwareCentre final
{
public:
    explicit SoftwareCentre(DesktopEntries entries = DesktopEntries());

    bool isAvailable() const;
    // Shows the page of the program with that AppStream id. Returns at once; nothing happens where there is none.
    void showComponent(const QString &componentId) const;

private:
    DesktopEntries m_entries;
};
