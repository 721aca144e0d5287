#include "formats/igc/read_igc.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/time_scale.h"
#include "core/units.h"

namespace skyhaul {
namespace {

std::string Start() {
  return "AXSH000\r\nHFDTE140526\r\n";
}

constexpr const char* kFix = "B1200004707500N01130001EA0012300456\r\n";

std::string MessageOf(const std::string& text) {
  std::vector<TrackPoint> points(1);
  std::string message;
  const int count = ParseIgc(text, points, message);
  EXPECT_EQ(count, count < 0 ? -1 : static_cast<int>(points.size()));
  EXPECT_EQ(points.empty(), count < 0);
  return message;
}

std::vector<TrackPoint> PointsOf(const std::string& text) {
  std::vector<TrackPoint> points;
  std::string message;
  ParseIgc(text, points, message);
  EXPECT_EQ(message, "");
  return points;
}

std::string Fix(const std::string& hhmmss) {
  return std::string("B").append(hhmmss).append("4707500N01130001EA0012300456\r\n");
}

TEST(ParseIgc, ReadsEveryFieldOfAFix) {
  const std::vector<TrackPoint> points =
      PointsOf(Start() + "B0102034707501S01130999WV-0012-0456\r\n");
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

TEST(ParseIgc, RefusesFilesWithTheirMessage) {
  const struct {
    std::string text;
    const char* message;
  } cases[] = {
      {"", "No A-record found"},
      {"\r\n" + Start() + kFix, "Missing A-record"},
      {"HFDTE140526\r\n", "Missing A-record"},
      {Start(), "No positions found"},
      {Start() + "\n\r\nother lines\n", "No positions found"},
      {Start() + "AXSH001\r\n" + kFix, "Multiple A-records"},
      {Start() + "HFDTE150526\r\n" + kFix, "Multiple HFDTE-records"},
      {Start() + "I013638FXA\r\nI013638FXA\r\n", "Multiple I-records"},
      {std::string("AXSH000\r\n") + kFix, "Format error on line 2"},
      {std::string("AX-H000\r\n") + kFix, "Format error on line 1"},
      {"A", "Format error on line 1"},
      {"AXSH00", "Format error on line 1"},
      {"AXSH0 0", "Format error on line 1"},
      {Start() + kFix + "\r\nB\r\n", "Format error on line 5"},
      {Start() + "B1200004707500N01130001EA00" + '\0' + "2300456\n", "Format error on line 3"},
      {Start() + "B1200004707500N01130001E" + '\0' + "0012300456\n", ""},
  };
  for (const auto& test : cases) EXPECT_EQ(MessageOf(test.text), test.message) << test.text;
}

TEST(ParseIgc, KnowsManufacturersWithoutSerial) {
  for (const char* line :
       {"AXSH", "AXSH free text", "AXSH000", "Axsh12bFLIGHT:1", "AXSH\rwhatever"}) {
    EXPECT_EQ(MessageOf(std::string(line) + "\nHFDTE140526\n" + kFix), "") << line;
  }
}

TEST(ParseIgc, ReadsDates) {
  const struct {
    const char* line;
    bool accepted;
  } cases[] = {
      {"HFDTE310526", true},
      {"HFDTEDATE:310526", true},
      {"HFDTEDATE:310526,01", true},
      {"HFDTEDATE:  310526,01", true},
      {"HFDTE310526\rrubbish", true},
      {"HFDTE310526,01", false},
      {"HFDTE310526 ", false},
      {"HFDTE 310526", false},
      {"HFDTEDATE:310526 ", false},
      {"HFDTEDATE:3105261", false},
      {"HFDTEDATE:", false},
      {"HFDTEDATE:   ", false},
      {"HFDTE", false},
      {"HFDTE31052", false},
      {"HFDTE000526", false},
      {"HFDTE320526", false},
      {"HFDTE310026", false},
      {"HFDTE311326", false},
      {"HFDTE3105+6", false},
  };
  for (const auto& test : cases) {
    const std::string text = std::string("AXSH000\n") + test.line + "\n" + kFix;
    EXPECT_EQ(MessageOf(text), test.accepted ? "" : "Format error on line 2") << test.line;
  }
}

TEST(ParseIgc, TestsEveryFieldOfAFix) {
  const struct {
    const char* line;
    bool accepted;
  } cases[] = {
      {"B2359598960000N17960000EA9999999999", true},
      {"B2359598960000S17960000W -9999-9999", true},
      {"B1200004707500N01130001EA00123004561", true},
      {"B1200004707500N01130001EA001230045", false},
      {"B1200004707500N01130001EA00123004\r56", false},
      {"B2400004707500N01130001EA0012300456", false},
      {"B1260004707500N01130001EA0012300456", false},
      {"B1200604707500N01130001EA0012300456", false},
      {"B1200 04707500N01130001EA0012300456", false},
      {"B1200009000000N01130001EA0012300456", false},
      {"B1200004760001N01130001EA0012300456", false},
      {"B1200004707500n01130001EA0012300456", false},
      {"B1200004707500E01130001EA0012300456", false},
      {"B12000047075.0N01130001EA0012300456", false},
      {"B1200004707500N18000000EA0012300456", false},
      {"B1200004707500N01160001EA0012300456", false},
      {"B1200004707500N01130001NA0012300456", false},
      {"B1200004707500N-1130001EA0012300456", false},
      {"B1200004707500N01130001EA0012-00456", false},
      {"B1200004707500N01130001EA+012300456", false},
      {"B1200004707500N01130001EA-012A00456", false},
      {"B1200004707500N01130001EA001230045 ", false},
  };
  for (const auto& test : cases) {
    const std::string text = Start() + test.line + "\n";
    EXPECT_EQ(MessageOf(text), test.accepted ? "" : "Format error on line 3") << test.line;
  }
}

TEST(ParseIgc, ReadsFractionsOfTheFirstSecond) {
  const struct {
    const char* extensions;
    const char* tail;  // of the fix, from column 36 on
    int milliseconds;  // -1: refused in the fix; -2: refused in the I record
  } cases[] = {
      {"I013638TDS", "987", 987},
      {"I023638FXA3940TDS", "00105", 50},
      {"I013636TDS", "4", 400},
      {"I013640TDS", "12399", 123},
      {"I013638TDS", "98", -1},
      {"I013638TDS", "9x7", -1},
      {"I013681TDS", "987", -1},
      {"I00", "", 0},
      {"I013638FXA trailing", "xyz", 0},
      {"I013538TDS", "987", -2},
      {"I013837TDS", "987", -2},
      {"I013638TD", "987", -2},
      {"I013638T S", "987", -2},
      {"I023638TDS", "987", -2},
      {"I01363xTDS", "987", -2},
      {"Ix13638TDS", "987", -2},
      {"I", "987", -2},
  };
  for (const auto& test : cases) {
    const std::string text =
        Start() + test.extensions + "\nB1200004707500N01130001EA0012300456" + test.tail + "\n";
    std::vector<TrackPoint> points;
    std::string message;
    const int count = ParseIgc(text, points, message);
    ASSERT_EQ(count, test.milliseconds < 0 ? -1 : 1) << test.extensions;
    if (count == 1) {
      EXPECT_EQ(points[0].milliseconds, static_cast<uint32_t>(test.milliseconds))
          << test.extensions;
    } else {
      EXPECT_EQ(message,
                test.milliseconds == -1 ? "Format error on line 4" : "Format error on line 3")
          << test.extensions << test.tail;
    }
  }
}

TEST(ParseIgc, LooksAtEightyCharactersOfALine) {
  const std::string filler(80 - 35, '5');
  const std::string fix = "B1200004707500N01130001EA0012300456" + filler;
  EXPECT_EQ(PointsOf(Start() + "I017880TDS\n" + fix + "\n")[0].milliseconds, 555U);
  EXPECT_EQ(MessageOf(Start() + "I017981TDS\n" + fix + "5\n"), "Format error on line 4");
}

TEST(ParseIgc, LinesUpTimes) {
  const std::string start = Start() + "I013636TDS\n";
  const auto fix = [](const char* hhmmss) {
    return std::string("B").append(hhmmss).append("4707500N01130001EA00123004567\n");
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

TEST(ParseIgc, RefusesDaysPastTheEndOfTheTimeScale) {
  std::string text = "AXSH000\nHFDTE311299\n";
  for (int day = 0; day < 10000; ++day) text += Fix("230000") + Fix("000000");
  EXPECT_EQ(MessageOf(text).substr(0, 20), "Format error on line");
}

}  // namespace
}  // namespace skyhaul
