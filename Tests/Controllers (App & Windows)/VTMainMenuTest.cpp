// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <TestRegistry.h>
#include <VTMainMenu.h>

#include <QAction>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// Counts how often the to-dos are given anew.
class RefreshCounter final : public KeyValueObserver
{
public:
    explicit RefreshCounter(KeyValueObject &observed)
    {
        observed.addObserver_forKeyPath_options_context(this, u"tasks"_s);
    }

    int refreshes = 0;

    void observeValueForKeyPath_ofObject_change_context(const QString & /*keyPath*/, KeyValueObject * /*object*/,
        const KeyValueChange & /*change*/, void * /*context*/) override
    {
        ++refreshes;
    }
};

struct MenuFixture : MainWindowFixture {
    MenuFixture() { wakeWithWindow(); }

    QAction *command(const char *name) const { return window->menu()->command(name); }
    QStringList markedSortMethods() const
    {
        QStringList marked;
        for (const char *name :
            { "SortMethodDueDateMenuItem", "SortMethodPriorityMenuItem", "SortMethodTitleMenuItem" }) {
            if (command(name)->isChecked())
                marked.append(QLatin1String(name));
        }
        return marked;
    }
};

} // namespace

class VTMainMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCommandHasANameAndAText();
    void sortItemSetsItsMethod_data();
    void sortItemSetsItsMethod();
    void sortItemThatHasTheMarkChangesNothing();
    void anotherSenderChangesNoSortMethod();
    void unknownSortMethodMarksNoItem();
    void filtersFollowTheDayModel_data();
    void filtersFollowTheDayModel();
    void sortMethodIsChosenInTheOpenMenu();
};

void VTMainMenuTest::everyCommandHasANameAndAText()
{
    const MenuFixture fixture;

    QStringList names;
    for (const QAction *action : fixture.window->menu()->commands()) {
        QVERIFY(!action->objectName().isEmpty());
        QVERIFY2(!action->text().isEmpty(), qPrintable(action->objectName()));
        names.append(action->objectName());
    }
    QCOMPARE(QSet<QString>(names.cbegin(), names.cend()).size(), names.size());
}

void VTMainMenuTest::sortItemSetsItsMethod_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("method");

    QTest::newRow("due date") << QByteArray("SortMethodDueDateMenuItem") << 1 << 0;
    QTest::newRow("priority") << QByteArray("SortMethodPriorityMenuItem") << 2 << 1;
    QTest::newRow("title") << QByteArray("SortMethodTitleMenuItem") << 0 << 2;
}

void VTMainMenuTest::sortItemSetsItsMethod()
{
    QFETCH(const QByteArray, name);
    QFETCH(const int, before);
    QFETCH(const int, method);
    const MenuFixture fixture;
    fixture.controller->setTaskSortMethod(before);
    QVERIFY(!fixture.command(name.constData())->isChecked());

    fixture.command(name.constData())->trigger();

    QCOMPARE(fixture.controller->taskSortMethod(), method);
    QCOMPARE(fixture.markedSortMethods(), QStringList { QString::fromLatin1(name) });
}

void VTMainMenuTest::sortItemThatHasTheMarkChangesNothing()
{
    const MenuFixture fixture;
    RefreshCounter counter(*fixture.controller);
    const int queries = fixture.backend().taskQueries();
    QCOMPARE(fixture.markedSortMethods(), QStringList { u"SortMethodDueDateMenuItem"_s });

    fixture.command("SortMethodDueDateMenuItem")->trigger();

    QCOMPARE(fixture.controller->taskSortMethod(), 0);
    QCOMPARE(counter.refreshes, 0);
    QCOMPARE(fixture.backend().taskQueries(), queries);
    QCOMPARE(fixture.markedSortMethods(), QStringList { u"SortMethodDueDateMenuItem"_s });
}

void VTMainMenuTest::anotherSenderChangesNoSortMethod()
{
    const MenuFixture fixture;
    fixture.controller->setTaskSortMethod(1);
    RefreshCounter counter(*fixture.controller);

    fixture.controller->updateTaskSortMethodFromTaskSettingsMenu(fixture.command("quit"));
    fixture.controller->updateTaskSortMethodFromTaskSettingsMenu(nullptr);

    QCOMPARE(fixture.controller->taskSortMethod(), 1);
    QCOMPARE(counter.refreshes, 0);
}

void VTMainMenuTest::unknownSortMethodMarksNoItem()
{
    const MenuFixture fixture;

    fixture.controller->setTaskSortMethod(7);

    QCOMPARE(fixture.markedSortMethods(), QStringList());
}

void VTMainMenuTest::filtersFollowTheDayModel_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("completed") << QByteArray("showAllCompletedTasks");
    QTest::newRow("due later") << QByteArray("hideTasksDueAfterThisWeek");
}

void VTMainMenuTest::filtersFollowTheDayModel()
{
    QFETCH(const QByteArray, name);
    const MenuFixture fixture;
    QAction *const action = fixture.command(name.constData());
    const auto value = [&] { return fixture.controller->valueForKey(QString::fromLatin1(name)).toBool(); };
    const int queries = fixture.backend().taskQueries();

    action->trigger();
    QVERIFY(value());
    QVERIFY(action->isChecked());
    QVERIFY(fixture.backend().taskQueries() > queries);

    fixture.controller->setShowAllCompletedTasks(false);
    fixture.controller->setHideTasksDueAfterThisWeek(false);
    QVERIFY(!action->isChecked());
}

void VTMainMenuTest::sortMethodIsChosenInTheOpenMenu()
{
    const MenuFixture fixture;
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));
    QTest::keyClick(fixture.window->windowHandle(), Qt::Key_F10);
    QMenu *const menu = fixture.window->menu();
    QTRY_VERIFY(menu->isVisible());

    auto *sorting = fixture.window->findChild<QMenu *>(u"taskSettingsMenu"_s);
    for (int step = 0; step < menu->actions().size() && menu->activeAction() != sorting->menuAction(); ++step)
        QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Right);
    QTRY_VERIFY(sorting->isVisible());
    QTest::keyClick(sorting, Qt::Key_Down);
    QTest::keyClick(sorting, Qt::Key_Down);
    QTest::keyClick(sorting, Qt::Key_Return);

    QCOMPARE(fixture.controller->taskSortMethod(), 2);
}

VANTLE_TEST(VTMainMenuTest)
#include "VTMainMenuTest.moc"
