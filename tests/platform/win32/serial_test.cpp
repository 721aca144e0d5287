#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cwchar>
#include <string>
#include <vector>

#include "platform/win32/port_list.h"
#include "platform/win32/serial_port.h"
#include "tests/platform/win32/cable.h"

namespace skyhaul {
namespace {

using ::testing::HasSubstr;

constexpr uint32_t kNear = kCablePorts[0];
constexpr uint32_t kFar = kCablePorts[1];

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

HANDLE FileOf(const CableEnd& end) {
  return PortOf(end.handle).file.handle;
}

class SerialCable : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!HasCables()) GTEST_SKIP() << "this machine has no cable between two of its ports";
  }
};

TEST_F(SerialCable, PassesEveryByteUnchangedInBothDirections) {
  const CableEnd near_end(kNear);
  const CableEnd far_end(kFar);
  EXPECT_EQ(near_end.name, "COM9");
  EXPECT_EQ(far_end.name, R"(\\.\COM10)");
  ASSERT_EQ(near_end.Write(AllBytes()), 0);
  EXPECT_EQ(far_end.ReadAll(256), AllBytes());
  ASSERT_EQ(far_end.Write(AllBytes()), 0);
  EXPECT_EQ(near_end.ReadAll(256), AllBytes());
  std::string bytes;
  EXPECT_EQ(near_end.Read(bytes), 0) << "something was echoed";
}

TEST_F(SerialCable, ReadEndsWithAFullBufferOrInTime) {
  const CableEnd near_end(kNear);
  const CableEnd far_end(kFar);
  const ClockFunctions& clock = NativePlatform().clock;
  std::string bytes;
  const uint64_t start_ms = clock.tick_ms(clock.context);
  EXPECT_EQ(near_end.Read(bytes), 0) << "silence is no error";
  EXPECT_GE(clock.tick_ms(clock.context) - start_ms, 30U);
  ASSERT_EQ(far_end.Write("abcdefgh"), 0);
  EXPECT_EQ(near_end.ReadAll(8), "abcdefgh");
  ASSERT_EQ(far_end.Write("abcdefgh"), 0);
  std::string first;
  while (first.empty() && near_end.Read(first, 3) == 0) {
  }
  EXPECT_EQ(first + near_end.ReadAll(8 - first.size()), "abcdefgh");
}

TEST_F(SerialCable, SettingsReachTheDriver) {
  const CableEnd end(kNear);
  constexpr SerialSettings kCases[] = {{.baud = 4800, .xon_xoff = false},
                                       {.baud = 9600, .xon_xoff = true},
                                       {.baud = 38400, .xon_xoff = false},
                                       {.baud = 57600, .xon_xoff = true},
                                       {.baud = 115200, .xon_xoff = false}};
  for (const SerialSettings& settings : kCases) {
    SCOPED_TRACE(settings.baud);
    ASSERT_EQ(Serial().configure(nullptr, end.handle, settings), SetupStep::kNone);
    DCB state{};
    state.DCBlength = sizeof(state);
    ASSERT_TRUE(GetCommState(FileOf(end), &state));
    EXPECT_EQ(state.BaudRate, settings.baud);
    EXPECT_EQ(state.ByteSize, 8);
    EXPECT_EQ(state.Parity, NOPARITY);
    EXPECT_EQ(state.StopBits, ONESTOPBIT);
    EXPECT_EQ(state.fOutX != 0, settings.xon_xoff);
    EXPECT_EQ(state.fInX != 0, settings.xon_xoff);
    EXPECT_FALSE(state.fOutxCtsFlow);
    COMMTIMEOUTS timeouts{};
    ASSERT_TRUE(GetCommTimeouts(FileOf(end), &timeouts));
    EXPECT_EQ(timeouts.ReadTotalTimeoutConstant, 50U);
    EXPECT_EQ(timeouts.WriteTotalTimeoutMultiplier, settings.baud == 4800 ? 3U : 2U);
  }
  DWORD mask = 0;
  ASSERT_TRUE(GetCommMask(FileOf(end), &mask));
  EXPECT_EQ(mask, static_cast<DWORD>(EV_RXCHAR));
  EXPECT_EQ(Serial().configure(nullptr, end.handle, {.baud = 19200}), SetupStep::kSetState);
}

// How much the driver holds for the program.
DWORD Received(const CableEnd& end) {
  COMSTAT status{};
  DWORD errors = 0;
  return ClearCommError(FileOf(end), &errors, &status) != 0 ? status.cbInQue : 0;
}

TEST_F(SerialCable, ConfiguringEmptiesWhatWasReceived) {
  const CableEnd near_end(kNear);
  const CableEnd far_end(kFar);
  const ClockFunctions& clock = NativePlatform().clock;
  ASSERT_EQ(far_end.Write("old"), 0);
  for (int i = 0; i < 200 && Received(near_end) < 3; ++i) clock.wait(clock.context, 10);
  ASSERT_EQ(Received(near_end), 3U);
  ASSERT_EQ(Serial().configure(nullptr, near_end.handle, {}), SetupStep::kNone);
  ASSERT_EQ(far_end.Write("new"), 0);
  EXPECT_EQ(near_end.ReadAll(3), "new");
}

// 100 bytes may take 300 ms at 4800 baud and 200 ms at any other speed.
TEST_F(SerialCable, WriteGivesUpInTimeWhenNobodyReads) {
  const CableEnd near_end(kNear, {.baud = 4800});
  const CableEnd far_end(kFar);
  const ClockFunctions& clock = NativePlatform().clock;
  const std::string block(100, 'x');
  int result = 0;
  for (int i = 0; i < 10000 && result == 0; ++i) result = near_end.Write(block);
  ASSERT_EQ(result, -1);
  uint64_t start_ms = clock.tick_ms(clock.context);
  EXPECT_EQ(near_end.Write(block), -1);
  EXPECT_GE(clock.tick_ms(clock.context) - start_ms, 280U);
  far_end.Drain();
  EXPECT_EQ(near_end.Write("after"), 0) << "the port is of no use after a write that failed";
  EXPECT_EQ(far_end.ReadAll(5), "after");
}

TEST_F(SerialCable, APortIsForOneProgramAlone) {
  CableEnd end(kNear);
  const PortOpening second = Serial().open(nullptr, end.name);
  EXPECT_EQ(second.handle, kNoSerialHandle);
  EXPECT_EQ(second.problem, PortProblem::kBusy);
  EXPECT_EQ(second.reason, "Another program is using COM9");
  end.Close();
  const CableEnd again(kNear);
  EXPECT_NE(again.handle, kNoSerialHandle) << "closing did not give the port free";
}

// What the other program finds when it opens the port; -1 when it does not run.
int ProblemOfAnotherProgram(const std::wstring& port) {
  std::array<wchar_t, 1000> own_path{};
  GetModuleFileNameW(nullptr, own_path.data(), static_cast<DWORD>(own_path.size()));
  const std::wstring path(own_path.data());
  const std::wstring program = path.substr(0, path.rfind(L'\\') + 1) + L"open_port.exe";
  std::wstring command = L"\"" + program + L"\" " + port;
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  PROCESS_INFORMATION process{};
  if (CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &start, &process) == 0) {
    return -1;
  }
  const OwnedHandle owned_process(process.hProcess);
  const OwnedHandle owned_thread(process.hThread);
  DWORD status = 0;
  if (WaitForSingleObject(process.hProcess, 60000) != WAIT_OBJECT_0) return -1;
  GetExitCodeProcess(process.hProcess, &status);
  return static_cast<int>(status);
}

TEST_F(SerialCable, AnotherProgramFindsThePortBusy) {
  CableEnd end(kNear);
  EXPECT_EQ(ProblemOfAnotherProgram(L"COM9"), static_cast<int>(PortProblem::kBusy));
  EXPECT_EQ(ProblemOfAnotherProgram(L"\\\\.\\COM10"), static_cast<int>(PortProblem::kNone));
  end.Close();
  EXPECT_EQ(ProblemOfAnotherProgram(L"COM9"), static_cast<int>(PortProblem::kNone));
}

// As a driver of the cable's ports would enter them.
TEST_F(SerialCable, TheRegistrysPortsAreListed) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kSerialPortsKey, 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  constexpr const wchar_t* kDevices[] = {L"\\Device\\Skyhaul1", L"\\Device\\Skyhaul0"};
  constexpr const wchar_t* kNames[] = {L"COM10", L"COM9"};
  for (int i = 0; i < 2; ++i) {
    const auto bytes = static_cast<DWORD>((std::wcslen(kNames[i]) + 1) * sizeof(wchar_t));
    RegSetValueExW(key, kDevices[i], 0, REG_SZ, reinterpret_cast<const BYTE*>(kNames[i]), bytes);
  }
  std::vector<PortInfo> ports;
  EXPECT_EQ(Serial().list(nullptr, ports), 0);
  for (const wchar_t* device : kDevices) RegDeleteValueW(key, device);
  RegCloseKey(key);
  std::vector<std::string> ours;
  for (const PortInfo& port : ports) {
    EXPECT_EQ(port.name, Serial().name_of(nullptr, port.number));
    if (port.number == kNear || port.number == kFar) ours.push_back(port.name);
  }
  EXPECT_THAT(ours, ::testing::UnorderedElementsAre("COM9", R"(\\.\COM10)"));
}

TEST(SerialOpen, RefusesWhatIsNoSerialPort) {
  const struct {
    const char* name;
    PortProblem problem;
    const char* reason;
  } cases[] = {
      {"COM8", PortProblem::kMissing, "There is no port COM8: --ports lists the ports"},
      {R"(\\.\COM49)", PortProblem::kMissing, "There is no port COM49: --ports lists the ports"},
      {R"(\\.\no such device)", PortProblem::kMissing, "There is no port no such device"},
      {"COM10", PortProblem::kMissing, "There is no port COM10"},
      {"COM1x", PortProblem::kMissing, "There is no port COM1x"},
      {"a file", PortProblem::kMissing, "There is no port a file"},
      {"", PortProblem::kMissing, "There is no port"},
  };
  for (const auto& c : cases) {
    const PortOpening opening = Serial().open(nullptr, c.name);
    EXPECT_EQ(opening.handle, kNoSerialHandle) << c.name;
    EXPECT_EQ(opening.problem, c.problem) << c.name;
    EXPECT_THAT(opening.reason, HasSubstr(c.reason));
  }
}

TEST(SerialOpen, OnlyDeviceNamesAreNames) {
  EXPECT_TRUE(IsPortName(R"(\\.\COM10)"));
  for (const char* text : {"", "1", "50", "COM1", "/dev/ttyUSB0"}) {
    EXPECT_FALSE(IsPortName(text)) << text;
  }
}

}  // namespace
}  // namespace skyhaul
