#include "formats/igc/records.h"

#include <algorithm>

#include "core/text/digits.h"
#include "core/units.h"
#include "formats/igc/fields.h"

namespace skyhaul::igc {

namespace {

constexpr int kMaxLatitudeDegrees = 89;
constexpr int kMaxLongitudeDegrees = 179;
constexpr int kMaxMilliminutes = 60000;
constexpr int kMilliminutesPerDegree = 60000;

// "I023638FXA3940TDS": a count and so many entries
constexpr size_t kEntriesColumn = 3;
constexpr size_t kEntryLength = 7;

// One entry of an I record: "ssee" and a three-letter code, for example "3638FXA".
bool ReadExtension(std::string_view entry, ExtensionColumns& fraction) {
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
    fraction = {.start = static_cast<size_t>(start), .end = static_cast<size_t>(end)};
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

}  // namespace

uint32_t ReadDateRecord(std::string_view line) {
  // "HFDTE140526", or "HFDTEDATE: 140526,01" of later recorders
  std::string_view value = line.substr(5);
  // Older files end after the six digits: more of them would be another date form.
  bool may_go_on = false;
  if (value.starts_with("DATE:")) {
    value.remove_prefix(5);
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    // Behind the comma stands the number of the flight on that day.
    may_go_on = value.size() > 6 && value[6] == ',';
  }
  return value.size() == 6 || may_go_on ? ReadDate(value) : 0;
}

bool ReadExtensionRecord(std::string_view line, ExtensionColumns& fraction) {
  if (line.size() < kEntriesColumn) return false;
  const int count = ReadDigits(line, 1, 2);
  if (count < 0) return false;
  const std::string_view entries = line.substr(kEntriesColumn);
  // Fewer entries than announced is a fault; text behind them is not.
  if (entries.size() < static_cast<size_t>(count) * kEntryLength) return false;
  for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
    if (!ReadExtension(entries.substr(i * kEntryLength, kEntryLength), fraction)) return false;
  }
  return true;
}

std::string ShortenExtensionRecord(std::string_view line, size_t max_length) {
  const auto count = static_cast<size_t>(ReadDigits(line, 1, 2));
  const size_t kept = std::min(count, (max_length - kEntriesColumn) / kEntryLength);
  const std::string_view entries = line.substr(kEntriesColumn, count * kEntryLength);
  std::string record = "I" + PaddedNumber(kept, 2);
  record += entries.substr(0, kept * kEntryLength);
  for (size_t i = kept; i < count; ++i) {
    const std::string_view entry = entries.substr(i * kEntryLength, kEntryLength);
    // The only one that this program reads takes the place of the last.
    if (entry.ends_with("TDS")) record.replace(record.size() - kEntryLength, kEntryLength, entry);
  }
  return record;
}

int ReadFixRecord(std::string_view line, const ExtensionColumns& fraction, TrackPoint& point) {
  // "B1200004707500N01130001EA0012300456" and the extensions that the I record names
  if (line.size() < kBRecordLength) return -1;
  const bool good = ReadFraction(fraction, line, point.milliseconds) && ReadPosition(line, point) &&
                    ReadAltitudes(line, point);
  return good ? ReadTimeOfDay(line) : -1;
}

bool IsMarkedValid(std::string_view line) {
  return line[kValidityColumn] == 'A';
}

}  // namespace skyhaul::igc
