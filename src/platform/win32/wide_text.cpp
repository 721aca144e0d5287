#include "platform/win32/wide_text.h"

#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

// The limit for folders: the system refuses one in which no file of the old form (8 + 1 + 3
// characters) could have a name.
constexpr size_t kLongestUsualPath = MAX_PATH - 12;

}  // namespace

std::wstring WideText(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  // 0 characters for a text that is not UTF-8, which leaves the result empty.
  const int length =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), size, nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), size, wide.data(), length);
  return wide;
}

std::string Utf8Text(std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), length, nullptr, nullptr);
  return utf8;
}

std::wstring WidePath(const std::string& utf8) {
  std::wstring path = WideText(utf8);
  if (path.size() < kLongestUsualPath || path.starts_with(L"\\\\?\\")) return path;
  // The form without a limit knows no current folder and no "/", so both are resolved first.
  const DWORD room = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(room, L'\0');
  full.resize(GetFullPathNameW(path.c_str(), room, full.data(), nullptr));
  if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) return full;
  return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

}  // namespace skyhaul
