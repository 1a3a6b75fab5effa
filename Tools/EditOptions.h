// SPDX-License-Identifier: MIT
#pragma once

#include <CalTypes.h>
#include <Result.h>

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

// What vantle-edit is asked on its command line.
struct EditOptions {
    enum class Action { Set, Tick, Untick, Delete };

    // A day, or a day with a time of the zone of the process.
    struct Moment {
        QDateTime instant; // 00:00 for a day
        bool isDay = false;
    };

    QString folder;
    QString uid;
    std::optional<Moment> occurrence; // by its original instant
    std::optional<CalSpan> span; // this occurrence where one is named, else all, when nothing is said
    Action action = Action::Set;
    QString field; // of Set
    QString value; // of Set; empty clears

    // Nothing when the text is neither.
    static std::optional<Moment> momentOf(const QString &text);
};

// `arguments` without the program's name. The error says what is wrong with them.
Result<EditOptions> editOptions(const QStringList &arguments);
