// SPDX-License-Identifier: MIT
#include "InstalledPrograms.h"
#include "TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DesktopEntriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsInstalled();
    void offeringProgramOpensTheType();
    void personsChoiceComesFirst();
    void desktopsChoiceComesBeforeTheOther();
    void removedAssociationIsNotTaken();
    void programThatIsGoneIsPassedOver();
    void entryIsLookedAtClosely_data();
    void entryIsLookedAtClosely();
    void commandHasTheAddressInItsPlace_data();
    void commandHasTheAddressInItsPlace();

private:
    static QString idOf(const std::optional<DesktopEntry> &entry) { return entry ? entry->id : QString(); }
};

void DesktopEntriesTest::nothingIsInstalled()
{
    const InstalledPrograms programs;

    QVERIFY(!programs.entries().handler(u"x-scheme-handler/calendar"_s));
    QVERIFY(!programs.entries().entry(u"a.desktop"_s));
}

void DesktopEntriesTest::offeringProgramOpensTheType()
{
    InstalledPrograms programs;
    programs.install(u"a.desktop"_s, u"program-a"_s, { u"text/calendar"_s });

    QCOMPARE(idOf(programs.entries().handler(u"text/calendar"_s)), u"a.desktop"_s);
    QVERIFY(!programs.entries().handler(u"text/plain"_s));
}

void DesktopEntriesTest::personsChoiceComesFirst()
{
    InstalledPrograms programs;
    programs.install(u"a.desktop"_s, u"program-a"_s, { u"text/calendar"_s });
    programs.install(u"b.desktop"_s, u"program-b"_s, {});
    programs.write(u"config/mimeapps.list"_s, u"[Default Applications]\ntext/calendar=gone.desktop;b.desktop;\n"_s);

    QCOMPARE(idOf(programs.entries().handler(u"text/calendar"_s)), u"b.desktop"_s);
}

void DesktopEntriesTest::desktopsChoiceComesBeforeTheOther()
{
    InstalledPrograms programs;
    programs.install(u"a.desktop"_s, u"program-a"_s, {});
    programs.install(u"b.desktop"_s, u"program-b"_s, {});
    programs.write(u"config/mimeapps.list"_s, u"[Default Applications]\ntext/calendar=a.desktop\n"_s);
    programs.write(u"config/mock-mimeapps.list"_s, u"[Default Applications]\ntext/calendar=b.desktop\n"_s);

    QCOMPARE(idOf(programs.entries().handler(u"text/calendar"_s)), u"b.desktop"_s);
}

void DesktopEntriesTest::removedAssociationIsNotTaken()
{
    InstalledPrograms programs;
    programs.install(u"a.desktop"_s, u"program-a"_s, { u"text/calendar"_s });
    programs.write(u"config/mimeapps.list"_s, u"[Removed Associations]\ntext/calendar=a.desktop;\n"_s);

    QVERIFY(!programs.entries().handler(u"text/calendar"_s));
}

void DesktopEntriesTest::programThatIsGoneIsPassedOver()
{
    InstalledPrograms programs;
    programs.addEntry(u"gone.desktop"_s, u"program-that-is-gone"_s, { u"text/calendar"_s });
    programs.install(u"a.desktop"_s, u"program-a"_s, {});
    programs.write(u"config/mimeapps.list"_s, u"[Added Associations]\ntext/calendar=gone.desktop;a.desktop;\n"_s);

    QCOMPARE(idOf(programs.entries().handler(u"text/calendar"_s)), u"a.desktop"_s);
}

void DesktopEntriesTest::entryIsLookedAtClosely_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<bool>("isThere");

    QTest::newRow("usual") << u"[Desktop Entry]\nExec=program-a\n"_s << true;
    QTest::newRow("blanks") << u"[Desktop Entry]\nExec = program-a\n"_s << true;
    QTest::newRow("hidden") << u"[Desktop Entry]\nExec=program-a\nHidden=true\n"_s << false;
    QTest::newRow("not shown in menus") << u"[Desktop Entry]\nExec=program-a\nNoDisplay=true\n"_s << true;
    QTest::newRow("needs a program") << u"[Desktop Entry]\nExec=program-a\nTryExec=program-that-is-gone\n"_s << false;
    QTest::newRow("no command") << u"[Desktop Entry]\nName=a\n"_s << false;
    QTest::newRow("command of an action") << u"[Desktop Action new]\nExec=program-a\n"_s << false;
    QTest::newRow("damaged") << u"\x1\x2[[=\nExec"_s << false;
}

void DesktopEntriesTest::entryIsLookedAtClosely()
{
    QFETCH(const QString, content);
    QFETCH(const bool, isThere);
    InstalledPrograms programs;
    programs.install(u"other.desktop"_s, u"program-a"_s, {});
    programs.write(u"applications/a.desktop"_s, content);

    QCOMPARE(programs.entries().entry(u"a.desktop"_s).has_value(), isThere);
    QVERIFY(!programs.entries().entry(u"../applications/a.desktop"_s));
}

void DesktopEntriesTest::commandHasTheAddressInItsPlace_data()
{
    QTest::addColumn<QString>("exec");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QStringList>("command");

    const QString address = u"calendar:///?a=b c"_s;
    QTest::newRow("address") << u"program-a %U"_s << address << QStringList { u"program-a"_s, address };
    QTest::newRow("none wanted") << u"program-a"_s << address << QStringList { u"program-a"_s };
    QTest::newRow("none given") << u"program-a %u --x"_s << QString() << QStringList { u"program-a"_s, u"--x"_s };
    QTest::newRow("other codes") << u"program-a %i %c"_s << address << QStringList { u"program-a"_s };
    QTest::newRow("percent") << u"program-a 50%% %%"_s << QString() << QStringList { u"program-a"_s, u"50%"_s, u"%"_s };
    QTest::newRow("quoted") << uR"(program-a "a b" "q\\"d" "")"_s << QString()
                            << QStringList { u"program-a"_s, u"a b"_s, u"q\"d"_s, QString(u""_s) };
}

void DesktopEntriesTest::commandHasTheAddressInItsPlace()
{
    QFETCH(const QString, exec);
    QFETCH(const QString, address);
    QFETCH(const QStringList, command);
    InstalledPrograms programs;
    programs.install(u"other.desktop"_s, u"program-a"_s, {});
    programs.write(u"applications/a.desktop"_s, u"[Desktop Entry]\nExec="_s + exec + u'\n');

    const auto entry = programs.entries().entry(u"a.desktop"_s);

    QVERIFY(entry);
    QCOMPARE(entry->command(address), command);
}

VANTLE_TEST(DesktopEntriesTest)
#include "DesktopEntriesTest.moc"
