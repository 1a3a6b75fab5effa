// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "VirtualDisplay.h"

#include <X11KeyboardLayouts.h>

#include <QSignalSpy>
#include <QTest>

#include <xcb/xcb.h>

// This header uses the word as a name.
#define explicit xkb_explicit
#include <xcb/xkb.h>
#undef explicit

using namespace Qt::StringLiterals;

namespace
{

constexpr int keyY = 16;

QString print(KeyboardLayouts &layouts, qint64 virtualKey)
{
    quint32 deadKeyState = 0;
    return layouts.currentLayout()->translate(virtualKey, layouts.keyboardType(), deadKeyState);
}

// As a desktop's layout indicator does it.
void lockGroup(const VirtualDisplay &display, quint8 group)
{
    const XcbConnectionPtr connection(xcb_connect(display.name().constData(), nullptr));
    std::free(xcb_xkb_use_extension_reply(
        connection.get(), xcb_xkb_use_extension(connection.get(), 1, 0), nullptr)); // must be read once
    const auto request
        = xcb_xkb_latch_lock_state_checked(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    std::free(xcb_request_check(connection.get(), request));
}

} // namespace

// Against a real X server, whose layout other programs switch.
class X11KeyboardLayoutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void noServerGivesNothing();
    void switchIsKnownWithoutAnEventLoop_data();
    void switchIsKnownWithoutAnEventLoop();
    void switchIsToldOnce();
    void sameLayoutChosenAgainIsNoSwitch();
    void typingIsNoSwitch();
    void otherGroupIsAnotherLayout();
    void lastLayoutStaysWhenTheServerGoes();

private:
    void choose(const QStringList &arguments) { QVERIFY2(display->run(u"setxkbmap"_s, arguments), failure()); }
    const char *failure()
    {
        failureText = display->failure().toLocal8Bit();
        return failureText.constData();
    }

    std::unique_ptr<VirtualDisplay> display;
    std::unique_ptr<X11KeyboardLayouts> layouts;
    QByteArray failureText;
};

void X11KeyboardLayoutsTest::init()
{
    display = std::make_unique<VirtualDisplay>();
    QVERIFY2(display->start(), failure());
    choose({ u"us"_s });
    layouts = X11KeyboardLayouts::create(display->name());
    QVERIFY(layouts);
}

void X11KeyboardLayoutsTest::cleanup()
{
    layouts.reset();
    display.reset();
}

void X11KeyboardLayoutsTest::noServerGivesNothing()
{
    QVERIFY(!X11KeyboardLayouts::create(":64999"));
}

void X11KeyboardLayoutsTest::switchIsKnownWithoutAnEventLoop_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");

    QTest::newRow("de") << QStringList { u"de"_s } << u"German"_s << u"z"_s;
    QTest::newRow("dvorak") << QStringList { u"us"_s, u"dvorak"_s } << u"English (Dvorak)"_s << u"f"_s;
    QTest::newRow("ru") << QStringList { u"ru"_s } << u"Russian"_s << u"н"_s;
    QTest::newRow("fr has its y there too") << QStringList { u"fr"_s } << u"French"_s << u"y"_s;
}

void X11KeyboardLayoutsTest::switchIsKnownWithoutAnEventLoop()
{
    QFETCH(const QStringList, arguments);
    const KeyboardLayoutPtr before = layouts->currentLayout();
    QCOMPARE(print(*layouts, keyY), u"y"_s);

    choose(arguments);

    QVERIFY(layouts->currentLayout() != before);
    QCOMPARE(layouts->currentLayout(), layouts->currentLayout());
    QTEST(layouts->currentLayout()->name(), "name");
    QTEST(print(*layouts, keyY), "text");
}

void X11KeyboardLayoutsTest::switchIsToldOnce()
{
    QSignalSpy switches(layouts.get(), &KeyboardLayouts::layoutDidChange);

    choose({ u"de"_s });

    QVERIFY(switches.wait());
    QCOMPARE(print(*layouts, keyY), u"z"_s);
    choose({ u"ru"_s });
    QVERIFY(switches.wait());
    QCOMPARE(switches.count(), 2);
}

void X11KeyboardLayoutsTest::sameLayoutChosenAgainIsNoSwitch()
{
    const KeyboardLayoutPtr before = layouts->currentLayout();
    QSignalSpy switches(layouts.get(), &KeyboardLayouts::layoutDidChange);

    choose({ u"us"_s });

    QCOMPARE(layouts->currentLayout(), before);
    QCoreApplication::processEvents();
    QCOMPARE(switches.count(), 0);
}

void X11KeyboardLayoutsTest::typingIsNoSwitch()
{
    const KeyboardLayoutPtr before = layouts->currentLayout();

    QVERIFY2(display->run(u"xdotool"_s, { u"key"_s, u"a"_s, u"shift+b"_s, u"Num_Lock"_s, u"Caps_Lock"_s }), failure());

    QCOMPARE(layouts->currentLayout(), before);
}

void X11KeyboardLayoutsTest::otherGroupIsAnotherLayout()
{
    choose({ u"us,ru"_s });
    QCOMPARE(print(*layouts, keyY), u"y"_s);
    QSignalSpy switches(layouts.get(), &KeyboardLayouts::layoutDidChange);

    lockGroup(*display, 1);

    QTRY_COMPARE(switches.count(), 1);
    QCOMPARE(print(*layouts, keyY), u"н"_s);
}

void X11KeyboardLayoutsTest::lastLayoutStaysWhenTheServerGoes()
{
    choose({ u"de"_s });
    QCOMPARE(print(*layouts, keyY), u"z"_s);

    display->stop();

    QCoreApplication::processEvents();
    QCOMPARE(print(*layouts, keyY), u"z"_s);
}

VANTLE_TEST(X11KeyboardLayoutsTest)
#include "X11KeyboardLayoutsTest.moc"
