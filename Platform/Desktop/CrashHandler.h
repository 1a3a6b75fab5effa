// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>

#include <QString>

// Notes where the program was when it crashed, in a file that the next start
// reads (see CrashReport), and then lets it end as it would have ended without.
//
// The handler runs in a process whose memory and locks may be in any state. It
// calls nothing but what is allowed there (signal-safety(7)) and the unwinder,
// runs on a stack of its own, and all it needs is prepared by install(). If it
// does not come to an end, an alarm ends the process.
//
// Lines of the file: the introduction's as they are, then "signal NUMBER",
// "sender PID" where another process sent it, "time SECONDS", "address HEX",
// "frame HEX SYMBOL+HEX" from the innermost outwards, and "module LINE" with
// the mappings of code as in proc(5). A file that ends early is still of use.
namespace CrashHandler
{

// From then on, for the process, once. `introduction` says what program this is. A trace that is in the file already
// stays until the next crash.
Result<void> install(const QString &path, const QString &introduction);

} // namespace CrashHandler
