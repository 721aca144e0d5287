// Any bytes as an IGC file and as the lines of an instrument: all readers must survive them and
// keep what they promise.

#include "core/units.h"
#include "formats/igc/decode_line.h"
#include "formats/igc/header.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/read_track.h"
#include "formats/igc/security_record.h"
#include "formats/igc/write_igc.h"
#include "fuzz/frame.h"

namespace skyhaul {

namespace {

bool IsFix(const TrackPoint& point, bool first, int32_t max_latitude) {
  return point.segment_start == (first ? 1U : 0U) && point.time != 0 &&
         point.milliseconds <= (first ? 999U : 0U) && std::abs(point.lat) <= max_latitude &&
         point.pressure_alt >= -9999 && point.pressure_alt <= 99999 && point.gps_alt_dm >= -99990 &&
         point.gps_alt_dm <= 999990 && point.gps_alt_dm % 10 == 0 && point.extra == 0;
}

void RequireGoodFlight(const std::vector<TrackPoint>& points) {
  for (size_t i = 0; i < points.size(); ++i) {
    Require(IsFix(points[i], i == 0, 1 << 30));
    if (i == 0) continue;
    // No repeated second, and never back by an hour.
    Require(points[i].time != points[i - 1].time);
    Require(points[i].time + uint64_t{3600} > points[i - 1].time);
  }
}

// Each answer of the decoder must agree with what the line did.
void FeedLine(igc::Decoder& decoder, std::string_view line) {
  const igc::Decoder before = decoder;
  const int result = igc::DecodeLine(decoder, line);
  Require(result >= -igc::kBadGpsAltitude && result <= 1);
  Require(decoder.points.size() == before.points.size() + (result == 1 ? 1 : 0));
  Require(std::equal(before.points.begin(), before.points.end(), decoder.points.begin()));
  if (result == 1) {
    const TrackPoint& point = decoder.points.back();
    const TrackPoint& previous = before.points.empty() ? point : before.points.back();
    // Minutes are not held below 60: up to 89 degrees and 99.999 minutes.
    Require(IsFix(point, before.points.empty(), 1'081'700'000) && point.milliseconds == 0);
    Require(point.time + uint64_t{3600} > previous.time);
    Require(decoder.start_time == decoder.points.front().time);
  }
  if (result < 0) {
    Require(decoder.date == before.date && decoder.day_offset_s == before.day_offset_s);
    Require(decoder.last_time_of_day_s == before.last_time_of_day_s);
    Require(decoder.manufacturer == before.manufacturer && decoder.serial == before.serial);
  }
  Require(decoder.manufacturer.size() == decoder.serial.size());
}

// The degrees that the reader accepts end below 90 and 180; the minutes reach them all the same.
bool IsReadBack(const TrackPoint& point) {
  return std::abs(SemicirclesToMilliminutes(point.lat)) < 90 * 60000 &&
         std::abs(SemicirclesToMilliminutes(point.lon)) < 180 * 60000;
}

void RequireWrittenBack(const std::vector<TrackPoint>& points, std::string_view free_text) {
  std::string text;
  const int length = igc::Write(points, {.pilot = std::string(free_text)},
                                {.sign = true, .may_be_signed = true}, text);
  Require(length == static_cast<int>(text.size()));
  Require(igc::CheckSecurityRecord(text) == igc::SecurityCheck::kPassed);
  if (!std::ranges::all_of(points, IsReadBack)) return;
  std::vector<TrackPoint> again;
  std::string message;
  Require(igc::Read(text, again, message) == static_cast<int>(points.size()));
  for (size_t i = 0; i < points.size(); ++i) {
    Require(again[i].time == points[i].time);
    Require(again[i].lat == points[i].lat && again[i].lon == points[i].lon);
    Require(again[i].pressure_alt == points[i].pressure_alt);
  }
}

// What is left of a damaged file is what the strict reader reads of it.
void RequireMended(std::string_view text) {
  igc::LenientFile file;
  const std::string reason = igc::ReadLenient(text, file);
  Require(reason.empty() != file.flights.empty());
  for (const igc::MendedFlight& flight : file.flights) {
    RequireGoodFlight(flight.points);
    std::vector<TrackPoint> again;
    std::string message;
    Require(igc::Read(flight.text, again, message) > 0 && again == flight.points);
    Require(flight.sources.size() == flight.points.size());
    for (const igc::FixSource& source : flight.sources) Require(source.line != 0);
  }
}

}  // namespace

void Fuzz(std::string_view text) {
  std::vector<TrackPoint> points(1);
  std::string message;
  const int count = igc::Read(text, points, message);
  Require(count != 0);
  RequireAllOrNothing(count, points.size(), message);
  RequireGoodFlight(points);
  if (count > 0) RequireWrittenBack(points, text.substr(0, 200));
  RequireMended(text);
  igc::Track track;
  const int read = igc::ReadTrack(text, {}, track, message);
  Require(read <= 0 || track.reading.strict_message.empty() == (count > 0));

  const igc::Header header = igc::ReadHeader(text);
  Require(header.pilot.find_first_of(std::string_view("\r\n\0\x1b", 4)) == std::string::npos);
  igc::CheckSecurityRecord(text);

  igc::Decoder decoder;
  while (!text.empty()) FeedLine(decoder, TakeLine(text));
}

}  // namespace skyhaul
