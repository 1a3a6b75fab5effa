// SPDX-License-Identifier: MIT
#include "RecorderWindow.h"
#include "TestRegistry.h"

#include <ModifierFlags.h>

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr quint64 optionAndControl = CocoaModifier::option | CocoaModifier::control;

} // namespace

class SRRecorderAccessibleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void assistiveTechnologyReadsTheField();
    void assistiveTechnologyRecordsAndClears();
    void disabledFieldOffersNoActions();

private:
    std::unique_ptr<RecorderWindow> window;
    SRRecorderControl *recorder = nullptr;
};

void SRRecorderAccessibleTest::init()
{
    window = std::make_unique<RecorderWindow>();
    recorder = window->recorder;
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
}

void SRRecorderAccessibleTest::cleanup()
{
    window.reset();
}

void SRRecorderAccessibleTest::assistiveTechnologyReadsTheField()
{
    QAccessibleInterface *field = QAccessible::queryAccessibleInterface(recorder);
    QVERIFY(field);

    QCOMPARE(field->role(), QAccessible::Button);
    QCOMPARE(field->text(QAccessible::Name), u"New event"_s);
    QCOMPARE(field->text(QAccessible::Value), u"(None)"_s);
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });
    QCOMPARE(field->text(QAccessible::Value), u"Alt+Ctrl+V"_s);
    QCOMPARE(field->text(QAccessible::Description), u"Alt+Ctrl+V"_s);
    recorder->startRecording();
    QCOMPARE(field->text(QAccessible::Description), u"Recording: Press the keys"_s);
    QVERIFY(field->state().pressed);
    QVERIFY(field->state().focused);
}

void SRRecorderAccessibleTest::assistiveTechnologyRecordsAndClears()
{
    recorder->setKeyCombo({ .flags = optionAndControl, .code = 9 });
    QAccessibleActionInterface *actions = QAccessible::queryAccessibleInterface(recorder)->actionInterface();
    QVERIFY(actions);
    QVERIFY(actions->actionNames().contains(u"Clear"_s));

    actions->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(recorder->isRecording());
    actions->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(!recorder->isRecording());
    actions->doAction(u"Clear"_s);
    QVERIFY(recorder->keyCombo().isClear());
    QVERIFY(!actions->actionNames().contains(u"Clear"_s));
}

void SRRecorderAccessibleTest::disabledFieldOffersNoActions()
{
    recorder->setEnabled(false);
    QAccessibleInterface *field = QAccessible::queryAccessibleInterface(recorder);

    field->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

    QVERIFY(!recorder->isRecording());
    QVERIFY(!field->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    QVERIFY(field->state().disabled);
}

VANTLE_TEST(SRRecorderAccessibleTest)
#include "SRRecorderAccessibleTest.moc"
