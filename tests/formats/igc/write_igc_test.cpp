#include "formats/igc/write_igc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "core/units.h"
#include "core/version.h"
#include "formats/igc/read_igc.h"
#include "formats/igc/security_record.h"

namespace skyhaul::igc {
namespace {

constexpr CalendarTime kFirstFix = {
    .year = 2026, .month = 5, .day = 14, .hour = 23, .minute = 59, .second = 58};

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
       .download_time = {.year = 2026, .month = 5, .day = 15, .hour = 6, .minute = 7, .second = 8},
       .enl = true,
       .task = &task},
      text);

  const int version = kVersionNumber % 100;
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
      std::to_string(kVersionNumber / 100) + (version < 10 ? ".0" : ".") + std::to_string(version) +
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

TEST(IgcWrite, CountsTurnpointsOfTheTask) {
  const TrackPoint point = {.time = TimeFromCalendar(kFirstFix)};
  const std::tuple<size_t, uint32_t, const char*> cases[] = {
      {1, 0, "000000"}, {4, 1, "000100"}, {6, 12345, "1234502"}, {104, 2, "0002100"}};
  for (const auto& [points, task_number, counts] : cases) {
    const DeclaredRoute task = {.task_number = task_number,
                                .points = std::vector<WaypointRecord>(points)};
    std::string text;
    Write({&point, 1}, {}, {.task = &task}, text);
    const std::string line = text.substr(text.find("\nC") + 1);
    EXPECT_EQ(line.substr(19, line.find('\r') - 19), counts);
  }
}

TEST(IgcWrite, ClampsAltitudes) {
  const std::tuple<int32_t, int32_t, const char*> cases[] = {
      {99999, 99999, "9999910000"},
      {100000, 100000, "9999999999"},
      {-9999, -9999, "-9999-0999"},
      {-10000, -10000, "-9999-9999"},
      {0, 4, "0000000000"},
      {-1, 5, "-000100001"},
      {1, -5, "0000100000"},
      {1, -15, "00001-0001"},
      {INT32_MIN, INT32_MIN, "-9999-9999"},
      {INT32_MAX, INT32_MAX, "9999999999"},
  };
  for (const auto& [pressure_alt, gps_alt_dm, written] : cases) {
    const TrackPoint point = {.gps_alt_dm = gps_alt_dm, .pressure_alt = pressure_alt};
    EXPECT_EQ(FixLine(point).substr(25), written);
  }
}

TEST(IgcWrite, WritesExtraValues) {
  const std::pair<float, const char*> cases[] = {
      {0, "000"},      {-1, "000"},  {-0.1F, "000"}, {0.152F, "000"}, {0.153F, "001"},
      {304.4F, "999"}, {400, "999"}, {1e30F, "999"}, {-1e30F, "000"}, {NAN, "000"}};
  for (const auto& [extra, written] : cases) {
    EXPECT_EQ(FixLine({.extra = extra}, true).substr(35), written) << extra;
  }
}

TEST(IgcWrite, KeepsColumnsAtTheEdgesOfTheWorld) {
  EXPECT_EQ(FixLine({.lat = INT32_MAX, .lon = INT32_MAX}), "B0000009000000N18000000EA0000000000");
  EXPECT_EQ(FixLine({.lat = INT32_MIN, .lon = INT32_MIN}), "B0000009000000S18000000WA0000000000");
  // Half a thousandth of a minute is 99.4 semicircles.
  EXPECT_EQ(FixLine({.lat = -99, .lon = -100}), "B0000000000000N00000001WA0000000000");
}

TEST(IgcWrite, ReaderReturnsWhatWasWritten) {
  std::mt19937 random(20260514);  // NOLINT(bugprone-random-generator-seed): repeatable
  const auto between = [&](int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  };
  std::vector<TrackPoint> points;
  uint32_t time = TimeFromCalendar(kFirstFix);
  for (int i = 0; i < 5000; ++i) {
    points.push_back({.segment_start = i == 0 ? 1U : 0U,
                      .time = time,
                      .lat = between(-1073741000, 1073741000),
                      .lon = between(-2147483000, 2147483000),
                      .gps_alt_dm = between(-9999, 99999),
                      .pressure_alt = between(-9999, 99999)});
    time += static_cast<uint32_t>(between(1, 82799));
  }
  std::string text;
  ASSERT_GT(Write(points, {}, {}, text), 0);
  std::vector<TrackPoint> read;
  std::string message;
  ASSERT_EQ(Read(text, read, message), 5000) << message;
  for (size_t i = 0; i < points.size(); ++i) {
    TrackPoint expected = points[i];
    expected.lat = MilliminutesToSemicircles(SemicirclesToMilliminutes(expected.lat));
    expected.lon = MilliminutesToSemicircles(SemicirclesToMilliminutes(expected.lon));
    expected.gps_alt_dm = DecimetresToMetres(expected.gps_alt_dm) * 10;
    ASSERT_EQ(read[i], expected) << i;
  }
}

}  // namespace
}  // namespace skyhaul::igc
