// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>
#include <memory>

// What goes over the bus between this process and the calendar service, seen at the very moment: a call before it is
// sent, an answer or a signal before anybody here is told of it. So a test can make something happen exactly between
// two of the calls that a save consists of.
//
// Sees the one connection of GLib to the session's bus, on which the service's library speaks. Meanwhile nothing else
// comes or goes.
class BusTap final
{
public:
    enum class Kind { Call, Answer, Signal };
    struct Message {
        Kind kind = Kind::Call;
        QByteArray member; // of an answer: of the call that it answers
        QByteArray path; // empty for an answer
    };
    enum class Fate { Pass, Drop };
    // Called on a thread of the library, one message after the other. It must not wait for the main thread.
    using Watch = std::function<Fate(const Message &message)>;

    explicit BusTap(Watch watch);
    // The watch is not called any more afterwards.
    ~BusTap();
    BusTap(const BusTap &) = delete;
    BusTap &operator=(const BusTap &) = delete;

private:
    class Line;
    std::shared_ptr<Line> m_line;
    unsigned m_filter = 0;
};

// Whether it is a call, or the answer to one, that changes what the service holds.
bool isWriting(const BusTap::Message &message);
