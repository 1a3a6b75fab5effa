// SPDX-License-Identifier: MIT
#pragma once

#include "Workspace.h"

#include <functional>

// Opens through the desktop's own handlers.
class DesktopWorkspace final : public Workspace
{
public:
    // Whether the person agrees to open this target; shown exactly as given.
    using Question = std::function<bool(const QString &target)>;
    // Hands a URL to the program that the desktop names for it.
    using Opener = std::function<bool(const QUrl &url)>;

    // Asks in a message box and opens with the desktop's handler.
    DesktopWorkspace();
    DesktopWorkspace(Question question, Opener opener);

    void openURL(const QUrl &url) override;
    [[nodiscard]] bool openAccountSettings() override;

private:
    Question m_question;
    Opener m_opener;
};

// The address as it really is, in characters that cannot deceive; cut when it is very long.
QString readableTarget(const QUrl &url);
