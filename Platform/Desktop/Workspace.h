// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

// Opens things with the programs that the person chose for them.
class Workspace
{
public:
    Workspace() = default;
    virtual ~Workspace() = default;
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;

    // With the default program of the URL's scheme. http, https and mailto open at once; of every other
    // scheme the person is asked first and shown the real target. Nothing local is ever executed.
    virtual void openURL(const QUrl &url) = 0;

    // The place where the desktop asks for the passwords of calendar accounts, or the program that manages
    // them. False when this desktop has neither.
    [[nodiscard]] virtual bool openAccountSettings() = 0;
};
