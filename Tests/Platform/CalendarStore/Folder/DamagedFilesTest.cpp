// SPDX-License-Identifier: MIT
#include "CalendarFolder.h"
#include "CorpusFiles.h"
#include "TestRegistry.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

QStringList strings(const QJsonValue &list)
{
    QStringList texts;
    for (const QJsonValue each : list.toArray())
        texts << each.toString();
    texts.sort();
    return texts;
}

} // namespace

// Small files, one for each kind of damage and oddity, with what is read from them beside each.
class DamagedFilesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCaseIsReadAsExpected_data();
    void everyCaseIsReadAsExpected();
};

void DamagedFilesTest::everyCaseIsReadAsExpected_data()
{
    QTest::addColumn<QString>("path");

    for (const QString &path : calendarFilesBelow(QStringLiteral(VANTLE_OWN_CORPUS)))
        QTest::newRow(qPrintable(QFileInfo(path).completeBaseName())) << path;
}

void DamagedFilesTest::everyCaseIsReadAsExpected()
{
    QFETCH(const QString, path);
    const QByteArray bytes = bytesOf(path);
    QString expectation = path;
    expectation.replace(u".ics"_s, u".json"_s);
    const QJsonObject expected = QJsonDocument::fromJson(bytesOf(expectation)).object();
    QVERIFY2(!expected.isEmpty(), qPrintable(expectation));
    const CalendarFolder folder;
    folder.write(u"c/case.ics"_s, bytes);

    const auto store = folder.openWithoutWatching();
    const QDate asked = QDate::fromString(expected[u"date"_s].toString(), Qt::ISODate);

    QStringList events;
    for (const CalEventPtr &event : eventsOn(*store, asked)) {
        const QString format = event->isAllDay() ? u"yyyy-MM-dd"_s : u"yyyy-MM-ddTHH:mm:ss"_s;
        events << u"%1 %2 %3"_s.arg(event->startDate().toString(format), event->endDate().toString(format),
            event->title().value_or(u"(none)"_s));
    }
    events.sort();
    QCOMPARE(events, strings(expected[u"events"_s]));
    QCOMPARE(sortedTitles(allTasks(*store)), strings(expected[u"todos"_s]));
    QCOMPARE(folder.read(u"c/case.ics"_s), bytes);
}

VANTLE_TEST(DamagedFilesTest)
#include "DamagedFilesTest.moc"
