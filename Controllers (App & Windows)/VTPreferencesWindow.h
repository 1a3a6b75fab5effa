// SPDX-License-Identifier: MIT
#pragma once

#include <AutostartEntry.h>
#include <HotKeyStatus.h>
#include <SRRecorderControl.h>

#include <QDialog>

#include <array>

class KLVStatusLabel;
class QButtonGroup;
class QCheckBox;
class QGridLayout;
class QLabel;
class QVBoxLayout;

// Where Vantle shows itself, when it starts and hides, and its global hot keys.
//
// Every change works at once, and there is nothing to confirm. Shows what it is
// told to show, and tells by signals what the person chose; VTAppController is
// between it and the application. Only the start at login is its own: that is
// the desktop's file, read whenever the window comes up.
//
// The recorders report to their delegate, which the application controller sets.
class VTPreferencesWindow final : public QDialog
{
    Q_OBJECT

public:
    // What this desktop cannot do; said where the person would look for it.
    struct DesktopLimits {
        bool keepsTaskBarEntries = false; // an open window always has one
        bool hasNoIconHost = false; // nothing on this desktop shows a menu-bar icon at present

        bool operator==(const DesktopLimits &other) const = default;
    };

    // The layouts outlive it.
    VTPreferencesWindow(KeyboardLayouts &layouts, const SRRecorderControl::KeyName &keyName, AutostartEntry autostart,
        QWidget *parent = nullptr);

    SRRecorderControl *showAppShortcutRecorder() const { return m_hotKeys[0].recorder; }
    SRRecorderControl *addEventShortcutRecorder() const { return m_hotKeys[1].recorder; }
    SRRecorderControl *addTaskShortcutRecorder() const { return m_hotKeys[2].recorder; }
    // What became of the recorder's combination. The recorder is one of the three.
    void setHotKeyStatus(const SRRecorderControl *recorder, const HotKeyStatus &status);

    // 0 task bar and menu bar (any other number looks like it), 1 task bar only, 2 menu bar only.
    void setIconStatus(int iconStatus);
    void setHidesWhenInactive(bool hidesWhenInactive);
    // Says that the task-bar entry goes at the next start.
    void setRestartRequired(bool restartRequired);
    void setDesktopLimits(const DesktopLimits &limits);

Q_SIGNALS:
    // By the person; not for what the program sets.
    void iconStatusChosen(int iconStatus);
    void hidesWhenInactiveChosen(bool hidesWhenInactive);

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct HotKey {
        const char *action; // of the application on the session bus
        SRRecorderControl *recorder = nullptr;
        KLVStatusLabel *label = nullptr;
        QLabel *command = nullptr; // does the same, for a desktop that binds keys to commands
        HotKeyStatus status = {};
    };

    void addPresence(QVBoxLayout &column);
    static QVBoxLayout *addChoices(QVBoxLayout &column); // rows that stand closer together
    void addSwitches(QVBoxLayout &column);
    void addHotKeys(QVBoxLayout &column, KeyboardLayouts &layouts, const SRRecorderControl::KeyName &keyName);
    void addHotKeyRow(QGridLayout &grid, HotKey &hotKey, const QString &caption);
    void addCommands(QVBoxLayout &column);
    QLabel *addNote(QVBoxLayout &column, const char *name);
    void updatePresenceNote();
    void updateHotKeyNotes();
    void startsAtLoginChosen(bool startsAtLogin);
    void fit();

    AutostartEntry m_autostart;
    QButtonGroup *m_iconStatus;
    QCheckBox *m_hidesWhenInactive = nullptr;
    QCheckBox *m_startsAtLogin = nullptr;
    QLabel *m_presenceNote = nullptr;
    QLabel *m_loginNote = nullptr;
    QLabel *m_hotKeyNote = nullptr;
    std::array<HotKey, 3> m_hotKeys { { { .action = "toggle" }, { .action = "new-event" }, { .action = "new-todo" } } };
    bool m_restartRequired = false;
    bool m_isBeingTold = false; // what changes is no choice of the person
    DesktopLimits m_limits;
};
