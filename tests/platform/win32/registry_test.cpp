#include "platform/win32/registry.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/win32/secret.h"
#include "platform/win32/wide_text.h"

namespace skyhaul {
namespace {

const RegistryFunctions kRegistry = Win32Registry();

// Wine's registry is the test run's own; a person's own settings are nothing to be cleared.
bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

class RegistryTest : public testing::Test {
 protected:
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

  static RegistryHandle Open() { return kRegistry.open(nullptr, RegistryKey::kUser).handle; }

  static int Set(RegistryHandle key, const char* name, ValueKind kind, const std::string& bytes,
                 IfSet if_set = IfSet::kReplace) {
    std::string reason;
    return kRegistry.set(nullptr, key, name, kind, bytes, if_set, reason);
  }

  static void SetRaw(const wchar_t* name, DWORD type, const void* data, size_t size) {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kUserKeyPath, name, type, data,
                              static_cast<DWORD>(size)),
              ERROR_SUCCESS);
  }
};

TEST_F(RegistryTest, OnlyAFirstOpeningMakesTheKey) {
  EXPECT_TRUE(kRegistry.open(nullptr, RegistryKey::kUserReadOnly).missing);
  EXPECT_TRUE(kRegistry.open(nullptr, RegistryKey::kTemplate).missing);
  for (const bool created : {true, false}) {
    const RegistryOpening opening = kRegistry.open(nullptr, RegistryKey::kUser);
    EXPECT_EQ(opening.created, created);
    kRegistry.close(nullptr, opening.handle);
  }
}

// In the system's form, as other programs expect them (see registry.h), and back.
TEST_F(RegistryTest, ValuesComeBackAsTheyWere) {
  const RegistryHandle key = Open();
  const std::string number("\x20\x03\0\0", 4);
  const std::string binary("a\0b", 3);
  const struct {
    const char* name;
    ValueKind kind;
    std::string bytes;
    DWORD type;
    std::string data;
  } cases[] = {
      // The length that is written ends before the zero; the system takes it in.
      {"Text", ValueKind::kText, "J\xc3\xb6", REG_SZ, std::string("J\0\xf6\0\0\0", 6)},
      {"Empty", ValueKind::kText, "", REG_SZ, ""},
      {"Number", ValueKind::kNumber, number, REG_DWORD, number},
      {"Binary", ValueKind::kBinary, binary, REG_BINARY, binary},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Set(key, c.name, c.kind, c.bytes), 0) << c.name;
    EXPECT_EQ(Set(key, c.name, c.kind, "other", IfSet::kKeep), 0) << c.name;
    std::string bytes = "before";
    EXPECT_EQ(kRegistry.query(nullptr, key, c.name, c.kind, 40, bytes), QueryResult::kFound);
    EXPECT_EQ(bytes, c.bytes) << c.name;
    DWORD type = REG_NONE;
    BYTE data[16] = {};
    DWORD size = sizeof data;
    ASSERT_EQ(RegQueryValueExW(static_cast<HKEY>(key), WideText(c.name).c_str(), nullptr, &type,
                               data, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(type, c.type) << c.name;
    EXPECT_EQ(std::string(data, data + size), c.data) << c.name;
  }
  EXPECT_EQ(Set(key, "Text", ValueKind::kText, "no UTF-8 \xff"), -1);
  kRegistry.close(nullptr, key);
}

TEST_F(RegistryTest, WhatDoesNotFitIsNotRead) {
  const RegistryHandle key = Open();
  // The system adds a zero to a text when it finds one after it.
  SetRaw(L"Fits", REG_SZ, L"123456789", 8 * sizeof(wchar_t));
  SetRaw(L"Zero", REG_SZ, L"12345678", 9 * sizeof(wchar_t));
  SetRaw(L"Wide", REG_SZ, L"\x00fc\x00fc\x00fc\x00fc\x00fc", 5 * sizeof(wchar_t));
  SetRaw(L"Ends", REG_SZ, L"12\0", 3 * sizeof(wchar_t));
  SetRaw(L"Number", REG_BINARY, "1234", 4);
  SetRaw(L"Short", REG_DWORD, "12", 2);
  const struct {
    const char* name;
    ValueKind kind;
    QueryResult result;
    const char* bytes;
  } cases[] = {
      {"Fits", ValueKind::kText, QueryResult::kFound, "12345678"},
      {"Zero", ValueKind::kText, QueryResult::kUnfit, ""},
      {"Wide", ValueKind::kText, QueryResult::kUnfit, ""},
      {"Ends", ValueKind::kText, QueryResult::kFound, "12"},
      {"Number", ValueKind::kNumber, QueryResult::kUnfit, ""},
      {"Short", ValueKind::kNumber, QueryResult::kUnfit, ""},
      {"Number", ValueKind::kBinary, QueryResult::kFound, "1234"},
      {"None", ValueKind::kText, QueryResult::kMissing, ""},
  };
  for (const auto& c : cases) {
    std::string bytes;
    EXPECT_EQ(kRegistry.query(nullptr, key, c.name, c.kind, 8, bytes), c.result) << c.name;
    EXPECT_EQ(bytes, c.bytes) << c.name;
  }
  kRegistry.close(nullptr, key);
}

TEST_F(RegistryTest, TheTemplateIsReadOnly) {
  ASSERT_EQ(RegSetKeyValueW(HKEY_USERS, kTemplateKeyPath, L"IgcSite", REG_SZ, L"Fiesch", 12),
            ERROR_SUCCESS);
  const RegistryHandle key = kRegistry.open(nullptr, RegistryKey::kTemplate).handle;
  ASSERT_NE(key, kNoRegistryHandle);
  std::string bytes;
  EXPECT_EQ(kRegistry.query(nullptr, key, "IgcSite", ValueKind::kText, 80, bytes),
            QueryResult::kFound);
  EXPECT_EQ(bytes, "Fiesch");
  std::string reason;
  EXPECT_EQ(kRegistry.set(nullptr, key, "IgcSite", ValueKind::kText, "x", IfSet::kReplace, reason),
            -1);
  EXPECT_FALSE(reason.empty());
  kRegistry.close(nullptr, key);
}

TEST_F(RegistryTest, SecretsAreEncryptedAndBelongToTheirId) {
  const SecretFunctions secrets = Win32Secret();
  kRegistry.close(nullptr, Open());
  std::string reason;
  std::string secret;
  ASSERT_EQ(secrets.store(nullptr, "P", "one", "hunter2", reason), SecretResult::kDone) << reason;
  char encrypted[1000] = {};
  DWORD size = sizeof encrypted;
  ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, kUserKeyPath, L"P one", RRF_RT_REG_BINARY, nullptr,
                         encrypted, &size),
            ERROR_SUCCESS);
  EXPECT_EQ(std::string(encrypted, size).find("hunter2"), std::string::npos);
  EXPECT_EQ(secrets.load(nullptr, "P", "one", secret, reason), SecretResult::kDone) << reason;
  EXPECT_EQ(secret, "hunter2");
  SetRaw(L"P two", REG_BINARY, encrypted, size);
  EXPECT_EQ(secrets.load(nullptr, "P", "two", secret, reason), SecretResult::kFailed);
  EXPECT_EQ(secrets.erase(nullptr, "P", "one", reason), SecretResult::kDone);
  EXPECT_EQ(secrets.erase(nullptr, "P", "one", reason), SecretResult::kMissing);
  EXPECT_EQ(secrets.load(nullptr, "P", "one", secret, reason), SecretResult::kMissing);
}

}  // namespace
}  // namespace skyhaul
