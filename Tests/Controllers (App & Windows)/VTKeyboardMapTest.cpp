// SPDX-License-Identifier: MIT
#include "MainWindowFixture.h"

#include <KLVKeyCaps.h>
#include <TestRegistry.h>
#include <VTKeyboardMap.h>
#include <VTMainMenu.h>
#include <VTShortcutsWindow.h>

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QString document(const QString &name)
{
    QFile file(QStringLiteral(VANTLE_DOCUMENTS) + u'/' + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString documentLine(const VTKeyboardEntry &entry)
{
    return u"| %1 | %2 |"_s.arg(
        QString::fromLatin1(entry.keys).replace(u"; "_s, u", "_s), QString::fromLatin1(entry.text));
}

} // namespace

class VTKeyboardMapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noKeyHasTwoMeanings();
    void everyEntryHasKeysAndText();
    void everyCommandIsAnActionWithItsKeys();
    void everyShortcutOfTheWindowIsInTheMap();
    void documentListsTheSameKeys();
    void windowShowsEveryKey();
    void windowOpensAndCloses_data();
    void windowOpensAndCloses();
};

void VTKeyboardMapTest::noKeyHasTwoMeanings()
{
    QStringList keys;
    for (const VTKeyboardEntry &entry : VTKeyboardMap()) {
        const auto shortcuts = entry.shortcuts();
        for (const QKeySequence &shortcut : shortcuts)
            keys.append(shortcut.toString());
    }

    QCOMPARE(QSet<QString>(keys.cbegin(), keys.cend()).size(), keys.size());
}

void VTKeyboardMapTest::everyEntryHasKeysAndText()
{
    for (const VTKeyboardEntry &entry : VTKeyboardMap()) {
        QVERIFY2(!entry.shortcuts().isEmpty() && !entry.shortcuts().contains(QKeySequence()), entry.text);
        QVERIFY2(!entry.translatedText().isEmpty(), entry.keys);
    }
}

void VTKeyboardMapTest::everyCommandIsAnActionWithItsKeys()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();

    for (const VTKeyboardEntry &entry : VTKeyboardMap()) {
        if (*entry.command == '\0')
            continue;
        const auto *action = fixture.window->findChild<QAction *>(QLatin1String(entry.command));
        QVERIFY2(action, entry.command);
        QCOMPARE(action->shortcuts(), entry.shortcuts());
        QVERIFY2(fixture.window->actions().contains(action), entry.command);
    }
}

void VTKeyboardMapTest::everyShortcutOfTheWindowIsInTheMap()
{
    MainWindowFixture fixture;
    fixture.wakeWithWindow();

    const auto actions = fixture.window->findChildren<QAction *>();
    for (const QAction *action : actions) {
        if (!action->shortcuts().isEmpty())
            QVERIFY2(VTKeyboardEntryOfCommand(QLatin1String(action->objectName().toLatin1())),
                qPrintable(action->objectName()));
    }
}

void VTKeyboardMapTest::documentListsTheSameKeys()
{
    QStringList expected;
    for (const VTKeyboardEntry &entry : VTKeyboardMap())
        expected.append(documentLine(entry));

    QStringList found;
    const QStringList lines = document(u"docs/keyboard.md"_s).split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(u"| "_s) && line != u"| Key | Does |"_s)
            found.append(line);
    }

    QCOMPARE(found, expected);
}

void VTKeyboardMapTest::windowShowsEveryKey()
{
    const VTShortcutsWindow window;

    QStringList names;
    const auto labels = window.findChildren<QLabel *>();
    for (const QLabel *label : labels)
        names.append(label->accessibleName());

    for (const VTKeyboardEntry &entry : VTKeyboardMap()) {
        const KLVKeyCaps caps(entry.shortcuts());
        QVERIFY2(names.contains(entry.translatedText() + u": "_s + caps.accessibleName()), entry.text);
    }
}

void VTKeyboardMapTest::windowOpensAndCloses_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");

    QTest::newRow("F1") << Qt::Key_F1 << Qt::KeyboardModifiers();
    QTest::newRow("Ctrl+?") << Qt::Key_Question << Qt::KeyboardModifiers(Qt::ControlModifier);
}

void VTKeyboardMapTest::windowOpensAndCloses()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    MainWindowFixture fixture;
    fixture.wakeWithWindow();
    QVERIFY(QTest::qWaitForWindowActive(fixture.window.get()));

    QTest::keyClick(fixture.window->windowHandle(), key, modifiers);

    auto *window = fixture.window->findChild<VTShortcutsWindow *>();
    QVERIFY(window);
    QTRY_VERIFY(window->isVisible());
    QTest::keyClick(window, Qt::Key_Escape);
    QTRY_VERIFY(!window->isVisible());
}

VANTLE_TEST(VTKeyboardMapTest)
#include "VTKeyboardMapTest.moc"
