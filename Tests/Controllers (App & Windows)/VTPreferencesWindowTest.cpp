// SPDX-License-Identifier: MIT
#include <HotKeyBackend.h>
#include <KLVStatusLabel.h>
#include <ModifierFlags.h>
#include <SwitchableKeyboardLayouts.h>
#include <TestRegistry.h>
#include <VTPreferencesWindow.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QRadioButton>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

struct PreferencesFixture {
    PreferencesFixture()
    {
        window.show();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("The window does not become active");
    }

    template <typename Control> Control *control(const char *name)
    {
        auto *const found = window.findChild<Control *>(QLatin1String(name));
        if (!found)
            qFatal("No control is called %s", name);
        return found;
    }
    QString noteText(const char *name)
    {
        const auto *note = control<QLabel>(name);
        return note->isVisible() ? note->text() : QString();
    }

    QTemporaryDir home;
    SwitchableKeyboardLayouts layouts { std::make_shared<PlainKeyboardLayout>(u"Plain"_s, QHash<qint64, QString> {}) };
    QString autostartPath = home.filePath(u"autostart/vantle.desktop"_s);
    VTPreferencesWindow window { layouts, [](qint64 virtualKey) { return QString(QChar(u'A' + int(virtualKey))); },
        AutostartEntry(autostartPath, u"vantle"_s) };
};

} // namespace

class VTPreferencesWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosingAPlaceIsTold_data();
    void choosingAPlaceIsTold();
    void placeSetByTheProgramIsNotTold();
    void unknownPlaceLooksLikeBoth();
    void hidingIsToldWhenThePersonChoosesIt();
    void restartIsNoted();
    void limitsOfTheDesktopAreSaidWhereTheyMatter();
    void startAtLoginIsTheDesktopsFile();
    void startAtLoginFollowsWhatOthersChanged();
    void startAtLoginThatCannotBeWrittenSaysSo();
    void recordersAreInTheirOrder();
    void statusStandsBesideItsKey_data();
    void statusStandsBesideItsKey();
    void refusedKeyIsNamedWithItsCommand();
    void commandsForADesktopWithoutHotKeys();
    void commandIsCopiedByKeys();
    void everyControlIsReachedByTab();
    void mnemonicsAreAllDifferent();
    void everythingHasAName();
    void escapeClosesIt();
    void nothingIsCutWithEveryNoteShown();
};

void VTPreferencesWindowTest::choosingAPlaceIsTold_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("status");

    QTest::newRow("both") << QByteArray("taskBarAndMenuBar") << 1 << 0;
    QTest::newRow("task bar") << QByteArray("taskBarOnly") << 0 << 1;
    QTest::newRow("menu bar") << QByteArray("menuBarOnly") << 0 << 2;
}

void VTPreferencesWindowTest::choosingAPlaceIsTold()
{
    QFETCH(const QByteArray, name);
    QFETCH(const int, before);
    QFETCH(const int, status);
    PreferencesFixture fixture;
    fixture.window.setIconStatus(before);
    const QSignalSpy chosen(&fixture.window, &VTPreferencesWindow::iconStatusChosen);

    fixture.control<QRadioButton>(name.constData())->click();

    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.first().first().toInt(), status);
}

void VTPreferencesWindowTest::placeSetByTheProgramIsNotTold()
{
    PreferencesFixture fixture;
    const QSignalSpy chosen(&fixture.window, &VTPreferencesWindow::iconStatusChosen);
    const QSignalSpy hides(&fixture.window, &VTPreferencesWindow::hidesWhenInactiveChosen);

    fixture.window.setIconStatus(2);
    fixture.window.setHidesWhenInactive(true);

    QVERIFY(fixture.control<QRadioButton>("menuBarOnly")->isChecked());
    QVERIFY(fixture.control<QCheckBox>("hidesWhenInactive")->isChecked());
    QVERIFY(chosen.isEmpty());
    QVERIFY(hides.isEmpty());
}

void VTPreferencesWindowTest::unknownPlaceLooksLikeBoth()
{
    PreferencesFixture fixture;
    fixture.window.setIconStatus(1);

    fixture.window.setIconStatus(7);

    QVERIFY(fixture.control<QRadioButton>("taskBarAndMenuBar")->isChecked());
}

void VTPreferencesWindowTest::hidingIsToldWhenThePersonChoosesIt()
{
    PreferencesFixture fixture;
    const QSignalSpy chosen(&fixture.window, &VTPreferencesWindow::hidesWhenInactiveChosen);

    QTest::keyClick(fixture.window.windowHandle(), Qt::Key_H, Qt::AltModifier);

    QTRY_COMPARE(chosen.size(), 1);
    QCOMPARE(chosen.first().first().toBool(), true);
}

void VTPreferencesWindowTest::restartIsNoted()
{
    PreferencesFixture fixture;
    QVERIFY(fixture.noteText("presenceNote").isEmpty());

    fixture.window.setIconStatus(2);
    fixture.window.setRestartRequired(true);
    QVERIFY(fixture.noteText("presenceNote").contains(u"next time"_s));

    fixture.window.setRestartRequired(false);
    QVERIFY(fixture.noteText("presenceNote").isEmpty());
}

void VTPreferencesWindowTest::limitsOfTheDesktopAreSaidWhereTheyMatter()
{
    PreferencesFixture fixture;
    fixture.window.setDesktopLimits({ .keepsTaskBarEntries = true, .hasNoIconHost = true });

    fixture.window.setIconStatus(1);
    QVERIFY(fixture.noteText("presenceNote").isEmpty());

    fixture.window.setIconStatus(0);
    QVERIFY(fixture.noteText("presenceNote").contains(u"no menu-bar icons"_s));
    QVERIFY(!fixture.noteText("presenceNote").contains(u"always"_s));

    fixture.window.setIconStatus(2);
    QVERIFY(fixture.noteText("presenceNote").contains(u"no menu-bar icons"_s));
    QVERIFY(fixture.noteText("presenceNote").contains(u"always"_s));
}

void VTPreferencesWindowTest::startAtLoginIsTheDesktopsFile()
{
    PreferencesFixture fixture;
    auto *const box = fixture.control<QCheckBox>("startsAtLogin");
    QVERIFY(!box->isChecked());

    QTest::keyClick(fixture.window.windowHandle(), Qt::Key_L, Qt::AltModifier);
    QTRY_VERIFY(box->isChecked());
    QVERIFY(AutostartEntry(fixture.autostartPath, u"vantle"_s).isEnabled());

    box->click();
    QVERIFY(!box->isChecked());
    QVERIFY(!QFile::exists(fixture.autostartPath));
}

void VTPreferencesWindowTest::startAtLoginFollowsWhatOthersChanged()
{
    PreferencesFixture fixture;
    fixture.window.hide();
    QVERIFY(AutostartEntry(fixture.autostartPath, u"vantle"_s).setEnabled(true).isOk());

    fixture.window.show();

    QVERIFY(fixture.control<QCheckBox>("startsAtLogin")->isChecked());
}

void VTPreferencesWindowTest::startAtLoginThatCannotBeWrittenSaysSo()
{
    PreferencesFixture fixture;
    QFile inTheWay(fixture.home.filePath(u"autostart"_s));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    auto *const box = fixture.control<QCheckBox>("startsAtLogin");

    box->click();

    QVERIFY(!box->isChecked());
    QVERIFY(fixture.noteText("loginNote").contains(u"autostart"_s));
}

void VTPreferencesWindowTest::recordersAreInTheirOrder()
{
    PreferencesFixture fixture;
    const QList<SRRecorderControl *> recorders { fixture.window.showAppShortcutRecorder(),
        fixture.window.addEventShortcutRecorder(), fixture.window.addTaskShortcutRecorder() };

    for (qsizetype i = 1; i < recorders.size(); ++i) {
        QVERIFY(recorders.at(i)->y() > recorders.at(i - 1)->y());
        QCOMPARE(recorders.at(i)->x(), recorders.at(i - 1)->x());
    }
    QCOMPARE(recorders.at(0)->accessibleName(), u"Show or hide"_s);
    QCOMPARE(recorders.at(1)->accessibleName(), u"New event"_s);
    QCOMPARE(recorders.at(2)->accessibleName(), u"New to-do"_s);
}

void VTPreferencesWindowTest::statusStandsBesideItsKey_data()
{
    QTest::addColumn<HotKeyStatus>("status");
    QTest::addColumn<KLVStatusLabel::Sign>("sign");
    QTest::addColumn<QString>("word");

    QTest::newRow("unset") << HotKeyStatus() << KLVStatusLabel::Sign::None << QString();
    QTest::newRow("active") << HotKeyStatus::active() << KLVStatusLabel::Sign::Good << u"active"_s;
    QTest::newRow("taken") << HotKeyStatus::refused(HotKeyRefusal::keysAreTaken().message)
                           << KLVStatusLabel::Sign::Problem << u"taken"_s;
    QTest::newRow("refused") << HotKeyStatus::refused(u"No."_s) << KLVStatusLabel::Sign::Problem << u"refused"_s;
    QTest::newRow("waiting") << HotKeyStatus::waitingForDesktop() << KLVStatusLabel::Sign::Waiting << u"waiting"_s;
    QTest::newRow("not offered") << HotKeyStatus::notOffered(u"new-event"_s) << KLVStatusLabel::Sign::Absent
                                 << u"not offered"_s;
}

void VTPreferencesWindowTest::statusStandsBesideItsKey()
{
    QFETCH(const HotKeyStatus, status);
    QFETCH(const KLVStatusLabel::Sign, sign);
    QFETCH(const QString, word);
    PreferencesFixture fixture;
    const SRRecorderControl *recorder = fixture.window.addEventShortcutRecorder();

    fixture.window.setHotKeyStatus(recorder, status);

    const auto *label = fixture.control<KLVStatusLabel>("addEventShortcutRecorderStatus");
    QCOMPARE(label->sign(), sign);
    QCOMPARE(label->text(), word);
    QCOMPARE(label->accessibleName(), status.text());
    QVERIFY(std::abs(label->geometry().center().y() - recorder->geometry().center().y()) <= 1);
}

void VTPreferencesWindowTest::refusedKeyIsNamedWithItsCommand()
{
    PreferencesFixture fixture;
    SRRecorderControl *const recorder = fixture.window.addTaskShortcutRecorder();
    recorder->setKeyCombo({ CocoaModifier::option | CocoaModifier::control, 13 });

    fixture.window.setHotKeyStatus(recorder, HotKeyStatus::refused(u"Another program has it."_s));

    QVERIFY(fixture.noteText("hotKeyNote").startsWith(u"Alt+Ctrl+N: Another program has it."_s));
    QCOMPARE(fixture.noteText("addTaskShortcutRecorderCommand"), u"gapplication action org.vantle.Vantle new-todo"_s);
    QVERIFY(fixture.noteText("addEventShortcutRecorderCommand").isEmpty());

    fixture.window.setHotKeyStatus(recorder, HotKeyStatus::active());
    QVERIFY(fixture.noteText("hotKeyNote").isEmpty());
    QVERIFY(fixture.noteText("addTaskShortcutRecorderCommand").isEmpty());
}

void VTPreferencesWindowTest::commandsForADesktopWithoutHotKeys()
{
    PreferencesFixture fixture;

    fixture.window.setHotKeyStatus(fixture.window.showAppShortcutRecorder(), HotKeyStatus::notOffered(u"toggle"_s));
    fixture.window.setHotKeyStatus(fixture.window.addEventShortcutRecorder(), HotKeyStatus::notOffered(u"new-event"_s));

    QCOMPARE(fixture.noteText("hotKeyNote").count(u"offers no global hot keys"_s), 1);
    QCOMPARE(fixture.noteText("showAppShortcutRecorderCommand"), u"gapplication action org.vantle.Vantle toggle"_s);
    QCOMPARE(fixture.noteText("addEventShortcutRecorderCommand"), u"gapplication action org.vantle.Vantle new-event"_s);
}

void VTPreferencesWindowTest::commandIsCopiedByKeys()
{
    PreferencesFixture fixture;
    fixture.window.setHotKeyStatus(fixture.window.addEventShortcutRecorder(), HotKeyStatus::notOffered(u"new-event"_s));
    auto *const command = fixture.control<QLabel>("addEventShortcutRecorderCommand");
    command->setFocus(Qt::TabFocusReason);

    QTest::keySequence(command, QKeySequence::SelectAll);
    QTest::keySequence(command, QKeySequence::Copy);

    QCOMPARE(QApplication::clipboard()->text(), command->text());
}

void VTPreferencesWindowTest::everyControlIsReachedByTab()
{
    PreferencesFixture fixture;
    fixture.window.setHotKeyStatus(fixture.window.addTaskShortcutRecorder(), HotKeyStatus::notOffered(u"new-todo"_s));
    fixture.control<QRadioButton>("taskBarAndMenuBar")->setFocus();

    QStringList names;
    for (int step = 0; step < 10; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        names << QApplication::focusWidget()->objectName();
        if (names.last() == u"taskBarAndMenuBar"_s)
            break;
    }

    const QStringList expected { u"hidesWhenInactive"_s, u"startsAtLogin"_s, u"showAppShortcutRecorder"_s,
        u"addEventShortcutRecorder"_s, u"addTaskShortcutRecorder"_s, u"addTaskShortcutRecorderCommand"_s,
        u"taskBarAndMenuBar"_s };
    QCOMPARE(names, expected);
}

void VTPreferencesWindowTest::mnemonicsAreAllDifferent()
{
    PreferencesFixture fixture;
    QStringList texts;
    for (const QAbstractButton *button : fixture.window.findChildren<QAbstractButton *>())
        texts << button->text();
    for (const QLabel *label : fixture.window.findChildren<QLabel *>()) {
        if (label->buddy())
            texts << label->text();
    }

    QSet<QChar> letters;
    int count = 0;
    for (const QString &text : texts) {
        const qsizetype mark = text.indexOf(u'&');
        if (mark < 0)
            continue;
        letters.insert(text.at(mark + 1).toLower());
        ++count;
    }
    QCOMPARE(count, 8);
    QCOMPARE(letters.size(), 8);
}

void VTPreferencesWindowTest::everythingHasAName()
{
    PreferencesFixture fixture;

    for (const QWidget *widget : fixture.window.findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus)
            continue;
        QVERIFY2(!widget->objectName().isEmpty(), widget->metaObject()->className());
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
        QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), qPrintable(widget->objectName()));
    }
}

void VTPreferencesWindowTest::escapeClosesIt()
{
    PreferencesFixture fixture;

    QTest::keyClick(&fixture.window, Qt::Key_Escape);

    QVERIFY(!fixture.window.isVisible());
}

void VTPreferencesWindowTest::nothingIsCutWithEveryNoteShown()
{
    PreferencesFixture fixture;
    const int heightBefore = fixture.window.height();
    fixture.window.setDesktopLimits({ .keepsTaskBarEntries = true, .hasNoIconHost = true });
    fixture.window.setIconStatus(2);
    for (const SRRecorderControl *recorder : { fixture.window.showAppShortcutRecorder(),
             fixture.window.addEventShortcutRecorder(), fixture.window.addTaskShortcutRecorder() })
        fixture.window.setHotKeyStatus(recorder, HotKeyStatus::notOffered(u"toggle"_s));

    QTRY_VERIFY(fixture.window.height() > heightBefore);
    QCoreApplication::processEvents();
    for (const QLabel *label : fixture.window.findChildren<QLabel *>()) {
        if (!label->isVisible() || !label->wordWrap())
            continue;
        QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
        QVERIFY(fixture.window.rect().contains(label->geometry()));
    }
}

VANTLE_TEST(VTPreferencesWindowTest)
#include "VTPreferencesWindowTest.moc"
