#include "platform/win32/line_settings.h"

#include <algorithm>
#include <iterator>

namespace skyhaul {

namespace {

constexpr DWORD kSpeeds[] = {CBR_4800, CBR_9600, CBR_38400, CBR_57600, CBR_115200};
constexpr DWORD kWriteAt4800_ms = 3;  // per byte
constexpr DWORD kWrite_ms = 2;        // per byte, at any other speed
constexpr WORD kFlowLimit = 100;      // bytes
constexpr char kXonCharacter = 0x11;
constexpr char kXoffCharacter = 0x13;

}  // namespace

int SetLine(DCB& state, const SerialSettings& settings) {
  const auto* const speed = std::find(std::begin(kSpeeds), std::end(kSpeeds), settings.baud);
  if (speed == std::end(kSpeeds)) return -1;
  state.BaudRate = *speed;
  state.ByteSize = 8;
  state.Parity = NOPARITY;
  state.StopBits = ONESTOPBIT;
  state.fBinary = TRUE;
  state.fDtrControl = DTR_CONTROL_ENABLE;
  state.fRtsControl = RTS_CONTROL_ENABLE;
  state.fOutxCtsFlow = FALSE;
  state.fOutxDsrFlow = FALSE;
  state.fDsrSensitivity = FALSE;
  // No byte is dropped, replaced, or a reason to stop: checksums find the faults of the line.
  state.fParity = FALSE;
  state.fErrorChar = FALSE;
  state.fNull = FALSE;
  state.fAbortOnError = FALSE;
  // Sending goes on although we have asked the instrument to pause.
  state.fTXContinueOnXoff = TRUE;
  state.fOutX = settings.xon_xoff ? TRUE : FALSE;
  state.fInX = state.fOutX;
  state.XonLim = kFlowLimit;
  state.XoffLim = kFlowLimit;
  state.XonChar = kXonCharacter;
  state.XoffChar = kXoffCharacter;
  state.EofChar = 0;
  state.EvtChar = 0;
  return 0;
}

COMMTIMEOUTS TimeoutsFor(uint32_t baud) {
  // Without an interval between bytes, a slow sender does not end a read early.
  return {.ReadIntervalTimeout = 0,
          .ReadTotalTimeoutMultiplier = 0,
          .ReadTotalTimeoutConstant = kReadWait_ms,
          .WriteTotalTimeoutMultiplier = baud == CBR_4800 ? kWriteAt4800_ms : kWrite_ms,
          .WriteTotalTimeoutConstant = 0};
}

}  // namespace skyhaul
