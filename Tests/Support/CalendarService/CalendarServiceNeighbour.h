// SPDX-License-Identifier: MIT
#pragma once

#include "AnsweringProgram.h"

#include <CalTypes.h>

#include <QByteArray>
#include <QString>

class CalendarServiceSession;

// Another program on the same calendar service, a process of its own: what
// Evolution or a telephone's account is to a person's desktop. See Neighbour.cpp
// for what it understands.
//
// A request that the service refuses ends the test program with its message, but
// for those that answer with what happened. Every call waits for its end.
class CalendarServiceNeighbour final
{
public:
    // Starts the program on that machine, and the service with it.
    explicit CalendarServiceNeighbour(const CalendarServiceSession &session);

    // Sources: each holds items of one kind.
    void addCalendar(const QString &source, CalItemKind kind, const QString &name,
        const QString &colour = QStringLiteral("#3366cc"));
    // One that only this program can write to: the service says of it that it is read-only.
    void addReadOnlyCalendar(const QString &source, CalItemKind kind, const QString &name, const QString &file);
    void setWritable(const QString &source, bool isWritable);
    void addCalDav(
        const QString &source, CalItemKind kind, const QString &name, const QString &url, const QString &user);
    void removeSource(const QString &source);
    void rename(const QString &source, const QString &name);
    void recolour(const QString &source, const QString &colour);
    void setEnabled(const QString &source, bool isEnabled);
    void setDefault(const QString &source);

    // Stores the components, which have one uid together (a master and its overrides), in the place of
    // whatever the source holds under that uid.
    void put(const QString &source, const QByteArray &components);
    // The text of all components of a uid as the service has them; empty when there are none.
    QByteArray text(const QString &source, const QString &uid);
    // "uid title" for each stored component, in the order of the service.
    QStringList list(const QString &source);
    void remove(const QString &source, const QString &uid);

    // Accounts.
    void authenticate(const QString &source, const QString &user, const QString &password);
    void awaitConnection(const QString &source);
    void refresh(const QString &source);

    // For requests that may be refused.
    AnsweringProgram::Answer request(const QStringList &fields) { return m_program.request(fields); }

private:
    AnsweringProgram m_program;
};
