#include "platform/append_file.h"

#include <algorithm>

#include "platform/win32/system_reason.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE HandleOf(AppendHandle file) {
  return reinterpret_cast<HANDLE>(file);
}

}  // namespace

AppendOpening OpenToAppend(const std::string& path) {
  // Shared with everybody, so that an editor can look at it while it grows. Appending alone makes
  // the system put each write behind the last, whoever else writes.
  HANDLE const opened =
      CreateFileW(WidePath(path).c_str(), FILE_APPEND_DATA | SYNCHRONIZE, kShareAll, nullptr,
                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (opened == INVALID_HANDLE_VALUE) {
    return {.handle = kNoAppendHandle, .reason = SystemReason(GetLastError())};
  }
  return {.handle = reinterpret_cast<AppendHandle>(opened), .reason = {}};
}

std::string Append(AppendHandle file, std::string_view text) {
  constexpr size_t kChunk = size_t{1} << 16U;
  while (!text.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(text.size(), kChunk));
    DWORD count = 0;
    if (WriteFile(HandleOf(file), text.data(), wanted, &count, nullptr) == 0) {
      return SystemReason(GetLastError());
    }
    // A device that takes nothing and says so would be asked for ever.
    if (count == 0) return SystemReason(ERROR_WRITE_FAULT);
    text.remove_prefix(count);
  }
  return {};
}

void SettleAppended(AppendHandle file) {
  // A console refuses, and the next write tells of a disk in trouble.
  static_cast<void>(FlushFileBuffers(HandleOf(file)));
}

void CloseAppended(AppendHandle file) {
  CloseHandle(HandleOf(file));
}

}  // namespace skyhaul
