#include "platform/win32/registry.h"

#include <vector>

#include "platform/win32/system_reason.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

static_assert(static_cast<DWORD>(ValueKind::kText) == REG_SZ);
static_assert(static_cast<DWORD>(ValueKind::kBinary) == REG_BINARY);
static_assert(static_cast<DWORD>(ValueKind::kNumber) == REG_DWORD);

HKEY KeyOf(RegistryHandle handle) {
  return static_cast<HKEY>(handle);
}

RegistryOpening Opened(LSTATUS status, HKEY key, bool created) {
  if (status == ERROR_SUCCESS) {
    return {.handle = key, .created = created, .reason = {}};
  }
  if (status == ERROR_FILE_NOT_FOUND) return {.missing = true, .reason = {}};
  return {.reason = SystemReason(static_cast<uint32_t>(status))};
}

RegistryOpening OpenOrMake() {
  HKEY key = nullptr;
  DWORD disposition = 0;
  const LSTATUS status =
      RegCreateKeyExW(HKEY_CURRENT_USER, kUserKeyPath, 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_READ | KEY_WRITE, nullptr, &key, &disposition);
  return Opened(status, key, disposition == REG_CREATED_NEW_KEY);
}

RegistryOpening Open(void*, RegistryKey which) {
  if (which == RegistryKey::kUser) return OpenOrMake();
  const bool is_template = which == RegistryKey::kTemplate;
  HKEY key = nullptr;
  const LSTATUS status =
      RegOpenKeyExW(is_template ? HKEY_USERS : HKEY_CURRENT_USER,
                    is_template ? kTemplateKeyPath : kUserKeyPath, 0, KEY_READ, &key);
  return Opened(status, key, false);
}

// The bytes of a value as the program knows them, a text's terminating zero still among them.
std::string BytesOfData(ValueKind kind, const std::vector<BYTE>& data) {
  std::string bytes(data.begin(), data.end());
  if (kind != ValueKind::kText) return bytes;
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t));
  return Utf8Text(text);
}

QueryResult Query(void*, RegistryHandle handle, const std::string& name, ValueKind kind,
                  size_t capacity, std::string& bytes) {
  // A 16-bit character is one byte of UTF-8 or more, so that a text which needs more room is too
  // long.
  const size_t most = kind == ValueKind::kText ? capacity * sizeof(wchar_t) : capacity;
  std::vector<BYTE> data(most);
  DWORD type = REG_NONE;
  DWORD size = static_cast<DWORD>(most);
  const LSTATUS status =
      RegQueryValueExW(KeyOf(handle), WideText(name).c_str(), nullptr, &type, data.data(), &size);
  if (status == ERROR_FILE_NOT_FOUND) return QueryResult::kMissing;
  if (status != ERROR_SUCCESS || type != static_cast<DWORD>(kind)) return QueryResult::kUnfit;
  data.resize(size);  // the size that the value has
  std::string found = BytesOfData(kind, data);
  if (found.size() > capacity) return QueryResult::kUnfit;
  if (kind == ValueKind::kNumber && found.size() != sizeof(DWORD)) return QueryResult::kUnfit;
  bytes = kind == ValueKind::kText ? found.substr(0, found.find('\0')) : found;
  return QueryResult::kFound;
}

bool IsThere(HKEY key, const std::wstring& name) {
  return RegQueryValueExW(key, name.c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

int Set(void*, RegistryHandle handle, const std::string& name, ValueKind kind,
        const std::string& bytes, IfSet if_set, std::string& reason) {
  const std::wstring wide_name = WideText(name);
  if (if_set == IfSet::kKeep && IsThere(KeyOf(handle), wide_name)) return 0;
  const std::wstring text = WideText(bytes);
  const bool is_text = kind == ValueKind::kText;
  if (is_text && text.empty() && !bytes.empty()) {
    reason = "The text is not UTF-8";
    return -1;
  }
  const void* data = is_text ? static_cast<const void*>(text.data()) : bytes.data();
  const size_t size = is_text ? text.size() * sizeof(wchar_t) : bytes.size();
  const LSTATUS status =
      RegSetValueExW(KeyOf(handle), wide_name.c_str(), 0, static_cast<DWORD>(kind),
                     static_cast<const BYTE*>(data), static_cast<DWORD>(size));
  if (status == ERROR_SUCCESS) return 0;
  reason = SystemReason(static_cast<uint32_t>(status));
  return -1;
}

// Every value is in the registry as soon as it is set.
int Flush(void*, RegistryHandle, std::string&) {
  return 0;
}

// What does not fit is replaced without a word: nobody has typed it in by mistake.
std::vector<std::string> TakeNotes(void*, RegistryHandle) {
  return {};
}

void Close(void*, RegistryHandle handle) {
  RegCloseKey(KeyOf(handle));
}

std::string Place(void*) {
  return "HKEY_CURRENT_USER\\" + Utf8Text(kUserKeyPath);
}

std::string Documents(void*) {
  return "c:\\My Documents";
}

}  // namespace

RegistryFunctions Win32Registry() {
  return {.open = Open,
          .query = Query,
          .set = Set,
          .flush = Flush,
          .take_notes = TakeNotes,
          .close = Close,
          .place = Place,
          .documents_folder = Documents};
}

}  // namespace skyhaul
