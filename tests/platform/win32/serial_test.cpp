#include <cstdio>
#include <cstdlib>

#include "platform/win32/serial_port.h"
#include "tests/platform/cable.h"

namespace skyhaul {
namespace {

// The cables that with-com-ports lays: two ports that hear each other, one on each side of the
// number where the names change, and two more whose cable can be pulled out.
constexpr uint32_t kCablePorts[] = {9, 10};
constexpr uint32_t kLooseCablePorts[] = {11, 12};

std::string ComPort(uint32_t number) {
  return Serial().name_of(nullptr, number);
}

}  // namespace

Cable::Cable() : name(ComPort(kCablePorts[0])), instrument(ComPort(kCablePorts[1])) {}

bool HasCable() {
  return std::getenv("SKYHAUL_UNPLUG") != nullptr;
}

std::vector<NoPort> NoPorts() {
  return {
      {R"(\\.\COM49)", PortProblem::kMissing, "There is no port COM49: --ports lists the ports"},
      {R"(\\.\no such device)", PortProblem::kMissing, "There is no port no such device"},
      {"COM10", PortProblem::kMissing, "There is no port COM10"},
      {"a file", PortProblem::kMissing, "There is no port a file"},
      {"", PortProblem::kMissing, "There is no port"},
  };
}

namespace {

using Win32Serial = SerialPorts;

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
  // Pulls the cable out, a moment later.
  std::FILE* file = std::fopen(std::getenv("SKYHAUL_UNPLUG"), "wb");
  ASSERT_NE(file, nullptr);
  std::fclose(file);
  std::string bytes;
  int result = 0;
  for (int i = 0; i < 200 && result >= 0; ++i) result = port.Read(bytes);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(port.Write("x"), -1);
}

}  // namespace
}  // namespace skyhaul
