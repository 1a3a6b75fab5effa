// SPDX-License-Identifier: MIT
#include "CalAttendee.h"

using namespace Qt::StringLiterals;

const QString CalAttendeeStatusNeedsAction = u"NEEDS-ACTION"_s;
const QString CalAttendeeStatusAccepted = u"ACCEPTED"_s;
const QString CalAttendeeStatusDeclined = u"DECLINED"_s;
const QString CalAttendeeStatusTentative = u"TENTATIVE"_s;
