// SPDX-License-Identifier: MIT
#include "RandomDay.h"

#include <TestRegistry.h>

#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QtMessageHandler otherMessages = nullptr;

// The platform without a screen says so of every sheet that opens.
void leaveOutRaising(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message != u"This plugin does not support raise()"_s)
        otherMessages(type, context, message);
}

} // namespace

// Whatever a person does, in whatever order, and whatever others do meanwhile:
// selection, lists and store belong together.
class VTRandomCommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectionListsAndStoreStayConsistent();
};

void VTRandomCommandsTest::selectionListsAndStoreStayConsistent()
{
    constexpr quint32 firstSeed = 20261120;
    constexpr int sequences = 10000;
    constexpr int longest = 12; // commands
    qInfo("%d sequences, the first of seed %u, each of the seed after", sequences, firstSeed);

    otherMessages = qInstallMessageHandler(leaveOutRaising);
    const auto restore = qScopeGuard([] { qInstallMessageHandler(otherMessages); });
    RandomDay day;
    for (quint32 number = 0; number < sequences; ++number) {
        day.begin(firstSeed + number);
        QRandomGenerator length(firstSeed + number);
        QString problem = day.problem();
        for (int left = 1 + length.bounded(longest); left > 0 && problem.isEmpty(); --left) {
            day.step();
            problem = day.problem();
        }
        QVERIFY2(problem.isEmpty(),
            qPrintable(u"%1\nafter seed %2: %3"_s.arg(problem).arg(firstSeed + number).arg(day.story())));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    qInfo("%d commands", day.commands());
}

VANTLE_TEST(VTRandomCommandsTest)
#include "VTRandomCommandsTest.moc"
