// SPDX-License-Identifier: MIT
#pragma once

#include <Workspace.h>

#include <QList>

// Remembers what it was asked to open, and opens nothing.
class RecordingWorkspace final : public Workspace
{
public:
    void openURL(const QUrl &url) override { openedUrls.append(url); }

    bool openAccountSettings() override
    {
        ++accountSettingsOpened;
        return hasAccountSettings;
    }

    QList<QUrl> openedUrls;
    int accountSettingsOpened = 0; // also in vain
    bool hasAccountSettings = true;
};
