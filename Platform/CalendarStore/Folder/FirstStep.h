// SPDX-License-Identifier: MIT
#pragma once

#include "SaveJournal.h"

#include <QByteArray>

#include <optional>

namespace ICalendar
{
class ZoneRegistry;
}

namespace FolderStore
{

// Takes the first step of a save back, of which the second was not done: the file is
// what it was before, to the byte; a file that the step created goes. What another
// program has made of the file meanwhile stays, but for what the step had put there.
//
// The fault tells why it could not be done now; trying again later is safe.
Result<void, WritingFault> takeBackFirstStep(
    const JournaledSave &save, FileCalls &calls, ICalendar::ZoneRegistry &zones);

// What somebody made of the text after the first step, without what the step had put there: the component that it
// changed is as it was if nobody has touched it since, and loses the prefix of its title otherwise. Nothing when
// there is no trace of it.
std::optional<QByteArray> textWithoutFirstStep(
    const QByteArray &text, const JournaledSave &save, ICalendar::ZoneRegistry &zones);

} // namespace FolderStore
