// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <ModifierFlags.h>
#include <PTHotKey.h>

#include <QTest>

using namespace Qt::StringLiterals;

class PTHotKeyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainOneHasTheClearComboAndNothingElse();
    void noComboIsTheClearCombo();
    void descriptionHasClassIdentifierAndCombo();
    void invokingSendsTheHotKeyItself();
    void withoutTargetOrActionNothingIsSent();

public:
    Q_INVOKABLE void act(QObject *sender) { senders.append(sender); }

private:
    QList<QObject *> senders;
};

void PTHotKeyTest::plainOneHasTheClearComboAndNothingElse()
{
    const PTHotKey hotKey;

    QVERIFY(hotKey.keyCombo()->isClearCombo());
    QVERIFY(hotKey.identifier().isNull());
    QVERIFY(hotKey.name().isNull());
    QCOMPARE(hotKey.target(), nullptr);
    QVERIFY(hotKey.action().isEmpty());
    QCOMPARE(hotKey.carbonHotKeyID(), 0U);
    QCOMPARE(hotKey.carbonEventHotKeyRef(), EventHotKeyRef::Null);
}

void PTHotKeyTest::noComboIsTheClearCombo()
{
    PTHotKey hotKey(u"show"_s, PTKeyCombo::keyComboWithKeyCode_modifiers(17, CarbonModifier::command));
    QCOMPARE(hotKey.keyCombo()->keyCode(), 17);

    hotKey.setKeyCombo(nullptr);

    QVERIFY(hotKey.keyCombo()->isClearCombo());
}

void PTHotKeyTest::descriptionHasClassIdentifierAndCombo()
{
    constexpr int keyT = 17;
    const PTHotKey hotKey(u"VTAddTaskKeyCode"_s,
        PTKeyCombo::keyComboWithKeyCode_modifiers(keyT, CarbonModifier::command | CarbonModifier::option));

    QCOMPARE(hotKey.description(), u"<PTHotKey: VTAddTaskKeyCode, ⌘⌥T>"_s);
    QCOMPARE(PTHotKey(u"%3"_s).description(), u"<PTHotKey: %3, (None)>"_s);
}

void PTHotKeyTest::invokingSendsTheHotKeyItself()
{
    PTHotKey hotKey(u"show"_s);
    hotKey.setTarget(this);
    hotKey.setAction("act");

    hotKey.invoke();

    QCOMPARE(senders, QList<QObject *> { &hotKey });
    senders.clear();
}

void PTHotKeyTest::withoutTargetOrActionNothingIsSent()
{
    PTHotKey hotKey(u"show"_s);
    hotKey.setAction("act");
    hotKey.invoke();
    hotKey.setTarget(this);
    hotKey.setAction({});

    hotKey.invoke();

    QVERIFY(senders.isEmpty());
}

VANTLE_TEST(PTHotKeyTest)
#include "PTHotKeyTest.moc"
