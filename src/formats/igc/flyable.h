#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/track_point.h"
#include "formats/igc/read_igc.h"

namespace skyhaul::igc {

// Faster than any aircraft that keeps an IGC file flies over the ground: 540 km/h. Published
// filters of this field stand at 100 m/s for all aircraft, at 350 km/h for gliders and at 500 km/h
// for powered ones; this one lies above all of them, because it is to find damage and not bad
// receivers.
inline constexpr double kFastest_m_per_s = 150;

// The same for altitudes; published filters stand between 13 and 55 m/s.
inline constexpr int32_t kFastestClimb_m_per_s = 100;

// Whether a place can be flown to from another one in that time, which whole seconds give to one
// second. Altitudes are not looked at.
bool CanBeFlown(const TrackPoint& from, const TrackPoint& to, uint32_t time_s);

// A fix before its day is known.
struct TimedFix {
  uint32_t time_of_day_s = 0;
  bool has_place = true;  // false: its place says nothing, it counts by its time only
  TrackPoint point;
};

// Finds the most fixes that can have been one flight, in their order: each later than the one
// before it by at most 12 hours, at a place and altitudes that can be flown to from there (an
// altitude of 0 is one that is not known). A first or last fix more than an hour away from the
// others is not part of it: a receiver's old place, or a bent hour. Up to 16 wrong fixes in a row
// are passed over, and any number while the most fixes so far are those before them. Returns for
// each fix whether it belongs to the flight.
std::vector<bool> FindFlight(std::span<const TimedFix> fixes);

// Whether one time of day follows another in less than an hour.
bool FollowsSoon(uint32_t time_of_day_s, uint32_t previous_time_of_day_s);

struct LeftOutFixes {
  size_t count = 0;
  uint32_t first_line = 0;  // of the file
};

// Leaves out the fixes that are not marked A and have no place: those at 0 north 0 east, and those
// that cannot be flown to from the fix before them, or from which the next fix marked A cannot be
// reached. V means 2D or no GPS data at all, and recorders go on writing such records for their
// pressure altitude (the FAI's document on IGC-approved GNSS flight recorders, appendix A, B
// record). A 2D fix at a place that can be flown to stays. Where something is left out, days are
// counted anew: the file's date is that of the first fix that stays (same source, H record DTE: the
// date of the first valid fix), and a clock without satellites passes no midnight. points and
// sources are as Read() gives them; points may become empty.
LeftOutFixes LeaveOutUnknownPlaces(std::vector<TrackPoint>& points,
                                   std::vector<FixSource>& sources);

// Leaves out all fixes that are not marked A, for files that have no place for the mark; otherwise
// as LeaveOutUnknownPlaces().
LeftOutFixes LeaveOutMarked(std::vector<TrackPoint>& points, std::vector<FixSource>& sources);

}  // namespace skyhaul::igc
