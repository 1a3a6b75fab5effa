// SPDX-License-Identifier: MIT
#pragma once

#include "ComponentTexts.h"
#include "SourceClient.h"

#include <Result.h>

#include <QByteArray>
#include <QString>

#include <chrono>

namespace Service
{

// Why the service did not do what it was asked for.
struct ServiceFault {
    enum class Kind {
        NotFound, // it holds no such item
        Taken, // it holds one already
        Changed, // another machine has changed it on the server
        ReadOnly, // the calendar cannot be changed
        Refused, // it cannot store such an item
        NoAnswer, // it did not answer in time; what it was asked for may still happen
        Lost, // it is not there
        Failed, // whatever else
    };

    Kind kind = Kind::Failed;
    QString reason; // the service's words
    bool mayBeHalfDone = false; // of several calls, some were made and could not be taken back

    // Whether what was asked for may be done nevertheless, also later.
    bool mayHappen() const { return kind == Kind::NoAnswer || kind == Kind::Lost; }
};

// Reads and writes what the service holds under one uid, waiting for the answer, but
// never longer than a deadline. Whether anybody answers at all is asked first and
// briefly, so that nothing is sent to a service that hangs. Nobody is mailed, whatever is written.
class StoredObjects final
{
public:
    // Stays usable when the source is closed meanwhile: every call says so.
    explicit StoredObjects(SourceClient &source);

    Result<QList<ComponentText>, ServiceFault> read(const QString &uid) const;
    // Makes what the service holds under the uid, known to be `before`, into `after`. Both are texts of whole
    // calendars; an empty one stands for nothing. Answers with what it holds then.
    //
    // A series is written in several calls. After a fault between them, what was written before is written back.
    Result<QList<ComponentText>, ServiceFault> write(
        const QString &uid, const QByteArray &before, const QByteArray &after) const;

    static bool takesSeveralCalls(const QByteArray &before, const QByteArray &after);

    static constexpr std::chrono::milliseconds limitOfQuestion { 1000 };
    static constexpr std::chrono::milliseconds limitOfReading { 5000 };
    static constexpr std::chrono::milliseconds limitOfWriting { 10000 };

private:
    Result<void, ServiceFault> ask() const;
    Result<void, ServiceFault> change(
        const QString &uid, const CalendarParts &before, const CalendarParts &after) const;
    bool restore(const QString &uid, const CalendarParts &before) const;
    Result<void, ServiceFault> tellZones(const CalendarParts &parts, GCancellable *cancellable) const;

    SourceClient &m_source;
};

} // namespace Service
