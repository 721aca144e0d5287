#include "formats/igc/fields.h"

#include <algorithm>

#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/time_scale.h"

namespace skyhaul::igc {

namespace {

bool IsLetterOrDigit(char c) {
  return IsDigit(c) || IsLetter(c);
}

bool IsCode(std::string_view code) {
  return code.size() == 3 && std::all_of(code.begin(), code.end(), IsLetterOrDigit);
}

// "4707500N": 47 degrees and 07.500 minutes; a longitude has three digits of degrees.
bool ReadAngle(std::string_view line, size_t column, size_t degree_digits, const char (&letters)[3],
               WrittenAngle& angle) {
  constexpr size_t kMinuteDigits = 5;
  angle.degrees = ReadDigits(line, column, degree_digits);
  angle.milliminutes = ReadDigits(line, column + degree_digits, kMinuteDigits);
  const char letter = line[column + degree_digits + kMinuteDigits];
  angle.negative = letter == letters[1];
  return angle.degrees >= 0 && angle.milliminutes >= 0 && (angle.negative || letter == letters[0]);
}

}  // namespace

RecorderIdFault ReadRecorderId(std::string_view line, RecorderId& id) {
  // "AXSH000 free text", or "AXSH free text" of a recorder without a serial
  id.manufacturer = line.substr(std::min<size_t>(1, line.size()), 3);
  if (!IsCode(id.manufacturer)) return RecorderIdFault::kManufacturer;
  const std::string_view rest = line.substr(4);
  const bool no_serial = rest.empty() || rest.front() == ' ';
  id.serial = no_serial ? std::string_view("000") : rest.substr(0, 3);
  return IsCode(id.serial) ? RecorderIdFault::kNone : RecorderIdFault::kSerial;
}

uint32_t ReadDate(std::string_view ddmmyy) {
  if (ddmmyy.size() < 6) return 0;
  // "140526" is 14 May 2026. Places without a digit give a negative number, out of any range.
  const int day = ReadDigits(ddmmyy, 0, 2);
  const int month = ReadDigits(ddmmyy, 2, 2);
  const int year = ReadDigits(ddmmyy, 4, 2);
  if (day < 1 || day > 31 || month < 1 || month > 12 || year < 0) return 0;
  return TimeFromCalendar({.year = 2000 + year, .month = month, .day = day});
}

int ReadTimeOfDay(std::string_view b_record) {
  // "120000". Places without a digit give a negative number.
  const int hour = ReadDigits(b_record, kTimeColumn, 2);
  const int minute = ReadDigits(b_record, kTimeColumn + 2, 2);
  const int second = ReadDigits(b_record, kTimeColumn + 4, 2);
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return -1;
  return (hour * 60 + minute) * 60 + second;
}

bool ReadLatitude(std::string_view b_record, WrittenAngle& latitude) {
  return ReadAngle(b_record, kLatitudeColumn, 2, "NS", latitude);
}

bool ReadLongitude(std::string_view b_record, WrittenAngle& longitude) {
  return ReadAngle(b_record, kLongitudeColumn, 3, "EW", longitude);
}

bool ReadAltitude(std::string_view b_record, size_t column, int32_t& altitude_m) {
  // "-0012": the sign takes the place of a digit, so the columns stay the same.
  const bool negative = b_record[column] == '-';
  const int magnitude_m =
      negative ? ReadDigits(b_record, column + 1, 4) : ReadDigits(b_record, column, 5);
  altitude_m = negative ? -magnitude_m : magnitude_m;
  return magnitude_m >= 0;
}

}  // namespace skyhaul::igc
