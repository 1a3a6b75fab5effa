// SPDX-License-Identifier: MIT
#pragma once

#include <CalTask.h>

#include <QImage>
#include <QSizeF>

bool VTPriorityIsNone(const CalTask &task);
bool VTDueDateIsSet(const CalTask &task);
bool VTDueDateIsNotSet(const CalTask &task);

// A copy whose alarms are copies too.
CalTaskPtr VTDeepCopy(const CalTask &task);

// Takes over what a person can edit of a to-do, and the source's alarm records themselves.
void VTUpdatePropertiesFromTask(CalTask &task, const CalTask &source);

// Whether there is a link worth showing: one to an item of a mail program is not.
bool VTIsUrlAvailable(const CalTask &task);

// Flips the completion of a to-do. Saving is the caller's.
void VTToogleCompletedStatus(CalTask &task);

// The priority as a gauge of four bars in the calendar's colour, the upper ones faded. `size` is in
// points, the image has as many pixels as the ratio needs. Bars lie where the arithmetic puts them,
// also between pixels, and are cut off at the top edge where the image is too low for them.
QImage VTPriorityBars(const CalTask &task, const QSizeF &size, qreal devicePixelRatio = 1);
