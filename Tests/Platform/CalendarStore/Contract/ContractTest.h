// SPDX-License-Identifier: MIT
#pragma once

#include "StoreFixture.h"

#include <CalendarFolder.h>
#include <TestRegistry.h>

#include <QSignalSpy>
#include <QTest>

// One chapter of what every back end must do. A test class derives from it and
// is registered by VANTLE_CONTRACT: it then runs once for each fixture, named
// "Queries:Folder" and so on. Each case gets a fresh fixture.
class ContractTest : public QObject
{
    Q_OBJECT

public:
    explicit ContractTest(const NamedFixture &named)
        : m_named(named)
    {
    }

protected:
    StoreFixture &fixture() const { return *m_fixture; }
    CalCalendarStore &store() const { return m_fixture->store(); }

    // What another program does, until the store has told of it.
    void putAndWait(const QString &calendarUid, const QString &plainUid, const QByteArray &components) const;
    void takeAwayAndWait(const QString &calendarUid, const QString &plainUid) const;

    bool save(const CalEventPtr &event, CalSpan span = CalSpanAllEvents);
    bool save(const CalTaskPtr &task);
    bool remove(const CalEventPtr &event, CalSpan span = CalSpanAllEvents);
    bool remove(const CalTaskPtr &task);
    bool undo();
    // Why the last of these calls failed.
    const StoreError &refusal() const { return m_refusal; }
    // Whether it was refused for this reason, with words for the person.
    bool isRefusedAs(StoreError::Code code, const QString &item, const QString &calendar) const;

private Q_SLOTS:
    void init() { m_fixture = m_named.make(); }
    void cleanup() { m_fixture.reset(); }

private:
    const NamedFixture &m_named;
    std::unique_ptr<StoreFixture> m_fixture;
    StoreError m_refusal;
};

#define VANTLE_CONTRACT(ClassName, chapter) VANTLE_CONTRACT_WHERE(ClassName, chapter, true)
// For chapters about the texts that a back end keeps.
#define VANTLE_CONTRACT_OF_TEXTS(ClassName, chapter) VANTLE_CONTRACT_WHERE(ClassName, chapter, named.keepsTexts)

#define VANTLE_CONTRACT_WHERE(ClassName, chapter, condition)                                                           \
    [[maybe_unused]] static const bool ClassName##IsRegistered = [] {                                                  \
        for (const NamedFixture &named : storeFixtures()) {                                                            \
            if (!(condition))                                                                                          \
                continue;                                                                                              \
            const QByteArray name = QByteArray(chapter) + ':' + named.name;                                            \
            TestRegistry::add(name.constData(), [fixture = &named] { return std::make_unique<ClassName>(*fixture); }); \
        }                                                                                                              \
        return true;                                                                                                   \
    }();
