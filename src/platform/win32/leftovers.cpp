#include "platform/win32/leftovers.h"

#include <cstdint>

#include "platform/temporary_name.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide_text.h"

namespace skyhaul {

namespace {

constexpr int64_t kTicksPerSecond = 10'000'000;  // a file's time counts 100 ns

int64_t Ticks(const FILETIME& time) {
  return (static_cast<int64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

// A process that ended stays for as long as somebody has a handle of it; then its object is
// signalled. One that may not be asked is alive.
bool ProcessLives(DWORD process) {
  const OwnedHandle opened(OpenProcess(SYNCHRONIZE, FALSE, process));
  if (opened.handle == nullptr) return GetLastError() != ERROR_INVALID_PARAMETER;
  return WaitForSingleObject(opened.handle, 0) == WAIT_TIMEOUT;
}

bool IsLeftover(const WIN32_FIND_DATAW& found, int64_t now) {
  const DWORD maker = MakerOfTemporary(Utf8Text(found.cFileName));
  constexpr DWORD kNoFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  return maker != 0 && (found.dwFileAttributes & kNoFile) == 0 && !ProcessLives(maker) &&
         now - Ticks(found.ftLastWriteTime) >= kLeftoverAge_s * kTicksPerSecond;
}

}  // namespace

void RemoveLeftovers(const std::wstring& folder, HANDLE new_file) {
  FILETIME made{};
  if (GetFileTime(new_file, nullptr, nullptr, &made) == 0) return;
  const std::wstring pattern = WidePath(Utf8Text(folder + L".*.skyhaul-tmp"));
  WIN32_FIND_DATAW found{};
  HANDLE const search = FindFirstFileW(pattern.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring path = WidePath(Utf8Text(folder + found.cFileName));
    if (IsLeftover(found, Ticks(made))) DeleteFileW(path.c_str());
  } while (FindNextFileW(search, &found) != 0);
  FindClose(search);
}

}  // namespace skyhaul
