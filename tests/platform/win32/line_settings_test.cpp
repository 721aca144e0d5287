#include "platform/win32/line_settings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

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
  for (const DWORD xon_xoff : {0U, 1U}) {
    DCB state = OppositeState();
    state.fOutX = state.fInX = xon_xoff == 0 ? 1U : 0U;
    ASSERT_EQ(SetLine(state, {.baud = 57600, .xon_xoff = xon_xoff != 0}), 0);
    EXPECT_EQ((std::vector<DWORD>{state.ByteSize, state.Parity, state.StopBits, state.fBinary,
                                  state.fDtrControl, state.fRtsControl, state.fTXContinueOnXoff,
                                  state.fOutX, state.fInX, state.XonLim, state.XoffLim}),
              (std::vector<DWORD>{8, NOPARITY, ONESTOPBIT, TRUE, DTR_CONTROL_ENABLE,
                                  RTS_CONTROL_ENABLE, TRUE, xon_xoff, xon_xoff, 100, 100}));
    EXPECT_FALSE(state.fOutxCtsFlow || state.fOutxDsrFlow || state.fDsrSensitivity);
    EXPECT_FALSE(state.fParity || state.fErrorChar || state.fNull || state.fAbortOnError);
    // The character for errors is not ours to set.
    const char characters[] = {state.XonChar, state.XoffChar, state.EofChar, state.EvtChar,
                               state.ErrorChar};
    EXPECT_EQ(std::string(characters, 5), std::string("\x11\x13\0\0\xff", 5));
  }
}

TEST(LineSettings, OnlyForTheSpeedsOfInstruments) {
  for (const uint32_t baud : {4800U, 9600U, 38400U, 57600U, 115200U}) {
    DCB state{};
    EXPECT_EQ(SetLine(state, {.baud = baud}), 0);
    EXPECT_EQ(state.BaudRate, baud);
    const auto [interval, multiplier, constant, write_multiplier, write_constant] =
        TimeoutsFor(baud);
    EXPECT_EQ((std::vector{interval, multiplier, constant, write_multiplier, write_constant}),
              (std::vector<DWORD>{0, 0, 50, baud == 4800 ? 3U : 2U, 0}));
  }
  DCB state{};
  EXPECT_EQ(SetLine(state, {.baud = 19200}), -1);
}

}  // namespace
}  // namespace skyhaul
