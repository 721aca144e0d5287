#pragma once

#include "core/time_scale.h"
#include "platform/platform.h"

namespace skyhaul {

// The calendar's date and time, UTC.
inline CalendarTime Now(const ClockFunctions& clock) {
  return CalendarFromTime(TimeFromUnix(clock.unix_time_s(clock.context)));
}

}  // namespace skyhaul
