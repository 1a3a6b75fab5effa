// SPDX-License-Identifier: MIT
#include <SourceDescription.h>
#include <TestRegistry.h>

#include <QTest>

using namespace Qt::StringLiterals;
using Service::CalendarDescription;
using Service::pairedCalendars;
using Service::SourceDescription;

namespace
{

SourceDescription source(const QString &uid, bool holdsEvents, const QString &name, const QString &account = u"here"_s)
{
    SourceDescription description;
    description.uid = uid;
    description.holdsEvents = holdsEvents;
    description.name = name;
    description.account = account;
    return description;
}

SourceDescription events(const QString &uid, const QString &name, const QString &account = u"here"_s)
{
    return source(uid, true, name, account);
}

SourceDescription tasks(const QString &uid, const QString &name, const QString &account = u"here"_s)
{
    return source(uid, false, name, account);
}

SourceDescription asDefault(SourceDescription description)
{
    description.isDefault = true;
    return description;
}

SourceDescription asBuiltIn(SourceDescription description)
{
    description.isBuiltIn = true;
    return description;
}

// "uid of events+uid of to-dos" for each calendar, in order.
QStringList paired(const std::vector<SourceDescription> &sources)
{
    QStringList calendars;
    for (const CalendarDescription &each : pairedCalendars(sources))
        calendars << each.events + u'+' + each.tasks;
    return calendars;
}

} // namespace

class SourceDescriptionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sourcesOfOneNameAndAccountAreOneCalendar()
    {
        QCOMPARE(paired({ events(u"e"_s, u"Work"_s), tasks(u"t"_s, u"Work"_s) }), QStringList { u"e+t"_s });
    }

    void sourcesOfOtherAccountsStayApart()
    {
        QCOMPARE(paired({ events(u"e"_s, u"Work"_s), tasks(u"t"_s, u"Work"_s, u"there"_s) }),
            (QStringList { u"e+"_s, u"+t"_s }));
    }

    void sourcesOfOtherRemotePathsStayApart()
    {
        SourceDescription remote = tasks(u"t"_s, u"Work"_s);
        remote.remotePath = u"/alice/tasks/"_s;

        QCOMPARE(paired({ events(u"e"_s, u"Work"_s), remote }), (QStringList { u"e+"_s, u"+t"_s }));
    }

    void eachSourceIsInOneCalendar()
    {
        QCOMPARE(paired({ events(u"a"_s, u"Work"_s), events(u"b"_s, u"Work"_s), tasks(u"t"_s, u"Work"_s) }),
            (QStringList { u"a+t"_s, u"b+"_s }));
    }

    void bothBuiltInSourcesAreOneCalendar()
    {
        QCOMPARE(paired({ asBuiltIn(events(u"e"_s, u"Personal"_s)), asBuiltIn(tasks(u"t"_s, u"Persönlich"_s)) }),
            QStringList { u"e+t"_s });
    }

    void bothDefaultsAreTheFirstCalendarAcrossAccounts()
    {
        const std::vector<SourceDescription> sources { asBuiltIn(events(u"e"_s, u"Personal"_s)),
            asBuiltIn(tasks(u"t"_s, u"Personal"_s)), asDefault(events(u"work"_s, u"Work"_s, u"office"_s)),
            tasks(u"work to-dos"_s, u"Work"_s, u"office"_s), asDefault(tasks(u"list"_s, u"List"_s, u"club"_s)) };

        QCOMPARE(paired(sources), (QStringList { u"work+list"_s, u"e+t"_s, u"+work to-dos"_s }));
        QVERIFY(pairedCalendars(sources).front().isDefault);
        QVERIFY(!pairedCalendars(sources).at(1).isDefault);
    }

    void othersComeByTheirOrderThenByName()
    {
        SourceDescription last = events(u"a"_s, u"A"_s);
        last.order = 2;

        QCOMPARE(paired({ last, events(u"c"_s, u"c"_s), events(u"b"_s, u"B"_s) }),
            (QStringList { u"b+"_s, u"c+"_s, u"a+"_s }));
    }

    void aCalendarLooksLikeItsSourceOfEvents()
    {
        SourceDescription work = events(u"e"_s, u"Work"_s);
        work.color = QColor(1, 2, 3);
        SourceDescription list = tasks(u"t"_s, u"Work"_s);
        list.color = QColor(4, 5, 6);

        const CalendarDescription calendar = pairedCalendars({ list, work }).front();
        QCOMPARE(calendar.uid(), u"e"_s);
        QCOMPARE(calendar.title, u"Work"_s);
        QCOMPARE(calendar.color, QColor(1, 2, 3));
        QCOMPARE(pairedCalendars({ list }).front().uid(), u"t"_s);
    }
};

VANTLE_TEST(SourceDescriptionTest)

#include "SourceDescriptionTest.moc"
