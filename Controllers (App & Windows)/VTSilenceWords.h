// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>

// What the line under the date bar says of services that do not answer; empty
// when all of them do. The names are other people's: long ones are cut.
QString VTSilenceWords(const QStringList &services, const QLocale &locale = QLocale());
