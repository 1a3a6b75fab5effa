// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class QScrollBar;
class QVBoxLayout;

// All keys of the main window, group by group, from the keyboard map. Escape
// closes it.
class VTShortcutsWindow final : public QDialog
{
    Q_OBJECT

public:
    explicit VTShortcutsWindow(QWidget *parent = nullptr);

protected:
    // Home and End go to the first and the last keys.
    void keyPressEvent(QKeyEvent *event) override;

private:
    static void addGroups(QVBoxLayout *layout);

    QScrollBar *m_scrollBar;
};
