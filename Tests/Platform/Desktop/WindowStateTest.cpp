// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <WindowState.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class WindowStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void liesUnderTheStateHome();
    void whatIsWrittenIsReadAgain();
    void missingFileGivesFirstTimeValues();
    void damagedFileGivesFirstTimeValues_data();
    void damagedFileGivesFirstTimeValues();
    void fifoInItsPlaceIsNotWaitedFor();
    void unwritableFolderIsReported();

private:
    QString path() const { return m_folder.filePath(u"vantle/window.json"_s); }
    void writeFile(const QByteArray &content) const;

    QTemporaryDir m_folder;
};

void WindowStateTest::writeFile(const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(m_folder.filePath(u"vantle"_s)));
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

void WindowStateTest::liesUnderTheStateHome()
{
    QCOMPARE(WindowStateFile::defaultPath(), qEnvironmentVariable("XDG_STATE_HOME") + u"/vantle/window.json"_s);
}

void WindowStateTest::whatIsWrittenIsReadAgain()
{
    const WindowStateFile file(path());
    for (const std::optional<WindowState::Pane> collapsed : { std::optional<WindowState::Pane>(),
             std::optional(WindowState::Pane::Upper), std::optional(WindowState::Pane::Lower) }) {
        const WindowState state { QRect(-20, 40, 340, 600), 0, collapsed, false };

        QVERIFY(file.write(state).isOk());

        QVERIFY(file.read() == state);
    }
}

void WindowStateTest::missingFileGivesFirstTimeValues()
{
    QVERIFY(WindowStateFile(m_folder.filePath(u"nowhere/window.json"_s)).read() == WindowState());
}

void WindowStateTest::damagedFileGivesFirstTimeValues_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut") << QByteArray(R"({"frame":{"x":1,"y":)");
    QTest::newRow("not an object") << QByteArray("[1, 2, 3]");
    QTest::newRow("wrong types") << QByteArray(
        R"({"frame":"big","dividerPosition":[],"isDateBarVisible":"no","collapsedPane":1})");
    QTest::newRow("unknown pane") << QByteArray(R"({"collapsedPane":"middle"})");
    QTest::newRow("frame without size") << QByteArray(R"({"frame":{"x":1,"y":2}})");
    QTest::newRow("numbers beyond any screen")
        << QByteArray(R"({"frame":{"x":1e300,"y":2,"width":1e9,"height":-5},"dividerPosition":-1})");
    QTest::newRow("binary") << QByteArray("\0\xff\xfe{}", 5);
    QTest::newRow("far too large") << QByteArray(1 << 20, ' ').append("{\"isDateBarVisible\":false}");
}

void WindowStateTest::damagedFileGivesFirstTimeValues()
{
    QFETCH(const QByteArray, content);
    writeFile(content);

    QVERIFY(WindowStateFile(path()).read() == WindowState());
}

void WindowStateTest::fifoInItsPlaceIsNotWaitedFor()
{
    const QString fifo = m_folder.filePath(u"fifo"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);

    QVERIFY(WindowStateFile(fifo).read() == WindowState());
}

void WindowStateTest::unwritableFolderIsReported()
{
    const Result<void> result = WindowStateFile(u"/proc/vantle/window.json"_s).write({});

    QVERIFY(!result.isOk());
    QVERIFY(!result.error().message.isEmpty());
}

VANTLE_TEST(WindowStateTest)
#include "WindowStateTest.moc"
