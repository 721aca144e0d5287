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
  const std::tuple<Names, const char*, Names> cases[] = {
      {{"COM1", "COM2", "COM3"}, "COM3", {"COM3", "COM2", "COM1"}},
      {{"COM2", "COM3"}, "x", {"COM2", "COM3"}},
      {{}, "x", {"COM1"}},
  };
  for (const auto& [listed, configured, expected] : cases) {
    Bench bench;
    bench.ports = Ports(listed);
    EXPECT_EQ(CandidatePorts(BenchPlatform(bench), configured), expected);
    bench.list_fails = true;
    EXPECT_EQ(CandidatePorts(BenchPlatform(bench), configured), Names{"COM1"});
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
