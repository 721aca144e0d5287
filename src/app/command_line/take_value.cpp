#include "app/command_line/take_value.h"

#include <algorithm>

#include "app/command_line/characters.h"
#include "app/command_line/value_text.h"
#include "core/text/letter_case.h"

namespace skyhaul {

namespace {

constexpr std::string_view kAccepted = {};

bool IsMissing(const Keyword& keyword, const std::string& value) {
  return value.empty() && !keyword.missing.empty();
}

}  // namespace

std::string_view TakeFlag(const Keyword& keyword, const std::string& /*value*/,
                          const CommandLineHost& /*host*/, CommandLineBlock& block) {
  if (keyword.flag != nullptr) block.*keyword.flag = true;
  return kAccepted;
}

std::string_view TakeText(const Keyword& keyword, const std::string& value,
                          const CommandLineHost& /*host*/, CommandLineBlock& block) {
  if (IsMissing(keyword, value)) return keyword.missing;
  // Cut rather than refused. The limit counts characters, so that no letter is halved.
  block.*keyword.text = CutToCharacters(value, keyword.max_characters);
  return kAccepted;
}

std::string_view TakeNumber(const Keyword& keyword, const std::string& value,
                            const CommandLineHost& /*host*/, CommandLineBlock& block) {
  if (IsMissing(keyword, value)) return keyword.missing;
  const std::optional<uint32_t> number = NumberFromText(value);
  if (!number) return keyword.bad;
  block.*keyword.number = number;
  return kAccepted;
}

std::string_view TakeSignedNumber(const Keyword& keyword, const std::string& value,
                                  const CommandLineHost& /*host*/, CommandLineBlock& block) {
  const std::optional<int32_t> number = SignedNumberFromText(value);
  if (!number) return keyword.bad;
  block.*keyword.signed_number = number;
  return kAccepted;
}

// /COM=3, /COM=/dev/ttyUSB0, /COM=\\.\COM12
std::string_view TakePort(const Keyword& keyword, const std::string& value,
                          const CommandLineHost& host, CommandLineBlock& block) {
  // The name of a device that was cut would be the name of another one.
  if (CutToCharacters(value, kMaxPortText) != value) return keyword.bad;
  uint32_t number = 0;
  if (host.is_port_name == nullptr || !host.is_port_name(value)) {
    number = NumberFromText(value).value_or(0);
    if (number < 1 || number > kMaxPort) return keyword.bad;
  }
  block.port_text = value;
  block.port_number = number;
  return kAccepted;
}

std::string_view TakeGpsType(const Keyword& keyword, const std::string& value,
                             const CommandLineHost& /*host*/, CommandLineBlock& block) {
  const std::span<const GpsTypeEntry> types = GpsTypes();
  // Names in the table are upper case.
  const auto has_name = [name = UpperCase(value)](const GpsTypeEntry& t) { return t.name == name; };
  const auto found = std::find_if(types.begin(), types.end(), has_name);
  if (found == types.end()) return keyword.bad;
  block.gps_type = static_cast<GpsType>(found - types.begin());
  return kAccepted;
}

// /COMP_LOG=IGC: unlike the instruments of /GPS=, in upper case only.
std::string_view TakeCompetitionFormat(const Keyword& keyword, const std::string& value,
                                       const CommandLineHost& /*host*/, CommandLineBlock& block) {
  if (value != "KML" && value != "IGC") return keyword.bad;
  block.competition_format = value == "KML" ? CompetitionFormat::kKml : CompetitionFormat::kIgc;
  return kAccepted;
}

// /WIN=0: the digit counts the ways in which a window can appear; see ShowCode for their codes.
std::string_view TakeShowCode(const Keyword& keyword, const std::string& value,
                              const CommandLineHost& /*host*/, CommandLineBlock& block) {
  constexpr ShowCode kCodes[] = {ShowCode::kHidden, ShowCode::kMinimised, ShowCode::kNormal};
  if (value.size() != 1 || value[0] < '0' || value[0] > '2') return keyword.bad;
  block.show_code = kCodes[value[0] - '0'];
  return kAccepted;
}

// /FILTER=09:30 /FILTEREND=17:45:00, in either order. The second one given finds the fault.
std::string_view TakeFilterStart(const Keyword& keyword, const std::string& value,
                                 const CommandLineHost& /*host*/, CommandLineBlock& block) {
  const std::optional<uint32_t> start_s = SecondOfDayFromText(value);
  if (!start_s) return keyword.bad;
  // Equal times are a filter of one second, since both ends are included.
  if (block.filter_stop_s && *start_s > *block.filter_stop_s) {
    return "Comp. stop time before start time";
  }
  block.filter_start_s = start_s;
  return kAccepted;
}

std::string_view TakeFilterStop(const Keyword& keyword, const std::string& value,
                                const CommandLineHost& /*host*/, CommandLineBlock& block) {
  const std::optional<uint32_t> stop_s = SecondOfDayFromText(value);
  if (!stop_s) return keyword.bad;
  if (block.filter_start_s && *block.filter_start_s > *stop_s) {
    return "Comp. start time after end time";
  }
  block.filter_stop_s = stop_s;
  return kAccepted;
}

std::string_view TakeTimeout(const Keyword& keyword, const std::string& value,
                             const CommandLineHost& /*host*/, CommandLineBlock& block) {
  // "/TIMEOUT=60"
  const std::optional<uint32_t> timeout_s = TimeoutFromText(value);
  if (!timeout_s) return keyword.bad;
  block.timeout_s = timeout_s;
  return kAccepted;
}

std::string_view TakeTracks(const Keyword& keyword, const std::string& value,
                            const CommandLineHost& /*host*/, CommandLineBlock& block) {
  if (IsMissing(keyword, value)) return keyword.missing;
  // A second /TRACK replaces the first, as with every switch that is given twice.
  // "/TRACK=1,3-5"
  std::optional<std::vector<uint32_t>> tracks = TrackListFromText(value);
  if (!tracks) return keyword.bad;
  block.tracks = std::move(*tracks);
  return kAccepted;
}

}  // namespace skyhaul
