// SPDX-License-Identifier: MIT
#pragma once

#include <Presence.h>

#include <QMap>
#include <QStringList>
#include <QWidget>

// Writes down what is asked of the desktop. Whether the application is active is the test's to say.
class RecordingPresence final : public Presence
{
    Q_OBJECT

public:
    // Arranging.
    bool applicationIsActive = false;
    bool entriesCanBeHidden = true;

    // Asserting. Each call by its name, with the window's object name.
    QStringList calls;
    QList<TaskBarEntry> taskBarEntries;
    QMap<QString, bool> hidesOnDeactivate;
    QList<ActivationToken> tokens;

    void manage(QWidget &window) override { calls << QStringLiteral("manage ") + window.objectName(); }
    void setTaskBarEntry(TaskBarEntry entry) override { taskBarEntries << entry; }
    bool canHideTaskBarEntry() const override { return entriesCanBeHidden; }
    void setHidesOnDeactivate(QWidget &window, bool hides) override { hidesOnDeactivate[window.objectName()] = hides; }
    bool isActive() const override { return applicationIsActive; }
    void activate() override { calls << QStringLiteral("activate"); }
    void bringToFront(QWidget &window) override
    {
        calls << QStringLiteral("bringToFront ") + window.objectName();
        window.show();
        window.raise();
        window.activateWindow();
    }
    void hide() override { calls << QStringLiteral("hide"); }
    void setActivationToken(const ActivationToken &token) override { tokens << token; }
};
