#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/platform.h"

namespace skyhaul {

// The cables that with-com-ports lays: two ports that hear each other, one on each side of the
// number where the names change, and two more whose cable can be pulled out.
inline constexpr uint32_t kCablePorts[] = {9, 10};
inline constexpr uint32_t kLooseCablePorts[] = {11, 12};

inline bool HasCables() {
  return std::getenv("SKYHAUL_UNPLUG") != nullptr;
}

// Pulls the loose cable out, a moment later.
inline void PullLooseCable() {
  std::FILE* file = std::fopen(std::getenv("SKYHAUL_UNPLUG"), "wb");
  ASSERT_NE(file, nullptr);
  std::fclose(file);
}

inline const SerialFunctions& Serial() {
  return NativePlatform().serial;
}

// One open and configured port.
struct CableEnd {
  explicit CableEnd(uint32_t number, const SerialSettings& settings = {})
      : name(Serial().name_of(nullptr, number)) {
    const PortOpening opening = Serial().open(nullptr, name);
    EXPECT_EQ(opening.problem, PortProblem::kNone) << opening.reason;
    handle = opening.handle;
    if (handle == kNoSerialHandle) return;
    EXPECT_EQ(Serial().configure(nullptr, handle, settings), SetupStep::kNone);
  }
  ~CableEnd() { Close(); }
  CableEnd(const CableEnd&) = delete;
  CableEnd& operator=(const CableEnd&) = delete;

  void Close() {
    if (handle != kNoSerialHandle) Serial().close(nullptr, handle);
    handle = kNoSerialHandle;
  }

  // One read. Returns what the platform's function returned.
  int Read(std::string& bytes, size_t capacity = 100) const {
    bytes.resize(capacity);
    const int count =
        Serial().read(nullptr, handle, reinterpret_cast<uint8_t*>(bytes.data()), bytes.size());
    bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
    return count;
  }

  // Reads until that many bytes have come or two seconds are silent.
  std::string ReadAll(size_t wanted) const {
    constexpr int kSilentReads = 40;
    std::string all;
    std::string part;
    for (int silent = 0; all.size() < wanted && silent < kSilentReads; ++silent) {
      if (Read(part) < 0) break;
      if (!part.empty()) silent = 0;
      all += part;
    }
    return all;
  }

  // Throws away what is still on its way, until ten reads were silent.
  void Drain() const {
    std::string bytes;
    for (int silent = 0; silent < 10; ++silent) {
      if (Read(bytes, 4096) > 0) silent = 0;
    }
  }

  int Write(const std::string& bytes) const {
    return Serial().write(nullptr, handle, reinterpret_cast<const uint8_t*>(bytes.data()),
                          bytes.size());
  }

  std::string name;
  SerialHandle handle = kNoSerialHandle;
};

}  // namespace skyhaul
