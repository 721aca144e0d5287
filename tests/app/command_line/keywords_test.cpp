#include "app/command_line/keywords.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace skyhaul {
namespace {

constexpr CommandLineHost kHost = {
    .is_port_name = [](const std::string& text) { return text.starts_with('/'); }};

struct Taken {
  int result;
  std::string message;
  CommandLineBlock block;
};

Taken Take(const std::vector<Item>& items, const CommandLineHost& host = kHost) {
  Taken taken = {};
  for (const Item& item : items) {
    taken.result = TakeItem(item, host, taken.block, taken.message);
    if (taken.result != 0) break;
  }
  return taken;
}

TEST(Keywords, RefusesWithItsMessage) {
  const std::string long_path = "/" + std::string(80, 'x');
  const struct {
    Item item;
    const char* message;
  } cases[] = {
      {{"", ""}, "Unrecognized command"},
      {{"EXITS", ""}, "Unrecognized command"},
      {{"COMP_SPECIAL_QQQQ", ""}, "Unrecognized command"},
      {{"COM", ""}, "Bad COM port"},
      {{"COM", "0"}, "Bad COM port"},
      {{"COM", "10000"}, "Bad COM port"},
      {{"COM", "3x"}, "Bad COM port"},
      {{"COM", "-3"}, "Bad COM port"},
      {{"COM", "4294967297"}, "Bad COM port"},
      {{"COM", "ttyUSB0"}, "Bad COM port"},
      {{"COM", long_path}, "Bad COM port"},
      {{"GPS", ""}, "Bad GPS type"},
      {{"GPS", "COMPEO"}, "Bad GPS type"},
      {{"KML_LOG", ""}, "Missing log file name"},
      {{"OZI_LOG", ""}, "Missing log file name"},
      {{"RD_LOG", ""}, "Missing log file name"},
      {{"IGC_LOG", ""}, "Missing log file directory name"},
      {{"MPS_LOG", ""}, "Missing log file name"},
      {{"RD_WPT", ""}, "Missing wpt file name"},
      {{"WR_WPT", ""}, "Missing wpt file name"},
      {{"WR_WPT2", ""}, "Missing wpt file name"},
      {{"IGC2KML", ""}, "Missing IGC/KML file name"},
      {{"DAT2KML", ""}, "Missing DAT/KML file name"},
      {{"COMP_LOG", ""}, "Bad competition fle type"},
      {{"COMP_LOG", "kml"}, "Bad competition fle type"},
      {{"WR_CTR", ""}, "Missing CTR file name"},
      {{"USERNAME", ""}, "Missing username"},
      {{"RD_GEO_WPT", ""}, "Missing wpt file name"},
      {{"CHKKML", ""}, "Missing file name"},
      {{"WPTSRC", ""}, "Missing wpt. source file name"},
      {{"WPTDEST", ""}, "Missing wpt. destination file name"},
      {{"KML2IGC", ""}, "Missing KML/IGC file name"},
      {{"WIN", ""}, "Bad window size"},
      {{"WIN", "3"}, "Bad window size"},
      {{"WIN", "10"}, "Bad window size"},
      {{"LOGFILE", ""}, "Missing track log file name"},
      {{"COMP_DIR", ""}, "Missing competition directory name"},
      {{"COMP_FS", ""}, "Missing flight score file name"},
      {{"COMPID", ""}, "Bad COMPID value"},
      {{"COMPID", "x"}, "Bad COMPID value"},
      {{"CIVLID", "12 "}, "Bad CIVLID value"},
      {{"FILTER", ""}, "Bad track log start filter time"},
      {{"FILTER", "24:00"}, "Bad track log start filter time"},
      {{"FILTER", "9:30"}, "Bad track log start filter time"},
      {{"FILTER", "09:30:"}, "Bad track log start filter time"},
      {{"FILTER", "09:30x00"}, "Bad track log start filter time"},
      {{"FILTEREND", "12:60"}, "Bad track log stop filter time"},
      {{"FILTEREND", "12:00:60"}, "Bad track log stop filter time"},
      {{"NOTIFY", ""}, "Missing window class name"},
      {{"SESSION", ""}, "Missing session number"},
      {{"SESSION", "two"}, "Bad session number"},
      {{"SENDLOG", ""}, "Bad SENDLOG value"},
      {{"SENDLOG", "-1"}, "Bad SENDLOG value"},
      {{"POSX", ""}, "Bad POSX value"},
      {{"POSY", "1.5"}, "Bad POSY value"},
      {{"POSY", "2147483648"}, "Bad POSY value"},
      {{"TIMEOUT", ""}, "Bad TIMEOUT value"},
      {{"TIMEOUT", "-"}, "Bad TIMEOUT value"},
      {{"TIMEOUT", "--1"}, "Bad TIMEOUT value"},
      {{"TIMEOUT", "10s"}, "Bad TIMEOUT value"},
      {{"TRACK", ""}, "Missing TRACK list"},
      {{"TRACK", "0"}, "Bad TRACK value"},
      {{"TRACK", "256"}, "Bad TRACK value"},
      {{"TRACK", "5-3"}, "Bad TRACK value"},
      {{"TRACK", "1,,2"}, "Bad TRACK value"},
      {{"TRACK", "1,"}, "Bad TRACK value"},
      {{"TRACK", "-2"}, "Bad TRACK value"},
      {{"TRACK", "1-2-3"}, "Bad TRACK value"},
      {{"TRACK", "1, 2"}, "Bad TRACK value"},
      {{"TRACK", "1-21"}, "Bad TRACK value"},
  };
  for (const auto& c : cases) {
    const Taken taken = Take({c.item});
    EXPECT_EQ(taken.result, -1) << c.item.keyword << '=' << c.item.value;
    EXPECT_EQ(taken.message, c.message) << c.item.keyword << '=' << c.item.value;
    EXPECT_EQ(taken.block.command, Command::kNone) << c.item.keyword;
  }
}

TEST(Keywords, CommandsSetTheirCodeAndFile) {
  const struct {
    const char* keyword;
    int code;
  } cases[] = {
      {"KML_LOG", 1}, {"OZI_LOG", 2}, {"RD_LOG", 2},   {"IGC_LOG", 3},     {"MPS_LOG", 4},
      {"RD_WPT", 5},  {"WR_WPT", 6},  {"WR_WPT2", 7},  {"IGC2KML", 8},     {"DAT2KML", 9},
      {"WR_CTR", 13}, {"CHKKML", 16}, {"KML2IGC", 19}, {"RD_GEO_WPT", 15},
  };
  for (const auto& c : cases) {
    const Taken taken = Take({{c.keyword, "Some File"}});
    EXPECT_EQ(static_cast<int>(taken.block.command), c.code) << c.keyword;
    EXPECT_EQ(taken.block.file, "Some File") << c.keyword;
  }
  EXPECT_EQ(static_cast<int>(Take({{"FLIGHTLIST", "ignored"}}).block.command), 17);

  const Taken user_name = Take({{"USERNAME", "Ann"}});
  EXPECT_EQ(static_cast<int>(user_name.block.command), 14);
  EXPECT_EQ(user_name.block.user_name, "Ann");

  const Taken waypoints = Take({{"WPTDEST", "b"}, {"WPTSRC", "a"}});
  EXPECT_EQ(static_cast<int>(waypoints.block.command), 18);
  EXPECT_EQ(waypoints.block.waypoint_source, "a");
  EXPECT_EQ(waypoints.block.waypoint_destination, "b");

  const Taken competition = Take({{"COMP_LOG", "IGC"}});
  EXPECT_EQ(static_cast<int>(competition.block.command), 11);
  EXPECT_EQ(competition.block.competition_format, CompetitionFormat::kIgc);
}

TEST(Keywords, EveryFlagSetsItsOwnFieldOnly) {
  const struct {
    const char* keyword;
    bool CommandLineBlock::*flag;
  } cases[] = {
      {"USB", &CommandLineBlock::usb},
      {"EXIT", &CommandLineBlock::exit},
      {"OVERWRITE", &CommandLineBlock::overwrite},
      {"COMP_SPECIAL", &CommandLineBlock::competition_special},
      {"NOSPLIT", &CommandLineBlock::no_split},
      {"NOCHECK", &CommandLineBlock::no_check},
      {"PWROFF", &CommandLineBlock::power_off},
      {"NOLOOPOPT", &CommandLineBlock::no_loop_optimisation},
  };
  for (const auto& given : cases) {
    const Taken taken = Take({{given.keyword, "0"}});
    EXPECT_EQ(taken.result, 0);
    for (const auto& other : cases) {
      EXPECT_EQ(taken.block.*other.flag, given.flag == other.flag) << given.keyword;
    }
  }
}

TEST(Keywords, TextsGoToTheirFieldsCutToTheirSizes) {
  const struct {
    const char* keyword;
    std::string CommandLineBlock::*text;
    size_t size;
  } cases[] = {
      {"PILOT", &CommandLineBlock::pilot, 80},
      {"ID", &CommandLineBlock::identifier, 20},
      {"LOGFILE", &CommandLineBlock::log_file, 260},
      {"NOTIFY", &CommandLineBlock::notify_client, 260},
      {"COMP_DIR", &CommandLineBlock::competition_directory, 260},
      {"COMP_FS", &CommandLineBlock::flight_score_file, 260},
  };
  for (const auto& c : cases) {
    const Taken taken = Take({{c.keyword, std::string(300, 'x')}});
    EXPECT_EQ(taken.result, 0) << c.keyword;
    EXPECT_EQ(taken.block.*c.text, std::string(c.size, 'x')) << c.keyword;
  }
  EXPECT_EQ(Take({{"PILOT", ""}}).result, 0);
}

TEST(Keywords, PortIsANumberOrADevice) {
  const Taken number = Take({{"COM", "50"}});
  EXPECT_EQ(number.block.port_number, 50U);
  EXPECT_EQ(number.block.port_text, "50");
  const Taken device = Take({{"COM", "7"}, {"COM", "/" + std::string(79, 'x')}});
  EXPECT_EQ(device.result, 0);
  EXPECT_EQ(device.block.port_number, 0U);
  EXPECT_EQ(device.block.port_text.size(), 80U);
  EXPECT_EQ(Take({{"COM", "/dev/ttyUSB0"}}, {}).message, "Bad COM port");
}

TEST(Keywords, GpsTypesHaveTheirCodes) {
  const struct {
    const char* value;
    int code;
  } cases[] = {{"garmin", 0},   {"Mlr", 1},         {"TOPNAV", 2},       {"LOGIT", 3},
               {"IqCompeo", 4}, {"GRAVITER", 5},    {"MAGELLAN", 6},     {"XCTRAINER", 7},
               {"xct_mxp", 8},  {"FLYMASTER", 9},   {"DSX", 10},         {"MLRC", 11},
               {"IQBASIC", 12}, {"MTK", 13},        {"LEONARDO", 14},    {"ASCENT", 15},
               {"SYRIDE", 17},  {"DIGIFLYAIR", 16}, {"FLYMASTEROLD", 18}};
  for (const auto& c : cases) {
    const Taken taken = Take({{"GPS", c.value}});
    EXPECT_EQ(taken.result, 0) << c.value;
    EXPECT_EQ(static_cast<int>(taken.block.gps_type), c.code) << c.value;
  }
}

TEST(Keywords, TracksAreExpandedSortedAndUnique) {
  using Numbers = std::vector<uint32_t>;
  EXPECT_EQ(Take({{"TRACK", "1,3-5"}}).block.tracks, (Numbers{1, 3, 4, 5}));
  EXPECT_EQ(Take({{"TRACK", "7,255,7-8,2"}}).block.tracks, (Numbers{2, 7, 8, 255}));
  EXPECT_EQ(Take({{"TRACK", "1-20,20"}}).block.tracks.size(), 20U);
  EXPECT_EQ(Take({{"TRACK", "1"}, {"TRACK", "2"}}).block.tracks, (Numbers{2}));
}

TEST(Keywords, TimeoutIsClamped) {
  const struct {
    const char* value;
    uint32_t timeout_s;
  } cases[] = {{"0", 0},          {"30", 30},
               {"86400", 86400},  {"86401", 86400},
               {"100000", 86400}, {"99999999999999999999", 86400},
               {"-5", 0},         {"-99999999999999999999", 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(Take({{"TIMEOUT", c.value}}).block.timeout_s, c.timeout_s) << c.value;
  }
  EXPECT_FALSE(Take({{"EXIT", ""}}).block.timeout_s.has_value());
}

TEST(Keywords, FilterTimesMustBeInOrder) {
  const Taken both = Take({{"FILTER", "00:00"}, {"FILTEREND", "23:59:59"}});
  EXPECT_EQ(both.result, 0);
  EXPECT_EQ(both.block.filter_start_s, 0U);
  EXPECT_EQ(both.block.filter_stop_s, 86399U);
  EXPECT_EQ(Take({{"FILTER", "12:30"}, {"FILTEREND", "12:30:00"}}).result, 0);
  EXPECT_EQ(Take({{"FILTEREND", "12:00"}, {"FILTER", "12:00:01"}}).message,
            "Comp. stop time before start time");
  EXPECT_EQ(Take({{"FILTER", "12:00:01"}, {"FILTEREND", "12:00"}}).message,
            "Comp. start time after end time");
}

TEST(Keywords, NumbersGoToTheirFields) {
  const CommandLineBlock block = Take({{"COMPID", "12"},
                                       {"CIVLID", "4294967295"},
                                       {"SESSION", "0"},
                                       {"SENDLOG", "5"},
                                       {"POSX", "-100"},
                                       {"POSY", "40"}})
                                     .block;
  EXPECT_EQ(block.competition_id, 12U);
  EXPECT_EQ(block.civl_id, 4294967295U);
  EXPECT_EQ(block.session, 0U);
  EXPECT_EQ(block.send_log_s, 5U);
  EXPECT_EQ(block.position_x, -100);
  EXPECT_EQ(block.position_y, 40);
}

TEST(Keywords, WindowSizeBecomesAShowCode) {
  EXPECT_EQ(static_cast<int>(Take({}).block.show_code), 5);
  EXPECT_EQ(static_cast<int>(Take({{"WIN", "0"}}).block.show_code), 0);
  EXPECT_EQ(static_cast<int>(Take({{"WIN", "1"}}).block.show_code), 2);
  EXPECT_EQ(static_cast<int>(Take({{"WIN", "0"}, {"WIN", "2"}}).block.show_code), 5);
}

TEST(Keywords, TableIsSound) {
  std::set<std::string_view> names;
  for (const Keyword& keyword : Keywords()) {
    EXPECT_TRUE(names.insert(keyword.name).second) << keyword.name;
    EXPECT_LE(keyword.name.size(), kMaxKeyword) << keyword.name;
    EXPECT_FALSE(keyword.help.empty()) << keyword.name;
    EXPECT_NE(keyword.take, nullptr) << keyword.name;
    EXPECT_EQ(keyword.text != nullptr, keyword.max_characters != 0) << keyword.name;
  }
  EXPECT_EQ(names.size(), 46U);
}

}  // namespace
}  // namespace skyhaul
