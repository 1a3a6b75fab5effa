// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <array>
#include <cstddef>
#include <cstdint>

// What the random-input targets have in common. Each target is one function,
// called with one input after the other until it is stopped.

namespace Fuzzing
{

// Ends the process, which the fuzzer takes for a finding, when a promise is broken.
void require(bool isKept, const char *promise);

// Damaged input is noted in the log a thousand times a second; nobody reads that.
void silenceLog();

// One input: the text, and behind it a few bytes by which a target decides what to do with
// the text. So that a plain file is a seed, its last bytes are taken for both.
class Input final
{
public:
    Input(const uint8_t *data, size_t size);

    const QByteArray &text() const { return m_text; }
    // Below `limit`; each call looks at the next of the choosing bytes.
    int choice(int limit);

private:
    QByteArray m_text;
    std::array<uint8_t, 8> m_choices {};
    size_t m_next = 0;
};

} // namespace Fuzzing

// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
