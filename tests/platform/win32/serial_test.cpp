#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/win32/port_list.h"
#include "platform/win32/serial_port.h"
#include "tests/platform/win32/cable.h"

namespace skyhaul {
namespace {

class Win32Serial : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!HasCable()) GTEST_SKIP() << "this machine has no cable between two of its ports";
  }
};

// All fields of the state are line_settings_test.cpp's.
TEST_F(Win32Serial, SettingsReachTheDriver) {
  const Port port(ComPort(9));
  HANDLE const file = PortOf(port.handle).file.handle;
  port.Configure({.baud = 4800, .xon_xoff = true});
  DCB state{};
  state.DCBlength = sizeof(state);
  ASSERT_TRUE(GetCommState(file, &state));
  EXPECT_EQ(state.BaudRate, 4800U);
  EXPECT_TRUE(state.fOutX);
  COMMTIMEOUTS timeouts{};
  ASSERT_TRUE(GetCommTimeouts(file, &timeouts));
  EXPECT_EQ(timeouts.WriteTotalTimeoutMultiplier, 3U);
  DWORD mask = 0;
  ASSERT_TRUE(GetCommMask(file, &mask));
  EXPECT_EQ(mask, static_cast<DWORD>(EV_RXCHAR));
  EXPECT_EQ(Serial().configure(nullptr, port.handle, {.baud = 19200}), SetupStep::kSetState);
}

TEST_F(Win32Serial, AnUnpluggedPortIsAnError) {
  const Port port(ComPort(kLooseCablePorts[0]));
  const Port instrument(ComPort(kLooseCablePorts[1]));
  ASSERT_EQ(instrument.Write("here"), 0);
  EXPECT_EQ(port.ReadAll(4), "here");
  PullLooseCable();
  std::string bytes;
  int result = 0;
  for (int i = 0; i < 200 && result >= 0; ++i) result = port.Read(bytes);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(port.Write("x"), -1);
}

// As a driver of the cable's ports would enter them.
TEST_F(Win32Serial, TheRegistrysPortsAreListed) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kSerialPortsKey, 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExW(key, L"\\Device\\Skyhaul", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"COM10"), 12);
  std::vector<PortInfo> ports;
  EXPECT_EQ(Serial().list(nullptr, ports), 0);
  RegDeleteValueW(key, L"\\Device\\Skyhaul");
  RegCloseKey(key);
  EXPECT_THAT(ports, ::testing::Contains(::testing::Field(&PortInfo::name, ComPort(10))));
}

}  // namespace
}  // namespace skyhaul
