#include "platform/win32/registry.h"

#include <windows.h>

#include <string>

#include "platform/win32/wide_text.h"
#include "tests/platform/registry_key.h"

namespace skyhaul {
namespace {

// Wine's registry is the test run's own; a person's own settings are nothing to be cleared.
bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

struct RegistryTest : testing::Test {
  void SetUp() override {
    if (!IsWine()) GTEST_SKIP() << "runs under Wine only: it would remove this user's settings";
    Clear();
  }
  void TearDown() override {
    if (IsWine()) Clear();
  }

  static void Clear() {
    RegDeleteTreeW(HKEY_CURRENT_USER, kUserKeyPath);
    RegDeleteTreeW(HKEY_USERS, kTemplateKeyPath);
  }

  // A value as the system has it.
  static std::string QueryRaw(const TestKey& key, const char* name, DWORD expected_type) {
    char data[1000] = {};
    DWORD size = sizeof data;
    DWORD type = REG_NONE;
    RegQueryValueExW(static_cast<HKEY>(key.handle), WideText(name).c_str(), nullptr, &type,
                     reinterpret_cast<BYTE*>(data), &size);
    EXPECT_EQ(type, expected_type) << name;
    return {data, size};
  }

  static void SetRaw(const TestKey& key, const wchar_t* name, DWORD type, const void* data,
                     size_t size) {
    RegSetValueExW(static_cast<HKEY>(key.handle), name, 0, type, static_cast<const BYTE*>(data),
                   static_cast<DWORD>(size));
  }
};

TEST_F(RegistryTest, OnlyAFirstOpeningMakesTheKey) {
  EXPECT_TRUE(TestKey(RegistryKey::kUserReadOnly).opening.missing);
  EXPECT_TRUE(TestKey(RegistryKey::kTemplate).opening.missing);
  for (const bool created : {true, false}) {
    EXPECT_EQ(TestKey().opening.created, created);
  }
}

// In the system's form, as other programs expect them (see registry.h), and back.
TEST_F(RegistryTest, ValuesComeBackAsTheyWere) {
  const TestKey key;
  const std::string number("\x20\x03\0\0", 4);
  const std::string binary("a\0b", 3);
  const std::tuple<const char*, ValueKind, std::string, std::string> cases[] = {
      // The length that is written ends before the zero; the system takes it in.
      {"Text", ValueKind::kText, "J\xc3\xb6", std::string("J\0\xf6\0\0\0", 6)},
      {"Empty", ValueKind::kText, "", ""},
      {"Number", ValueKind::kNumber, number, number},
      {"Binary", ValueKind::kBinary, binary, binary},
  };
  for (const auto& [name, kind, bytes, raw] : cases) {
    EXPECT_EQ(key.Set(name, kind, bytes), "") << name;
    EXPECT_EQ(key.Set(name, kind, "other", IfSet::kKeep), "") << name;
    EXPECT_EQ(key.Query(name, kind), bytes) << name;
    EXPECT_EQ(QueryRaw(key, name, static_cast<DWORD>(kind)), raw) << name;
  }
  EXPECT_NE(key.Set("Text", ValueKind::kText, "no UTF-8 \xff"), "");
}

TEST_F(RegistryTest, WhatDoesNotFitIsNotRead) {
  const TestKey key;
  // The system adds a zero to a text when it finds one after it.
  SetRaw(key, L"Fits", REG_SZ, L"123456789", 8 * sizeof(wchar_t));
  SetRaw(key, L"Zero", REG_SZ, L"12345678", 9 * sizeof(wchar_t));
  SetRaw(key, L"Wide", REG_SZ, L"\x00fc\x00fc\x00fc\x00fc\x00fc", 5 * sizeof(wchar_t));
  SetRaw(key, L"Ends", REG_SZ, L"12\0", 3 * sizeof(wchar_t));
  SetRaw(key, L"Number", REG_BINARY, "1234", 4);
  SetRaw(key, L"Short", REG_DWORD, "12", 2);
  const std::tuple<const char*, ValueKind, const char*> cases[] = {
      {"Fits", ValueKind::kText, "12345678"},    {"Zero", ValueKind::kText, "(unfit)"},
      {"Wide", ValueKind::kText, "(unfit)"},     {"Ends", ValueKind::kText, "12"},
      {"Number", ValueKind::kNumber, "(unfit)"}, {"Short", ValueKind::kNumber, "(unfit)"},
      {"None", ValueKind::kText, "(missing)"},
  };
  for (const auto& [name, kind, bytes] : cases) EXPECT_EQ(key.Query(name, kind), bytes) << name;
}

TEST_F(RegistryTest, TheTemplateIsReadOnly) {
  ASSERT_EQ(RegSetKeyValueW(HKEY_USERS, kTemplateKeyPath, L"IgcSite", REG_SZ, L"Fiesch", 12),
            ERROR_SUCCESS);
  const TestKey key(RegistryKey::kTemplate);
  ASSERT_NE(key.handle, kNoRegistryHandle);
  EXPECT_EQ(key.Query("IgcSite", ValueKind::kText), "Fiesch");
  EXPECT_NE(key.Set("IgcSite", ValueKind::kText, "x"), "");
}

TEST_F(RegistryTest, SecretsAreEncryptedAndBelongToTheirId) {
  const SecretFunctions secrets = NativePlatform().secret;
  const TestKey key;
  std::string reason;
  std::string secret;
  ASSERT_EQ(secrets.store(nullptr, "P", "one", "hunter2", reason), SecretResult::kDone) << reason;
  const std::string encrypted = QueryRaw(key, "P one", REG_BINARY);
  EXPECT_EQ(encrypted.find("hunter2"), std::string::npos);
  EXPECT_EQ(secrets.load(nullptr, "P", "one", secret, reason), SecretResult::kDone) << reason;
  EXPECT_EQ(secret, "hunter2");
  SetRaw(key, L"P two", REG_BINARY, encrypted.data(), encrypted.size());
  EXPECT_EQ(secrets.load(nullptr, "P", "two", secret, reason), SecretResult::kFailed);
  EXPECT_EQ(secrets.erase(nullptr, "P", "one", reason), SecretResult::kDone);
  EXPECT_EQ(secrets.erase(nullptr, "P", "one", reason), SecretResult::kMissing);
  EXPECT_EQ(secrets.load(nullptr, "P", "one", secret, reason), SecretResult::kMissing);
}

}  // namespace
}  // namespace skyhaul
