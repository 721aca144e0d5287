#include "formats/igc/read_igc.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/text/digits.h"
#include "core/time_scale.h"
#include "core/units.h"
#include "formats/igc/fields.h"

namespace skyhaul::igc {

namespace {

constexpr size_t kMaxLineLength = 80;
constexpr size_t kShortestBLine = kBRecordLength + 1;  // with its LF
constexpr int kMaxLatitudeDegrees = 89;
constexpr int kMaxLongitudeDegrees = 179;
constexpr int kMaxMilliminutes = 60000;
constexpr int kMilliminutesPerDegree = 60000;
// Room for a time of day after the last midnight: a text that jumps back an hour in every line
// could else count days past the end of the time scale.
constexpr uint32_t kLastMidnight = std::numeric_limits<uint32_t>::max() - kSecondsPerDay;

// Columns, counted from 1 as the I record counts them; start 0: no such extension.
struct ExtensionColumns {
  size_t start = 0;
  size_t end = 0;
};

struct Reader {
  std::vector<TrackPoint>& points;
  const char* fault = nullptr;  // a message of its own; null: "Format error on line %d"
  bool has_a_record = false;
  bool has_i_record = false;
  uint32_t date = 0;  // midnight before the last fix; 0: not known yet
  uint32_t last_time_of_day_s = 0;
  ExtensionColumns fraction = {};  // of the second: code TDS
};

bool Refuse(Reader& reader, const char* fault) {
  reader.fault = fault;
  return false;
}

// "AXSH000 free text"
bool ReadARecord(Reader& reader, std::string_view line) {
  if (reader.has_a_record) return Refuse(reader, "Multiple A-records");
  reader.has_a_record = true;
  RecorderId id;
  return ReadRecorderId(line, id) == RecorderIdFault::kNone;
}

// "HFDTE140526", or "HFDTEDATE: 140526,01" of later recorders. Other H records are for ReadHeader.
bool ReadHRecord(Reader& reader, std::string_view line) {
  if (!line.starts_with("HFDTE")) return true;
  if (reader.date != 0) return Refuse(reader, "Multiple HFDTE-records");
  std::string_view value = line.substr(5);
  // Older files end after the six digits: more of them would be another date form.
  bool may_go_on = false;
  if (value.starts_with("DATE:")) {
    value.remove_prefix(5);
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    // Behind the comma stands the number of the flight on that day.
    may_go_on = value.size() > 6 && value[6] == ',';
  }
  if (value.size() != 6 && !may_go_on) return false;
  reader.date = ReadDate(value);
  return reader.date != 0;
}

// One entry of an I record: "ssee" and a three-letter code, for example "3638FXA".
bool ReadExtension(Reader& reader, std::string_view entry) {
  const int start = ReadDigits(entry, 0, 2);
  const int end = ReadDigits(entry, 2, 2);
  const std::string_view code = entry.substr(4);
  // An extension that began inside the fixed columns would read them a second time.
  if (start <= static_cast<int>(kBRecordLength) || end < start) return false;
  // A blank in a code means that the entries are shifted against the count.
  if (std::any_of(code.begin(), code.end(), [](char c) { return c == ' ' || c == '\0'; })) {
    return false;
  }
  if (code == "TDS") {
    reader.fraction = {.start = static_cast<size_t>(start), .end = static_cast<size_t>(end)};
  }
  return true;
}

// "I023638FXA3940TDS": a count and so many entries
bool ReadIRecord(Reader& reader, std::string_view line) {
  constexpr size_t kEntryLength = 7;
  if (reader.has_i_record) return Refuse(reader, "Multiple I-records");
  reader.has_i_record = true;
  if (line.size() < 3) return false;
  const int count = ReadDigits(line, 1, 2);
  if (count < 0) return false;
  const std::string_view entries = line.substr(3);
  // Fewer entries than announced is a fault; text behind them is not.
  if (entries.size() < static_cast<size_t>(count) * kEntryLength) return false;
  for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
    if (!ReadExtension(reader, entries.substr(i * kEntryLength, kEntryLength))) return false;
  }
  return true;
}

// Digits of the fraction weigh 100, 10 and 1 ms; what is finer than that is left alone.
bool ReadFraction(const ExtensionColumns& columns, std::string_view line, uint32_t& milliseconds) {
  if (columns.start == 0) return true;
  // The I record has promised the digits for every fix.
  if (line.size() < columns.end) return false;
  uint32_t weight_ms = 100;
  for (size_t column = columns.start; column <= columns.end; ++column) {
    // I records count columns from 1, texts from 0.
    const int digit = ReadDigits(line, column - 1, 1);
    if (digit < 0) return false;
    milliseconds += static_cast<uint32_t>(digit) * weight_ms;
    weight_ms /= 10;
  }
  return true;
}

// Minutes of exactly 60.000 come from writers that round them alone.
bool ReadSemicircles(const WrittenAngle& angle, int max_degrees, int32_t& semicircles) {
  if (angle.degrees > max_degrees || angle.milliminutes > kMaxMilliminutes) return false;
  const int magnitude = angle.degrees * kMilliminutesPerDegree + angle.milliminutes;
  semicircles = MilliminutesToSemicircles(angle.negative ? -magnitude : magnitude);
  return true;
}

bool ReadPosition(std::string_view line, TrackPoint& point) {
  WrittenAngle latitude;
  WrittenAngle longitude;
  return ReadLatitude(line, latitude) && ReadLongitude(line, longitude) &&
         ReadSemicircles(latitude, kMaxLatitudeDegrees, point.lat) &&
         ReadSemicircles(longitude, kMaxLongitudeDegrees, point.lon);
}

bool ReadAltitudes(std::string_view line, TrackPoint& point) {
  int32_t gps_alt_m = 0;
  if (!ReadAltitude(line, kPressureAltitudeColumn, point.pressure_alt) ||
      !ReadAltitude(line, kGpsAltitudeColumn, gps_alt_m)) {
    return false;
  }
  point.gps_alt_dm = gps_alt_m * 10;
  return true;
}

// Puts a fix on the time line. A fix that repeats the second before it is dropped: receivers that
// report twice a second would else give speeds between equal times.
bool StoreFix(Reader& reader, uint32_t time_of_day_s, TrackPoint& point) {
  if (reader.points.empty()) {
    point.segment_start = 1;
  } else {
    if (time_of_day_s == reader.last_time_of_day_s) return true;
    if (IsPastMidnight(time_of_day_s, reader.last_time_of_day_s)) reader.date += kSecondsPerDay;
    if (reader.date > kLastMidnight) return false;
    point.milliseconds = 0;
  }
  point.time = reader.date + time_of_day_s;
  reader.last_time_of_day_s = time_of_day_s;
  reader.points.push_back(point);
  return true;
}

// "B1200004707500N01130001EA0012300456" and the extensions that the I record names
bool ReadBRecord(Reader& reader, std::string_view line) {
  // Before a date record a time of day has no day to belong to.
  if (reader.date == 0 || line.size() < kBRecordLength) return false;
  TrackPoint point;
  const int time_of_day_s = ReadTimeOfDay(line);
  if (time_of_day_s < 0) return false;
  if (!ReadFraction(reader.fraction, line, point.milliseconds)) return false;
  if (!ReadPosition(line, point) || !ReadAltitudes(line, point)) return false;
  return StoreFix(reader, static_cast<uint32_t>(time_of_day_s), point);
}

bool ReadLine(Reader& reader, std::string_view line) {
  const char letter = line.empty() ? '\0' : line.front();
  // The A record must be the first line: what stands before it is not part of an IGC file.
  if (!reader.has_a_record && letter != 'A') return Refuse(reader, "Missing A-record");
  switch (letter) {
    case 'A':
      return ReadARecord(reader, line);
    case 'B':
      return ReadBRecord(reader, line);
    case 'H':
      return ReadHRecord(reader, line);
    case 'I':
      return ReadIRecord(reader, line);
    // Tasks, events, comments and security records do not change the fixes.
    default:
      return true;
  }
}

std::string_view UsefulContent(std::string_view line) {
  line = line.substr(0, kMaxLineLength);
  return line.substr(0, line.find('\r'));
}

int Fail(std::vector<TrackPoint>& points, std::string& message, std::string text) {
  points.clear();
  message = std::move(text);
  return -1;
}

}  // namespace

int Read(std::string_view text, std::vector<TrackPoint>& points, std::string& message) {
  points.clear();
  // Nearly all lines of a log are fixes, so this is close to their number.
  points.reserve(text.size() / kShortestBLine);
  Reader reader{.points = points};
  for (int line_number = 1; !text.empty(); ++line_number) {
    const size_t line_end = std::min(text.find('\n'), text.size());
    // One bad line refuses the file: a flight with a wrong fix is worse than one that is not read.
    if (!ReadLine(reader, UsefulContent(text.substr(0, line_end)))) {
      return Fail(points, message,
                  reader.fault != nullptr ? reader.fault
                                          : "Format error on line " + std::to_string(line_number));
    }
    text.remove_prefix(std::min(line_end + 1, text.size()));
  }
  if (!reader.has_a_record) return Fail(points, message, "No A-record found");
  if (points.empty()) return Fail(points, message, "No positions found");
  return static_cast<int>(points.size());
}

}  // namespace skyhaul::igc
