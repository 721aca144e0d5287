#include "formats/ozi/ozi_track.h"

#include <limits>

#include "core/text/date_time.h"
#include "core/text/digits.h"
#include "core/text/numbers.h"
#include "core/time_scale.h"
#include "core/units.h"
#include "formats/common/track_altitude.h"
#include "formats/ozi/ozi_text.h"

namespace skyhaul::ozi {

namespace {

constexpr int kPositionDecimals = 7;
constexpr size_t kRoughLineLength = 80;

constexpr std::string_view kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Fields 6 and 7, "01-May-24,12:34:56", which programs ignore and people read.
void AppendReadableTime(std::string& text, uint32_t time) {
  const CalendarTime calendar = CalendarFromTime(time);
  AppendPadded(text, static_cast<uint64_t>(calendar.day), 2);
  text.append("-").append(kMonths[calendar.month - 1]).append("-");
  AppendPadded(text, static_cast<uint64_t>(calendar.year % 100), 2);
  text += ',' + TimeText(calendar);
}

// Feet with one decimal; an altitude that would read "not known" is written a tenth lower.
void AppendAltitude(std::string& text, double altitude_m) {
  const size_t start = text.size();
  AppendFixed(text, altitude_m / kMetresPerFoot, 1);
  if (text.compare(start, std::string::npos, "-777.0") == 0) text.back() = '1';
}

// 46.1234500,7.1234500,1,7693.6,45413.5242593,01-May-24,12:34:56
void AppendPoint(std::string& text, const TrackPoint& point, AltitudeSource source) {
  AppendFixed(text, SemicirclesToDegrees(point.lat), kPositionDecimals);
  text += ',';
  AppendFixed(text, SemicirclesToDegrees(point.lon), kPositionDecimals);
  // 1 begins a new line on the map, so a gap is not drawn across.
  text += point.segment_start != 0 ? ",1," : ",0,";
  AppendAltitude(text, Altitude_m(point, source));
  text += ',';
  AppendSpreadsheetDay(text, point.time, point.milliseconds);
  text += ',';
  AppendReadableTime(text, point.time);
  text += "\r\n";
}

}  // namespace

std::string WriteTrack(std::span<const TrackPoint> points, std::string_view description) {
  // The third and fourth line are fixed texts that readers skip, but count.
  std::string text =
      "OziExplorer Track Point File Version 2.1\r\nWGS 84\r\nAltitude is in Feet\r\nReserved 3\r\n";
  text.reserve(text.size() + points.size() * kRoughLineLength);
  // A red line, two pixels wide, no point left out.
  // 255 is red because colours are numbers in the order blue, green, red.
  text += "0,2,255," + TextToField(description, std::numeric_limits<size_t>::max()) +
          ",0,0,2,8421376\r\n" + std::to_string(points.size()) + "\r\n";
  const AltitudeSource source = ChooseAltitude(points);
  for (const TrackPoint& point : points) AppendPoint(text, point, source);
  return text;
}

}  // namespace skyhaul::ozi
