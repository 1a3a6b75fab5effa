// SPDX-License-Identifier: MIT
#pragma once

#include "MainWindowFixture.h"

#include <QMap>
#include <QRandomGenerator>
#include <QStringList>

#include <optional>

// A main window and its store under random commands, held against a reckoning of
// its own: what is stored, what the lists show of it, what is selected and what
// can be taken back.
//
// The lists may be older than the store, as they are between a change and its
// notification: commands then meet items that were changed or are gone. Notifications
// arrive when the sequence says so, so that a seed always means the same.
class RandomDay final
{
public:
    RandomDay();

    // Starts from a few new items, on a day of its own choice, with a random sequence of its own.
    void begin(quint32 seed);
    // One random command or change.
    void step();
    // What is not as reckoned; empty when all is.
    QString problem() const;
    // What was done since begin(), in words.
    QString story() const { return m_story.join(u", "); }
    int commands() const { return m_commands; }

private:
    struct Item {
        QString uid;
        QString plainUid; // one for all occurrences of a series
        QString calendar;
        QString title;
        QDateTime start; // of an event
        bool isEvent = true;
        bool isSeries = false;
        bool isDone = false;
        int version = 0;
    };

    bool chance(int percent) { return m_random.bounded(100) < percent; }
    QDate randomDay();
    QString newTitle();
    QString randomCalendar();
    void tell(const QString &what) { m_story.append(what); }

    // Changes of others.
    void addEvent();
    void addSeries();
    void addTask();
    void changeAtOthers(const QString &plainUid);
    void removeAtOthers(const QString &plainUid);
    void changeSomething();

    // Commands.
    void select();
    void move();
    void tick();
    void remove();
    void undo();
    void edit();
    void makeNew();
    void showAnotherDay();
    void hideOrShowACalendar();
    void sortOtherwise();

    void editOpenSheet(Item &item, bool isNew);
    void store(Item item);
    bool isCurrent(const Item &shown) const;
    Item *shownItem(const QString &uid);
    int selectedPlace() const;
    QStringList column() const;
    void bumpSeries(const Item &edited, qint64 shift);
    static QDate mondayOf(QDate day) { return day.addDays(1 - day.dayOfWeek()); }
    void notify();
    void refetch();
    void sortShownTasks();

    static inline const QString home = QStringLiteral("Home");
    static inline const QString work = QStringLiteral("Work");
    static inline const QDate today { 2026, 11, 20 }; // a Friday

    MainWindowFixture m_fixture;
    VTMainWindowController &m_controller;
    QRandomGenerator m_random;
    QStringList m_story;
    int m_commands = 0;
    int m_lastNumber = 0;

    QMap<QString, Item> m_stored; // by uid
    QList<Item> m_events; // as shown
    QList<Item> m_tasks;
    std::optional<QString> m_selected;
    QList<Item> m_removed; // what can be taken back
    QDate m_day;
    bool m_showsWork = true;
    int m_sortMethod = 0;
    int m_beeps = 0;
    int m_alerts = 0;
    QString m_trouble; // found in the middle of a step
};
