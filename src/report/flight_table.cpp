#include "report/flight_table.h"

#include <algorithm>

#include "core/text/date_time.h"
#include "core/time_scale.h"

namespace skyhaul {

namespace {

// Date, start and duration, divided as the reader wants them.
std::string Times(const TrackListEntry& entry, const char* divider) {
  const CalendarTime start = CalendarFromTime(entry.start_time);
  return DateText(start) + divider + TimeText(start) + divider + DurationText(entry.duration_s);
}

}  // namespace

std::string FlightTable(const std::vector<TrackListEntry>& list,
                        const std::vector<uint32_t>& chosen) {
  //    No  Date        Start     Duration
  // *   3  2026-05-24  09:12:00  02:10:33
  std::string table = "   No  Date        Start     Duration\n";
  for (const TrackListEntry& entry : list) {
    const bool is_chosen = std::ranges::find(chosen, entry.index) != chosen.end();
    // /TRACK= counts from 1, instruments count from 0.
    const std::string number = std::to_string(entry.index + 1);
    table += is_chosen ? "* " : "  ";
    // Three digits are enough for the memory of any instrument; longer numbers shift their line
    // only.
    table.append(number.size() < 3 ? 3 - number.size() : 0, ' ');
    table += number + "  " + Times(entry, "  ") + '\n';
  }
  return table;
}

std::string FlightNotice(const TrackListEntry& entry) {
  return "Flight=" + std::to_string(entry.index + 1) + ',' + Times(entry, ",");
}

}  // namespace skyhaul
