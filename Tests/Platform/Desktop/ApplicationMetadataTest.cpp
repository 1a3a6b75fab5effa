// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <ApplicationMetadata.h>
#include <DesktopFacts.h>

#include <QApplication>
#include <QFile>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QTest>

using namespace Qt::StringLiterals;

class ApplicationMetadataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingIsKnownOfThisProgram();
    void versionIsTheLatestRelease();
    void summaryIsInThePersonsLanguage();
    void damagedTextGivesWhatCameBefore();
    void factsNameTheDesktop();
    void factsNameTheStyleBelowOurs();
};

void ApplicationMetadataTest::everythingIsKnownOfThisProgram()
{
    const ApplicationMetadata metadata = ApplicationMetadata::ofThisProgram();

    QCOMPARE(metadata.componentId, u"org.vantle.Vantle"_s);
    QCOMPARE(metadata.name, u"Vantle"_s);
    QCOMPARE(metadata.licence, u"MIT"_s);
    for (const QString &text : { metadata.summary, metadata.developer, metadata.version })
        QVERIFY(!text.isEmpty());
    QCOMPARE(metadata.homepage.scheme(), u"https"_s);
    QCOMPARE(metadata.issuePage.scheme(), u"https"_s);
    QVERIFY(metadata.mailAddress.contains(u'@'));
}

void ApplicationMetadataTest::versionIsTheLatestRelease()
{
    QFile file(u":/org.vantle.Vantle.metainfo.xml"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());

    const QString release = text.section(u"<release version=\""_s, 1, 1).section(u'"', 0, 0);

    QCOMPARE(ApplicationMetadata::ofThisProgram().version, release);
}

void ApplicationMetadataTest::summaryIsInThePersonsLanguage()
{
    const QByteArray metainfo = "<component><summary>A day</summary><summary xml:lang=\"de\">Ein Tag</summary>"
                                "<summary xml:lang=\"fr\">Un jour</summary></component>";

    QCOMPARE(ApplicationMetadata::read(metainfo, u"de"_s).summary, u"Ein Tag"_s);
    QCOMPARE(ApplicationMetadata::read(metainfo, u"en"_s).summary, u"A day"_s);
}

void ApplicationMetadataTest::damagedTextGivesWhatCameBefore()
{
    const ApplicationMetadata metadata
        = ApplicationMetadata::read("<component><id>a.b</id><releases><release><url type=\"homepage\">https://x</url>"
                                    "</release></releases><name>B</name><summary>C<",
            u"en"_s);

    QCOMPARE(metadata.componentId, u"a.b"_s);
    QCOMPARE(metadata.name, u"B"_s);
    QVERIFY(metadata.homepage.isEmpty());
    QVERIFY(ApplicationMetadata::read({}, u"en"_s).componentId.isEmpty());
}

void ApplicationMetadataTest::factsNameTheDesktop()
{
    const QString facts = desktopFacts();

    QVERIFY(facts.contains(u"Qt: %1\n"_s.arg(QLatin1StringView(qVersion()))));
    QVERIFY(facts.contains(u"(offscreen)"_s));
    QVERIFY2(!facts.contains(qEnvironmentVariable("HOME")), qPrintable(facts));
}

void ApplicationMetadataTest::factsNameTheStyleBelowOurs()
{
    const QString previous = QApplication::style()->name();
    QApplication::setStyle(new QProxyStyle(QStyleFactory::create(u"fusion"_s))); // owned by the application

    const QString facts = desktopFacts();
    QApplication::setStyle(previous);

    QVERIFY2(facts.contains(u"Style: fusion\n"_s), qPrintable(facts));
}

VANTLE_TEST(ApplicationMetadataTest)
#include "ApplicationMetadataTest.moc"
