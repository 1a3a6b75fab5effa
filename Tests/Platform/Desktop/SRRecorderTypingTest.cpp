// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <ModifierFlags.h>
#include <SRRecorderControl.h>
#include <X11KeyboardLayouts.h>

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// X keycodes of places on the keyboard, with their letters on a US one.
const QString placeOfY = u"29"_s;
const QString placeOfV = u"55"_s;
const QString placeOfF4 = u"70"_s;
const QString placeOfPad1 = u"87"_s;

bool run(const QString &program, const QStringList &arguments)
{
    return QProcess::execute(program, arguments) == 0;
}

bool type(const QString &keys)
{
    return run(u"xdotool"_s, keys.split(u' '));
}

} // namespace

// Real key presses on a real X server with a window manager.
class SRRecorderTypingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void placeIsRecordedAndShownInTheLayout_data();
    void placeIsRecordedAndShownInTheLayout();
    void shownNameFollowsASwitch();
    void modifiersOfTheKeyboardAreRecorded_data();
    void modifiersOfTheKeyboardAreRecorded();
    void locksDoNotMatter();
    void windowManagersCombinationIsRecorded();
    void keyboardIsGivenBack();
    void heldSpaceStartsOnce();
    void escapeEndsTheRecording();

private:
    std::unique_ptr<X11KeyboardLayouts> layouts;
    std::unique_ptr<QWidget> window;
    SRRecorderControl *recorder = nullptr;
};

void SRRecorderTypingTest::init()
{
    QVERIFY(run(u"setxkbmap"_s, { u"us"_s }));
    layouts = X11KeyboardLayouts::create();
    QVERIFY(layouts);
    window = std::make_unique<QWidget>();
    recorder = new SRRecorderControl(
        *layouts,
        [this](qint64 virtualKey) {
            quint32 deadKeyState = 0;
            return layouts->currentLayout()->translate(virtualKey, layouts->keyboardType(), deadKeyState).toUpper();
        },
        window.get());
    recorder->setGeometry(20, 20, 176, 28);
    window->resize(240, 80);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    recorder->setFocus();
}

void SRRecorderTypingTest::cleanup()
{
    window.reset();
    layouts.reset();
}

void SRRecorderTypingTest::placeIsRecordedAndShownInTheLayout_data()
{
    QTest::addColumn<QStringList>("layout");
    QTest::addColumn<QString>("shown");

    QTest::newRow("us") << QStringList { u"us"_s } << u"⌥⌃Y"_s;
    QTest::newRow("de") << QStringList { u"de"_s } << u"⌥⌃Z"_s;
    QTest::newRow("fr") << QStringList { u"fr"_s } << u"⌥⌃Y"_s;
    QTest::newRow("dvorak") << QStringList { u"us"_s, u"dvorak"_s } << u"⌥⌃F"_s;
    QTest::newRow("ru") << QStringList { u"ru"_s } << u"⌥⌃Н"_s;
}

void SRRecorderTypingTest::placeIsRecordedAndShownInTheLayout()
{
    QFETCH(const QStringList, layout);
    QVERIFY(run(u"setxkbmap"_s, layout));

    recorder->startRecording();
    QVERIFY(type(u"keydown ctrl keydown alt key "_s + placeOfY + u" keyup alt keyup ctrl"_s));

    QTRY_VERIFY(!recorder->isRecording());
    QCOMPARE(
        recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::option | CocoaModifier::control, .code = 16 }));
    QTEST(recorder->displayedText(), "shown");
}

void SRRecorderTypingTest::shownNameFollowsASwitch()
{
    recorder->setKeyCombo({ .flags = CocoaModifier::option, .code = 16 });
    QCOMPARE(recorder->displayedText(), u"⌥Y"_s);

    QVERIFY(run(u"setxkbmap"_s, { u"de"_s }));
    QTRY_COMPARE(recorder->toolTip(), u"Alt+Z"_s);
    QVERIFY(run(u"setxkbmap"_s, { u"ru"_s }));
    QTRY_COMPARE(recorder->toolTip(), u"Alt+Н"_s);
}

void SRRecorderTypingTest::modifiersOfTheKeyboardAreRecorded_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<quint64>("flags");
    QTest::addColumn<qint64>("code");

    QTest::newRow("Super") << u"keydown super key "_s + placeOfV + u" keyup super"_s << CocoaModifier::command
                           << qint64(9);
    QTest::newRow("Shift, then Alt") << u"keydown shift keydown alt key "_s + placeOfV + u" keyup alt keyup shift"_s
                                     << (CocoaModifier::shift | CocoaModifier::option) << qint64(9);
    QTest::newRow("all") << u"keydown super keydown alt keydown ctrl keydown shift key "_s + placeOfV
            + u" keyup shift keyup ctrl keyup alt keyup super"_s
                         << CocoaModifier::all << qint64(9);
    QTest::newRow("keypad") << u"keydown ctrl key "_s + placeOfPad1 + u" keyup ctrl"_s << CocoaModifier::control
                            << qint64(83);
}

void SRRecorderTypingTest::modifiersOfTheKeyboardAreRecorded()
{
    QFETCH(const QString, keys);

    recorder->startRecording();
    QVERIFY(type(keys));

    QTRY_VERIFY(!recorder->isRecording());
    QTEST(recorder->keyCombo().flags, "flags");
    QTEST(recorder->keyCombo().code, "code");
}

void SRRecorderTypingTest::locksDoNotMatter()
{
    recorder->startRecording();
    QVERIFY(type(u"key Caps_Lock key Num_Lock keydown ctrl key "_s + placeOfV + u" keyup ctrl"_s));
    QTRY_VERIFY(!recorder->isRecording());
    QVERIFY(type(u"key Caps_Lock key Num_Lock"_s));

    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::control, .code = 9 }));
}

// Alt+F4 would close the window.
void SRRecorderTypingTest::windowManagersCombinationIsRecorded()
{
    recorder->startRecording();
    QVERIFY(type(u"keydown alt key "_s + placeOfF4 + u" keyup alt"_s));

    QTRY_VERIFY(!recorder->isRecording());
    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::option, .code = 118 }));
    QVERIFY(window->isVisible());
}

void SRRecorderTypingTest::keyboardIsGivenBack()
{
    recorder->startRecording();
    QVERIFY(type(u"keydown ctrl key "_s + placeOfV + u" keyup ctrl"_s));
    QTRY_VERIFY(!recorder->isRecording());
    QCoreApplication::processEvents();

    QVERIFY(type(u"keydown alt key "_s + placeOfF4 + u" keyup alt"_s));

    QTRY_VERIFY(!window->isVisible());
}

void SRRecorderTypingTest::heldSpaceStartsOnce()
{
    QVERIFY(type(u"keydown space"_s));
    QTRY_VERIFY(recorder->isRecording());
    QVERIFY(type(u"keyup space"_s));
    QVERIFY(type(u"keydown ctrl key "_s + placeOfV + u" keyup ctrl"_s));

    QTRY_VERIFY(!recorder->isRecording());
    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::control, .code = 9 }));
}

void SRRecorderTypingTest::escapeEndsTheRecording()
{
    recorder->setKeyCombo({ .flags = CocoaModifier::option, .code = 9 });
    recorder->startRecording();

    QVERIFY(type(u"key Escape"_s));

    QTRY_VERIFY(!recorder->isRecording());
    QCOMPARE(recorder->keyCombo(), (SRKeyCombo { .flags = CocoaModifier::option, .code = 9 }));
    QVERIFY(recorder->hasFocus());
}

VANTLE_TEST(SRRecorderTypingTest)
#include "SRRecorderTypingTest.moc"
