// SPDX-License-Identifier: MIT
#pragma once

#include <Result.h>
#include <VTDayContents.h>

#include <QString>
#include <QStringList>

// What vantle-day is asked on its command line.
struct DayOptions {
    QString folder;
    VTDayQuestion question;
    int sortMethod = VTSortByDueDate;
};

// `arguments` without the program's name. The error says what is wrong with them.
Result<DayOptions> dayOptions(const QStringList &arguments);
