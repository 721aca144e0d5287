#include "formats/igc/write_igc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "core/text/numbers.h"
#include "core/text/scan.h"
#include "core/units.h"
#include "core/version.h"
#include "formats/igc/decode_line.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/security_record.h"

namespace skyhaul::igc {
namespace {

constexpr CalendarTime kFirstFix = {2026, 5, 14, 23, 59, 58};

int32_t Angle(int degrees, int milliminutes) {
  return MilliminutesToSemicircles(degrees * 60000 + milliminutes);
}

WaypointRecord Turnpoint(int32_t lat, int32_t lon, const char* description) {
  WaypointRecord point = {.lat = lat, .lon = lon};
  std::memcpy(point.description, description, std::strlen(description));
  return point;
}

std::string FixLine(const TrackPoint& point, bool enl = false) {
  std::string text;
  Write({&point, 1}, {}, {.enl = enl}, text);
  const size_t start = text.find("\nB") + 1;
  return text.substr(start, text.find('\r', start) - start);
}

TEST(IgcWrite, WritesEveryRecord) {
  const uint32_t time = TimeFromCalendar(kFirstFix);
  const std::vector<TrackPoint> points = {
      {1, time, 0, Angle(47, 7500), Angle(11, 30001), 4564, 123, 10},
      {0, time + 3, 0, -Angle(0, 1), -Angle(179, 59999), 4565, -7, 0},
  };
  const std::string forty(40, 'o');
  const DeclaredRoute task = {
      .declaration_time = time - 86400,
      .flight_date = time,
      .task_number = 7,
      .name = "Long\nway",
      .points = {Turnpoint(0, 0, ""), Turnpoint(Angle(47, 7500), Angle(11, 30001), "Start"),
                 Turnpoint(-Angle(8, 59999), -Angle(100, 5), "Lake\r\nB"),
                 Turnpoint(Angle(47, 0), Angle(11, 0), forty.c_str()), Turnpoint(0, 0, "Landing")}};
  std::string text;
  const int length = Write(
      points,
      {.pilot = "Ada\r\nB", .glider_type = "Wing 7", .competition_class = "Open", .site = "Hill"},
      {.sign = true,
       .may_be_signed = true,
       .serial = "000",
       .free_text = "from\rhere",
       .download_time = {2026, 5, 15, 6, 7, 8},
       .enl = true,
       .task = &task},
      text);

  const std::string body =
      "AXSH000 from here\r\n"
      "HFDTEDATE:140526,01\r\n"
      "HFPLTPILOT: Ada  B\r\n"
      "HFGTYGLIDERTYPE: Wing 7\r\n"
      "HFGIDGLIDERID: \r\n"
      "HFDTM100GPSDATUM: WGS-84\r\n"
      "HFCIDCOMPETITIONID: \r\n"
      "HFCCLCOMPETITIONCLASS: Open\r\n"
      "HFSITSITE: Hill\r\n"
      "I013638ENL\r\n"
      "C130526235958140526000701Long way\r\n"
      "C0000000N00000000E\r\n"
      "C4707500N01130001EStart\r\n"
      "C0859999S10000005WLake  B\r\n"
      "C4700000N01100000Eoooooooooooooooooooooooooooooooooooooooo\r\n"
      "C0000000N00000000ELanding\r\n"
      "B2359584707500N01130001EA0012300456033\r\n"
      "B0000010000001S17959999WA-000700457000\r\n"
      "LXSH Skyhaul version " +
      FixedText(kVersionNumber / 100.0, 2) +
      "\r\n"
      "LXSH Downloaded 2026-05-15  06:07:08\r\n";
  EXPECT_EQ(text.substr(0, body.size()), body);
  EXPECT_EQ(text.size(), body.size() + 19);
  EXPECT_EQ(length, static_cast<int>(text.size()));
  EXPECT_EQ(CheckSecurityRecord(text), SecurityCheck::kPassed);
}

TEST(IgcWrite, LeavesOutWhatIsNotAskedFor) {
  const TrackPoint point = {.time = TimeFromCalendar(kFirstFix)};
  const DeclaredRoute no_points = {.name = "Empty"};
  for (const bool sign : {false, true}) {
    std::string text;
    Write({&point, 1}, {}, {.sign = sign, .may_be_signed = !sign, .task = &no_points}, text);
    EXPECT_EQ(text.substr(0, 7), "AXSH \r\n");
    for (const char* absent : {"\nG", "\nI", "\nC"}) EXPECT_EQ(text.find(absent), text.npos);
  }
  std::string text = "left over";
  EXPECT_EQ(Write({}, {}, {}, text), -1);
  EXPECT_EQ(text, "");
}

TEST(IgcWrite, CountsNoTurnpointsInAShortTask) {
  const TrackPoint point = {};
  const DeclaredRoute task = {.task_number = 12345, .points = std::vector<WaypointRecord>(1)};
  std::string text;
  Write({&point, 1}, {}, {.task = &task}, text);
  EXPECT_NE(text.find("\nC3112890000003112891234500\r\n"), text.npos);
}

TEST(IgcWrite, ClampsAltitudesAndExtraValues) {
  const std::tuple<int32_t, int32_t, float, const char*> cases[] = {
      {99999, 99999, 0.0F, "9999910000000"},  {100000, 100000, -1.0F, "9999999999000"},
      {-9999, -9999, -0.1F, "-9999-0999000"}, {-10000, -10000, 0.152F, "-9999-9999000"},
      {0, 4, 0.153F, "0000000000001"},        {-1, 5, 304.4F, "-000100001999"},
      {1, -5, 400.0F, "0000100000999"},       {1, -15, 1e30F, "00001-0001999"},
      {0, 0, -1e30F, "0000000000000"},        {0, 0, NAN, "0000000000000"},
  };
  for (const auto& [pressure_alt, gps_alt_dm, extra, written] : cases) {
    const TrackPoint point = {
        .gps_alt_dm = gps_alt_dm, .pressure_alt = pressure_alt, .extra = extra};
    EXPECT_EQ(FixLine(point, true).substr(25), written);
  }
}

TEST(IgcWrite, KeepsColumnsAtTheEdgesOfTheWorld) {
  EXPECT_EQ(FixLine({.lat = INT32_MAX, .lon = INT32_MAX}), "B0000009000000N18000000EA0000000000");
  EXPECT_EQ(FixLine({.lat = INT32_MIN, .lon = INT32_MIN}), "B0000009000000S18000000WA0000000000");
  // Half a thousandth of a minute is 99.4 semicircles.
  EXPECT_EQ(FixLine({.lat = -99, .lon = -100}), "B0000000000000N00000001WA0000000000");
}

TEST(IgcWrite, BothReadersReturnWhatWasWritten) {
  std::mt19937 random(20260514);  // NOLINT(bugprone-random-generator-seed): repeatable
  const auto between = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  std::vector<TrackPoint> points;
  uint32_t time = TimeFromCalendar(kFirstFix);
  for (int i = 0; i < 5000; ++i) {
    points.push_back({.segment_start = i == 0 ? 1U : 0U,
                      .time = time,
                      .lat = MilliminutesToSemicircles(between(-5399999, 5399999)),
                      .lon = MilliminutesToSemicircles(between(-10799999, 10799999)),
                      .gps_alt_dm = between(-9999, 99999),
                      .pressure_alt = between(-9999, 99999)});
    time += static_cast<uint32_t>(between(1, 82799));
  }
  std::string text;
  ASSERT_GT(Write(points, {}, {}, text), 0);
  for (TrackPoint& point : points) point.gps_alt_dm = DecimetresToMetres(point.gps_alt_dm) * 10;
  std::vector<TrackPoint> read;
  std::string message;
  EXPECT_EQ(Read(text, read, message), 5000) << message;
  EXPECT_EQ(read, points);
  Decoder decoder;
  for (std::string_view rest = text; !rest.empty();) DecodeLine(decoder, TakeLine(rest));
  ASSERT_EQ(decoder.points.size(), read.size());
  for (size_t i = 0; i < read.size(); ++i) {
    // The decoder rounds its own way.
    EXPECT_LE(std::abs(decoder.points[i].lat - read[i].lat), 1) << i;
    EXPECT_LE(std::abs(decoder.points[i].lon - read[i].lon), 1) << i;
    read[i].lat = decoder.points[i].lat;
    read[i].lon = decoder.points[i].lon;
  }
  EXPECT_EQ(decoder.points, read);
}

}  // namespace
}  // namespace skyhaul::igc
