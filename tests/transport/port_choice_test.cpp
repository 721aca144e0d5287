#include "transport/port_choice.h"

#include <gtest/gtest.h>

#include "instruments/bench.h"

namespace skyhaul {
namespace {

using Names = std::vector<std::string>;

std::vector<PortInfo> Ports(const Names& names) {
  std::vector<PortInfo> ports;
  for (const std::string& name : names) {
    ports.push_back({.number = static_cast<uint32_t>(ports.size() + 1), .name = name});
  }
  return ports;
}

TEST(PortChoice, TheConfiguredPortComesFirst) {
  const struct {
    Names listed;
    bool list_fails;
    const char* configured;
    Names expected;
  } cases[] = {
      {{"a", "b", "c"}, false, "c", {"c", "b", "a"}},
      {{"a", "b", "c"}, false, "a", {"a", "b", "c"}},
      {{"a", "b"}, false, "x", {"a", "b"}},
      {{}, false, "x", {"COM1"}},
      {{}, true, "x", {"COM1"}},
  };
  for (const auto& c : cases) {
    Bench bench;
    bench.ports = Ports(c.listed);
    bench.list_fails = c.list_fails;
    EXPECT_EQ(CandidatePorts(BenchPlatform(bench), c.configured), c.expected);
  }
}

TEST(PortChoice, ANewPortIsNoticed) {
  Bench bench;
  const Platform platform = BenchPlatform(bench);
  PortMemory memory;
  const std::pair<Names, const char*> changes[] = {
      {{}, ""},                     // only remembered
      {{"a", "b"}, "b"},            // nothing was remembered: the highest number
      {{"a", "b"}, ""},             // nothing new
      {{"a", "c", "b", "d"}, "c"},  // the first new one
      {{"a"}, ""},                  // ports that go are no reason to change
      {{"a", "b"}, "b"},
  };
  for (const auto& [listed, expected] : changes) {
    bench.ports = Ports(listed);
    EXPECT_EQ(NewPort(platform, memory), expected);
  }
}

// A system may list its ports in any order.
TEST(PortChoice, TheHighestNumberNeedNotBeTheLast) {
  Bench bench;
  const Platform platform = BenchPlatform(bench);
  PortMemory memory;
  EXPECT_EQ(NewPort(platform, memory), "");
  bench.ports = {{.number = 3, .name = "COM3"},
                 {.number = 12, .name = "COM12"},
                 {.number = 5, .name = "COM5"}};
  EXPECT_EQ(NewPort(platform, memory), "COM12");
}

}  // namespace
}  // namespace skyhaul
