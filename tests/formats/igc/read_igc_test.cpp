#include "formats/igc/read_igc.h"

#include <gtest/gtest.h>

#include "core/time_scale.h"
#include "core/units.h"
#include "tests/formats/read_text.h"

namespace skyhaul::igc {
namespace {

const std::string kStart = "AXSH000\r\nHFDTE140526\r\n";
const std::string kFix = "B1200004707500N01130001EA0012300456\r\n";

std::string MessageOf(const std::string& text) {
  std::vector<TrackPoint> points(1);
  std::string message;
  const int count = Read(text, points, message);
  EXPECT_EQ(count, count < 0 ? -1 : static_cast<int>(points.size()));
  EXPECT_EQ(points.empty(), count < 0);
  return message;
}

std::vector<TrackPoint> PointsOf(const std::string& text) {
  std::vector<TrackPoint> points;
  std::string message;
  Read(text, points, message);
  EXPECT_EQ(message, "");
  return points;
}

TEST(IgcRead, ReadsEveryFieldOfAFix) {
  const std::vector<TrackPoint> points =
      PointsOf(kStart + "B0102034707501S01130999WV-0012-0456\r\n");
  ASSERT_EQ(points.size(), 1U);
  EXPECT_EQ(points[0].segment_start, 1U);
  EXPECT_EQ(
      CalendarFromTime(points[0].time),
      (CalendarTime{.year = 2026, .month = 5, .day = 14, .hour = 1, .minute = 2, .second = 3}));
  EXPECT_EQ(SemicirclesToMilliminutes(points[0].lat), -(47 * 60000 + 7501));
  EXPECT_EQ(SemicirclesToMilliminutes(points[0].lon), -(11 * 60000 + 30999));
  EXPECT_EQ(points[0].pressure_alt, -12);
  EXPECT_EQ(points[0].gps_alt_dm, -4560);
}

TEST(IgcRead, RefusesFilesWithTheirMessage) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "No A-record found"},
      {"\r\n" + kStart + kFix, "Missing A-record"},
      {"HFDTE140526\r\n", "Missing A-record"},
      {kStart, "No positions found"},
      {kStart + "\n\r\nother lines\n", "No positions found"},
      {kStart + "AXSH001\r\n" + kFix, "Multiple A-records"},
      {kStart + "HFDTE150526\r\n" + kFix, "Multiple HFDTE-records"},
      {kStart + "I013638FXA\r\nI013638FXA\r\n", "Multiple I-records"},
      {"AXSH000\r\n" + kFix, "Format error on line 2"},
      {"AX-H000\r\n" + kFix, "Format error on line 1"},
      {"A", "Format error on line 1"},
      {"AXSH00", "Format error on line 1"},
      {"AXSH0 0", "Format error on line 1"},
      {kStart + kFix + "\r\nB\r\n", "Format error on line 5"},
      {kStart + "B1200004707500N01130001EA00" + '\0' + "2300456\n", "Format error on line 3"},
      {kStart + "B1200004707500N01130001E" + '\0' + "0012300456\n", ""},
  };
  for (const auto& [text, message] : cases) EXPECT_EQ(MessageOf(text), message) << text;
}

TEST(IgcRead, KnowsManufacturersWithoutSerial) {
  for (const char* line : {"AXSH", "AXSH free text", "Axsh12bFLIGHT:1", "AXSH\rwhatever"}) {
    EXPECT_EQ(MessageOf(Joined({line, "\nHFDTE140526\n", kFix})), "") << line;
  }
}

TEST(IgcRead, ReadsDates) {
  for (const char* line :
       {"HFDTE310526", "HFDTEDATE:310526", "HFDTEDATE:  310526,01", "HFDTE310526\rrubbish"}) {
    EXPECT_EQ(MessageOf(Joined({"AXSH000\n", line, "\n", kFix})), "") << line;
  }
  for (const char* line : {"HFDTE310526,01", "HFDTE310526 ", "HFDTE 310526", "HFDTEDATE:310526 ",
                           "HFDTEDATE:3105261", "HFDTEDATE:", "HFDTEDATE:   ", "HFDTE",
                           "HFDTE31052", "HFDTE320526", "HFDTE310026", "HFDTE3105+6"}) {
    EXPECT_EQ(MessageOf(Joined({"AXSH000\n", line, "\n", kFix})), "Format error on line 2") << line;
  }
}

// What is refused in a field as such is for the decoder's test, which has the same fields.
TEST(IgcRead, TestsEveryFieldOfAFix) {
  for (const char* line :
       {"B2359598960000N17960000EA9999999999", "B2359598960000S17960000W -9999-9999",
        "B1200004707500N01130001EA00123004561"}) {
    EXPECT_EQ(MessageOf(Joined({kStart, line, "\n"})), "") << line;
  }
  for (const char* line :
       {"B1200004707500N01130001EA001230045", "B1200004707500N01130001EA00123004\r56",
        "B2400004707500N01130001EA0012300456", "B1200009000000N01130001EA0012300456",
        "B1200004760001N01130001EA0012300456", "B1200004707500E01130001EA0012300456",
        "B1200004707500N18000000EA0012300456", "B1200004707500N01160001EA0012300456",
        "B1200004707500N01130001NA0012300456", "B1200004707500N01130001EA+012300456",
        "B1200004707500N01130001EA001230045 "}) {
    EXPECT_EQ(MessageOf(Joined({kStart, line, "\n"})), "Format error on line 3") << line;
  }
}

TEST(IgcRead, ReadsFractionsOfTheFirstSecond) {
  const std::string fix = "\nB1200004707500N01130001EA0012300456";
  const std::tuple<std::string, std::string, uint32_t> good[] = {{"I013638TDS", "987", 987},
                                                                 {"I023638FXA3940TDS", "00105", 50},
                                                                 {"I013636TDS", "4", 400},
                                                                 {"I013640TDS", "12399", 123},
                                                                 {"I00", "", 0},
                                                                 {"I013638FXA more", "xyz", 0}};
  for (const auto& [extensions, tail, milliseconds] : good) {
    const std::vector<TrackPoint> points = PointsOf(Joined({kStart, extensions, fix, tail, "\n"}));
    EXPECT_EQ(points.at(0).milliseconds, milliseconds) << extensions;
  }
  const std::pair<std::string, std::string> bad_fixes[] = {
      {"I013638TDS", "98"}, {"I013638TDS", "9x7"}, {"I013681TDS", "987"}};
  for (const auto& [extensions, tail] : bad_fixes) {
    EXPECT_EQ(MessageOf(Joined({kStart, extensions, fix, tail, "\n"})), "Format error on line 4")
        << tail;
  }
  for (const char* bad : {"I013538TDS", "I013837TDS", "I013638TD", "I013638T S", "I023638TDS",
                          "I01363xTDS", "Ix13638TDS", "I"}) {
    EXPECT_EQ(MessageOf(Joined({kStart, bad, fix, "987\n"})), "Format error on line 3") << bad;
  }
}

TEST(IgcRead, LooksAtEightyCharactersOfALine) {
  const std::string filler(80 - 35, '5');
  const std::string fix = "B1200004707500N01130001EA0012300456" + filler;
  EXPECT_EQ(PointsOf(kStart + "I017880TDS\n" + fix + "\n")[0].milliseconds, 555U);
  EXPECT_EQ(MessageOf(kStart + "I017981TDS\n" + fix + "5\n"), "Format error on line 4");
}

TEST(IgcRead, LinesUpTimes) {
  const std::string start = kStart + "I013636TDS\n";
  const auto fix = [](const std::string& hhmmss) {
    return "B" + hhmmss + "4707500N01130001EA00123004567\n";
  };
  // Repeated second; back by 59:59 (stays on its day); back by an hour (a new day); midnight.
  const std::vector<TrackPoint> points =
      PointsOf(start + fix("100000") + fix("100000") + fix("090001") + fix("080001") +
               fix("235959") + fix("000000") + fix("000000"));
  const uint32_t midnight = TimeFromCalendar({.year = 2026, .month = 5, .day = 14});
  const std::vector<uint32_t> expected = {36000, 32401, 86400 + 28801, 86400 + 86399, 2 * 86400};
  ASSERT_EQ(points.size(), expected.size());
  for (size_t i = 0; i < points.size(); ++i) {
    EXPECT_EQ(points[i].time - midnight, expected[i]) << i;
    EXPECT_EQ(points[i].segment_start, i == 0 ? 1U : 0U) << i;
    EXPECT_EQ(points[i].milliseconds, i == 0 ? 700U : 0U) << i;
  }
}

TEST(IgcRead, RefusesDaysPastTheEndOfTheTimeScale) {
  const std::string late = "B2300004707500N01130001EA0012300456\n";
  const std::string midnight = "B0000004707500N01130001EA0012300456\n";
  std::string text = "AXSH000\nHFDTE311299\n";
  for (int day = 0; day < 10000; ++day) text += late + midnight;
  EXPECT_EQ(MessageOf(text).substr(0, 20), "Format error on line");
}

}  // namespace
}  // namespace skyhaul::igc
