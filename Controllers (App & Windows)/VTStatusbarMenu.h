// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

// The menu of the status icon, with everything that the icon itself can do,
// since some desktops pass no presses on: showing the window comes first.
//
// The parent is the window over which a compositor lets it open; it need not be
// visible.
//
// Each action has its command's name as object name; what it does is connected by
// VTAppController.
class VTStatusbarMenu final : public QMenu
{
    Q_OBJECT

public:
    explicit VTStatusbarMenu(QWidget *parent = nullptr);

    // Must exist.
    QAction *command(const char *name) const;

private:
    QAction *addCommand(const char *name, const QString &text);
};
