#include "platform/win32/port_list.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/win32/port_name.h"
#include "platform/win32/wide_text.h"

namespace skyhaul {

namespace {

constexpr DWORD kMaxValues = 100;
constexpr size_t kMaxCharacters = 255;  // of a value's name, and of its data

struct RegistryValue {
  std::string name;
  std::string text;  // empty when the value is not a text
};

// Nothing promises that a text in the registry ends with a zero, or that it has only one.
std::string TextOfData(const std::array<wchar_t, kMaxCharacters>& data, DWORD bytes) {
  const std::wstring_view text(data.data(), std::min(bytes / sizeof(wchar_t), data.size()));
  return Utf8Text(text.substr(0, text.find(L'\0')));
}

// Returns the system's error number; a value that is longer than the buffers is one too.
LSTATUS ReadValue(HKEY key, DWORD index, RegistryValue& value) {
  std::array<wchar_t, kMaxCharacters> name{};
  std::array<wchar_t, kMaxCharacters> data{};
  DWORD name_characters = static_cast<DWORD>(name.size());
  DWORD data_bytes = static_cast<DWORD>(sizeof(data));
  DWORD type = REG_NONE;
  const LSTATUS status = RegEnumValueW(key, index, name.data(), &name_characters, nullptr, &type,
                                       reinterpret_cast<BYTE*>(data.data()), &data_bytes);
  if (status != ERROR_SUCCESS) return status;
  value.name = Utf8Text({name.data(), name_characters});
  value.text = type == REG_SZ ? TextOfData(data, data_bytes) : std::string();
  return ERROR_SUCCESS;
}

}  // namespace

int ListPorts(HKEY root, const wchar_t* key_path, std::vector<PortInfo>& ports) {
  ports.clear();
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, key_path, 0, KEY_READ, &key) != ERROR_SUCCESS) return -1;
  for (DWORD index = 0; index < kMaxValues && ports.size() < kMaxPorts; ++index) {
    RegistryValue value;
    const LSTATUS status = ReadValue(key, index, value);
    if (status == ERROR_NO_MORE_ITEMS) break;
    // A value that does not fit the buffers is passed over like one that names no port.
    const uint32_t number = status == ERROR_SUCCESS ? ComPortNumber(value.text) : 0;
    if (number < 1) continue;
    ports.push_back({.number = number,
                     .name = ComPortName(number),
                     .description = std::string(DescribeDevice(value.name))});
  }
  RegCloseKey(key);
  return 0;
}

}  // namespace skyhaul
