// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <Localization.h>

#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace
{

// Knows one text, in the one context that all texts share.
class GermanToday final : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(
        const char *context, const char *sourceText, const char * /*disambiguation*/, int /*number*/) const override
    {
        const bool isKnown = qstrcmp(context, "Vantle") == 0 && qstrcmp(sourceText, "Today") == 0;
        return isKnown ? u"Heute"_s : QString();
    }
};

} // namespace

class LocalizationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsEnglishWithoutATranslation();
    void textIsTranslated();
    void textThatTheTranslationLacksIsEnglish();
    void charactersBeyondAsciiStay();
};

void LocalizationTest::textIsEnglishWithoutATranslation()
{
    QCOMPARE(localizedString("Today"), u"Today"_s);
}

void LocalizationTest::textIsTranslated()
{
    GermanToday translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));

    QCOMPARE(localizedString("Today"), u"Heute"_s);
}

void LocalizationTest::textThatTheTranslationLacksIsEnglish()
{
    GermanToday translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));

    QCOMPARE(localizedString("Tomorrow"), u"Tomorrow"_s);
}

void LocalizationTest::charactersBeyondAsciiStay()
{
    QCOMPARE(localizedString("No events…"), u"No events…"_s);
}

VANTLE_TEST(LocalizationTest)
#include "LocalizationTest.moc"
