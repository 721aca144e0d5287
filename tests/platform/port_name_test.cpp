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
  const struct {
    const char* text;
    uint32_t number;
  } cases[] = {
      {"COM1", 1},          {"COM10", 10},       {"COM007", 7}, {"COM256", 256},
      {"COM 1-2:", 12},     {"COM1\xc3\xa4", 1}, {"COM", 0},    {"COM0", 0},
      {"COMx", 0},          {"CO", 0},           {"", 0},       {"com3", 0},
      {" COM3", 0},         {"LPT1", 0},         {"1", 0},      {"COM999999999", 999999999},
      {"COM4294967297", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(ComPortNumber(c.text), c.number) << c.text;
}

TEST(DeviceName, IsInTheDeviceNamespace) {
  for (const char* text : {R"(\\.\COM10)", R"(\\.\CNCA0)"}) EXPECT_TRUE(IsDeviceName(text)) << text;
  for (const char* text : {"", "3", "COM3", R"(\\.\)", R"(\\server\share)", R"(C:\COM3)"}) {
    EXPECT_FALSE(IsDeviceName(text)) << text;
  }
}

TEST(DescribeDevice, NamesTheDriversThatItKnows) {
  EXPECT_EQ(DescribeDevice(R"(\Device\VCP0)"), "USB, FTDI");
  EXPECT_EQ(DescribeDevice(R"(\Device\Serial0)"), "");
}

}  // namespace
}  // namespace skyhaul
