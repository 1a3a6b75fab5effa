// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <AssertionHandler.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

class RecordingHandler final : public AssertionHandler
{
public:
    void handleFailure(const QString &message, const QString &sourceName, int line) override
    {
        failures.append(u"%1 %2 %3"_s.arg(message, sourceName, QString::number(line)));
    }

    QStringList failures;
};

} // namespace

class AssertionHandlerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultHandlerThrowsAllThreeParts();
    void whatTellsAllThreePartsInUtf8();
    void handlerOfAScopeTakesItsPlace();
    void scopesNest();
};

void AssertionHandlerTest::defaultHandlerThrowsAllThreeParts()
{
    try {
        AssertionHandler::current().handleFailure(u"Unknown event kind"_s, u"Views/Row"_s, 42);
        QFAIL("The handler returned");
    } catch (const AssertionFailure &failure) {
        QCOMPARE(failure.message(), u"Unknown event kind"_s);
        QCOMPARE(failure.sourceName(), u"Views/Row"_s);
        QCOMPARE(failure.line(), 42);
    }
}

void AssertionHandlerTest::whatTellsAllThreePartsInUtf8()
{
    const AssertionFailure failure(u"“%1” missing"_s, u"Views/Row"_s, 42);

    QCOMPARE(QString::fromUtf8(failure.what()), u"“%1” missing (Views/Row:42)"_s);
}

void AssertionHandlerTest::handlerOfAScopeTakesItsPlace()
{
    RecordingHandler handler;
    {
        const ScopedAssertionHandler scope(handler);
        AssertionHandler::current().handleFailure(u"message"_s, u"source"_s, 1);
    }

    QCOMPARE(handler.failures, QStringList(u"message source 1"_s));
    QVERIFY_THROWS_EXCEPTION(AssertionFailure, AssertionHandler::current().handleFailure(u"message"_s, u"source"_s, 2));
}

void AssertionHandlerTest::scopesNest()
{
    RecordingHandler outer;
    RecordingHandler inner;
    const ScopedAssertionHandler outerScope(outer);
    {
        const ScopedAssertionHandler innerScope(inner);
    }

    AssertionHandler::current().handleFailure(u"message"_s, u"source"_s, 1);

    QCOMPARE(outer.failures.size(), 1);
    QVERIFY(inner.failures.isEmpty());
}

VANTLE_TEST(AssertionHandlerTest)
#include "AssertionHandlerTest.moc"
