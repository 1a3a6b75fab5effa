// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <QTest>
#include <QUrl+VTHelper.h>

using namespace Qt::StringLiterals;

class QUrlVTHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textBecomesAUrl_data();
    void textBecomesAUrl();
    void noTextIsNoUrl();
    void textThatIsNoUrlGivesNothing_data();
    void textThatIsNoUrlGivesNothing();
};

void QUrlVTHelperTest::textBecomesAUrl_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url");

    QTest::newRow("https") << u"https://example.org/a?b#c"_s << u"https://example.org/a?b#c"_s;
    QTest::newRow("mail address") << u"mailto:ann@example.org"_s << u"mailto:ann@example.org"_s;
    QTest::newRow("file") << u"file:///etc/hosts"_s << u"file:///etc/hosts"_s;
    QTest::newRow("unknown scheme") << u"x-app+1.0:open"_s << u"x-app+1.0:open"_s;
    QTest::newRow("host and path") << u"host/x"_s << u"http://host/x"_s;
    QTest::newRow("host") << u"www.example.org"_s << u"http://www.example.org"_s;
    QTest::newRow("query and fragment") << u"example.org/a?b=c#d"_s << u"http://example.org/a?b=c#d"_s;
    QTest::newRow("nothing is escaped anew") << u"example.org/a%20b%2Fc"_s << u"http://example.org/a%20b%2Fc"_s;
    QTest::newRow("address with port") << u"192.168.1.1:8080/x"_s << u"http://192.168.1.1:8080/x"_s;
    QTest::newRow("colon in the path") << u"host/a:b"_s << u"http://host/a:b"_s;
    QTest::newRow("a word and a colon is a scheme") << u"host:8080"_s << u"host:8080"_s;
}

void QUrlVTHelperTest::textBecomesAUrl()
{
    QFETCH(const QString, text);
    QFETCH(const QString, url);

    const std::optional<QUrl> result = URLWithDefaultHTTPScheme(text);

    QVERIFY(result);
    QCOMPARE(QString::fromLatin1(result->toEncoded()), url);
}

void QUrlVTHelperTest::noTextIsNoUrl()
{
    QVERIFY(!URLWithDefaultHTTPScheme(std::nullopt));
    QVERIFY(!URLWithDefaultHTTPScheme(u""_s));
}

void QUrlVTHelperTest::textThatIsNoUrlGivesNothing_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("words") << u"ask Ann about it"_s;
    QTest::newRow("one blank") << u" "_s;
    QTest::newRow("blank in the path") << u"host/a b"_s;
    QTest::newRow("blank after a scheme") << u"https://host/a b"_s;
    QTest::newRow("broken escape") << u"host/%zz"_s;
    QTest::newRow("port that is no number") << u"1host.example:port/x"_s;
}

void QUrlVTHelperTest::textThatIsNoUrlGivesNothing()
{
    QFETCH(const QString, text);

    QVERIFY(!URLWithDefaultHTTPScheme(text));
}

VANTLE_TEST(QUrlVTHelperTest)
#include "QUrlVTHelperTest.moc"
