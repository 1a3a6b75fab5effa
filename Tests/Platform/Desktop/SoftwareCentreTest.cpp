// SPDX-License-Identifier: MIT
#include "InstalledPrograms.h"
#include "TestRegistry.h"

#include <SoftwareCentre.h>

#include <QTest>

using namespace Qt::StringLiterals;

class SoftwareCentreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereMayBeNone();
    void centreShowsThePageOfTheProgram();
};

void SoftwareCentreTest::thereMayBeNone()
{
    InstalledPrograms programs;
    programs.addEntry(u"gone.desktop"_s, u"program-that-is-gone"_s, { u"x-scheme-handler/appstream"_s });
    const SoftwareCentre centre(programs.entries());

    centre.showComponent(u"org.vantle.Vantle"_s);

    QVERIFY(!centre.isAvailable());
    QVERIFY(programs.calls().isEmpty());
}

void SoftwareCentreTest::centreShowsThePageOfTheProgram()
{
    InstalledPrograms programs;
    programs.install(u"centre.desktop"_s, u"software-centre"_s, { u"x-scheme-handler/appstream"_s });
    const SoftwareCentre centre(programs.entries());
    QVERIFY(centre.isAvailable());

    centre.showComponent(u"org.vantle.Vantle"_s);

    QTRY_COMPARE(programs.calls(), QStringList { u"software-centre appstream://org.vantle.Vantle"_s });
}

VANTLE_TEST(SoftwareCentreTest)
#include "SoftwareCentreTest.moc"
