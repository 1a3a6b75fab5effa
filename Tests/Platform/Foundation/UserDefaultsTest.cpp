// SPDX-License-Identifier: MIT
#include "TestRegistry.h"
#include "UnprivilegedScope.h"

#include <UserDefaults.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QVariantMap factoryValues()
{
    return {
        { u"VTSelectedTaskSortMethod"_s, 2LL },
        { u"VTRestrictTasksToCurrentWeek"_s, true },
        { u"VTUnselectedCalendarsUID"_s, QVariantList() },
        { u"VTHotkeyKeyCode"_s, 9LL },
    };
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class UserDefaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void absentKeyReadsAsNothing();
    void factoryValueAnswersForAnAbsentKey();
    void ownValueWinsOverTheFactoryValue();
    void laterFactoryValueReplacesTheEarlier();
    void factoryValuesAreNeverWritten();
    void nothingIsWrittenBeforeSynchronize();
    void changesAreWrittenWhenTheObjectGoes();
    void fileStandsInTheConfigurationHome();
    void valuesSurviveARestart();
    void listsSurviveARestart_data();
    void listsSurviveARestart();
    void absentListIsNotAnEmptyList();
    void listTakenAwayIsAbsentAfterARestart();
    void textReadsAsNumber_data();
    void textReadsAsNumber();
    void unreadableValueIsTheFactoryValue_data();
    void unreadableValueIsTheFactoryValue();
    void damagedFileReadsAsFactoryValues_data();
    void damagedFileReadsAsFactoryValues();
    void damagedFileCanBeWrittenAgain_data();
    void damagedFileCanBeWrittenAgain();
    void foreignKeysAreKept();
    void unwritablePlaceIsReportedAndChangesStay();
    void readOnlyFileIsReportedAndKept();
    void folderInTheFilesPlaceIsSurvived();
    void sortMethodOutsideTheMenuIsReadAsItStands();
    void identifiersOfDeletedCalendarsAreKept();
    void clearedHotKeyIsMinusOneAfterARestart();

private:
    QString path() const { return m_folder->filePath(u"settings/vantle.conf"_s); }
    void writeFile(const QByteArray &text) const
    {
        QDir().mkpath(m_folder->filePath(u"settings"_s));
        write(path(), text);
    }
    void addDamagedFiles() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void UserDefaultsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void UserDefaultsTest::cleanup()
{
    m_folder.reset();
}

void UserDefaultsTest::absentKeyReadsAsNothing()
{
    const UserDefaults defaults(path());

    QVERIFY(!defaults.objectForKey(u"VTIconStatus"_s).isValid());
    QCOMPARE(defaults.integerForKey(u"VTIconStatus"_s), 0);
    QVERIFY(!defaults.boolForKey(u"VTIconStatus"_s));
    QVERIFY(!defaults.arrayForKey(u"VTIconStatus"_s));
}

void UserDefaultsTest::factoryValueAnswersForAnAbsentKey()
{
    UserDefaults defaults(path());

    defaults.registerDefaults(factoryValues());

    QCOMPARE(defaults.integerForKey(u"VTSelectedTaskSortMethod"_s), 2);
    QCOMPARE(defaults.objectForKey(u"VTSelectedTaskSortMethod"_s), QVariant(2LL));
    QVERIFY(defaults.boolForKey(u"VTRestrictTasksToCurrentWeek"_s));
    QCOMPARE(defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s), QStringList());
}

void UserDefaultsTest::ownValueWinsOverTheFactoryValue()
{
    UserDefaults defaults(path());
    defaults.registerDefaults(factoryValues());

    defaults.setInteger_forKey(0, u"VTSelectedTaskSortMethod"_s);
    defaults.setBool_forKey(false, u"VTRestrictTasksToCurrentWeek"_s);

    QCOMPARE(defaults.integerForKey(u"VTSelectedTaskSortMethod"_s), 0);
    QCOMPARE(defaults.objectForKey(u"VTRestrictTasksToCurrentWeek"_s), QVariant(false));
}

void UserDefaultsTest::laterFactoryValueReplacesTheEarlier()
{
    UserDefaults defaults(path());
    defaults.registerDefaults(factoryValues());

    defaults.registerDefaults({ { u"VTSelectedTaskSortMethod"_s, 1LL } });

    QCOMPARE(defaults.integerForKey(u"VTSelectedTaskSortMethod"_s), 1);
    QCOMPARE(defaults.integerForKey(u"VTHotkeyKeyCode"_s), 9);
}

void UserDefaultsTest::factoryValuesAreNeverWritten()
{
    {
        UserDefaults defaults(path());
        defaults.registerDefaults(factoryValues());
        defaults.setInteger_forKey(1, u"VTIconStatus"_s);
    }

    QVERIFY(content(path()).contains("VTIconStatus=1"));
    QVERIFY(!content(path()).contains("VTHotkeyKeyCode"));
}

void UserDefaultsTest::nothingIsWrittenBeforeSynchronize()
{
    UserDefaults defaults(path());
    defaults.setInteger_forKey(1, u"VTIconStatus"_s);
    QCoreApplication::processEvents();
    QVERIFY(!QFile::exists(path()));

    QVERIFY(defaults.synchronize());

    QVERIFY(content(path()).contains("[General]\nVTIconStatus=1"));
}

void UserDefaultsTest::changesAreWrittenWhenTheObjectGoes()
{
    auto defaults = std::make_unique<UserDefaults>(path());
    defaults->setInteger_forKey(2, u"VTIconStatus"_s);

    defaults.reset();

    QCOMPARE(UserDefaults(path()).integerForKey(u"VTIconStatus"_s), 2);
}

void UserDefaultsTest::fileStandsInTheConfigurationHome()
{
    {
        UserDefaults defaults;
        defaults.setInteger_forKey(2, u"VTIconStatus"_s);
    }

    QVERIFY(QFile::exists(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/vantle/vantle.conf"_s));
    QCOMPARE(UserDefaults().integerForKey(u"VTIconStatus"_s), 2);
}

void UserDefaultsTest::valuesSurviveARestart()
{
    {
        UserDefaults defaults(path());
        defaults.setBool_forKey(true, u"VTRestrictTasksToCurrentWeek"_s);
        defaults.setBool_forKey(false, u"VTIncludeAllCompletedTasks"_s);
        defaults.setInteger_forKey(1, u"VTSelectedTaskSortMethod"_s);
    }

    UserDefaults defaults(path());

    QCOMPARE(defaults.integerForKey(u"VTRestrictTasksToCurrentWeek"_s), 1);
    QVERIFY(defaults.boolForKey(u"VTRestrictTasksToCurrentWeek"_s));
    QCOMPARE(defaults.integerForKey(u"VTIncludeAllCompletedTasks"_s), 0);
    QVERIFY(!defaults.boolForKey(u"VTIncludeAllCompletedTasks"_s));
    QCOMPARE(defaults.integerForKey(u"VTSelectedTaskSortMethod"_s), 1);
    defaults.registerDefaults(factoryValues());
    QCOMPARE(defaults.objectForKey(u"VTRestrictTasksToCurrentWeek"_s), QVariant(true));
    QCOMPARE(defaults.objectForKey(u"VTSelectedTaskSortMethod"_s), QVariant(1LL));
}

void UserDefaultsTest::listsSurviveARestart_data()
{
    QTest::addColumn<QStringList>("list");

    QTest::newRow("empty") << QStringList();
    QTest::newRow("one element") << QStringList { u"Home"_s };
    QTest::newRow("two elements") << QStringList { u"Home"_s, u"Work"_s };
    QTest::newRow("commas and quotes") << QStringList { u"a,b"_s, u"\"c\""_s };
    QTest::newRow("one element with a comma") << QStringList { u"a, b"_s };
    QTest::newRow("other scripts") << QStringList { u"Büro"_s, u"日历"_s };
    QTest::newRow("looks like a mark of the file format") << QStringList { u"@Invalid()"_s };
}

void UserDefaultsTest::listsSurviveARestart()
{
    QFETCH(const QStringList, list);
    {
        UserDefaults defaults(path());
        defaults.setArray_forKey(list, u"VTUnselectedCalendarsUID"_s);
        QCOMPARE(defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s), list);
    }

    const UserDefaults defaults(path());

    QCOMPARE(defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s), list);
}

void UserDefaultsTest::absentListIsNotAnEmptyList()
{
    UserDefaults defaults(path());
    QCOMPARE(defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s), std::nullopt);

    defaults.setArray_forKey(QStringList(), u"VTUnselectedCalendarsUID"_s);

    QCOMPARE(defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s), QStringList());
}

void UserDefaultsTest::listTakenAwayIsAbsentAfterARestart()
{
    UserDefaults(path()).setArray_forKey(QStringList { u"Home"_s }, u"VTUnselectedCalendarsUID"_s);

    UserDefaults(path()).setArray_forKey(std::nullopt, u"VTUnselectedCalendarsUID"_s);

    QCOMPARE(UserDefaults(path()).arrayForKey(u"VTUnselectedCalendarsUID"_s), std::nullopt);
}

void UserDefaultsTest::textReadsAsNumber_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("number");

    QTest::newRow("true") << QByteArray("true") << qint64(1);
    QTest::newRow("false") << QByteArray("false") << qint64(0);
    QTest::newRow("yes") << QByteArray("YES") << qint64(1);
    QTest::newRow("no") << QByteArray("No") << qint64(0);
    QTest::newRow("number") << QByteArray("17") << qint64(17);
    QTest::newRow("negative") << QByteArray("-1") << qint64(-1);
    QTest::newRow("sign") << QByteArray("+4") << qint64(4);
    QTest::newRow("begins with a number") << QByteArray("7x") << qint64(7);
    QTest::newRow("real") << QByteArray("1.9") << qint64(1);
    QTest::newRow("word") << QByteArray("banana") << qint64(0);
    QTest::newRow("lone sign") << QByteArray("-") << qint64(0);
    QTest::newRow("nothing") << QByteArray("") << qint64(0);
    QTest::newRow("list") << QByteArray("1, 2") << qint64(0);
    QTest::newRow("beyond the range") << QByteArray("99999999999999999999999") << std::numeric_limits<qint64>::max();
}

void UserDefaultsTest::textReadsAsNumber()
{
    QFETCH(const QByteArray, text);
    QFETCH(const qint64, number);
    writeFile("[General]\nkey=" + text + "\n");

    const UserDefaults defaults(path());

    QCOMPARE(defaults.integerForKey(u"key"_s), number);
    QCOMPARE(defaults.boolForKey(u"key"_s), number != 0);
}

void UserDefaultsTest::unreadableValueIsTheFactoryValue_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("word") << QByteArray("banana");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("list") << QByteArray("1, 2");
    QTest::newRow("no value") << QByteArray("@Invalid()");
    QTest::newRow("bytes") << QByteArray("@ByteArray(1)");
    QTest::newRow("cut object") << QByteArray("@Variant(\\0\\0\\0\\x7f");
    QTest::newRow("object of no type") << QByteArray("@Variant(\\0\\0\\0\\x7f\\xff\\xff)");
}

void UserDefaultsTest::unreadableValueIsTheFactoryValue()
{
    QFETCH(const QByteArray, text);
    writeFile("[General]\nVTSelectedTaskSortMethod=" + text + "\nVTRestrictTasksToCurrentWeek=" + text + "\n");

    UserDefaults defaults(path());
    defaults.registerDefaults(factoryValues());

    QCOMPARE(defaults.objectForKey(u"VTSelectedTaskSortMethod"_s), QVariant(2LL));
    QCOMPARE(defaults.integerForKey(u"VTRestrictTasksToCurrentWeek"_s), 1);
}

void UserDefaultsTest::addDamagedFiles() const
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut in the section") << QByteArray("[Gene");
    QTest::newRow("cut in the key") << QByteArray("[General]\nVTSelectedTaskS");
    QTest::newRow("binary") << QByteArray("\x00\x01\xff\xfe\x80[General\n\x00=\x00", 18);
    QTest::newRow("page of a web server") << QByteArray("<!DOCTYPE html><html><body>502</body></html>\n");
    QTest::newRow("another program's sections") << QByteArray("[Other]\nVTSelectedTaskSortMethod=0\n");
    QTest::newRow("only blanks") << QByteArray("\n\n   \n\t\n");
    QTest::newRow("many bytes of zero") << QByteArray(100000, '\0');
}

void UserDefaultsTest::damagedFileReadsAsFactoryValues_data()
{
    addDamagedFiles();
}

void UserDefaultsTest::damagedFileReadsAsFactoryValues()
{
    QFETCH(const QByteArray, text);
    writeFile(text);

    UserDefaults defaults(path());
    defaults.registerDefaults(factoryValues());

    QCOMPARE(defaults.integerForKey(u"VTSelectedTaskSortMethod"_s), 2);
    QVERIFY(defaults.boolForKey(u"VTRestrictTasksToCurrentWeek"_s));
    QCOMPARE(defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s), QStringList());
    QCOMPARE(content(path()), text);
}

void UserDefaultsTest::damagedFileCanBeWrittenAgain_data()
{
    addDamagedFiles();
}

void UserDefaultsTest::damagedFileCanBeWrittenAgain()
{
    QFETCH(const QByteArray, text);
    writeFile(text);
    UserDefaults defaults(path());
    defaults.setInteger_forKey(1, u"VTSelectedTaskSortMethod"_s);

    QVERIFY(defaults.synchronize());

    QCOMPARE(UserDefaults(path()).integerForKey(u"VTSelectedTaskSortMethod"_s), 1);
}

void UserDefaultsTest::foreignKeysAreKept()
{
    writeFile("[General]\nSomebodyElse=keep me\nVTIconStatus=1\n\n[Section]\nother=42\n");

    UserDefaults(path()).setInteger_forKey(2, u"VTIconStatus"_s);

    const QByteArray after = content(path());
    QVERIFY(after.contains("SomebodyElse=keep me"));
    QVERIFY(after.contains("[Section]\nother=42"));
    QVERIFY(after.contains("VTIconStatus=2"));
}

void UserDefaultsTest::unwritablePlaceIsReportedAndChangesStay()
{
    write(m_folder->filePath(u"settings"_s), "a file where the folder should be");
    UserDefaults defaults(path());
    defaults.setInteger_forKey(2, u"VTIconStatus"_s);

    QTest::ignoreMessage(
        QtWarningMsg, QString(u"The settings could not be written to “%1”."_s.arg(path())).toUtf8().constData());
    const Result<void> result = defaults.synchronize();

    QVERIFY(!result);
    QVERIFY(result.error().message.contains(path()));
    QCOMPARE(defaults.integerForKey(u"VTIconStatus"_s), 2);
    QVERIFY(QFile::remove(m_folder->filePath(u"settings"_s)));
    QVERIFY(defaults.synchronize());
    QCOMPARE(UserDefaults(path()).integerForKey(u"VTIconStatus"_s), 2);
}

void UserDefaultsTest::readOnlyFileIsReportedAndKept()
{
    const QByteArray before = "[General]\nVTIconStatus=1\n";
    const QString folder = m_folder->filePath(u"settings"_s);
    writeFile(before);
    QVERIFY(QFile::setPermissions(path(), QFile::ReadOwner));
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    bool isWritten = true;
    {
        const UnprivilegedScope unprivileged({ m_folder->path(), folder, path() });
        UserDefaults defaults(path());
        QCOMPARE(defaults.integerForKey(u"VTIconStatus"_s), 1);
        defaults.setInteger_forKey(2, u"VTIconStatus"_s);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be written"_s));
        isWritten = defaults.synchronize().isOk();

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be written"_s));
    }

    QVERIFY(!isWritten);
    QCOMPARE(content(path()), before);
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void UserDefaultsTest::folderInTheFilesPlaceIsSurvived()
{
    QVERIFY(QDir().mkpath(path()));
    UserDefaults defaults(path());
    defaults.registerDefaults(factoryValues());
    defaults.setInteger_forKey(1, u"VTIconStatus"_s);

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be written"_s));
    QVERIFY(!defaults.synchronize());

    QCOMPARE(defaults.integerForKey(u"VTSelectedTaskSortMethod"_s), 2);
    defaults.setArray_forKey(std::nullopt, u"VTIconStatus"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be written"_s));
}

void UserDefaultsTest::sortMethodOutsideTheMenuIsReadAsItStands()
{
    writeFile("[General]\nVTSelectedTaskSortMethod=7\n");

    UserDefaults defaults(path());
    defaults.registerDefaults(factoryValues());

    QCOMPARE(defaults.integerForKey(u"VTSelectedTaskSortMethod"_s), 7);
}

void UserDefaultsTest::identifiersOfDeletedCalendarsAreKept()
{
    writeFile("[General]\nVTUnselectedCalendarsUID=Gone, Home\n");
    {
        UserDefaults defaults(path());
        defaults.setArray_forKey(defaults.arrayForKey(u"VTUnselectedCalendarsUID"_s), u"VTUnselectedCalendarsUID"_s);
    }

    QCOMPARE(UserDefaults(path()).arrayForKey(u"VTUnselectedCalendarsUID"_s), (QStringList { u"Gone"_s, u"Home"_s }));
}

void UserDefaultsTest::clearedHotKeyIsMinusOneAfterARestart()
{
    UserDefaults(path()).setInteger_forKey(-1, u"VTHotkeyKeyCode"_s);

    UserDefaults defaults(path());
    defaults.registerDefaults(factoryValues());

    QCOMPARE(defaults.objectForKey(u"VTHotkeyKeyCode"_s), QVariant(-1LL));
}

VANTLE_TEST(UserDefaultsTest)
#include "UserDefaultsTest.moc"
