// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <PropertyList.h>

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QByteArray propertyList(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n"
        + body + "\n</plist>\n";
}

} // namespace

class PropertyListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEachKindOfValue_data();
    void readsEachKindOfValue();
    void readsADictionaryFromAFile();
    void damagedTextIsAnError_data();
    void damagedTextIsAnError();
    void missingFileIsAnErrorThatNamesIt();
    void listWithoutDictionaryIsAnError();
};

void PropertyListTest::readsEachKindOfValue_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("true") << QByteArray("<true/>") << QVariant(true);
    QTest::newRow("false") << QByteArray("<false/>") << QVariant(false);
    QTest::newRow("integer") << QByteArray("<integer>17</integer>") << QVariant(17LL);
    QTest::newRow("negative integer") << QByteArray("<integer>-1</integer>") << QVariant(-1LL);
    QTest::newRow("real") << QByteArray("<real>0.5</real>") << QVariant(0.5);
    QTest::newRow("text") << QByteArray("<string>Büro &amp; Haus</string>") << QVariant(u"Büro & Haus"_s);
    QTest::newRow("empty text") << QByteArray("<string></string>") << QVariant(QString());
    QTest::newRow("bytes") << QByteArray("<data>AAECAw==</data>") << QVariant(QByteArray("\0\1\2\3", 4));
    QTest::newRow("date") << QByteArray("<date>2026-03-11T09:00:00Z</date>")
                          << QVariant(QDateTime(QDate(2026, 3, 11), QTime(9, 0), Qt::UTC));
    QTest::newRow("empty array") << QByteArray("<array/>") << QVariant(QVariantList());
    QTest::newRow("array") << QByteArray("<array><string>a</string><integer>2</integer></array>")
                           << QVariant(QVariantList { u"a"_s, 2LL });
    QTest::newRow("empty dictionary") << QByteArray("<dict/>") << QVariant(QVariantMap());
    QTest::newRow("nested dictionary") << QByteArray("<dict><key>a</key><dict><key>b</key><true/></dict></dict>")
                                       << QVariant(QVariantMap { { u"a"_s, QVariantMap { { u"b"_s, true } } } });
}

void PropertyListTest::readsEachKindOfValue()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QVariant, value);

    const Result<QVariant> result = propertyListFromXml(propertyList(body));

    QVERIFY(result);
    QCOMPARE(result.value(), value);
    QCOMPARE(result.value().typeId(), value.typeId());
}

void PropertyListTest::readsADictionaryFromAFile()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"defaults.plist"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(propertyList("<dict><key>VTIconStatus</key><integer>1</integer></dict>"));
    file.close();

    const Result<QVariantMap> result = readPropertyListDictionary(file.fileName());

    QVERIFY(result);
    QCOMPARE(result.value(), (QVariantMap { { u"VTIconStatus"_s, 1LL } }));
}

void PropertyListTest::damagedTextIsAnError_data()
{
    QTest::addColumn<QByteArray>("text");

    const QByteArray whole = propertyList("<dict><key>a</key><string>value</string></dict>");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no markup") << QByteArray("VTIconStatus = 1");
    QTest::newRow("cut in the text") << whole.left(whole.indexOf("value") + 2);
    QTest::newRow("cut in a tag") << whole.left(whole.indexOf("<key>") + 3);
    QTest::newRow("cut in the head") << whole.left(20);
    QTest::newRow("list without content") << propertyList("");
    QTest::newRow("a NUL in a text") << propertyList(QByteArray("<string>a\0b</string>", 20));
    QTest::newRow("a NUL in a key") << propertyList(QByteArray("<dict><key>\0</key><true/></dict>", 33));
}

void PropertyListTest::damagedTextIsAnError()
{
    QFETCH(const QByteArray, text);

    const Result<QVariant> result = propertyListFromXml(text);

    QVERIFY(!result);
    QVERIFY(!result.error().message.isEmpty());
}

void PropertyListTest::missingFileIsAnErrorThatNamesIt()
{
    const Result<QVariantMap> result = readPropertyListDictionary(u":/no/such/defaults.plist"_s);

    QVERIFY(!result);
    QVERIFY(result.error().message.contains(u":/no/such/defaults.plist"_s));
}

void PropertyListTest::listWithoutDictionaryIsAnError()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"array.plist"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(propertyList("<array/>"));
    file.close();

    QVERIFY(!readPropertyListDictionary(file.fileName()));
}

VANTLE_TEST(PropertyListTest)
#include "PropertyListTest.moc"
