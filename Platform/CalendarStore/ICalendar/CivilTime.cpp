// SPDX-License-Identifier: MIT
#include "CivilTime.h"

namespace ICalendar
{

UtcSeconds CivilTime::toUtc(const Zone &local) const
{
    switch (form) {
    case Form::Utc:
        return civil;
    case Form::Zoned:
        return zone ? zone->toUtc(civil) : local.toUtc(civil);
    case Form::Date:
    case Form::Floating:
        break;
    }
    return local.toUtc(civil);
}

} // namespace ICalendar
