// SPDX-License-Identifier: MIT
#include <AccountSettings.h>
#include <TestRegistry.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

// A search path with nothing in it but what the test puts there.
class SearchPath final
{
public:
    SearchPath() { qputenv("PATH", m_folder.path().toUtf8()); }
    ~SearchPath() { qputenv("PATH", m_before); }
    SearchPath(const SearchPath &) = delete;
    SearchPath &operator=(const SearchPath &) = delete;

    // A program that writes down how it was called.
    void install(const QString &name) const
    {
        QFile program(m_folder.filePath(name));
        QVERIFY(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\necho \"$0 $*\" > '" + record().toUtf8() + ".new'\n/bin/mv '" + record().toUtf8()
            + ".new' '" + record().toUtf8() + "'\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString record() const { return m_folder.filePath(u"started"_s); }
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    const QByteArray m_before = qgetenv("PATH");
    QTemporaryDir m_folder;
};

QStringList namesFor(const QString &desktop)
{
    QStringList names;
    for (const AccountSettings::Program &program : AccountSettings::programsFor(desktop))
        names.append(program.name);
    return names;
}

} // namespace

class AccountSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void desktopsOwnSettingsComeFirst()
    {
        QCOMPARE(namesFor(u"ubuntu:GNOME"_s).first(), u"gnome-control-center"_s);
        QCOMPARE(namesFor(u"GNOME-Flashback:GNOME"_s).first(), u"gnome-control-center"_s);
        QCOMPARE(namesFor(u"XFCE"_s).first(), u"evolution"_s);
        QCOMPARE(namesFor(QString()).first(), u"evolution"_s);
    }

    void firstInstalledProgramIsStarted()
    {
        const SearchPath path;
        path.install(u"gnome-calendar"_s);
        path.install(u"evolution"_s);

        QVERIFY(AccountSettings::open(u"GNOME"_s));

        QTRY_VERIFY(QFile::exists(path.record()));
        QFile record(path.record());
        QVERIFY(record.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(record.readAll()), path.path(u"evolution"_s) + u" -c calendar\n"_s);
    }

    void desktopWithNoneOfThemIsToldSo()
    {
        const SearchPath path;
        QVERIFY(!AccountSettings::open(u"GNOME"_s));
    }
};

VANTLE_TEST(AccountSettingsTest)

#include "AccountSettingsTest.moc"
