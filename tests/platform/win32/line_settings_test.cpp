#include "platform/win32/line_settings.h"

#include <gtest/gtest.h>

#include <cstring>

namespace skyhaul {
namespace {

// A state in which every bit that the settings speak of has its other value.
DCB OppositeState() {
  DCB state{};
  std::memset(&state, 0xff, sizeof(state));
  state.DCBlength = sizeof(state);
  state.fBinary = 0;
  state.fDtrControl = DTR_CONTROL_DISABLE;
  state.fRtsControl = RTS_CONTROL_DISABLE;
  state.fTXContinueOnXoff = 0;
  return state;
}

TEST(LineSettings, CoverEveryFieldThatMatters) {
  for (const bool xon_xoff : {false, true}) {
    DCB state = OppositeState();
    state.fOutX = state.fInX = xon_xoff ? 0 : 1;
    ASSERT_EQ(SetLine(state, {.baud = 57600, .xon_xoff = xon_xoff}), 0);
    EXPECT_EQ(state.BaudRate, 57600U);
    EXPECT_EQ(state.ByteSize, 8);
    EXPECT_EQ(state.Parity, NOPARITY);
    EXPECT_EQ(state.StopBits, ONESTOPBIT);
    EXPECT_TRUE(state.fBinary);
    EXPECT_EQ(state.fDtrControl, static_cast<DWORD>(DTR_CONTROL_ENABLE));
    EXPECT_EQ(state.fRtsControl, static_cast<DWORD>(RTS_CONTROL_ENABLE));
    EXPECT_FALSE(state.fOutxCtsFlow || state.fOutxDsrFlow || state.fDsrSensitivity);
    EXPECT_FALSE(state.fParity || state.fErrorChar || state.fNull || state.fAbortOnError);
    EXPECT_TRUE(state.fTXContinueOnXoff);
    EXPECT_EQ(state.fOutX != 0, xon_xoff);
    EXPECT_EQ(state.fInX != 0, xon_xoff);
    EXPECT_EQ(state.XonLim, 100);
    EXPECT_EQ(state.XoffLim, 100);
    EXPECT_EQ(state.XonChar, 0x11);
    EXPECT_EQ(state.XoffChar, 0x13);
    EXPECT_EQ(state.EofChar, 0);
    EXPECT_EQ(state.EvtChar, 0);
    EXPECT_EQ(state.ErrorChar, '\xff') << "not ours to set";
  }
}

TEST(LineSettings, OnlyForTheSpeedsOfInstruments) {
  for (const uint32_t baud : {4800U, 9600U, 38400U, 57600U, 115200U}) {
    DCB state{};
    EXPECT_EQ(SetLine(state, {.baud = baud}), 0);
    EXPECT_EQ(state.BaudRate, baud);
    const COMMTIMEOUTS timeouts = TimeoutsFor(baud);
    EXPECT_EQ(timeouts.ReadIntervalTimeout, 0U);
    EXPECT_EQ(timeouts.ReadTotalTimeoutMultiplier, 0U);
    EXPECT_EQ(timeouts.ReadTotalTimeoutConstant, 50U);
    EXPECT_EQ(timeouts.WriteTotalTimeoutMultiplier, baud == 4800 ? 3U : 2U);
    EXPECT_EQ(timeouts.WriteTotalTimeoutConstant, 0U);
  }
  for (const uint32_t baud : {0U, 300U, 19200U, 57601U}) {
    DCB state{};
    EXPECT_EQ(SetLine(state, {.baud = baud}), -1) << baud;
  }
}

}  // namespace
}  // namespace skyhaul
