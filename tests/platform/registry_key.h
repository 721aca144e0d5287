#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/platform.h"

namespace skyhaul {

inline const RegistryFunctions& Registry() {
  return NativePlatform().registry;
}

// An open key, or why there is none.
struct TestKey {
  explicit TestKey(RegistryKey which = RegistryKey::kUser)
      : opening(Registry().open(nullptr, which)), handle(opening.handle) {}
  ~TestKey() {
    if (handle != kNoRegistryHandle) Registry().close(nullptr, handle);
  }
  TestKey(const TestKey&) = delete;
  TestKey& operator=(const TestKey&) = delete;

  // Returns what went wrong; empty when nothing did.
  std::string Set(const std::string& name, ValueKind kind, const std::string& bytes,
                  IfSet if_set = IfSet::kReplace) const {
    std::string reason;
    const int result = Registry().set(nullptr, handle, name, kind, bytes, if_set, reason);
    EXPECT_EQ(result == 0, reason.empty());
    return reason;
  }

  std::string Flush() const {
    std::string reason;
    const int result = Registry().flush(nullptr, handle, reason);
    EXPECT_EQ(result == 0, reason.empty());
    return reason;
  }

  // The text or the bytes of a value of at most 8 bytes; "(missing)" or "(unfit)".
  std::string Query(const std::string& name, ValueKind kind) const {
    std::string bytes;
    const QueryResult result = Registry().query(nullptr, handle, name, kind, 8, bytes);
    if (result == QueryResult::kMissing) return "(missing)";
    return result == QueryResult::kUnfit ? "(unfit)" : bytes;
  }

  RegistryOpening opening;
  RegistryHandle handle;
};

}  // namespace skyhaul
