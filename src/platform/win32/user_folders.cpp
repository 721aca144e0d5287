#include "platform/user_folders.h"

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

constexpr DWORD kMostCharacters = 32767;  // the longest value of a variable, and the longest path

}  // namespace

std::string HomeFolder() {
  std::wstring value(kMostCharacters, L'\0');
  value.resize(GetEnvironmentVariableW(L"USERPROFILE", value.data(), kMostCharacters));
  return Utf8Text(value);
}

std::string TemporaryFolder() {
  std::wstring value(kMostCharacters, L'\0');
  value.resize(GetTempPathW(kMostCharacters, value.data()));
  return Utf8Text(value);
}

}  // namespace skyhaul
