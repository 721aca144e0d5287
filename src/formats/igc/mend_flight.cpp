#include "formats/igc/mend_flight.h"

#include <algorithm>
#include <map>

#include "formats/igc/flyable.h"

namespace skyhaul::igc {

namespace {

constexpr std::string_view kOwnARecord = "AXSH000 repaired";
// Beyond it what is left says more about the damage than about the flight.
constexpr size_t kWorstShare = 5;  // one of so many fixes may be damaged

void LeaveOut(FlightDraft& draft, DraftFix& fix, RepairKind kind) {
  fix.left_out = kind;
  NoteRepair(draft.repairs, kind, fix.line);
  // Receivers that report twice a second are not damaged.
  if (kind != RepairKind::kRepeatedSecond) ++draft.bad_fixes;
}

// A character that is lost behind the position shifts the altitudes into other good numbers: only
// the length tells. Returns whether there is a usual one.
bool LeaveOutOddLengths(FlightDraft& draft, bool last_is_cut) {
  std::map<size_t, size_t> counts;
  for (const DraftFix& fix : draft.fixes) ++counts[fix.length];
  const auto most =
      std::max_element(counts.begin(), counts.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  if (most == counts.end()) return true;
  if ((draft.fixes.size() - most->second) * kWorstShare > draft.fixes.size()) return false;
  for (DraftFix& fix : draft.fixes) {
    if (fix.length == most->first) continue;
    const bool cut = last_is_cut && &fix == &draft.fixes.back();
    LeaveOut(draft, fix, cut ? RepairKind::kCutLine : RepairKind::kOddLength);
  }
  return true;
}

void LeaveOutRepeatedSeconds(FlightDraft& draft) {
  const DraftFix* previous = nullptr;
  for (DraftFix& fix : draft.fixes) {
    if (fix.left_out.has_value()) continue;
    if (previous != nullptr && previous->timed.time_of_day_s == fix.timed.time_of_day_s) {
      LeaveOut(draft, fix, RepairKind::kRepeatedSecond);
    } else {
      previous = &fix;
    }
  }
}

void LeaveOutStrangers(FlightDraft& draft) {
  std::vector<TimedFix> timed;
  std::vector<size_t> places;
  for (size_t i = 0; i < draft.fixes.size(); ++i) {
    if (draft.fixes[i].left_out.has_value()) continue;
    timed.push_back(draft.fixes[i].timed);
    places.push_back(i);
  }
  const std::vector<bool> belongs = FindFlight(timed);
  const TimedFix* previous = nullptr;
  for (size_t i = 0; i < timed.size(); ++i) {
    if (belongs[i]) {
      previous = &timed[i];
      continue;
    }
    // The next fix of the flight is mostly the next fix.
    const bool in_time =
        (previous == nullptr || FollowsSoon(timed[i].time_of_day_s, previous->time_of_day_s)) &&
        (i + 1 == timed.size() || FollowsSoon(timed[i + 1].time_of_day_s, timed[i].time_of_day_s));
    LeaveOut(draft, draft.fixes[places[i]],
             in_time ? RepairKind::kNotFlyable : RepairKind::kTimeOrder);
  }
}

void AppendLine(MendedFlight& flight, std::string_view text, uint32_t number) {
  flight.text += text;
  flight.text += "\r\n";
  flight.lines.push_back(number);
}

void WriteLines(const FlightDraft& draft, MendedFlight& flight) {
  // The A record is the first line of an IGC file, wherever it stood.
  AppendLine(flight, draft.a_line != 0 ? draft.a_record : kOwnARecord, draft.a_line);
  size_t fix = 0;
  for (const KeptLine& line : draft.kept) {
    if (line.is_fix && draft.fixes[fix++].left_out.has_value()) continue;
    AppendLine(flight, line.text, line.number);
  }
}

std::string Hopeless(const FlightDraft& draft, size_t left) {
  if (draft.date == 0) return "no date that can be read";
  if (draft.fixes.empty()) return "no fix that can be read";
  const size_t all = left + draft.bad_fixes;
  if (draft.bad_fixes * kWorstShare <= all) return {};
  return std::to_string(draft.bad_fixes) + " of " + std::to_string(all) +
         " fixes are damaged or do not hang together, more than a fifth";
}

size_t CountLeft(const FlightDraft& draft) {
  return static_cast<size_t>(
      std::count_if(draft.fixes.begin(), draft.fixes.end(),
                    [](const DraftFix& fix) { return !fix.left_out.has_value(); }));
}

}  // namespace

std::string MendFlight(std::span<const FileLine> lines, MendedFlight& flight) {
  FlightDraft draft;
  for (const FileLine& line : lines) TakeLine(draft, line);
  if (!LeaveOutOddLengths(draft, !lines.empty() && !lines.back().ended)) {
    return "less than four fifths of its fixes have the same length, so that nothing tells which "
           "have lost characters";
  }
  LeaveOutRepeatedSeconds(draft);
  LeaveOutStrangers(draft);
  const size_t left = CountLeft(draft);
  if (std::string reason = Hopeless(draft, left); !reason.empty()) return reason;
  if (draft.a_line == 0) NoteRepair(draft.repairs, RepairKind::kNoARecord, lines.front().number);
  WriteLines(draft, flight);
  // The strict reader has the last word, so that no fix comes from anything but a good line.
  std::string message;
  if (Read(flight.text, flight.points, message, &flight.sources) < 0) return message;
  if (flight.points.size() != left) return "what can be read does not make one flight";
  for (FixSource& source : flight.sources) source.line = flight.lines[source.line - 1];
  MergeRepairs(flight.repairs, draft.repairs);
  return {};
}

}  // namespace skyhaul::igc
