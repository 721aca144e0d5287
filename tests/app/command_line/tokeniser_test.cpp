#include "app/command_line/tokeniser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/command_line/characters.h"

namespace skyhaul {
namespace {

TEST(Tokeniser, DeliversItemsAndErrorPositions) {
  const struct {
    std::string text;
    std::vector<Item> items;  // delivered, also before an error
    std::string message = {};
  } cases[] = {
      {"/", {{"", ""}}},
      {"  /EXIT  /usb ", {{"EXIT", ""}, {"USB", ""}}},
      {"/COM=/dev/ttyUSB0 /EXIT", {{"COM", "/dev/ttyUSB0"}, {"EXIT", ""}}},
      {"/PILOT=\"Ann  Bee\"/EXIT", {{"PILOT", "Ann  Bee"}, {"EXIT", ""}}},
      {"/PILOT=\"\" /EXIT", {{"PILOT", ""}, {"EXIT", ""}}},
      {"/PILOT=\"Ann Bee", {{"PILOT", "Ann Bee"}}},
      {"/PILOT=\"Ann\"x", {{"PILOT", "Ann"}}, "Error at position 13"},
      {"/PILOT=A\"n n", {{"PILOT", "A\"n"}}, "Error at position 12"},
      {"/EXIT\t/USB x", {{"EXIT\t/USB", ""}}, "Error at position 12"},
      {"/PILOT=Zo\u00eb x", {{"PILOT", "Zo\u00eb"}}, "Error at position 12"},
      {std::string("/EXIT\0/USB", 10), {{"EXIT", ""}}},
  };
  for (const auto& c : cases) {
    std::vector<Item> items;
    std::string message;
    const auto take = [&](const Item& item) {
      items.push_back(item);
      return 0;
    };
    EXPECT_EQ(Tokenise(c.text, take, message), c.message.empty() ? 0 : -1) << c.text;
    EXPECT_EQ(items, c.items) << c.text;
    EXPECT_EQ(message, c.message) << c.text;
  }
}

TEST(Tokeniser, CutsAtLimitsThatCountCharacters) {
  std::string greek;
  for (size_t i = 0; i < kMaxValue; ++i) greek += "\u03b1";
  const std::string tail(5000, '\x80');  // continues no character, but must not grow without end
  const std::pair<std::string, Item> cases[] = {
      {"/abcdefghijklmnopq=1", {"ABCDEFGHIJKLMNOP", "1"}},
      {"/A=" + greek + "\u03b2", {"A", greek}},
      {"/A=\"" + std::string(259, 'x') + " y\"", {"A", std::string(259, 'x') + " "}},
      {"/A=" + tail, {"A", tail.substr(0, kMaxValue * kMaxBytesPerCharacter)}},
  };
  for (const auto& [text, expected] : cases) {
    std::string message;
    const Item& item = expected;  // a lambda cannot capture the binding itself
    const auto take = [&](const Item& taken) {
      EXPECT_EQ(taken, item);
      return 0;
    };
    EXPECT_EQ(Tokenise(text, take, message), 0);
  }
}

TEST(Tokeniser, StopsAtTheFirstRefusedItem) {
  int taken = 0;
  std::string message = "said by the taker";
  const auto refuse_second = [&](const Item&) { return ++taken == 2 ? -1 : 0; };
  EXPECT_EQ(Tokenise("/A /B /C x", refuse_second, message), -1);
  EXPECT_EQ(taken, 2);
  EXPECT_EQ(message, "said by the taker");
}

}  // namespace
}  // namespace skyhaul
