// SPDX-License-Identifier: MIT
#pragma once

#include "RecordingTaskBackend.h"

#include <CalCalendarStore.h>
#include <Clock.h>
#include <KLVAccordionView.h>
#include <ManualClock.h>
#include <VTRowEnvironment.h>
#include <Workspace.h>

#include <QApplication>
#include <QFont>
#include <QUrl>

// Opens nothing; remembers what it was asked for.
class RowWorkspace final : public Workspace
{
public:
    void openURL(const QUrl &url) override { opened.append(url); }
    bool openAccountSettings() override { return false; }

    QList<QUrl> opened;
};

// What rows need, around Friday, 20 November 2026, 10:00.
class RowFixture
{
public:
    RowFixture();

    static CalCalendarPtr calendar(const QString &title, const QColor &color);
    static CalEventPtr event(
        const QString &title, const QDateTime &start, const QDateTime &end, const CalCalendarPtr &calendar);
    static CalTaskPtr task(const QString &title, const CalCalendarPtr &calendar);
    static QDateTime at(int day, int hour, int minute = 0); // in November 2026
    static CalAttendee attendee(const QString &name, const QString &address, const QString &status);

    VTRowEnvironment environment()
    {
        return { store, workspace, clock, [this] { return shownDate; } };
    }

    RecordingTaskBackend *backend; // owned by the store
    CalCalendarStore store;
    RowWorkspace workspace;
    ManualClock clock;
    QDateTime shownDate;
    CalCalendarPtr home;
    CalCalendarPtr work;

private:
    RowFixture(std::unique_ptr<RecordingTaskBackend> taskBackend);
};

inline QDateTime at(int day, int hour, int minute = 0)
{
    return RowFixture::at(day, hour, minute);
}

// Makes rows of calendar items and draws as the main window does.
class RowDelegate final : public KLVAccordionViewDelegate
{
public:
    explicit RowDelegate(RowFixture &fixture)
        : m_fixture(fixture)
    {
    }

    bool respondsToAccordionView_itemForRepresentedObject() const override { return true; }
    KLVAccordionViewItemPtr accordionView_itemForRepresentedObject(
        KLVAccordionView *view, const KeyValueObjectPtr &object) override;
    bool respondsToAccordionView_mouseDown_forRepresentedObject() const override { return true; }
    bool accordionView_mouseDown_forRepresentedObject(
        KLVAccordionView *view, const KLVMouseEvent &event, const KeyValueObjectPtr &object) override;
    bool respondsToAccordionView_drawSelectedBackgroundForItem_frame() const override { return true; }
    void accordionView_drawSelectedBackgroundForItem_frame(
        KLVAccordionView *view, const KeyValueObjectPtr &object, const QRectF &frame) override;
    bool respondsToAccordionView_drawPlaceHolderBackgroundInFrame() const override { return true; }
    void accordionView_drawPlaceHolderBackgroundInFrame(KLVAccordionView *view, const QRectF &frame) override;

    struct Press {
        KeyValueObjectPtr object;
        KLVMouseEvent event;
    };
    QList<Press> presses;
    bool selectsOnPress = false;
    QString placeholder = QStringLiteral("No events scheduled");

private:
    RowFixture &m_fixture;
};
