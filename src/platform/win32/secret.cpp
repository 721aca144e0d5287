#include "platform/win32/secret.h"

#include <vector>

#include "platform/win32/registry.h"
#include "platform/win32/system_reason.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

// After windows.h, which it needs.
#include <dpapi.h>

namespace skyhaul {

namespace {

constexpr DWORD kLargestBlob = 4096;  // encryption adds some hundred bytes to a password

// Data that the system has allocated; wiped before it is given back.
struct SystemData {
  SystemData() = default;
  ~SystemData() {
    if (blob.pbData == nullptr) return;
    SecureZeroMemory(blob.pbData, blob.cbData);
    LocalFree(blob.pbData);
  }
  SystemData(const SystemData&) = delete;
  SystemData& operator=(const SystemData&) = delete;

  DATA_BLOB blob = {};
};

// The functions take pointers to data that they do not change.
DATA_BLOB BlobOf(const std::string& bytes) {
  return {.cbData = static_cast<DWORD>(bytes.size()),
          .pbData = reinterpret_cast<BYTE*>(const_cast<char*>(bytes.data()))};
}

std::wstring ValueName(const std::string& name, const std::string& id) {
  return WideText(name + " " + id);
}

SecretResult Failed(DWORD error, std::string& reason) {
  reason = SystemReason(error);
  return SecretResult::kFailed;
}

SecretResult Store(void*, const std::string& name, const std::string& id, const std::string& secret,
                   std::string& reason) {
  DATA_BLOB plain = BlobOf(secret);
  DATA_BLOB entropy = BlobOf(id);
  // No dialog box: a batch run may have nobody who looks at the screen.
  SystemData encrypted;
  if (CryptProtectData(&plain, L"Skyhaul", &entropy, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN,
                       &encrypted.blob) == 0) {
    return Failed(GetLastError(), reason);
  }
  const LSTATUS status =
      RegSetKeyValueW(HKEY_CURRENT_USER, kUserKeyPath, ValueName(name, id).c_str(), REG_BINARY,
                      encrypted.blob.pbData, encrypted.blob.cbData);
  return status == ERROR_SUCCESS ? SecretResult::kDone : Failed(static_cast<DWORD>(status), reason);
}

SecretResult Load(void*, const std::string& name, const std::string& id, std::string& secret,
                  std::string& reason) {
  std::vector<BYTE> bytes(kLargestBlob);
  DWORD size = kLargestBlob;
  const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, kUserKeyPath, ValueName(name, id).c_str(),
                                      RRF_RT_REG_BINARY, nullptr, bytes.data(), &size);
  if (status == ERROR_FILE_NOT_FOUND) return SecretResult::kMissing;
  if (status != ERROR_SUCCESS) return Failed(static_cast<DWORD>(status), reason);
  DATA_BLOB encrypted = {.cbData = size, .pbData = bytes.data()};
  DATA_BLOB entropy = BlobOf(id);
  SystemData plain;
  // Fails when the value was stored under another id, or for another account.
  if (CryptUnprotectData(&encrypted, nullptr, &entropy, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN,
                         &plain.blob) == 0) {
    return Failed(GetLastError(), reason);
  }
  secret.assign(reinterpret_cast<const char*>(plain.blob.pbData), plain.blob.cbData);
  return SecretResult::kDone;
}

SecretResult Erase(void*, const std::string& name, const std::string& id, std::string& reason) {
  const LSTATUS status =
      RegDeleteKeyValueW(HKEY_CURRENT_USER, kUserKeyPath, ValueName(name, id).c_str());
  if (status == ERROR_SUCCESS) return SecretResult::kDone;
  if (status == ERROR_FILE_NOT_FOUND) return SecretResult::kMissing;
  return Failed(static_cast<DWORD>(status), reason);
}

}  // namespace

SecretFunctions Win32Secret() {
  return {.store = Store, .load = Load, .erase = Erase};
}

}  // namespace skyhaul
