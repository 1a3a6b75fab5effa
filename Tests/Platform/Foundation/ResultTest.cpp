// SPDX-License-Identifier: MIT
#include "TestRegistry.h"

#include <Result.h>

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

Result<int> half(int number)
{
    if (number % 2 != 0)
        return Error { u"%1 is odd"_s.arg(number) };
    return number / 2;
}

Result<void> demandEven(int number)
{
    if (number % 2 != 0)
        return Error { u"%1 is odd"_s.arg(number) };
    return {};
}

} // namespace

class ResultTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void successHasItsValue();
    void failureHasItsReason();
    void successWithoutValueIsOk();
    void failureWithoutValueHasItsReason();
    void valueMayBeMovedOut();
    void valueAndReasonMayLookAlike();
};

void ResultTest::successHasItsValue()
{
    const Result<int> result = half(8);

    QVERIFY(result);
    QVERIFY(result.isOk());
    QCOMPARE(result.value(), 4);
}

void ResultTest::failureHasItsReason()
{
    const Result<int> result = half(7);

    QVERIFY(!result);
    QVERIFY(!result.isOk());
    QCOMPARE(result.error().message, u"7 is odd"_s);
}

void ResultTest::successWithoutValueIsOk()
{
    QVERIFY(demandEven(8));
}

void ResultTest::failureWithoutValueHasItsReason()
{
    const Result<void> result = demandEven(7);

    QVERIFY(!result);
    QCOMPARE(result.error().message, u"7 is odd"_s);
}

void ResultTest::valueMayBeMovedOut()
{
    Result<std::unique_ptr<int>> result(std::make_unique<int>(4));

    const std::unique_ptr<int> value = std::move(result).value();

    QCOMPARE(*value, 4);
}

void ResultTest::valueAndReasonMayLookAlike()
{
    struct Reason {
        QString text;
    };
    const Result<QString, Reason> success(u"same"_s);
    const Result<QString, Reason> failure(Reason { u"same"_s });

    QVERIFY(success);
    QVERIFY(!failure);
}

VANTLE_TEST(ResultTest)
#include "ResultTest.moc"
