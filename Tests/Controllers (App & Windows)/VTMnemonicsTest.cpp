// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <TestRegistry.h>
#include <VTMainMenu.h>
#include <VTMnemonics.h>

#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

class VTMnemonicsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lettersAreDifferent_data();
    void lettersAreDifferent();
    void everyMenuOfTheWindowHasThem();
    void titleFromACalendarStaysPlain();
    void lettersOfAnOpenMenuOutliveARefetch();
};

void VTMnemonicsTest::lettersAreDifferent_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QStringList>("marked");

    QTest::newRow("initials") << QStringList { u"Open"_s, u"Close"_s } << QStringList { u"&Open"_s, u"&Close"_s };
    QTest::newRow("second word") << QStringList { u"Show A"_s, u"Show B"_s }
                                 << QStringList { u"&Show A"_s, u"Show &B"_s };
    QTest::newRow("inside") << QStringList { u"ab"_s, u"ab"_s } << QStringList { u"&ab"_s, u"a&b"_s };
    QTest::newRow("none left") << QStringList { u"a"_s, u"A"_s } << QStringList { u"&a"_s, u"A"_s };
    QTest::newRow("given marks go") << QStringList { u"O&pen"_s } << QStringList { u"&Open"_s };
    QTest::newRow("plain sign stays") << QStringList { u"&& Co"_s } << QStringList { u"&& &Co"_s };
    QTest::newRow("other letters") << QStringList { u"Öffnen"_s, u"…"_s } << QStringList { u"&Öffnen"_s, u"…"_s };
    QTest::newRow("empty") << QStringList { QString() } << QStringList { QString() };
}

void VTMnemonicsTest::lettersAreDifferent()
{
    QFETCH(const QStringList, texts);
    QFETCH(const QStringList, marked);

    QCOMPARE(VTWithMnemonics(texts), marked);
    QCOMPARE(VTWithMnemonics(marked), marked);
}

void VTMnemonicsTest::everyMenuOfTheWindowHasThem()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();

    QList<QMenu *> menus = fixture.window->findChildren<QMenu *>();
    QVERIFY(menus.size() >= 10);
    for (QMenu *menu : menus) {
        Q_EMIT menu->aboutToShow();
        QSet<QChar> letters;
        int entries = 0;
        for (const QAction *action : menu->actions()) {
            if (action->isSeparator() || !action->isVisible())
                continue;
            ++entries;
            const QString text = QString(action->text()).remove(u"&&"_s);
            QVERIFY2(text.contains(u'&'), qPrintable(text));
            letters.insert(text.at(text.indexOf(u'&') + 1).toLower());
        }
        QCOMPARE(letters.size(), entries);
    }
}

void VTMnemonicsTest::titleFromACalendarStaysPlain()
{
    QMenu menu;
    QAction *undo = menu.addAction(u"Undo Delete of “Black && white &&&& grey”"_s);
    VTGiveMnemonics(menu);

    Q_EMIT menu.aboutToShow();
    Q_EMIT menu.aboutToShow();

    QCOMPARE(undo->text(), u"&Undo Delete of “Black && white &&&& grey”"_s);
}

void VTMnemonicsTest::lettersOfAnOpenMenuOutliveARefetch()
{
    MainWindowFixture fixture;
    fixture.addEvent("Tea");
    VTMainWindowController &controller = fixture.wakeWithWindow();
    const QAction *const command = fixture.window->menu()->command("deleteItem");
    Q_EMIT fixture.window->itemMenu()->aboutToShow();
    const QString marked = command->text();
    QVERIFY(marked.contains(u'&'));

    controller.calStoreDidChange();

    QCOMPARE(command->text(), marked);
}

VANTLE_TEST(VTMnemonicsTest)
#include "VTMnemonicsTest.moc"
