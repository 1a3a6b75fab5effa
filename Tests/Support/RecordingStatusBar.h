// SPDX-License-Identifier: MIT
#pragma once

#include <StatusBar.h>

#include <QIcon>
#include <QMenu>

// A status icon without a desktop; the test presses it.
class RecordingStatusItem final : public StatusItem
{
    Q_OBJECT

public:
    QIcon image;
    QIcon alternateImage;
    QString toolTip;
    QPointer<QMenu> menu;
    QList<QMenu *> poppedUpMenus;
    bool shown = true;

    void press() { sendAction(); }
    void pressTwice() { sendDoubleAction(); }

    void setImage(const QIcon &newImage) override { image = newImage; }
    void setAlternateImage(const QIcon &newImage) override { alternateImage = newImage; }
    void setToolTip(const QString &text) override { toolTip = text; }
    void setMenu(QMenu *newMenu) override { menu = newMenu; }
    void popUpMenu(QMenu *newMenu) override { poppedUpMenus << newMenu; }
    bool isShown() const override { return shown; }
};

class RecordingStatusBar final : public StatusBar
{
    Q_OBJECT

public:
    int itemsMade = 0;
    QPointer<RecordingStatusItem> latestItem; // null once its owner let it go

    void setAvailable(bool isAvailable)
    {
        m_isAvailable = isAvailable;
        Q_EMIT availabilityDidChange();
    }

    std::unique_ptr<StatusItem> makeStatusItem() override
    {
        ++itemsMade;
        auto item = std::make_unique<RecordingStatusItem>();
        latestItem = item.get();
        return item;
    }
    bool isAvailable() const override { return m_isAvailable; }

private:
    bool m_isAvailable = true;
};
