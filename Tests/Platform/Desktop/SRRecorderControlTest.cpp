// SPDX-License-Identifier: MIT
#include "RecorderWindow.h"
#include "TestRegistry.h"

#include <ModifierFlags.h>

#include <QAbstractButton>
#include <QAction>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr quint64 optionAndControl = CocoaModifier::option | CocoaModifier::control;
constexpr quint32 scanCodeV = 47 + 8;
constexpr quint32 scanCodeY = 21 + 8;
constexpr quint32 scanCodeEscape = 1 + 8;
constexpr quint32 scanCodeBackspace = 14 + 8;

QAbstractButton *clearButton(const SRRecorderControl &recorder)
{
    return recorder.findChild<QAbstractButton *>(u"clearButton"_s);
}

// A press as the desktop delivers it, with the key's place; first asked about as a shortcut.
void press(QWidget *widget, int key, Qt::KeyboardModifiers modifiers, quint32 scanCode)
{
    QKeyEvent shortcut(QEvent::ShortcutOverride, key, modifiers, scanCode, 0, 0);
    QCoreApplication::sendEvent(widget, &shortcut);
    QKeyEvent pressed(QEvent::KeyPress, key, modifiers, scanCode, 0, 0);
    QCoreApplication::sendEvent(widget, &pressed);
    QKeyEvent released(QEvent::KeyRelease, key, modifiers, scanCode, 0, 0);
    QCoreApplication::sendEvent(widget, &released);
}

void press(
    QWidget *widget, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, quint32 keysym = 0)
{
    QKeyEvent event(type, key, modifiers, 0, keysym, 0);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace

class SRRecorderControlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void emptyFieldInvites();
    void programsCombinationIsReportedAndShown();
    void combinationIsNotMirrored();
    void sameCombinationIsReportedAgain();
    void clearCombinationHasNoModifiers();
    void modifiersAreShownInTheirOrder();
    void startsAndStops_data();
    void startsAndStops();
    void recordsThePlaceOfTheKey();
    void everyModifierIsRecorded_data();
    void everyModifierIsRecorded();
    void keyWithoutModifierIsRefusedWithAHint();
    void keyWithoutModifierIsRecordedWhenAllowed();
    void shiftedAltIsNotSuper();
    void heldModifiersAreShown();
    void escapeLeavesTheCombination_data();
    void escapeLeavesTheCombination();
    void escapeIsRecordedWhenAllowed();
    void deleteClears_data();
    void deleteClears();
    void deleteWithModifiersIsRecorded();
    void tabMovesOn();
    void tabWithModifiersIsRecorded();
    void modifierOutsideTheAllowedOnesIsRefused();
    void unknownKeyIsRefused();
    void altGrIsNoModifierToRecord();
    void lockKeysAreOverlooked();
    void repeatedKeysAreOverlooked();
    void menuCommandsRestWhileRecording();
    void losingFocusStops();
    void hidingStops();
    void disablingStops();
    void keyboardIsHeldWhileRecording();
    void clearButtonClears();
    void clearButtonIsThereOnlyForACombination();
    void pressDraggedOutDoesNothing();
    void otherKeysAreLeftToTheWindow();
    void layoutSwitchChangesTheShownName();
    void recordingIsTold();
    void sizeFollowsTheFont();

private:
    void record(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode)
    {
        recorder->startRecording();
        press(recorder, key, modifiers, scanCode);
    }

    std::unique_ptr<RecorderWindow> window;
    SRRecorderControl *recorder = nullptr;
};

void SRRecorderControlTest::init()
{
    window = std::make_unique<RecorderWindow>();
    recorder = window->recorder;
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    window->before->setFocus();
}

void SRRecorderControlTest::cleanup()
{
    window.reset();
}

void SRRecorderControlTest::emptyFieldInvites()
{
    QVERIFY(recorder->keyCombo().isClear());
    QCOMPARE(recorder->displayedText(), u"Click to record"_s);
    QCOMPARE(recorder->toolTip(), QString());
    QCOMPARE(recorder->allowedFlags(), CocoaModifier::all);
}

void SRRecorderControlTest::programsCombinationIsReportedAndShown()
{
    const SRKeyCombo combo { .flags = optionAndControl, .code = 9 };

    recorder->setKeyCombo(combo);

    QCOMPARE(window->reports, QList { combo });
    QCOMPARE(window->reporters, QList { recorder });
    QCOMPARE(recorder->displayedText(), u"⌥⌃V"_s);
    QCOMPARE(recorder->toolTip(), u"Alt+Ctrl+V"_s);
}

void SRRecorderControlTest::combinationIsNotMirrored()
{
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });
    const auto middle = [this] {
        constexpr int aside = 30; // the button to clear it, and as much at the other side
        return recorder->grab(recorder->rect().adjusted(aside, 0, -aside, 0)).toImage();
    };
    const QImage keys = middle();

    recorder->setLayoutDirection(Qt::RightToLeft);

    QCOMPARE(middle(), keys);
}

void SRRecorderControlTest::sameCombinationIsReportedAgain()
{
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });
    record(Qt::Key_V, Qt::AltModifier | Qt::ControlModifier, scanCodeV);

    QCOMPARE(window->reports.size(), 3);
}

void SRRecorderControlTest::clearCombinationHasNoModifiers()
{
    recorder->setKeyCombo({ .flags = optionAndControl, .code = -1 });

    QCOMPARE(recorder->keyCombo(), SRKeyCombo {});
    QCOMPARE(window->reports, QList { SRKeyCombo {} });
}

void SRRecorderControlTest::modifiersAreShownInTheirOrder()
{
    recorder->setKeyCombo({ .flags = CocoaModifier::all, .code = 9 });

    QCOMPARE(recorder->glyphs(), u"⌘⌥⌃⇧V"_s);
    QCOMPARE(recorder->words(), u"Super+Alt+Ctrl+Shift+V"_s);
}

void SRRecorderControlTest::startsAndStops_data()
{
    QTest::addColumn<int>("key"); // 0 is the mouse

    QTest::newRow("click") << 0;
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void SRRecorderControlTest::startsAndStops()
{
    QFETCH(const int, key);
    recorder->setFocus();

    if (key == 0)
        QTest::mouseClick(recorder, Qt::LeftButton);
    else
        QTest::keyClick(recorder, static_cast<Qt::Key>(key));
    QVERIFY(recorder->isRecording());
    QCOMPARE(recorder->displayedText(), u"Press the keys"_s);

    if (key == 0)
        QTest::mouseClick(recorder, Qt::LeftButton);
    else
        QTest::keyClick(recorder, Qt::Key_Escape);
    QVERIFY(!recorder->isRecording());
    QCOMPARE(window->reports.size(), 0);
}

void SRRecorderControlTest::recordsThePlaceOfTheKey()
{
    // On a German keyboard this key types z.
    record(Qt::Key_Z, Qt::AltModifier | Qt::ControlModifier, scanCodeY);

    QVERIFY(!recorder->isRecording());
    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = optionAndControl, .code = 16 }));
    QCOMPARE(window->reports.size(), 1);
}

void SRRecorderControlTest::everyModifierIsRecorded_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<quint64>("flags");
    using Modifiers = Qt::KeyboardModifiers;

    QTest::newRow("Super is Command") << Modifiers(Qt::MetaModifier) << CocoaModifier::command;
    QTest::newRow("Alt is Option") << Modifiers(Qt::AltModifier) << CocoaModifier::option;
    QTest::newRow("Ctrl is Control") << Modifiers(Qt::ControlModifier) << CocoaModifier::control;
    QTest::newRow("Shift") << Modifiers(Qt::ShiftModifier) << CocoaModifier::shift;
    QTest::newRow("all") << (Qt::MetaModifier | Qt::AltModifier | Qt::ControlModifier | Qt::ShiftModifier)
                         << CocoaModifier::all;
    QTest::newRow("the keypad is no modifier") << (Qt::KeypadModifier | Qt::AltModifier) << CocoaModifier::option;
}

void SRRecorderControlTest::everyModifierIsRecorded()
{
    QFETCH(const Qt::KeyboardModifiers, modifiers);

    record(Qt::Key_V, modifiers, scanCodeV);

    QTEST(recorder->keyCombo().flags, "flags");
    QCOMPARE(recorder->keyCombo().code, qint64(9));
}

void SRRecorderControlTest::keyWithoutModifierIsRefusedWithAHint()
{
    record(Qt::Key_V, Qt::NoModifier, scanCodeV);

    QVERIFY(recorder->isRecording());
    QCOMPARE(recorder->displayedText(), u"Hold Ctrl, Alt or Super"_s);
    QCOMPARE(window->reports.size(), 0);
}

void SRRecorderControlTest::keyWithoutModifierIsRecordedWhenAllowed()
{
    recorder->setAllowsKeyOnly_escapeKeysRecord(true, false);

    record(Qt::Key_V, Qt::NoModifier, scanCodeV);

    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = 0, .code = 9 }));
    QCOMPARE(recorder->words(), u"V"_s);
}

void SRRecorderControlTest::shiftedAltIsNotSuper()
{
    constexpr quint32 metaLeft = 0xffe7;
    recorder->startRecording();

    press(recorder, QEvent::KeyPress, Qt::Key_Shift);
    press(recorder, QEvent::KeyPress, Qt::Key_Meta, Qt::ShiftModifier, metaLeft);

    QCOMPARE(recorder->displayedText(), u"⌥⇧…"_s);
}

void SRRecorderControlTest::heldModifiersAreShown()
{
    recorder->startRecording();

    press(recorder, QEvent::KeyPress, Qt::Key_Control);
    QCOMPARE(recorder->displayedText(), u"⌃…"_s);
    press(recorder, QEvent::KeyPress, Qt::Key_Alt, Qt::ControlModifier);
    QCOMPARE(recorder->displayedText(), u"⌥⌃…"_s);
    press(recorder, QEvent::KeyRelease, Qt::Key_Control, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(recorder->displayedText(), u"⌥…"_s);
    press(recorder, QEvent::KeyRelease, Qt::Key_Alt, Qt::AltModifier);
    QCOMPARE(recorder->displayedText(), u"Press the keys"_s);
    QVERIFY(recorder->isRecording());
}

void SRRecorderControlTest::escapeLeavesTheCombination_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    using Modifiers = Qt::KeyboardModifiers;

    QTest::newRow("alone") << int(Qt::Key_Escape) << Modifiers();
    QTest::newRow("with modifiers") << int(Qt::Key_Escape) << (Qt::ControlModifier | Qt::AltModifier);
    QTest::newRow("the key at its place that types something else")
        << int(Qt::Key_QuoteLeft) << Modifiers(Qt::ControlModifier);
}

void SRRecorderControlTest::escapeLeavesTheCombination()
{
    QFETCH(const int, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });

    record(key, modifiers, scanCodeEscape);

    QVERIFY(!recorder->isRecording());
    QCOMPARE(recorder->displayedText(), u"⌥⌃V"_s);
    QCOMPARE(window->reports.size(), 1);
}

void SRRecorderControlTest::escapeIsRecordedWhenAllowed()
{
    recorder->setAllowsKeyOnly_escapeKeysRecord(false, true);

    record(Qt::Key_Escape, Qt::ControlModifier, scanCodeEscape);

    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::control, .code = 53 }));
}

void SRRecorderControlTest::deleteClears_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isRecording");

    QTest::newRow("Delete on the field") << int(Qt::Key_Delete) << false;
    QTest::newRow("Backspace on the field") << int(Qt::Key_Backspace) << false;
    QTest::newRow("Delete while recording") << int(Qt::Key_Delete) << true;
    QTest::newRow("Backspace while recording") << int(Qt::Key_Backspace) << true;
}

void SRRecorderControlTest::deleteClears()
{
    QFETCH(const int, key);
    QFETCH(const bool, isRecording);
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });
    recorder->setFocus();
    if (isRecording)
        recorder->startRecording();

    QTest::keyClick(recorder, static_cast<Qt::Key>(key));

    QVERIFY(!recorder->isRecording());
    QVERIFY(recorder->keyCombo().isClear());
    QCOMPARE(window->reports.size(), 2);
    QCOMPARE(window->reports.last(), SRKeyCombo {});
}

void SRRecorderControlTest::deleteWithModifiersIsRecorded()
{
    record(Qt::Key_Backspace, Qt::ControlModifier, scanCodeBackspace);

    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::control, .code = 51 }));
}

void SRRecorderControlTest::tabMovesOn()
{
    recorder->startRecording();
    QTest::keyClick(recorder, Qt::Key_Tab);
    QVERIFY(!recorder->isRecording());
    QCOMPARE(QApplication::focusWidget(), window->after);

    recorder->startRecording();
    QTest::keyClick(recorder, Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(!recorder->isRecording());
    QCOMPARE(QApplication::focusWidget(), window->before);
    QCOMPARE(window->reports.size(), 0);
}

void SRRecorderControlTest::tabWithModifiersIsRecorded()
{
    constexpr quint32 scanCodeTab = 15 + 8;

    record(Qt::Key_Tab, Qt::ControlModifier, scanCodeTab);

    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::control, .code = 48 }));
}

void SRRecorderControlTest::modifierOutsideTheAllowedOnesIsRefused()
{
    recorder->setAllowedFlags(optionAndControl);

    record(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, scanCodeV);
    QVERIFY(recorder->isRecording());
    QCOMPARE(recorder->displayedText(), u"Not usable here"_s);

    press(recorder, Qt::Key_V, Qt::ControlModifier, scanCodeV);
    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::control, .code = 9 }));
}

void SRRecorderControlTest::unknownKeyIsRefused()
{
    constexpr quint32 scanCodeOfNoVirtualKey = 150 + 8;

    record(Qt::Key_WWW, Qt::ControlModifier, scanCodeOfNoVirtualKey);
    QCOMPARE(recorder->displayedText(), u"Not usable here"_s);
    press(recorder, Qt::Key_V, Qt::ControlModifier, 0);

    QVERIFY(recorder->isRecording());
    QCOMPARE(window->reports.size(), 0);
}

void SRRecorderControlTest::altGrIsNoModifierToRecord()
{
    recorder->startRecording();
    press(recorder, QEvent::KeyPress, Qt::Key_AltGr);
    press(recorder, Qt::Key_V, Qt::ControlModifier, scanCodeV);
    QCOMPARE(recorder->displayedText(), u"Not usable here"_s);

    press(recorder, QEvent::KeyRelease, Qt::Key_AltGr);
    press(recorder, Qt::Key_V, Qt::ControlModifier, scanCodeV);
    QCOMPARE(recorder->keyCombo().code, qint64(9));
}

void SRRecorderControlTest::lockKeysAreOverlooked()
{
    recorder->startRecording();

    for (const int key : { Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_ScrollLock })
        press(recorder, QEvent::KeyPress, key);

    QVERIFY(recorder->isRecording());
    QCOMPARE(recorder->displayedText(), u"Press the keys"_s);
}

void SRRecorderControlTest::repeatedKeysAreOverlooked()
{
    recorder->setFocus();
    QTest::keyPress(recorder, Qt::Key_Return);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, 28 + 8, 0, 0, QString(), true);

    QCoreApplication::sendEvent(recorder, &repeated);

    QVERIFY(recorder->isRecording());
    QCOMPARE(recorder->displayedText(), u"Press the keys"_s);
}

void SRRecorderControlTest::menuCommandsRestWhileRecording()
{
    QAction command;
    command.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    window->addAction(&command);
    QSignalSpy commands(&command, &QAction::triggered);
    recorder->setFocus();
    QTest::keyClick(recorder, Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(commands.count(), 1);

    recorder->startRecording();
    QTest::keyClick(recorder, Qt::Key_Q, Qt::ControlModifier);

    QCOMPARE(commands.count(), 1);
}

void SRRecorderControlTest::losingFocusStops()
{
    recorder->startRecording();

    window->after->setFocus();

    QVERIFY(!recorder->isRecording());
    QCOMPARE(window->reports.size(), 0);
}

void SRRecorderControlTest::hidingStops()
{
    recorder->startRecording();

    window->hide();

    QVERIFY(!recorder->isRecording());
    QVERIFY(!QWidget::keyboardGrabber());
}

void SRRecorderControlTest::disablingStops()
{
    recorder->startRecording();

    recorder->setEnabled(false);

    QVERIFY(!recorder->isRecording());
    QTest::mouseClick(recorder, Qt::LeftButton);
    recorder->startRecording();
    QVERIFY(!recorder->isRecording());
}

void SRRecorderControlTest::keyboardIsHeldWhileRecording()
{
    recorder->startRecording();
    QCOMPARE(QWidget::keyboardGrabber(), recorder);

    recorder->stopRecording();
    QVERIFY(!QWidget::keyboardGrabber());

    recorder->startRecording();
    delete recorder;
    QVERIFY(!QWidget::keyboardGrabber());
}

void SRRecorderControlTest::clearButtonClears()
{
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });

    QTest::mouseClick(clearButton(*recorder), Qt::LeftButton);

    QVERIFY(recorder->keyCombo().isClear());
    QVERIFY(!recorder->isRecording());
    QCOMPARE(window->reports.last(), SRKeyCombo {});
}

void SRRecorderControlTest::clearButtonIsThereOnlyForACombination()
{
    QVERIFY(!clearButton(*recorder)->isVisible());
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });
    QVERIFY(clearButton(*recorder)->isVisible());
    recorder->startRecording();
    QVERIFY(!clearButton(*recorder)->isVisible());
}

void SRRecorderControlTest::pressDraggedOutDoesNothing()
{
    QTest::mousePress(recorder, Qt::LeftButton);
    QTest::mouseRelease(recorder, Qt::LeftButton, Qt::NoModifier, QPoint(-20, -20));
    QVERIFY(!recorder->isRecording());

    QTest::mouseClick(recorder, Qt::RightButton);
    QVERIFY(!recorder->isRecording());
}

void SRRecorderControlTest::otherKeysAreLeftToTheWindow()
{
    recorder->setFocus();

    for (const int key : { Qt::Key_Escape, Qt::Key_V, Qt::Key_Up }) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        static_cast<QObject *>(recorder)->event(&event);
        QVERIFY(!event.isAccepted());
    }
    QVERIFY(!recorder->isRecording());
}

void SRRecorderControlTest::layoutSwitchChangesTheShownName()
{
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 16 });
    QCOMPARE(recorder->displayedText(), u"⌥⌃Y"_s);
    QSignalSpy changes(recorder, &SRRecorderControl::displayDidChange);

    window->switchToGerman();

    QCOMPARE(changes.count(), 1);
    QCOMPARE(recorder->displayedText(), u"⌥⌃Z"_s);
    QCOMPARE(recorder->toolTip(), u"Alt+Ctrl+Z"_s);
    QCOMPARE(window->reports.size(), 1);
}

void SRRecorderControlTest::recordingIsTold()
{
    QSignalSpy beginnings(recorder, &SRRecorderControl::recordingDidBegin);
    QSignalSpy ends(recorder, &SRRecorderControl::recordingDidEnd);

    recorder->startRecording();
    recorder->startRecording();
    QCOMPARE(beginnings.count(), 1);
    QCOMPARE(ends.count(), 0);

    press(recorder, Qt::Key_V, Qt::ControlModifier, scanCodeV);
    QCOMPARE(ends.count(), 1);
}

void SRRecorderControlTest::sizeFollowsTheFont()
{
    QFont font = recorder->font();
    font.setPixelSize(13);
    recorder->setFont(font);
    QCOMPARE(recorder->sizeHint(), QSize(176, 28));

    font.setPixelSize(26);
    recorder->setFont(font);
    QCOMPARE(recorder->sizeHint(), QSize(352, 56));
}

VANTLE_TEST(SRRecorderControlTest)
#include "SRRecorderControlTest.moc"
