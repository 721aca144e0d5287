#include "formats/igc/decode_line.h"

#include <cstddef>
#include <limits>

#include "core/time_scale.h"
#include "core/units.h"
#include "formats/igc/fields.h"

namespace skyhaul::igc {

namespace {

// "AXSH000": the letter, the maker and the serial.
constexpr size_t kARecordLength = 7;
constexpr int kLatitudeLimitDegrees = 90;
constexpr int kLongitudeLimitDegrees = 180;

constexpr double kRadiansPerDegree = kPi / 180;
constexpr double kRadiansPerMinute = kPi / 180 / 60;
constexpr double kRadiansPerMilliminute = kPi / 180 / 60000;

// "AXSH000 free text"
int DecodeARecord(Decoder& decoder, std::string_view line) {
  if (line.size() < kARecordLength) return -kBadARecord;
  RecorderId id;
  switch (ReadRecorderId(line, id)) {
    case RecorderIdFault::kManufacturer:
      return -kBadManufacturer;
    case RecorderIdFault::kSerial:
      return -kBadSerial;
    case RecorderIdFault::kNone:
      break;
  }
  decoder.manufacturer = id.manufacturer;
  decoder.serial = id.serial;
  return 0;
}

// "HFDTE140526" or "HFDTEDATE:140526,01"
int DecodeHRecord(Decoder& decoder, std::string_view line) {
  // Only the date is needed for the fixes; other H records are for ReadHeader.
  if (!line.starts_with("HFDTE")) return 0;
  line.remove_prefix(5);
  if (line.starts_with("DATE:")) line.remove_prefix(5);
  // What follows the six digits is left alone: instruments add the number of the flight or nothing.
  const uint32_t date = ReadDate(line);
  if (date == 0) return -kBadDate;
  // An instrument that repeats the date after midnight must not count that midnight twice.
  if (decoder.points.empty()) decoder.date = date;
  return 0;
}

// Minutes of 60 and more are carried into the degrees: some recorders round that way.
int32_t SemicirclesFromWritten(const WrittenAngle& angle) {
  const int minutes = angle.milliminutes / 1000;
  const int thousandths = angle.milliminutes % 1000;
  const double radians = angle.degrees * kRadiansPerDegree + minutes * kRadiansPerMinute +
                         thousandths * kRadiansPerMilliminute;
  return RadiansToSemicircles(angle.negative ? -radians : radians);
}

// Reads everything of a fix but its time. Returns 0 or -n.
int DecodePlace(std::string_view line, TrackPoint& point) {
  WrittenAngle angle;
  // "4707500N" and "01130001E"
  if (!ReadLatitude(line, angle) || angle.degrees >= kLatitudeLimitDegrees) {
    return -kBadLatitude;
  }
  point.lat = SemicirclesFromWritten(angle);
  if (!ReadLongitude(line, angle) || angle.degrees >= kLongitudeLimitDegrees) {
    return -kBadLongitude;
  }
  point.lon = SemicirclesFromWritten(angle);
  int32_t gps_alt_m = 0;
  // "00123" or "-0012", metres
  if (!ReadAltitude(line, kPressureAltitudeColumn, point.pressure_alt)) {
    return -kBadPressureAltitude;
  }
  if (!ReadAltitude(line, kGpsAltitudeColumn, gps_alt_m)) return -kBadGpsAltitude;
  point.gps_alt_dm = gps_alt_m * 10;
  return 0;
}

// Puts a fix on the time line. Returns 1, or -n when the days run past the end of the time scale.
int StoreFix(Decoder& decoder, uint32_t time_of_day_s, TrackPoint& point) {
  uint32_t day_offset_s = decoder.day_offset_s;
  const bool first = decoder.points.empty();
  // A step back of less than an hour is a corrected clock and no midnight.
  if (!first && IsPastMidnight(time_of_day_s, decoder.last_time_of_day_s)) {
    day_offset_s += kSecondsPerDay;
  }
  // 64 bits, because a log that jumps back in time again and again adds a day each time.
  const uint64_t time = uint64_t{decoder.date} + day_offset_s + time_of_day_s;
  if (time > std::numeric_limits<uint32_t>::max()) return -kBadTimeOfDay;

  // Nothing of the decoder has been changed up to here: a refused line leaves the flight as it was.
  point.time = static_cast<uint32_t>(time);
  point.segment_start = first ? 1 : 0;
  if (first) decoder.start_time = point.time;
  decoder.day_offset_s = day_offset_s;
  decoder.last_time_of_day_s = time_of_day_s;
  decoder.points.push_back(point);
  return 1;
}

// "B1200004707500N01130001EA0012300456"; the columns stand in formats/igc/fields.h
int DecodeBRecord(Decoder& decoder, std::string_view line) {
  if (line.size() < kBRecordLength) return -kShortBRecord;
  if (decoder.date == 0) return -kNoDate;
  const int time_of_day_s = ReadTimeOfDay(line);
  if (time_of_day_s < 0) return -kBadTimeOfDay;
  TrackPoint point;
  const int fault = DecodePlace(line, point);
  if (fault < 0) return fault;
  return StoreFix(decoder, static_cast<uint32_t>(time_of_day_s), point);
}

}  // namespace

int DecodeLine(Decoder& decoder, std::string_view line) {
  switch (line.empty() ? '\0' : line.front()) {
    case 'A':
      return DecodeARecord(decoder, line);
    case 'B':
      return DecodeBRecord(decoder, line);
    // Only counted, because what it signs is the recorder's own text.
    case 'G':
      ++decoder.g_records;
      return 0;
    case 'H':
      return DecodeHRecord(decoder, line);
    // Tasks, events, satellites and comments say nothing about fixes.
    default:
      return 0;
  }
}

}  // namespace skyhaul::igc
