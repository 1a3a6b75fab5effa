// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <chrono>

// Tells when a program has painted its first frame, and ends it.
//
// Lives in a plugin that Qt loads into the unchanged program. Prints the
// milliseconds since the instant that $VANTLE_STARTED_AT names, in nanoseconds
// of the monotonic clock, to standard output.
class FirstFrame final : public QObject
{
    Q_OBJECT

public:
    explicit FirstFrame(std::chrono::nanoseconds startedAt);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void report();

    std::chrono::nanoseconds m_startedAt;
    bool m_hasPainted = false;
};
