#include "platform/win32/system_reason.h"

#include <array>

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

std::string SystemReason(uint32_t error) {
  std::array<wchar_t, 512> text;
  constexpr DWORD kFlags =
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  const DWORD length = FormatMessageW(kFlags, nullptr, error, 0, text.data(),
                                      static_cast<DWORD>(text.size()), nullptr);
  std::string reason = Utf8Text({text.data(), length});
  // The system's sentences end in a full stop and blanks; here they stand inside a line.
  while (!reason.empty() && (reason.back() == ' ' || reason.back() == '.')) reason.pop_back();
  return reason.empty() ? "System error " + std::to_string(error) : reason;
}

}  // namespace skyhaul
