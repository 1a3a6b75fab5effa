// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <AlertSounds.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

bool put(const QTemporaryDir &folder, const QString &path, const QByteArray &content = {})
{
    QFile file(folder.filePath(path));
    return QDir().mkpath(folder.filePath(path.section(u'/', 0, -2))) && file.open(QIODevice::WriteOnly)
        && file.write(content) == content.size();
}

} // namespace

class AlertSoundsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void soundsOfAThemeAndOfThoseItInheritsAreNamedOnce();
    void themesThatInheritEachOtherEnd();
    void nothingOutsideOfTheFoldersIsRead();
    void withoutThemesThereAreNone();
};

void AlertSoundsTest::soundsOfAThemeAndOfThoseItInheritsAreNamedOnce()
{
    const QTemporaryDir folder;
    QVERIFY(put(folder, u"calm/index.theme"_s, "[Sound Theme]\nInherits=loud\nDirectories=stereo\n"));
    QVERIFY(put(folder, u"calm/stereo/bell.oga"_s));
    QVERIFY(put(folder, u"calm/stereo/readme.txt"_s));
    QVERIFY(put(folder, u"loud/index.theme"_s, "[Sound Theme]\nDirectories=stereo,5.1\n"));
    QVERIFY(put(folder, u"loud/5.1/horn.low.wav"_s));
    QVERIFY(put(folder, u"freedesktop/index.theme"_s, "[Sound Theme]\nDirectories=stereo\n"));
    QVERIFY(put(folder, u"freedesktop/stereo/bell.oga"_s));
    QVERIFY(put(folder, u"freedesktop/stereo/complete.ogg"_s));

    const SoundThemeSounds sounds({ folder.path() }, u"calm"_s);

    QCOMPARE(sounds.names(), (QStringList { u"bell"_s, u"complete"_s, u"horn.low"_s }));
}

void AlertSoundsTest::themesThatInheritEachOtherEnd()
{
    const QTemporaryDir folder;
    QVERIFY(put(folder, u"a/index.theme"_s, "[Sound Theme]\nInherits=b\nDirectories=stereo\n"));
    QVERIFY(put(folder, u"b/index.theme"_s, "[Sound Theme]\nInherits=a\nDirectories=stereo\n"));
    QVERIFY(put(folder, u"b/stereo/bell.oga"_s));

    QCOMPARE(SoundThemeSounds({ folder.path() }, u"a"_s).names(), QStringList { u"bell"_s });
}

void AlertSoundsTest::nothingOutsideOfTheFoldersIsRead()
{
    const QTemporaryDir folder;
    QVERIFY(put(folder, u"outside/index.theme"_s, "[Sound Theme]\nDirectories=stereo\n"));
    QVERIFY(put(folder, u"outside/stereo/bell.oga"_s));
    QVERIFY(QDir().mkpath(folder.filePath(u"sounds"_s)));

    QVERIFY(SoundThemeSounds({ folder.filePath(u"sounds"_s) }, u"../outside"_s).names().isEmpty());
}

void AlertSoundsTest::withoutThemesThereAreNone()
{
    const QTemporaryDir folder;

    QVERIFY(SoundThemeSounds({ folder.path() }, u"calm"_s).names().isEmpty());
    QVERIFY(SoundThemeSounds({}, QString()).names().isEmpty());
}

VANTLE_TEST(AlertSoundsTest)
#include "AlertSoundsTest.moc"
