#include "platform/win32/port_name.h"

#include <gtest/gtest.h>

#include <string>

namespace skyhaul {
namespace {

TEST(ComPortName, HasTwoForms) {
  EXPECT_EQ(ComPortName(9), "COM9");
  EXPECT_EQ(ComPortName(10), R"(\\.\COM10)");
  for (const uint32_t number : {9U, 10U}) {
    EXPECT_EQ(PlainPortName(ComPortName(number)), "COM" + std::to_string(number));
  }
}

TEST(ComPortNumber, IsMadeOfTheDigitsAfterCom) {
  const std::pair<const char*, uint32_t> cases[] = {
      {"COM10", 10},        {"COM 1-2:", 12}, {"COM1\xc3\xa4", 1}, {"COM", 0},
      {"com3", 0},          {" COM3", 0},     {"LPT1", 0},         {"COM999999999", 999999999},
      {"COM4294967297", 0},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(ComPortNumber(text), number) << text;
}

TEST(DeviceName, IsInTheDeviceNamespace) {
  EXPECT_TRUE(IsDeviceName(R"(\\.\CNCA0)"));
  for (const char* text : {"COM3", R"(\\.\)", R"(\\server\share)"}) {
    EXPECT_FALSE(IsDeviceName(text)) << text;
  }
}

}  // namespace
}  // namespace skyhaul
