// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <KeyValueBinding.h>
#include <KeyValueObject.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

class Lamp final : public KeyValueObject
{
public:
    int brightness = 0;

    void setBrightness(int value)
    {
        willChangeValueForKey(u"brightness"_s);
        brightness = value;
        didChangeValueForKey(u"brightness"_s);
    }
    QVariant valueForKey(const QString &key) const override
    {
        return key == u"brightness"_s ? QVariant(brightness) : QVariant();
    }
};

class RecordingObserver final : public KeyValueObserver
{
public:
    void observeValueForKeyPath_ofObject_change_context(
        const QString &keyPath, KeyValueObject * /*object*/, const KeyValueChange &change, void * /*context*/) override
    {
        keys.append(keyPath);
        changes.push_back(change);
    }

    QStringList keys;
    std::vector<KeyValueChange> changes;
};

class CallingObserver final : public KeyValueObserver
{
public:
    explicit CallingObserver(std::function<void()> action)
        : m_action(std::move(action))
    {
    }
    void observeValueForKeyPath_ofObject_change_context(const QString & /*keyPath*/, KeyValueObject * /*object*/,
        const KeyValueChange & /*change*/, void * /*context*/) override
    {
        m_action();
    }

private:
    std::function<void()> m_action;
};

} // namespace

class KeyValueObjectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void observerGetsTheKeyAfterTheChange();
    void valuesComeOnlyWhenAskedFor();
    void destroyedObserverIsNotCalled();
    void removedObserverIsNotCalled();
    void copyHasNoObservers();
    void nestedChangesGiveTheirOwnOldValues();
    void observersAreCalledInTheirOrder();
    void observerMayEndItselfWhileItIsCalled();
    void observerMayDestroyTheObject();
    void otherKeysAreNotAnnounced();
    void bindingPushesNowAndOnEveryChange();
    void bindingOutlivesItsSource();
};

void KeyValueObjectTest::observerGetsTheKeyAfterTheChange()
{
    Lamp lamp;
    RecordingObserver observer;
    lamp.addObserver_forKeyPath_options_context(&observer, u"brightness"_s);

    lamp.setBrightness(3);

    QCOMPARE(observer.keys, QStringList { u"brightness"_s });
    QVERIFY(!observer.changes.front().oldValue);
    QVERIFY(!observer.changes.front().newValue);
}

void KeyValueObjectTest::valuesComeOnlyWhenAskedFor()
{
    Lamp lamp;
    RecordingObserver observer;
    lamp.addObserver_forKeyPath_options_context(
        &observer, u"brightness"_s, KeyValueOption::OldValue | KeyValueOption::NewValue);

    lamp.setBrightness(3);
    lamp.setBrightness(5);

    QCOMPARE(observer.changes.at(0).oldValue->toInt(), 0);
    QCOMPARE(observer.changes.at(0).newValue->toInt(), 3);
    QCOMPARE(observer.changes.at(1).oldValue->toInt(), 3);
    QCOMPARE(observer.changes.at(1).newValue->toInt(), 5);
}

void KeyValueObjectTest::destroyedObserverIsNotCalled()
{
    Lamp lamp;
    {
        RecordingObserver observer;
        lamp.addObserver_forKeyPath_options_context(&observer, u"brightness"_s);
        QVERIFY(lamp.isObserved(u"brightness"_s));
    }

    lamp.setBrightness(3);

    QVERIFY(!lamp.isObserved(u"brightness"_s));
}

void KeyValueObjectTest::removedObserverIsNotCalled()
{
    Lamp lamp;
    RecordingObserver observer;
    lamp.addObserver_forKeyPath_options_context(&observer, u"brightness"_s);

    lamp.removeObserver_forKeyPath(&observer, u"brightness"_s);
    lamp.setBrightness(3);

    QVERIFY(observer.keys.isEmpty());
}

void KeyValueObjectTest::copyHasNoObservers()
{
    Lamp lamp;
    RecordingObserver observer;
    lamp.addObserver_forKeyPath_options_context(&observer, u"brightness"_s);

    Lamp copy(lamp);
    copy.setBrightness(3);

    QVERIFY(observer.keys.isEmpty());
}

void KeyValueObjectTest::nestedChangesGiveTheirOwnOldValues()
{
    Lamp lamp;
    RecordingObserver observer;
    lamp.addObserver_forKeyPath_options_context(
        &observer, u"brightness"_s, KeyValueOption::OldValue | KeyValueOption::NewValue);

    lamp.willChangeValueForKey(u"brightness"_s);
    lamp.setBrightness(3);
    lamp.brightness = 5;
    lamp.didChangeValueForKey(u"brightness"_s);

    // The inner change is complete first; the outer one began at 0.
    QCOMPARE(observer.changes.size(), std::size_t(2));
    QCOMPARE(observer.changes.at(0).oldValue->toInt(), 0);
    QCOMPARE(observer.changes.at(0).newValue->toInt(), 3);
    QCOMPARE(observer.changes.at(1).oldValue->toInt(), 0);
    QCOMPARE(observer.changes.at(1).newValue->toInt(), 5);
}

void KeyValueObjectTest::observersAreCalledInTheirOrder()
{
    Lamp lamp;
    QStringList called;
    CallingObserver first([&] { called.append(u"first"_s); });
    CallingObserver second([&] { called.append(u"second"_s); });
    lamp.addObserver_forKeyPath_options_context(&second, u"brightness"_s);
    lamp.addObserver_forKeyPath_options_context(&first, u"brightness"_s);

    lamp.setBrightness(3);

    QCOMPARE(called, (QStringList { u"second"_s, u"first"_s }));
}

void KeyValueObjectTest::observerMayEndItselfWhileItIsCalled()
{
    Lamp lamp;
    int calls = 0;
    std::unique_ptr<CallingObserver> observer;
    observer = std::make_unique<CallingObserver>([&] {
        ++calls;
        lamp.removeObserver_forKeyPath(observer.get(), u"brightness"_s);
    });
    RecordingObserver later;
    lamp.addObserver_forKeyPath_options_context(observer.get(), u"brightness"_s);
    lamp.addObserver_forKeyPath_options_context(&later, u"brightness"_s);

    lamp.setBrightness(3);
    lamp.setBrightness(5);

    QCOMPARE(calls, 1);
    QCOMPARE(later.keys.size(), 2);
}

void KeyValueObjectTest::observerMayDestroyTheObject()
{
    auto lamp = std::make_unique<Lamp>();
    CallingObserver destroyer([&] { lamp.reset(); });
    RecordingObserver later;
    lamp->addObserver_forKeyPath_options_context(&destroyer, u"brightness"_s);
    lamp->addObserver_forKeyPath_options_context(&later, u"brightness"_s);

    lamp->setBrightness(3);

    QVERIFY(!lamp);
    QVERIFY(later.keys.isEmpty());
}

void KeyValueObjectTest::otherKeysAreNotAnnounced()
{
    Lamp lamp;
    RecordingObserver observer;
    lamp.addObserver_forKeyPath_options_context(&observer, u"colour"_s);

    lamp.setBrightness(3);

    QVERIFY(observer.keys.isEmpty());
}

void KeyValueObjectTest::bindingPushesNowAndOnEveryChange()
{
    Lamp lamp;
    lamp.brightness = 1;
    QList<int> seen;

    const KeyValueBinding binding(lamp, u"brightness"_s, [&](const QVariant &value) { seen.append(value.toInt()); });
    lamp.setBrightness(2);

    QCOMPARE(seen, (QList<int> { 1, 2 }));
}

void KeyValueObjectTest::bindingOutlivesItsSource()
{
    auto lamp = std::make_unique<Lamp>();
    const KeyValueBinding binding(*lamp, u"brightness"_s, [](const QVariant &) {});

    lamp.reset();

    QVERIFY(!binding.source());
}

VANTLE_TEST(KeyValueObjectTest)
#include "KeyValueObjectTest.moc"
