#include "transport/port_choice.h"

#include <gtest/gtest.h>

#include "instruments/bench.h"

namespace skyhaul {
namespace {

using Names = std::vector<std::string>;

// Ports with the numbers that their names end in.
std::vector<PortInfo> Ports(const Names& names) {
  std::vector<PortInfo> ports;
  for (const std::string& name : names) {
    ports.push_back({.number = static_cast<uint32_t>(std::stoul(name.substr(3))), .name = name});
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
      {{"COM1", "COM2", "COM3"}, false, "COM3", {"COM3", "COM2", "COM1"}},
      {{"COM2", "COM3"}, false, "x", {"COM2", "COM3"}},
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
      {{}, ""},                                     // only remembered
      {{"COM3", "COM12", "COM5"}, "COM12"},         // nothing was remembered: the highest number
      {{"COM3", "COM12", "COM5"}, ""},              // nothing new
      {{"COM3", "COM7", "COM12", "COM9"}, "COM7"},  // the first new one
      {{"COM3"}, ""},                               // ports that go are no reason to change
      {{"COM3", "COM12"}, "COM12"},
  };
  for (const auto& [listed, expected] : changes) {
    bench.ports = Ports(listed);
    EXPECT_EQ(NewPort(platform, memory), expected);
  }
}

}  // namespace
}  // namespace skyhaul
