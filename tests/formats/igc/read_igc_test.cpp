#include "formats/igc/read_igc.h"

#include <gtest/gtest.h>

#include "core/time_scale.h"

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

// The fixes as "second.milliseconds" of the day of kStart, "!" after one that starts a segment; or
// the message.
std::string TimesOf(const std::string& text) {
  std::vector<TrackPoint> points;
  std::string times;
  Read(text, points, times);
  for (const TrackPoint& point : points) {
    times += std::to_string(point.time - TimeFromCalendar({2026, 5, 14})) + '.' +
             std::to_string(point.milliseconds) + (point.segment_start != 0 ? "! " : " ");
  }
  return times;
}

// What is refused in a field as such is for the decoder's test, which has the same fields.
TEST(IgcRead, RefusesFilesWithTheirMessage) {
  const struct {
    std::string message, before;
    std::vector<std::string> lines;
    std::string after;
  } cases[] = {
      {"No A-record found", "", {""}, ""},
      {"Missing A-record", "", {"\r\n" + kStart + kFix, "HFDTE140526\r\n"}, ""},
      {"No positions found", kStart, {"", "\n\r\nother lines\n"}, ""},
      {"Multiple A-records", kStart, {"AXSH001\r\n"}, kFix},
      {"Multiple HFDTE-records", kStart, {"HFDTE150526\r\n"}, kFix},
      {"Multiple I-records", kStart, {"I013638FXA\r\nI013638FXA\r\n"}, ""},
      {"Format error on line 5", kStart, {kFix + "\r\nB\r\n"}, ""},
      {"Format error on line 1", "", {"AX-H000"}, "\r\n" + kFix},
      {"", "", {"AXSH", "Axsh12bFLIGHT:1", "AXSH\rwhatever"}, "\nHFDTE140526\n" + kFix},
      {"",
       "AXSH000\n",
       {"HFDTE310526", "HFDTEDATE:310526", "HFDTEDATE:  310526,01", "HFDTE310526\rrubbish"},
       "\n" + kFix},
      {"Format error on line 2",
       "AXSH000\n",
       {"B1200004707500N01130001EA0012300456", "HFDTE310526,01", "HFDTE 310526",
        "HFDTEDATE:3105261", "HFDTEDATE:   ", "HFDTE31052", "HFDTE320526"},
       "\n" + kFix},
      {"",
       kStart,
       {"B2359598960000N17960000EA9999999999", "B2359598960000S17960000W -9999-9999",
        "B1200004707500N01130001EA00123004561",
        std::string("B1200004707500N01130001E") + '\0' + "0012300456"},
       "\n"},
      {"Format error on line 3",
       kStart,
       {"B1200004707500N01130001EA001230045", "B1200004707500N01130001EA00123004\r56",
        "B2400004707500N01130001EA0012300456", "B1200009000000N01130001EA0012300456",
        "B1200004760001N01130001EA0012300456", "B1200004707500N18000000EA0012300456",
        "B1200004707500N01160001EA0012300456", "B1200004707500N01130001EA+012300456",
        "B1200004707500N01130001EA001230045 "},
       "\n"},
      {"Format error on line 3",
       kStart,
       {"I013538TDS", "I013837TDS", "I013638TD", "I013638T S", "I023638TDS", "I01363xTDS",
        "Ix13638TDS", "I"},
       "\nB1200004707500N01130001EA0012300456987\n"},
  };
  for (const auto& [message, before, lines, after] : cases) {
    for (const std::string& line : lines)
      EXPECT_EQ(MessageOf(std::string(before).append(line).append(after)), message) << line;
  }
}

TEST(IgcRead, ReadsFractionsOfTheFirstSecond) {
  const std::string fix = "\nB1200004707500N01130001EA0012300456";
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"I013638TDS", "987", "43200.987! "},
      {"I023638FXA3940TDS", "00105", "43200.50! "},
      {"I013636TDS", "4", "43200.400! "},
      {"I013640TDS", "12399", "43200.123! "},
      {"I013638FXA more", "xyz", "43200.0! "},
      {"I013638TDS", "98", "Format error on line 4"},
      {"I013638TDS", "9x7", "Format error on line 4"},
      // Eighty characters of a line count.
      {"I017880TDS", std::string(80 - 35, '5'), "43200.555! "},
      {"I017981TDS", std::string(81 - 35, '5'), "Format error on line 4"},
  };
  for (const auto& [extensions, tail, times] : cases) {
    EXPECT_EQ(TimesOf(std::string(kStart).append(extensions).append(fix).append(tail).append("\n")),
              times)
        << extensions;
  }
}

TEST(IgcRead, LinesUpTimes) {
  std::string text = kStart + "I013636TDS\n";
  // Repeated second; back by 59:59 (stays on its day); back by an hour (a new day); midnight.
  for (const char* hhmmss :
       {"100000", "100000", "090001", "080001", "235959", "000000", "000000"}) {
    text.append("B").append(hhmmss).append("4707500N01130001EA00123004567\n");
  }
  EXPECT_EQ(TimesOf(text), "36000.700! 32401.0 115201.0 172799.0 172800.0 ");
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
