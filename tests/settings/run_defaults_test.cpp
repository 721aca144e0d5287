#include "settings/run_defaults.h"

#include <gtest/gtest.h>

#include "instruments/bench.h"
#include "settings/table.h"
#include "tests/support/fake_registry.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

TEST(RunSettings, ThePortIsTheChosenOne) {
  Bench bench;
  bench.ports = {{.number = 1, .name = "port1"},
                 {.number = 2, .name = "port2"},
                 {.number = 51, .name = "port51"},
                 {.number = 9999, .name = "port9999"}};
  const Platform platform = BenchPlatform(bench);
  FakeRegistry fake;
  const SettingValues defaults = DefaultSettings(MakeRegistry(fake));
  const struct {
    const char* port_name;
    int32_t auto_set_port;
    bool automatic;
    const char* configured;
  } cases[] = {
      {"COM1", 1, true, ""},
      {"", 0, true, ""},
      {"COM2", 0, false, "port2"},
      {"COM2", 1, true, "port2"},
      {"\\\\.\\COM2", 0, false, "port2"},
      {"/dev/ttyUSB0", 0, false, "/dev/ttyUSB0"},
      {"COMET", 0, false, "COMET"},
      {"COM1", 0, true, ""},
      {"com1", 0, true, ""},
      {"\\\\.\\COM1", 0, false, "port1"},
      {"com2", 0, false, "port2"},
      {"Com51", 0, false, "port51"},
      {"COM9999", 0, false, "port9999"},
      {"com10000", 0, false, "com10000"},
      {"COM0", 0, false, "COM0"},
  };
  for (const auto& c : cases) {
    SettingValues values = defaults;
    values.port_name = c.port_name;
    values.auto_set_port = c.auto_set_port;
    const PortChoice port = MakeRunDefaults(values, defaults, platform.serial, {}).port;
    EXPECT_EQ(port.automatic, c.automatic) << c.port_name;
    EXPECT_EQ(port.configured, c.configured) << c.port_name;
  }
}

TEST(RunSettings, NothingStoredIsNothingSaid) {
  FakeRegistry fake;
  SettingValues values = DefaultSettings(MakeRegistry(fake));
  const SettingValues defaults = values;
  RunDefaults settings = MakeRunDefaults(values, defaults, {}, {});
  EXPECT_EQ(settings.igc_header.pilot + settings.igc_header.glider_type +
                settings.igc_header.glider_id + settings.igc_header.competition_class +
                settings.igc_header.site + settings.igc_header.competition_id,
            "");
  EXPECT_FALSE(settings.igc_enl);
  EXPECT_TRUE(settings.fai_rule);
  EXPECT_EQ(settings.loop_gap_m, 800);
  values.igc_contest_id = "42";
  values.use_fai_max_distance_rules = 0;
  values.loop_flight_gap_m = 0;
  settings = MakeRunDefaults(values, defaults, {}, {});
  EXPECT_EQ(settings.igc_header.competition_id, "42");
  EXPECT_FALSE(settings.fai_rule);
  EXPECT_EQ(settings.loop_gap_m, 0);
}

TEST(RunSettings, AGapThatCannotBeIsNotUsed) {
  FakeRegistry fake;
  SettingValues values = DefaultSettings(MakeRegistry(fake));
  const SettingValues defaults = values;
  const struct {
    int32_t stored_m;
    int32_t used_m;
  } cases[] = {{-1, 800}, {0, 0}, {1000000, 1000000}, {1000001, 800}};
  for (const auto& c : cases) {
    RecordingShell recorder;
    const Shell shell = MakeShell(recorder);
    Operation operation;
    operation.shell = &shell;
    values.loop_flight_gap_m = c.stored_m;
    EXPECT_EQ(MakeRunDefaults(values, defaults, {}, operation).loop_gap_m, c.used_m);
    const std::vector<std::string> told = {
        "LoopFlightGap must be 0 to 1000000; its default is used, 800"};
    EXPECT_EQ(recorder.statuses, c.used_m == c.stored_m ? std::vector<std::string>{} : told);
  }
}

}  // namespace
}  // namespace skyhaul
