// SPDX-License-Identifier: MIT
#include "TimeForm.h"

#include "CivilDate.h"
#include "PropertyLine.h"
#include "ValueTexts.h"

namespace ICalendar
{

TimeForm TimeForm::of(const PropertyLine &property, const CivilTime &time)
{
    if (time.isDate())
        return date();
    TimeForm form { time.form, time.zone, {} };
    // A name that is not known here may be known to others.
    if (time.form != CivilTime::Form::Utc)
        form.parameters = property.parameterText("TZID");
    return form;
}

TimeForm TimeForm::date()
{
    return { CivilTime::Form::Date, nullptr, ";VALUE=DATE" };
}

TimeForm TimeForm::utc()
{
    return { CivilTime::Form::Utc, nullptr, {} };
}

CivilSeconds TimeForm::civilAt(UtcSeconds instant, const Zone &local) const
{
    if (form == CivilTime::Form::Utc)
        return instant;
    const CivilSeconds civil = form == CivilTime::Form::Zoned && zone ? zone->toCivil(instant) : local.toCivil(instant);
    return isDate() ? dayOf(civil) * secondsPerDay : civil;
}

CivilSeconds TimeForm::civilOf(const CivilTime &time, const Zone &local) const
{
    if (isDate() && time.form != CivilTime::Form::Utc)
        return dayOf(time.civil) * secondsPerDay;
    if (time.form == form && time.zone == zone)
        return time.civil;
    return civilAt(time.toUtc(local), local);
}

TimeForm TimeForm::naming(UtcSeconds instant) const
{
    const bool isZoned = form == CivilTime::Form::Zoned && zone;
    return isZoned && zone->toUtc(zone->toCivil(instant)) != instant ? utc() : *this;
}

QByteArray TimeForm::text(CivilSeconds civil) const
{
    if (isDate())
        return dateText(civil);
    return dateTimeText(civil) + (form == CivilTime::Form::Utc ? "Z" : "");
}

} // namespace ICalendar
