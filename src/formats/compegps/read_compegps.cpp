#include "formats/compegps/read_compegps.h"

#include <algorithm>
#include <utility>

#include "formats/compegps/compegps_time.h"
#include "formats/text/charset.h"
#include "formats/text/scan.h"
#include "formats/values/numbers.h"
#include "formats/values/pieces.h"
#include "formats/waypoints/position.h"

namespace skyhaul {

namespace {

struct CompeGpsReader {
  WaypointFile& file;
  int line_number = 0;
  bool has_datum = false;
  std::string refusal = {};  // why the whole file cannot be used
  int first_bad_line = 0;    // 0: none
};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A UTM zone with its band: "32T".
bool IsUtmZone(std::string_view word) {
  const size_t digits = std::min(word.find_first_not_of("0123456789"), word.size());
  return (digits == 1 || digits == 2) && word.size() == digits + 1 && word[digits] >= 'A' &&
         word[digits] <= 'Z';
}

// "46.1234500000ºN" in degrees; the hemispheres are "NS" or "EW".
bool ReadAngle(std::string_view word, std::string_view hemispheres, double& angle_deg) {
  if (word.empty() || !IsDigit(word[0])) return false;
  const size_t length = std::min(word.find_first_not_of("0123456789."), word.size());
  if (!ReadNumber(word.substr(0, length), angle_deg)) return false;
  word.remove_prefix(length);
  if (word.empty()) return false;
  const auto is_letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  if (std::any_of(word.begin(), word.end() - 1, is_letter)) return false;
  const std::string_view last = word.substr(word.size() - 1);
  if (EqualIgnoringCase(last, hemispheres.substr(1))) angle_deg = -angle_deg;
  return last[0] != '\0' && (EqualIgnoringCase(last, hemispheres.substr(0, 1)) ||
                             EqualIgnoringCase(last, hemispheres.substr(1)));
}

// Fills a waypoint from what follows the line's letter. Returns what is wrong with it; "": nothing.
std::string_view ReadWaypoint(std::string_view rest, FileWaypoint& waypoint) {
  waypoint.name = OneLine(TakeWord(rest));
  const std::string_view form = TakeWord(rest);
  if (IsUtmZone(form)) return "UTM position, skipped";
  double lat_deg = 0;
  double lon_deg = 0;
  if (form != "A" || !ReadAngle(TakeWord(rest), "NS", lat_deg) ||
      !ReadAngle(TakeWord(rest), "EW", lon_deg)) {
    return "no position that can be read, skipped";
  }
  const auto position = PositionFromDegrees(lat_deg, lon_deg);
  if (!position) return "a position that is not on the globe, skipped";
  waypoint.lat = position->lat;
  waypoint.lon = position->lon;
  const std::string_view date = TakeWord(rest);
  if (!ReadCompeGpsTime(date, TakeWord(rest), waypoint.time)) {
    return "no date and time that can be read, skipped";
  }
  if (!ReadNumber(TakeWord(rest), waypoint.altitude_m)) {
    return "no altitude that can be read, skipped";
  }
  waypoint.description = OneLine(rest);
  return {};
}

void TakeWaypoint(CompeGpsReader& reader, std::string_view rest) {
  FileWaypoint waypoint;
  const std::string_view fault = ReadWaypoint(rest, waypoint);
  if (fault.empty()) {
    reader.file.waypoints.push_back(std::move(waypoint));
    return;
  }
  if (reader.first_bad_line == 0) reader.first_bad_line = reader.line_number;
  reader.file.notes.push_back(LineNote(reader.line_number, fault));
}

void Refuse(CompeGpsReader& reader, std::string_view why) {
  reader.refusal = LineError(reader.line_number, why);
}

void TakeFileLine(CompeGpsReader& reader, std::string_view line) {
  ++reader.line_number;
  const std::string_view letter = TakeWord(line);
  if (letter == "W") {
    TakeWaypoint(reader, line);
  } else if (letter == "G") {
    reader.has_datum = true;
    if (IsWgs84(TrimBlanks(line))) return;
    Refuse(reader, "the datum is \"" + OneLine(line) + "\", only WGS 84 can be read");
  } else if (letter == "U" && TrimBlanks(line) == "0") {
    Refuse(reader, "UTM positions, only latitude and longitude (\"U  1\") can be read");
  }
}

}  // namespace

bool LooksLikeCompeGps(std::string_view text) {
  bool has_datum = false;
  bool has_form = false;
  while (!text.empty()) {
    std::string_view line = TakeLine(text);
    const std::string_view letter = TakeWord(line);
    if (letter == "T" || letter == "R") return false;  // tracks and routes
    has_datum = has_datum || letter == "G";
    has_form = has_form || (letter == "U" && (TrimBlanks(line) == "0" || TrimBlanks(line) == "1"));
    if (letter != "W") continue;
    TakeWord(line);
    const std::string_view form = TakeWord(line);
    if (form == "A" || IsUtmZone(form)) return true;
  }
  return has_datum && has_form;
}

int ReadCompeGps(std::string_view text, WaypointFile& file, std::string& message) {
  file = {};
  message.clear();
  const std::string utf8 = ToUtf8(text);
  std::string_view rest = utf8;
  CompeGpsReader reader = {.file = file};
  if (!LooksLikeCompeGps(utf8)) reader.refusal = LineError(1, "not a CompeGPS waypoint file");
  while (reader.refusal.empty() && !rest.empty()) TakeFileLine(reader, TakeLine(rest));
  if (reader.refusal.empty() && file.waypoints.empty() && reader.first_bad_line != 0) {
    reader.refusal = LineError(reader.first_bad_line, "none of the waypoints can be read");
  }
  if (!reader.refusal.empty()) {
    message = reader.refusal;
    file = {};
    return -1;
  }
  if (!reader.has_datum) file.notes.emplace_back("The datum is not given, taken to be WGS 84");
  return static_cast<int>(file.waypoints.size());
}

}  // namespace skyhaul
