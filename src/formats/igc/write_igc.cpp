#include "formats/igc/write_igc.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <string_view>

#include "core/text/date_time.h"
#include "core/text/digits.h"
#include "core/units.h"
#include "core/version.h"
#include "formats/igc/fields.h"
#include "formats/igc/security_record.h"

namespace skyhaul::igc {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kEnlDigits = 3;
constexpr size_t kPositionLength = 17;  // ddmmmmmNdddmmmmmE
constexpr size_t kHeaderReserve = 1024;
constexpr uint32_t kMilliminutesPerDegree = 60000;
constexpr uint32_t kMaxLatitudeMilliminutes = 90 * kMilliminutesPerDegree;

// A line end inside a text would begin a record of the text's own.
void AppendText(std::string& igc, std::string_view text) {
  for (const char c : text) igc += c == '\r' || c == '\n' || c == '\0' ? ' ' : c;
}

void AppendLine(std::string& igc, std::string_view key, std::string_view text) {
  igc += key;
  AppendText(igc, text);
  igc += kLineEnd;
}

void AppendTwoDigits(std::string& igc, std::initializer_list<int> numbers) {
  for (const int number : numbers) AppendPadded(igc, static_cast<uint64_t>(number), 2);
}

// "140526"
void AppendDate(std::string& igc, const CalendarTime& date) {
  AppendTwoDigits(igc, {date.day, date.month, date.year % 100});
}

void AppendIdentification(std::string& igc, const WriteOptions& options) {
  // "AXSH000 free text"; the blank stands there without a free text as well.
  igc += "AXSH";
  AppendText(igc, options.serial);
  AppendLine(igc, " ", options.free_text);
}

void AppendHeader(std::string& igc, const HeaderTexts& header, uint32_t first_fix_time) {
  // "HFDTEDATE:140526,01" in the newer form, with the number of the flight on that day.
  igc += "HFDTEDATE:";
  AppendDate(igc, CalendarFromTime(first_fix_time));
  AppendLine(igc, ",01", "");
  // A record without a value is written all the same: empty means not known.
  AppendLine(igc, "HFPLTPILOT: ", header.pilot);
  AppendLine(igc, "HFGTYGLIDERTYPE: ", header.glider_type);
  AppendLine(igc, "HFGIDGLIDERID: ", header.glider_id);
  AppendLine(igc, "HFDTM100GPSDATUM: ", "WGS-84");
  AppendLine(igc, "HFCIDCOMPETITIONID: ", header.competition_id);
  AppendLine(igc, "HFCCLCOMPETITIONCLASS: ", header.competition_class);
  AppendLine(igc, "HFSITSITE: ", header.site);
}

// Degrees, minutes, thousandths of a minute and the letter of the hemisphere. A latitude beyond the
// pole, which only a broken record has, is written as the pole: its degrees would not fit.
char* PutAngle(char* place, int32_t semicircles, size_t degree_digits, const char (&letters)[3]) {
  // Rounded as a whole before it is split, so that no minute becomes 60.000.
  const int32_t milliminutes = SemicirclesToMilliminutes(semicircles);
  auto magnitude = static_cast<uint32_t>(std::abs(milliminutes));
  if (degree_digits == 2) magnitude = std::min(magnitude, kMaxLatitudeMilliminutes);
  place = PutDigits(place, magnitude / kMilliminutesPerDegree, degree_digits);
  place = PutDigits(place, magnitude % kMilliminutesPerDegree, 5);
  *place = milliminutes < 0 ? letters[1] : letters[0];
  return place + 1;
}

char* PutPosition(char* place, int32_t lat, int32_t lon) {
  place = PutAngle(place, lat, 2, "NS");
  return PutAngle(place, lon, 3, "EW");
}

// "C4707500N01130001ETake-off"
void AppendTurnpoint(std::string& igc, const WaypointRecord& point) {
  char position[kPositionLength];
  char* end = PutPosition(position, point.lat, point.lon);
  igc += 'C';
  igc.append(position, end);
  // A description that fills its room has no NUL behind it.
  const char* description_end =
      std::find(std::begin(point.description), std::end(point.description), '\0');
  AppendLine(igc, "", std::string_view(point.description, description_end));
}

// The points of a route that are not turnpoints: take-off, start, finish and landing.
constexpr size_t kFixedRoutePoints = 4;

// "C140526093000140526000102Task name": declared on and at, day of the flight, number of the task
// (four digits), number of turnpoints (two).
void AppendTask(std::string& igc, const DeclaredRoute& task) {
  const CalendarTime declared = CalendarFromTime(task.declaration_time);
  // A task of fewer points than the four fixed ones has none rather than a huge number.
  const size_t turnpoints = std::max(task.points.size(), kFixedRoutePoints) - kFixedRoutePoints;
  igc += 'C';
  AppendDate(igc, declared);
  AppendTwoDigits(igc, {declared.hour, declared.minute, declared.second});
  AppendDate(igc, CalendarFromTime(task.flight_date));
  AppendPadded(igc, task.task_number, 4);
  AppendPadded(igc, turnpoints, 2);
  AppendLine(igc, "", task.name);
  for (const WaypointRecord& point : task.points) AppendTurnpoint(igc, point);
}

constexpr int32_t kMinAltitude = -9999;
constexpr int32_t kMaxAltitude = 99999;

// The limits are tested on decimetres: a fix above 9999.9 m is written as 99999 and one below
// -999.9 m as -9999, so that an altitude out of reach of every flight is seen to be none.
int32_t WrittenGpsAltitude(int32_t gps_alt_dm) {
  if (gps_alt_dm > kMaxAltitude) return kMaxAltitude;
  return gps_alt_dm < kMinAltitude ? kMinAltitude : DecimetresToMetres(gps_alt_dm);
}

// "00123" or "-0012": five columns in either case.
char* PutAltitude(char* place, int32_t altitude_m) {
  if (altitude_m >= 0) return PutDigits(place, static_cast<uint32_t>(altitude_m), 5);
  *place = '-';
  return PutDigits(place + 1, static_cast<uint32_t>(-altitude_m), 4);
}

uint32_t WrittenEnl(float extra) {
  constexpr double kFactor = 3.28084;
  constexpr double kMaxEnl = 999;
  // Halves up, since the conversion to a whole number cuts.
  const double enl = extra * kFactor + 0.5;
  if (!(enl > 0)) return 0;  // not a number, too
  return static_cast<uint32_t>(std::min(enl, kMaxEnl));
}

// "B1200004707500N01130001EA0012300456", with three more digits when the extra value is wanted.
// Written in place: a log has tens of thousands of these lines.
void AppendFix(std::string& igc, const TrackPoint& point, bool enl) {
  char line[kBRecordLength + kEnlDigits + kLineEnd.size()];
  const uint32_t time_of_day_s = point.time % kSecondsPerDay;
  char* place = line;
  *place++ = 'B';
  place = PutDigits(place, time_of_day_s / 3600, 2);
  place = PutDigits(place, time_of_day_s / 60 % 60, 2);
  place = PutDigits(place, time_of_day_s % 60, 2);
  place = PutPosition(place, point.lat, point.lon);
  *place++ = 'A';
  place = PutAltitude(place, std::clamp(point.pressure_alt, kMinAltitude, kMaxAltitude));
  place = PutAltitude(place, WrittenGpsAltitude(point.gps_alt_dm));
  if (enl) place = PutDigits(place, WrittenEnl(point.extra), kEnlDigits);
  place = std::copy(kLineEnd.begin(), kLineEnd.end(), place);
  igc.append(line, place);
}

// "LXSH Downloaded 2026-05-14  17:03:21"
void AppendLog(std::string& igc, const CalendarTime& download) {
  igc += "LXSH Skyhaul version " + VersionText();
  igc += kLineEnd;
  igc += "LXSH Downloaded " + DateText(download) + "  " + TimeText(download);
  igc += kLineEnd;
}

}  // namespace

int Write(std::span<const TrackPoint> points, const HeaderTexts& header,
          const WriteOptions& options, std::string& text) {
  text.clear();
  if (points.empty()) return -1;
  text.reserve(kHeaderReserve + points.size() * (kBRecordLength + kEnlDigits + kLineEnd.size()));
  AppendIdentification(text, options);
  AppendHeader(text, header, points.front().time);
  // The I record must stand before the fixes whose columns it names.
  if (options.enl) AppendLine(text, "I013638ENL", "");
  if (options.task != nullptr && !options.task->points.empty()) AppendTask(text, *options.task);
  for (const TrackPoint& point : points) AppendFix(text, point, options.enl);
  AppendLog(text, options.download_time);
  // Last, because the check value runs over every byte before it.
  if (options.sign && options.may_be_signed) {
    SecurityDigest digest;
    UpdateDigest(digest, text);
    AppendLine(text, SecurityRecord(digest), "");
  }
  return static_cast<int>(text.size());
}

}  // namespace skyhaul::igc
