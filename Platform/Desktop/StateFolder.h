// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

// Where Vantle keeps what the next run should know and nobody would back up:
// "vantle" under the person's state home (XDG Base Directory Specification).
QString stateFolder();
