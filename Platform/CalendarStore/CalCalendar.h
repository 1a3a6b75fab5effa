// SPDX-License-Identifier: MIT
#pragma once

#include "CalTypes.h"

#include <KeyValueObject.h>

#include <QColor>
#include <QObject>

// One calendar of the store, as it was when the store was asked for it.
//
// A value that never changes: after a change of the store's calendars, ask the
// store again. Two records with the same uid are equal.
class CalCalendar final : public KeyValueObject
{
    Q_GADGET
    Q_PROPERTY(QString uid READ uid)
    Q_PROPERTY(QString title READ title)
    Q_PROPERTY(QColor color READ color)
    Q_PROPERTY(bool isEditable READ isEditable)

public:
    // Whether its account can be reached. Its items are shown as they were last known in any case.
    enum class Availability {
        Available,
        CredentialsRequired, // the account's server wants a password, which the desktop's account settings ask for
        Offline, // the account's server is not reached; changes go there later
    };

    struct Values {
        QString uid; // unique in the store; a folder's name in the embedded store
        QString title;
        QColor color;
        bool isEditable = true; // whether its items can be changed
        bool holdsEvents = true;
        bool holdsTasks = true;
        Availability availability = Availability::Available;
    };

    explicit CalCalendar(Values values);

    const QString &uid() const { return m_values.uid; }
    const QString &title() const { return m_values.title; }
    const QColor &color() const { return m_values.color; }
    bool isEditable() const { return m_values.isEditable; }
    bool holds(CalItemKind kind) const;
    Availability availability() const { return m_values.availability; }

    QVariant valueForKey(const QString &key) const override;
    bool isEqual(const KeyValueObject &other) const override;

private:
    Values m_values;
};
