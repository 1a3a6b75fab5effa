// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

// This header uses the word as a name.
#define explicit xkb_explicit
#include <xcb/xkb.h>
#undef explicit

#include <cstdlib>
#include <memory>

// For sources of this folder only: replies, events and errors that xcb hands over.

struct XcbFree {
    void operator()(void *memory) const { std::free(memory); } // NOLINT(cppcoreguidelines-no-malloc): xcb's own memory
};
template <typename Value> using XcbMemory = std::unique_ptr<Value, XcbFree>;
