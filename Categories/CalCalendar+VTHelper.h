// SPDX-License-Identifier: MIT
#pragma once

#include <CalCalendar.h>

#include <QImage>

// A dot of 10 by 10 points in the calendar's colour, with as many pixels as the ratio needs.
QImage colorDot(const CalCalendar &calendar, qreal devicePixelRatio = 1);
