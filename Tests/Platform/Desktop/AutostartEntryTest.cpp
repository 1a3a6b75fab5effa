// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <AutostartEntry.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class AutostartEntryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingStartsAtFirst();
    void enablingWritesAnEntryThatDesktopsAccept_data();
    void enablingWritesAnEntryThatDesktopsAccept();
    void disablingTakesTheEntryAway();
    void entrySwitchedOffElsewhereIsOff_data();
    void entrySwitchedOffElsewhereIsOff();
    void enablingAgainReplacesWhatWasSwitchedOff();
    void folderThatCannotBeMadeIsAnError();
    void somethingElseUnderThatNameIsNotRead();

private:
    QString path() const { return m_home.filePath(u"autostart/org.vantle.Vantle.desktop"_s); }
    AutostartEntry entry() const { return { path(), u"vantle"_s }; }
    void write(const QByteArray &content) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path()).path()));
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir m_home;
};

void AutostartEntryTest::nothingStartsAtFirst()
{
    QVERIFY(!entry().isEnabled());
    QVERIFY(entry().setEnabled(false).isOk());
}

void AutostartEntryTest::enablingWritesAnEntryThatDesktopsAccept_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("exec");

    QTest::newRow("on PATH") << u"vantle"_s << QByteArray("Exec=vantle\n");
    QTest::newRow("path") << u"/opt/vantle/bin/vantle"_s << QByteArray("Exec=\"/opt/vantle/bin/vantle\"\n");
    QTest::newRow("blanks") << u"/opt/a b/vantle"_s << QByteArray("Exec=\"/opt/a b/vantle\"\n");
    QTest::newRow("signs") << u"/opt/$a\"b`c%d/vantle"_s
                           << QByteArray(R"(Exec="/opt/\\$a\\"b\\`c%%d/vantle")"
                                         "\n");
    QTest::newRow("backslash") << uR"(/opt/a\b/vantle)"_s
                               << QByteArray(R"(Exec="/opt/a\\\\b/vantle")"
                                             "\n");
}

void AutostartEntryTest::enablingWritesAnEntryThatDesktopsAccept()
{
    QFETCH(const QString, program);
    QFETCH(const QByteArray, exec);
    const AutostartEntry entry(path(), program);

    QVERIFY(entry.setEnabled(true).isOk());

    QVERIFY(entry.isEnabled());
    QVERIFY2(contentOf(path()).contains(exec), contentOf(path()).constData());
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start(u"desktop-file-validate"_s, { path() });
    QVERIFY(validator.waitForFinished());
    const QByteArray findings = validator.readAll();
    QVERIFY2(validator.exitCode() == 0, findings.constData());
}

void AutostartEntryTest::disablingTakesTheEntryAway()
{
    QVERIFY(entry().setEnabled(true).isOk());

    QVERIFY(entry().setEnabled(false).isOk());

    QVERIFY(!entry().isEnabled());
    QVERIFY(!QFile::exists(path()));
}

void AutostartEntryTest::entrySwitchedOffElsewhereIsOff_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isEnabled");

    QTest::newRow("as written") << QByteArray("[Desktop Entry]\nExec=vantle\n") << true;
    QTest::newRow("hidden") << QByteArray("[Desktop Entry]\nExec=vantle\nHidden=true\n") << false;
    QTest::newRow("shown again") << QByteArray("[Desktop Entry]\nExec=vantle\nHidden=true\nHidden=false\n") << true;
    QTest::newRow("off by the desktop") << QByteArray("[Desktop Entry]\nExec=vantle\nX-GNOME-Autostart-enabled=false\n")
                                        << false;
    QTest::newRow("hidden in another group")
        << QByteArray("[Desktop Entry]\nExec=vantle\n[Desktop Action new]\nHidden=true\n") << true;
    QTest::newRow("no command") << QByteArray("[Desktop Entry]\nName=Vantle\n") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("damaged") << QByteArray("\0\xff[[[=", 7) << false;
}

void AutostartEntryTest::entrySwitchedOffElsewhereIsOff()
{
    QFETCH(const QByteArray, content);
    QFETCH(const bool, isEnabled);
    write(content);

    QCOMPARE(entry().isEnabled(), isEnabled);
}

void AutostartEntryTest::enablingAgainReplacesWhatWasSwitchedOff()
{
    write("[Desktop Entry]\nExec=vantle\nHidden=true\n");

    QVERIFY(entry().setEnabled(true).isOk());

    QVERIFY(entry().isEnabled());
}

void AutostartEntryTest::folderThatCannotBeMadeIsAnError()
{
    QFile inTheWay(m_home.filePath(u"config"_s));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    const AutostartEntry entry(m_home.filePath(u"config/autostart/a.desktop"_s), u"vantle"_s);

    const Result<void> result = entry.setEnabled(true);

    QVERIFY(!result.isOk());
    QVERIFY(result.error().message.contains(u"config/autostart"_s));
    QVERIFY(!entry.isEnabled());
}

void AutostartEntryTest::somethingElseUnderThatNameIsNotRead()
{
    const QTemporaryDir home;
    const AutostartEntry folder(home.path(), u"vantle"_s);

    QVERIFY(!folder.isEnabled());
    QVERIFY(!folder.setEnabled(false).isOk());
}

VANTLE_TEST(AutostartEntryTest)
#include "AutostartEntryTest.moc"
