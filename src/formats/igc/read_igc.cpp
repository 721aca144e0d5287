#include "formats/igc/read_igc.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/time_scale.h"
#include "formats/igc/fields.h"
#include "formats/igc/records.h"

namespace skyhaul::igc {

namespace {

constexpr size_t kShortestBLine = kBRecordLength + 1;  // with its LF
// Room for a time of day after the last midnight: a text that jumps back an hour in every line
// could else count days past the end of the time scale.
constexpr uint32_t kLastMidnight = std::numeric_limits<uint32_t>::max() - kSecondsPerDay;

struct Reader {
  std::vector<TrackPoint>& points;
  std::vector<FixSource>* sources = nullptr;
  uint32_t line_number = 0;
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

// Other H records than the date are for ReadHeader.
bool ReadHRecord(Reader& reader, std::string_view line) {
  if (!line.starts_with("HFDTE")) return true;
  if (reader.date != 0) return Refuse(reader, "Multiple HFDTE-records");
  reader.date = ReadDateRecord(line);
  return reader.date != 0;
}

bool ReadIRecord(Reader& reader, std::string_view line) {
  if (reader.has_i_record) return Refuse(reader, "Multiple I-records");
  reader.has_i_record = true;
  return ReadExtensionRecord(line, reader.fraction);
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

bool ReadBRecord(Reader& reader, std::string_view line) {
  // Before a date record a time of day has no day to belong to.
  if (reader.date == 0) return false;
  TrackPoint point;
  const int time_of_day_s = ReadFixRecord(line, reader.fraction, point);
  if (time_of_day_s < 0) return false;
  const size_t before = reader.points.size();
  if (!StoreFix(reader, static_cast<uint32_t>(time_of_day_s), point)) return false;
  // A repeated second leaves no fix, and so no source of one.
  if (reader.sources != nullptr && reader.points.size() > before) {
    reader.sources->push_back({.line = reader.line_number, .valid = IsMarkedValid(line)});
  }
  return true;
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

int Fail(const Reader& reader, std::string& message, std::string text) {
  reader.points.clear();
  if (reader.sources != nullptr) reader.sources->clear();
  message = std::move(text);
  return -1;
}

}  // namespace

int Read(std::string_view text, std::vector<TrackPoint>& points, std::string& message,
         std::vector<FixSource>* sources) {
  points.clear();
  // Nearly all lines of a log are fixes, so this is close to their number.
  points.reserve(text.size() / kShortestBLine);
  if (sources != nullptr) sources->clear();
  Reader reader{.points = points, .sources = sources};
  while (!text.empty()) {
    ++reader.line_number;
    const size_t line_end = std::min(text.find('\n'), text.size());
    // One bad line refuses the file: a flight with a wrong fix is worse than one that is not read.
    if (!ReadLine(reader, UsefulContent(text.substr(0, line_end)))) {
      return Fail(reader, message,
                  reader.fault != nullptr
                      ? reader.fault
                      : "Format error on line " + std::to_string(reader.line_number));
    }
    text.remove_prefix(std::min(line_end + 1, text.size()));
  }
  if (!reader.has_a_record) return Fail(reader, message, "No A-record found");
  if (points.empty()) return Fail(reader, message, "No positions found");
  return static_cast<int>(points.size());
}

}  // namespace skyhaul::igc
