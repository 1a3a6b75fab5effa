// SPDX-License-Identifier: MIT
#pragma once

#include "KLVMetrics.h"

#include <QFont>

// The fonts of rows, from the person's font.
struct VTRowFonts {
    explicit VTRowFonts(const KLVMetrics &metrics);

    QFont eventTitle;
    QFont taskTitle;
    QFont badge;
    QFont value;
    QFont caption;
    QFont due;
    QFont overdue;
};
