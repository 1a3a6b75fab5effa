// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class QVBoxLayout;

// All keys of the main window, group by group, from the keyboard map. Escape
// closes it.
class VTShortcutsWindow final : public QDialog
{
    Q_OBJECT

public:
    explicit VTShortcutsWindow(QWidget *parent = nullptr);

private:
    void addGroups(QVBoxLayout *layout);
};
