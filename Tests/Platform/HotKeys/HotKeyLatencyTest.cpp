// SPDX-License-Identifier: MIT
#include "BareGrabClient.h"
#include "TestRegistry.h"
#include "VirtualDisplay.h"
#include "VirtualKeyboard.h"

#include <ModifierFlags.h>
#include <PTHotKeyCenter.h>
#include <X11/X11HotKeys.h>

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

constexpr int keyK = 40;
constexpr int shiftKey = 56;
constexpr quint16 shiftBit = 0x01;
constexpr int rounds = 20;
constexpr int pressesPerRound = 10;

double median(std::vector<qint64> nanoseconds)
{
    const auto middle = nanoseconds.begin() + static_cast<std::ptrdiff_t>(nanoseconds.size() / 2);
    std::ranges::nth_element(nanoseconds, middle);
    return static_cast<double>(*middle) / 1000;
}

} // namespace

// How long it takes from a key press to whoever hears it: a program that does
// nothing but wait for its grab, and a hot key's action in an event loop, by turns.
class HotKeyLatencyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pressArrivesAboutAsQuicklyAsAtABareClient();

public:
    Q_INVOKABLE void act(QObject * /*sender*/) { ++m_actions; }

private:
    template <typename Wait> void measure(std::vector<qint64> &nanoseconds, VirtualKeyboard &keyboard, Wait wait);

    int m_actions = 0;
};

template <typename Wait>
void HotKeyLatencyTest::measure(std::vector<qint64> &nanoseconds, VirtualKeyboard &keyboard, Wait wait)
{
    for (int i = 0; i < pressesPerRound; ++i) {
        QElapsedTimer timer;
        timer.start();
        keyboard.pressAtOnce(keyK);
        wait();
        nanoseconds.push_back(timer.nsecsElapsed());
        keyboard.release(keyK);
    }
}

void HotKeyLatencyTest::pressArrivesAboutAsQuicklyAsAtABareClient()
{
    VirtualDisplay display;
    QVERIFY2(display.start(), qPrintable(display.failure()));
    VirtualKeyboard keyboard(display.name());
    BareGrabClient bare(display.name());
    PTHotKeyCenter center(std::make_unique<X11HotKeys>(display.name()));
    const auto hotKey
        = std::make_shared<PTHotKey>(u"show"_s, PTKeyCombo::keyComboWithKeyCode_modifiers(keyK, CarbonModifier::shift));
    hotKey->setTarget(this);
    hotKey->setAction("act");
    keyboard.press(shiftKey);
    std::vector<qint64> bareTimes;
    std::vector<qint64> ourTimes;

    for (int round = 0; round < rounds; ++round) {
        QVERIFY(bare.grab(keyK, shiftBit));
        measure(bareTimes, keyboard, [&bare] { bare.waitForPress(); });
        bare.ungrab(keyK, shiftBit);

        QVERIFY(center.registerHotKey(hotKey));
        QCoreApplication::processEvents();
        measure(ourTimes, keyboard, [this] {
            for (const int before = m_actions; m_actions == before;)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        });
        center.unregisterHotKey(hotKey);
        QTRY_VERIFY(bare.grab(keyK, shiftBit));
    }
    keyboard.release(shiftKey);

    // The goal is 1.5 times; a busy machine shall not fail the test.
    constexpr double mostTimes = 4.5;
    const double times = median(ourTimes) / median(bareTimes);
    qInfo("median of %zu presses: bare client %.1f us, hot key %.1f us, %.2f times", ourTimes.size(), median(bareTimes),
        median(ourTimes), times);
    QCOMPARE(m_actions, rounds * pressesPerRound);
    QVERIFY(times <= mostTimes);
}

VANTLE_TEST(HotKeyLatencyTest)
#include "HotKeyLatencyTest.moc"
