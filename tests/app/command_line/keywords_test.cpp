#include "app/command_line/keywords.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
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

// A row with a wrong field, a field that two rows share, or a message in the wrong place.
TEST(Keywords, EveryRowSetsItsOwnFieldAndRefusesWithItsOwnMessages) {
  std::set<std::string_view> names;
  for (const Keyword& keyword : Keywords()) {
    const std::string name(keyword.name);
    EXPECT_TRUE(names.insert(keyword.name).second) << name;
    EXPECT_LE(name.size(), kMaxKeyword) << name;
    EXPECT_FALSE(keyword.help.empty()) << name;
    const std::string_view refusal = keyword.missing.empty() ? keyword.bad : keyword.missing;
    EXPECT_EQ(Take({{name, ""}}).message, refusal) << name;
    EXPECT_EQ(Take({{name, "?"}}).message, keyword.bad) << name;

    const CommandLineBlock block = Take({{name, std::string(300, '7')}}).block;
    EXPECT_EQ(block.command, keyword.bad.empty() ? keyword.command : Command::kNone) << name;
    for (const Keyword& other : Keywords()) {
      const bool own_flag = other.flag != nullptr && other.flag == keyword.flag;
      EXPECT_EQ(other.flag != nullptr && block.*other.flag, own_flag) << name;
      const bool own_text = other.text != nullptr && other.text == keyword.text;
      const std::string text = other.text != nullptr ? block.*other.text : "";
      EXPECT_EQ(text.size(), own_text ? keyword.max_characters : 0) << name;
    }
  }
}

TEST(Keywords, RefusesValuesBeyondTheirBounds) {
  const struct {
    const char* keyword;
    std::vector<std::string> values;
  } cases[] = {
      {"", {""}},
      {"EXITS", {""}},
      {"COM", {"0", "10000", "-3", "4294967297", "/" + std::string(80, 'x')}},
      {"COMP_LOG", {"kml"}},
      {"WIN", {"3", "10"}},
      {"CIVLID", {"12 ", "4294967296"}},
      {"FILTER", {"24:00", "9:30", "09:30:", "09:30x00", "12:60", "12:00:60"}},
      {"SENDLOG", {"-1"}},
      {"POSY", {"1.5", "2147483648"}},
      {"TIMEOUT", {"-", "--1", "10s"}},
      {"TRACK", {"0", "256", "5-3", "1,,2", "1,", "-2", "1-2-3", "1, 2", "1-21"}},
  };
  for (const auto& c : cases) {
    for (const std::string& value : c.values) {
      const Taken taken = Take({{c.keyword, value}});
      EXPECT_EQ(taken.result, -1) << c.keyword << '=' << value;
      EXPECT_TRUE(!taken.message.empty() && taken.block.keywords.empty()) << c.keyword << value;
    }
  }
}

TEST(Keywords, PortIsANumberOrADevice) {
  EXPECT_EQ(Take({{"COM", "50"}}).block.port_number, 50U);
  const CommandLineBlock device = Take({{"COM", "7"}, {"COM", "/" + std::string(79, 'x')}}).block;
  EXPECT_EQ(device.port_number, 0U);
  EXPECT_EQ(device.port_text.size(), 80U);
  EXPECT_EQ(Take({{"COM", "/dev/ttyUSB0"}}, {}).message, "Bad COM port");
}

TEST(Keywords, TracksAreExpandedSortedAndUnique) {
  using Numbers = std::vector<uint32_t>;
  EXPECT_EQ(Take({{"TRACK", "1"}, {"TRACK", "7,255,7-9,2"}}).block.tracks,
            (Numbers{2, 7, 8, 9, 255}));
  EXPECT_EQ(Take({{"TRACK", "1-20,20"}}).block.tracks.size(), 20U);
}

TEST(Keywords, NumbersGoToTheirFields) {
  using Block = CommandLineBlock;
  const struct {
    Item item;
    std::optional<uint32_t> Block::*field;
    uint32_t number;
  } cases[] = {
      {{"COMPID", "4294967295"}, &Block::competition_id, 4294967295},
      {{"CIVLID", "2"}, &Block::civl_id, 2},
      {{"SESSION", "3"}, &Block::session, 3},
      {{"SENDLOG", "0"}, &Block::send_log_s, 0},
      {{"FILTER", "12:30"}, &Block::filter_start_s, 45000},
      {{"FILTEREND", "23:59:59"}, &Block::filter_stop_s, 86399},
      {{"TIMEOUT", "86399"}, &Block::timeout_s, 86399},
      {{"TIMEOUT", "86401"}, &Block::timeout_s, 86400},
      {{"TIMEOUT", "99999999999999999999"}, &Block::timeout_s, 86400},
      {{"TIMEOUT", "-5"}, &Block::timeout_s, 0},
  };
  for (const auto& c : cases) EXPECT_EQ(Take({c.item}).block.*c.field, c.number) << c.item.value;
  const Block block =
      Take({{"POSX", "-100"}, {"POSY", "40"}, {"COMP_LOG", "IGC"}, {"WIN", "1"}}).block;
  EXPECT_EQ(block.position_x, -100);
  EXPECT_EQ(block.position_y, 40);
  EXPECT_EQ(block.competition_format, CompetitionFormat::kIgc);
  EXPECT_EQ(static_cast<int>(block.show_code), 2);
}

TEST(Keywords, FilterTimesMustBeInOrder) {
  EXPECT_EQ(Take({{"FILTER", "12:30"}, {"FILTEREND", "12:30:00"}}).message, "");
  EXPECT_EQ(Take({{"FILTEREND", "12:30"}, {"FILTER", "12:30:00"}}).message, "");
  EXPECT_EQ(Take({{"FILTEREND", "12:00"}, {"FILTER", "12:00:01"}}).message,
            "Comp. stop time before start time");
  EXPECT_EQ(Take({{"FILTER", "12:00:01"}, {"FILTEREND", "12:00"}}).message,
            "Comp. start time after end time");
}

TEST(Keywords, NamesTheSwitchesThatChangeNothing) {
  const std::vector<Item> given = {{"SESSION", "1"}, {"PILOT", "Ann"}, {"PWROFF", ""},
                                   {"TRACK", "2"},   {"WIN", "0"},     {"SESSION", "2"}};
  using Names = std::vector<std::string>;
  CommandLineBlock block = Take(given).block;
  block.command = Command::kTrackLogToIgc;
  EXPECT_EQ(SwitchesWithoutEffect(block), (Names{"SESSION", "PWROFF"}));
  block.command = Command::kUploadWaypoints;
  EXPECT_EQ(SwitchesWithoutEffect(block), (Names{"SESSION", "PILOT", "PWROFF", "TRACK"}));
  block.command = Command::kCompetitionTrackLog;  // is not carried out, so nothing has an effect
  EXPECT_EQ(SwitchesWithoutEffect(block), Names{});
}

}  // namespace
}  // namespace skyhaul
