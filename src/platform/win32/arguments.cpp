#include "platform/arguments.h"

#include <memory>
#include <string_view>

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

// After windows.h, which it needs.
#include <shellapi.h>

namespace skyhaul {

namespace {

struct FreeLocal {
  void operator()(LPWSTR* words) const { LocalFree(words); }
};

// The text after the program's name, which is quoted or ends at the first blank.
std::wstring_view AfterProgramName(std::wstring_view text) {
  const bool quoted = text.starts_with(L'"');
  size_t end = quoted ? text.find(L'"', 1) : text.find_first_of(L" \t");
  if (end != text.npos && quoted) ++end;
  if (end == text.npos) return {};
  const size_t start = text.find_first_not_of(L" \t", end);
  return start == text.npos ? std::wstring_view() : text.substr(start);
}

}  // namespace

// main()'s own arguments come in the system's old 8-bit encoding, which cannot spell every file's
// name.
ProgramArguments ReadProgramArguments(int /*argc*/, char** /*argv*/) {
  ProgramArguments arguments;
  const wchar_t* text = GetCommandLineW();
  arguments.text = Utf8Text(AfterProgramName(text));
  int count = 0;
  const std::unique_ptr<LPWSTR, FreeLocal> words(CommandLineToArgvW(text, &count));
  if (words == nullptr) return arguments;
  for (int i = 1; i < count; ++i) arguments.words.push_back(Utf8Text(words.get()[i]));
  return arguments;
}

std::string EnvironmentVariable(const char* name) {
  const std::wstring wide_name = WideText(name);
  // The length with its terminating zero; 0 when there is no such variable.
  const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0);
  if (length == 0) return {};
  std::wstring value(length, L'\0');
  const DWORD filled = GetEnvironmentVariableW(wide_name.c_str(), value.data(), length);
  // Longer than its buffer only when it changed between the two calls.
  if (filled >= length) return {};
  value.resize(filled);
  return Utf8Text(value);
}

}  // namespace skyhaul
