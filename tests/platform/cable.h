#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace skyhaul {

inline const SerialFunctions& Serial() {
  return NativePlatform().serial;
}

inline uint64_t Tick_ms() {
  return NativePlatform().clock.tick_ms(nullptr);
}

// An open port.
struct Port {
  explicit Port(const std::string& name, const SerialSettings& settings = {}) {
    const PortOpening opening = Serial().open(nullptr, name);
    EXPECT_EQ(opening.problem, PortProblem::kNone) << opening.reason;
    EXPECT_EQ(opening.reason, "");
    handle = opening.handle;
    if (handle != kNoSerialHandle) Configure(settings);
  }
  explicit Port(SerialHandle opened) : handle(opened) {}
  ~Port() { Close(); }
  Port(const Port&) = delete;
  Port& operator=(const Port&) = delete;

  void Configure(const SerialSettings& settings) const {
    EXPECT_EQ(Serial().configure(nullptr, handle, settings), SetupStep::kNone);
  }

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

  // Reads until that many bytes have come, or none for some time.
  std::string ReadAll(size_t wanted, int silent_reads = 40) const {
    std::string all;
    std::string part;
    for (int silent = 0; all.size() < wanted && silent < silent_reads; ++silent) {
      if (Read(part) < 0) break;
      if (!part.empty()) silent = 0;
      all += part;
    }
    return all;
  }

  // Writes what nobody takes. Returns how long the write that failed took; 0 when none did.
  uint64_t WriteUntilItFails() const {
    for (int i = 0; i < 10000; ++i) {
      const uint64_t start_ms = Tick_ms();
      if (Write(std::string(100, 'x')) != 0) return Tick_ms() - start_ms;
    }
    return 0;
  }

  int Write(const std::string& bytes) const {
    return Serial().write(nullptr, handle, reinterpret_cast<const uint8_t*>(bytes.data()),
                          bytes.size());
  }

  SerialHandle handle = kNoSerialHandle;
};

// A port and the instrument's end of the cable that is in it. The constructor and the functions
// below are each system's own.
struct Cable {
  Cable();

  std::string name;  // of the port
  Port instrument;
};

bool HasCable();

struct SerialPorts : testing::Test {
  void SetUp() override {
    if (!HasCable()) GTEST_SKIP() << "this machine has no cable between two of its ports";
  }
};

struct NoPort {
  std::string name;
  PortProblem problem;
  std::string reason;  // part of it
};

// Names that no port has, with why.
std::vector<NoPort> NoPorts();

}  // namespace skyhaul
