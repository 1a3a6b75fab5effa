// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <VTEventRowLayout.h>
#include <VTTaskRowLayout.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Frames as in the interface files, in rows of 152 and 116.
VTRowFrames eventFrames()
{
    return {
        { u"titleField"_s, QRectF(30, 129, 234, 16) },
        { u"icons"_s, QRectF(30, 114, 198, 11) },
        { u"locationLabel"_s, QRectF(4, 0, 66, 16) },
        { u"locationField"_s, QRectF(80, 0, 248, 16) },
        { u"attendeesLabel"_s, QRectF(4, 0, 66, 16) },
        { u"attendeesMatrix"_s, QRectF(80, 0, 248, 40) },
        { u"urlLabel"_s, QRectF(4, 0, 66, 16) },
        { u"urlButton"_s, QRectF(80, 0, 248, 24) },
        { u"notesLabel"_s, QRectF(4, 0, 66, 16) },
        { u"notesField"_s, QRectF(80, 0, 288, 16) },
    };
}

VTRowFrames taskFrames()
{
    return {
        { u"titleField"_s, QRectF(34, 96, 310, 16) },
        { u"dueDateField"_s, QRectF(34, 82, 270, 14) },
        { u"completedLabel"_s, QRectF(4, 0, 66, 16) },
        { u"completedField"_s, QRectF(80, 0, 248, 16) },
        { u"urlLabel"_s, QRectF(4, 0, 66, 16) },
        { u"urlButton"_s, QRectF(80, 0, 248, 22) },
        { u"notesLabel"_s, QRectF(4, 0, 66, 16) },
        { u"notesField"_s, QRectF(80, 0, 288, 16) },
    };
}

} // namespace

class VTRowLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eventWithoutDetailsDoesNotGrow();
    void twoLineTitleRaisesBothHeights();
    void lowTitleAddsNothing();
    void eventWithoutATitleKeepsItsHeight();
    void eventDetailsStackFromTheBottom();
    void emptyAttendeeListCounts();
    void titleKeepsItsTopAndIconsFollow();
    void bareTaskIsTwentyTwoHigh();
    void taskWithADueDateAddsItsHeight();
    void dueDateStandsUnderTheTitle();
    void completionStandsAboveTheLink();
    void selectedIsTallerByTheStack();
};

void VTRowLayoutTest::eventWithoutDetailsDoesNotGrow()
{
    const VTRowLayout layout = layOutEventRow(eventFrames(), { .titleHeight = 14.0F });

    QCOMPARE(layout.stackTop, 8.0F);
    QCOMPARE(layout.selectedHeight, 44.0F);
    QCOMPARE(layout.unselectedHeight, 44.0F);
}

void VTRowLayoutTest::twoLineTitleRaisesBothHeights()
{
    const VTRowLayout layout = layOutEventRow(eventFrames(), { .notesHeight = 20.0F, .titleHeight = 30.0F });
    const VTRowLayout oneLine = layOutEventRow(eventFrames(), { .notesHeight = 20.0F, .titleHeight = 14.0F });

    QCOMPARE(layout.selectedHeight, oneLine.selectedHeight + 16.0F);
    QCOMPARE(layout.unselectedHeight, oneLine.unselectedHeight + 16.0F);
}

void VTRowLayoutTest::lowTitleAddsNothing()
{
    QCOMPARE(layOutEventRow(eventFrames(), { .titleHeight = 11.5F }).unselectedHeight, 44.0F);
}

void VTRowLayoutTest::eventWithoutATitleKeepsItsHeight()
{
    const VTRowLayout layout = layOutEventRow(eventFrames(), {});

    QCOMPARE(layout.unselectedHeight, 44.0F);
    QCOMPARE(layout.frames.value(u"titleField"_s), eventFrames().value(u"titleField"_s));
}

void VTRowLayoutTest::eventDetailsStackFromTheBottom()
{
    const VTRowLayout layout = layOutEventRow(eventFrames(),
        { .notesHeight = 32.0F, .hasUrl = true, .hasAttendees = true, .hasLocation = true, .titleHeight = 16.0F });

    QCOMPARE(layout.frames.value(u"notesField"_s), QRectF(80, 8, 288, 32));
    QCOMPARE(layout.frames.value(u"notesLabel"_s).y(), 24.0);
    QCOMPARE(layout.frames.value(u"urlButton"_s).y(), 46.0);
    QCOMPARE(layout.frames.value(u"urlLabel"_s).y(), 50.0);
    QCOMPARE(layout.frames.value(u"attendeesMatrix"_s).y(), 76.0);
    QCOMPARE(layout.frames.value(u"attendeesLabel"_s).y(), 98.0);
    QCOMPARE(layout.frames.value(u"locationField"_s).y(), 122.0);
    QCOMPARE(layout.frames.value(u"locationLabel"_s).y(), 122.0);
    QCOMPARE(layout.stackTop, 144.0F);
    QCOMPARE(layout.selectedHeight, 182.0F);
    QCOMPARE(layout.unselectedHeight, 46.0F);
}

void VTRowLayoutTest::emptyAttendeeListCounts()
{
    VTRowFrames frames = eventFrames();
    frames[u"attendeesMatrix"_s].setHeight(0);

    const VTRowLayout layout = layOutEventRow(frames, { .hasAttendees = true, .titleHeight = 14.0F });

    QCOMPARE(layout.stackTop, 14.0F);
    QCOMPARE(layout.selectedHeight, 50.0F);
    QCOMPARE(layout.unselectedHeight, 44.0F);
}

void VTRowLayoutTest::titleKeepsItsTopAndIconsFollow()
{
    const VTRowLayout layout = layOutEventRow(eventFrames(), { .titleHeight = 32.0F });

    QCOMPARE(layout.frames.value(u"titleField"_s), QRectF(30, 113, 234, 32));
    QCOMPARE(layout.frames.value(u"icons"_s), QRectF(30, 98, 198, 11));
}

void VTRowLayoutTest::bareTaskIsTwentyTwoHigh()
{
    const VTRowLayout layout = layOutTaskRow(taskFrames(), { .titleHeight = 14.0F });

    QCOMPARE(layout.stackTop, 8.0F);
    QCOMPARE(layout.selectedHeight, 22.0F);
    QCOMPARE(layout.unselectedHeight, 22.0F);
}

void VTRowLayoutTest::taskWithADueDateAddsItsHeight()
{
    const VTRowLayout layout = layOutTaskRow(taskFrames(), { .titleHeight = 16.0F, .hasDueDate = true });

    QCOMPARE(layout.unselectedHeight, 38.0F);
    QCOMPARE(layOutTaskRow(taskFrames(), { .titleHeight = 16.0F }).unselectedHeight, 24.0F);
}

void VTRowLayoutTest::dueDateStandsUnderTheTitle()
{
    const VTRowLayout titled = layOutTaskRow(taskFrames(), { .titleHeight = 32.0F, .hasDueDate = true });
    const VTRowLayout untitled = layOutTaskRow(taskFrames(), { .hasDueDate = true });

    QCOMPARE(titled.frames.value(u"titleField"_s), QRectF(34, 80, 310, 32));
    QCOMPARE(titled.frames.value(u"dueDateField"_s).y(), 66.0);
    QCOMPARE(untitled.frames.value(u"dueDateField"_s).y(), 82.0);
}

void VTRowLayoutTest::completionStandsAboveTheLink()
{
    const VTRowLayout layout = layOutTaskRow(
        taskFrames(), { .notesHeight = 16.0F, .hasUrl = true, .hasCompletedDate = true, .titleHeight = 16.0F });

    QCOMPARE(layout.frames.value(u"urlButton"_s).y(), 30.0);
    QCOMPARE(layout.frames.value(u"urlLabel"_s).y(), 33.0);
    QCOMPARE(layout.frames.value(u"completedField"_s).y(), 58.0);
    QCOMPARE(layout.frames.value(u"completedLabel"_s).y(), 58.0);
    QCOMPARE(layout.stackTop, 80.0F);
}

void VTRowLayoutTest::selectedIsTallerByTheStack()
{
    const VTRowLayout layout = layOutTaskRow(
        taskFrames(), { .notesHeight = 47.0F, .hasUrl = true, .titleHeight = 16.0F, .hasDueDate = true });

    QCOMPARE(layout.selectedHeight - layout.unselectedHeight, layout.stackTop - 8.0F);
    QCOMPARE(layout.selectedHeight, layout.stackTop + 16.0F + 14.0F);
}

VANTLE_TEST(VTRowLayoutTest)
#include "VTRowLayoutTest.moc"
