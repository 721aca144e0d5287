#include "app/command_line/tokeniser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/command_line/characters.h"

namespace skyhaul {
namespace {

struct Case {
  std::string text;
  std::vector<Item> items;  // delivered, also before an error
  std::string message = {};
};

TEST(Tokeniser, DeliversItemsAndErrorPositions) {
  const Case cases[] = {
      {"", {}},
      {"/", {{"", ""}}},
      {"  /EXIT  /usb ", {{"EXIT", ""}, {"USB", ""}}},
      {"/com=", {{"COM", ""}}},
      {"/a/b", {{"A/B", ""}}},
      {"/COM=/dev/ttyUSB0 /EXIT", {{"COM", "/dev/ttyUSB0"}, {"EXIT", ""}}},
      {"/PILOT=Ann Bee", {{"PILOT", "Ann"}}, "Error at position 12"},
      {"/PILOT=\"Ann  Bee\"/EXIT", {{"PILOT", "Ann  Bee"}, {"EXIT", ""}}},
      {"/PILOT=\"\" /EXIT", {{"PILOT", ""}, {"EXIT", ""}}},
      {"/PILOT=\"Ann Bee", {{"PILOT", "Ann Bee"}}},
      {"/PILOT=\"Ann\"x", {{"PILOT", "Ann"}}, "Error at position 13"},
      {"/PILOT=A\"n n", {{"PILOT", "A\"n"}}, "Error at position 12"},
      {"/a\"b c\"", {{"A\"B", ""}}, "Error at position 6"},
      {"x/EXIT", {}, "Error at position 1"},
      {"/EXIT\t/USB x", {{"EXIT\t/USB", ""}}, "Error at position 12"},
      {"/PILOT=Zo\u00eb x", {{"PILOT", "Zo\u00eb"}}, "Error at position 12"},
      {std::string("/EXIT\0/USB", 10), {{"EXIT", ""}}},
  };
  for (const Case& c : cases) {
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

Item OnlyItem(const std::string& text) {
  Item only;
  std::string message;
  const auto take = [&](const Item& item) {
    only = item;
    return 0;
  };
  EXPECT_EQ(Tokenise(text, take, message), 0);
  return only;
}

TEST(Tokeniser, CutsKeywordsAndValuesAtTheirLimits) {
  EXPECT_EQ(OnlyItem("/abcdefghijklmnop").keyword, "ABCDEFGHIJKLMNOP");
  EXPECT_EQ(OnlyItem("/abcdefghijklmnopq=1").keyword, "ABCDEFGHIJKLMNOP");
  EXPECT_EQ(OnlyItem("/abcdefghijklmnopq=1").value, "1");
  EXPECT_EQ(OnlyItem("/A=" + std::string(260, 'x') + "y").value, std::string(260, 'x'));
  EXPECT_EQ(OnlyItem("/A=\"" + std::string(259, 'x') + " y\"").value, std::string(259, 'x') + " ");
}

TEST(Tokeniser, LimitsCountCharactersAndNotBytes) {
  std::string greek;
  for (size_t i = 0; i < kMaxValue; ++i) greek += "\u03b1";
  EXPECT_EQ(OnlyItem("/A=" + greek + "\u03b2").value, greek);
  // Continuation bytes without a beginning are no characters, but they must not grow without end.
  EXPECT_EQ(OnlyItem("/A=" + std::string(5000, '\x80')).value.size(),
            kMaxValue * kMaxBytesPerCharacter);
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
