#include "formats/compegps/read_compegps.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/text/charset.h"
#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/text/scan.h"
#include "formats/common/messages.h"
#include "formats/common/position.h"
#include "formats/compegps/compegps_time.h"

namespace skyhaul::compegps {

namespace {

struct Reader {
  WaypointFile& file;
  int line_number = 0;
  bool has_datum = false;
  std::string refusal = {};  // why the whole file cannot be used
  int first_bad_line = 0;    // 0: none
};

// A UTM zone with its band: "32T".
bool IsUtmZone(std::string_view word) {
  const size_t digits = std::min(word.find_first_not_of("0123456789"), word.size());
  return (digits == 1 || digits == 2) && word.size() == digits + 1 && word[digits] >= 'A' &&
         word[digits] <= 'Z';
}

// "46.1234500000ºN" in degrees. The sign between them arrives in many encodings, so anything that
// is no letter may stand there.
std::optional<double> ReadAngle(std::string_view word, char positive, char negative) {
  if (word.empty() || !IsDigit(word[0])) return std::nullopt;
  const size_t length = std::min(word.find_first_not_of("0123456789."), word.size());
  const std::optional<double> angle_deg = ReadDecimal(word.substr(0, length));
  word.remove_prefix(length);
  if (!angle_deg || word.empty()) return std::nullopt;
  // A letter before the last is another kind of angle and not a badly encoded sign.
  if (std::any_of(word.begin(), word.end() - 1, IsLetter)) return std::nullopt;
  const char hemisphere = UpperLetter(word.back());
  if (hemisphere != positive && hemisphere != negative) return std::nullopt;
  return hemisphere == negative ? -*angle_deg : *angle_deg;
}

// "W  FIESCH A 46.1234500000ºN 7.1234500000ºE 01-MAY-24 12:34:56 2345.000000 Take-off"
// Fills a waypoint from what follows the line's letter. Returns what is wrong with it; "": nothing.
std::string_view ReadWaypoint(std::string_view rest, FileWaypoint& waypoint) {
  waypoint.name = OneLine(TakeWord(rest));
  // "A" stands for an angle; positions in UTM have their zone here.
  const std::string_view form = TakeWord(rest);
  if (IsUtmZone(form)) return "UTM position, skipped";
  constexpr std::string_view kNoPosition = "no position that can be read, skipped";
  if (form != "A") return kNoPosition;
  const std::optional<double> lat_deg = ReadAngle(TakeWord(rest), 'N', 'S');
  const std::optional<double> lon_deg = ReadAngle(TakeWord(rest), 'E', 'W');
  if (!lat_deg || !lon_deg) return kNoPosition;
  const auto position = PositionFromDegrees(*lat_deg, *lon_deg);
  if (!position) return "a position that is not on the globe, skipped";
  waypoint.lat = position->lat;
  waypoint.lon = position->lon;
  const std::string_view date = TakeWord(rest);
  if (!ReadTime(date, TakeWord(rest), waypoint.time)) {
    return "no date and time that can be read, skipped";
  }
  const std::optional<double> altitude_m = ReadDecimal(TakeWord(rest));
  if (!altitude_m) return "no altitude that can be read, skipped";
  waypoint.altitude_m = *altitude_m;
  // The description is the last field because it alone may hold blanks.
  waypoint.description = OneLine(rest);
  return {};
}

void TakeWaypoint(Reader& reader, std::string_view rest) {
  FileWaypoint waypoint;
  const std::string_view fault = ReadWaypoint(rest, waypoint);
  if (fault.empty()) {
    reader.file.waypoints.push_back(std::move(waypoint));
    return;
  }
  if (reader.first_bad_line == 0) reader.first_bad_line = reader.line_number;
  reader.file.notes.push_back(LineNote(reader.line_number, fault));
}

void TakeFileLine(Reader& reader, std::string_view line) {
  ++reader.line_number;
  const std::string_view letter = TakeWord(line);
  // Lines of other letters, such as "w", say how the waypoint before is drawn.
  if (letter == "W") {
    TakeWaypoint(reader, line);
  } else if (letter == "G") {
    reader.has_datum = true;
    // G  WGS 84
    reader.refusal = DatumError(reader.line_number, line);
  } else if (letter == "U" && TrimBlanks(line) == "0") {
    // U  0
    reader.refusal = LineError(reader.line_number,
                               "UTM positions, only latitude and longitude (\"U  1\") can be read");
  }
}

}  // namespace

bool LooksLike(std::string_view text) {
  bool has_datum = false;
  bool has_form = false;
  const std::string utf8 = ToUtf8(text);  // without a byte order mark before the first letter
  std::string_view rest = utf8;
  while (!rest.empty()) {
    std::string_view line = TakeLine(rest);
    const std::string_view letter = TakeWord(line);
    // They begin with the same header lines.
    if (letter == "T" || letter == "R") return false;  // tracks and routes
    has_datum = has_datum || letter == "G";
    has_form = has_form || (letter == "U" && (TrimBlanks(line) == "0" || TrimBlanks(line) == "1"));
    if (letter != "W") continue;
    TakeWord(line);
    const std::string_view form = TakeWord(line);
    if (form == "A" || IsUtmZone(form)) return true;
  }
  // The header alone is a list without any waypoint.
  return has_datum && has_form;
}

int Read(std::string_view text, WaypointFile& file, std::string& message) {
  file = {};
  message.clear();
  const std::string utf8 = ToUtf8(text);
  std::string_view rest = utf8;
  Reader reader = {.file = file};
  if (!LooksLike(utf8)) reader.refusal = LineError(1, "not a CompeGPS waypoint file");
  while (reader.refusal.empty() && !rest.empty()) TakeFileLine(reader, TakeLine(rest));
  if (reader.refusal.empty() && file.waypoints.empty() && reader.first_bad_line != 0) {
    reader.refusal = LineError(reader.first_bad_line, "none of the waypoints can be read");
  }
  if (!reader.refusal.empty()) {
    message = reader.refusal;
    file = {};
    return -1;
  }
  // Not refused, because a person can judge from the note where the file comes from.
  if (!reader.has_datum) file.notes.emplace_back("The datum is not given, taken to be WGS 84");
  return static_cast<int>(file.waypoints.size());
}

}  // namespace skyhaul::compegps
