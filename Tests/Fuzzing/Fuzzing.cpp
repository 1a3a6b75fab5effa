// SPDX-License-Identifier: MIT
#include "Fuzzing.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace Fuzzing
{

void require(bool isKept, const char *promise)
{
    if (isKept)
        return;
    std::fprintf(stderr, "Broken promise: %s\n", promise);
    std::abort();
}

void silenceLog()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}

Input::Input(const uint8_t *data, size_t size)
    : m_text(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)) // NOLINT: libFuzzer's bytes are text
{
    const size_t taken = std::min(size, m_choices.size());
    std::copy_n(data + (size - taken), taken, m_choices.begin());
}

int Input::choice(int limit)
{
    return m_choices[m_next++ % m_choices.size()] % limit;
}

} // namespace Fuzzing
