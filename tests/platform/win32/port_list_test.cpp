#include "platform/win32/port_list.h"

#include <gtest/gtest.h>

#include <string>

namespace skyhaul {
namespace {

constexpr const wchar_t* kTestKey = L"Software\\Skyhaul test ports";

// A key like the one in which drivers list their ports. Windows keeps its values in the order in
// which they were set and Wine sorts them by name, so the tests set them sorted.
struct PortListTest : testing::Test {
  void SetUp() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey);
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kTestKey, 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
  }
  void TearDown() override {
    RegCloseKey(key);
    RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey);
  }

  void Put(const std::wstring& name, DWORD type, const std::wstring& data, size_t cut_bytes = 0) {
    const size_t bytes = (data.size() + 1) * sizeof(wchar_t) - cut_bytes;
    RegSetValueExW(key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.c_str()),
                   static_cast<DWORD>(bytes));
  }

  // "number name (description)" of each port, in order.
  std::vector<std::string> List() {
    std::vector<PortInfo> ports;
    EXPECT_EQ(ListPorts(HKEY_CURRENT_USER, kTestKey, ports), 0);
    std::vector<std::string> texts;
    for (const PortInfo& port : ports) {
      texts.push_back(std::to_string(port.number) + " " + port.name + " (" + port.description +
                      ")");
    }
    return texts;
  }

  HKEY key = nullptr;
};

TEST_F(PortListTest, TakesTheTextsThatNameAComPort) {
  Put(L"\\Device\\BthModem0", REG_SZ, L"COM12");
  Put(L"\\Device\\Serial0", REG_SZ, L"COM9");
  Put(L"\\Device\\Serial1", REG_SZ, L"COM10", sizeof(wchar_t));  // without the zero at its end
  Put(L"\\Device\\VCP0", REG_SZ, L"COM3");
  Put(L"a number", REG_DWORD, L"C");
  Put(L"not a plain text", REG_EXPAND_SZ, L"COM4");
  Put(L"no number", REG_SZ, L"COM");
  Put(L"too long", REG_SZ, L"COM5" + std::wstring(300, L'x'));
  Put(std::wstring(260, L'n'), REG_SZ, L"COM6");
  EXPECT_EQ(List(), (std::vector<std::string>{R"(12 \\.\COM12 (Bluetooth))", "9 COM9 ()",
                                              R"(10 \\.\COM10 ())", "3 COM3 (USB, FTDI)"}));
}

TEST_F(PortListTest, EndsAfterFiftyPortsOrAHundredValues) {
  const auto put_row = [&](const std::wstring& prefix, int count, const std::wstring& name) {
    for (int i = 100; i < 100 + count; ++i) {
      Put(prefix + std::to_wstring(i), REG_SZ, name + std::to_wstring(i));
    }
  };
  put_row(L"a", 45, L"COM");
  put_row(L"b", 54, L"LPT");
  put_row(L"c", 2, L"COM");
  EXPECT_EQ(List().size(), 46U) << "values after the hundredth were looked at";
  put_row(L"b", 54, L"COM");
  ASSERT_EQ(List().size(), 50U);
  EXPECT_EQ(List()[49], R"(104 \\.\COM104 ())");
}

TEST_F(PortListTest, IsUnreadableWithoutItsKey) {
  std::vector<PortInfo> ports(3);
  EXPECT_EQ(ListPorts(HKEY_CURRENT_USER, L"Software\\Skyhaul no ports", ports), -1);
  EXPECT_TRUE(ports.empty());
}

}  // namespace
}  // namespace skyhaul
