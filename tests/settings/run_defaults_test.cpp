#include "settings/run_defaults.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "instruments/bench.h"
#include "platform/user_folders.h"
#include "settings/table.h"
#include "tests/support/fake_registry.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

TEST(RunSettings, ThePortIsTheChosenOne) {
  Bench bench;
  const Platform platform = BenchPlatform(bench);
  FakeRegistry fake;
  const SettingValues defaults = DefaultSettings(MakeRegistry(fake));
  const std::tuple<const char*, int32_t, bool, const char*> cases[] = {
      {"", 0, true, ""},
      {"COM2", 1, true, "COM2"},
      {"COMET", 0, false, "COMET"},
      {"com1", 0, true, ""},
      {"\\\\.\\COM1", 0, false, "COM1"},
      {"com9999", 0, false, "COM9999"},
      {"com10000", 0, false, "com10000"},
  };
  for (const auto& [port_name, auto_set_port, automatic, configured] : cases) {
    SettingValues values = defaults;
    values.port_name = port_name;
    values.auto_set_port = auto_set_port;
    const PortChoice port = MakeRunDefaults(values, defaults, platform.serial, {}).port;
    EXPECT_EQ(port.automatic, automatic) << port_name;
    EXPECT_EQ(port.configured, configured) << port_name;
  }
}

TEST(RunSettings, NothingStoredIsNothingSaid) {
  FakeRegistry fake;
  SettingValues values = DefaultSettings(MakeRegistry(fake));
  const SettingValues defaults = values;
  RunDefaults settings = MakeRunDefaults(values, defaults, {}, {});
  const igc::HeaderTexts& header = settings.igc_header;
  EXPECT_EQ(header.pilot + header.glider_type + header.glider_id + header.competition_class +
                header.site + header.competition_id,
            "");
  EXPECT_FALSE(settings.igc_enl);
  EXPECT_TRUE(settings.fai_rule);
  EXPECT_TRUE(settings.log_filter);
  values.igc_contest_id = "42";
  settings = MakeRunDefaults(values, defaults, {}, {});
  EXPECT_EQ(header.competition_id, "42");
  values.igc_dir = HomeFolder();
  settings = MakeRunDefaults(values, defaults, {}, {});
  EXPECT_EQ(std::ranges::count(settings.rescue_folders, HomeFolder()), 1);
}

TEST(RunSettings, AGapThatCannotBeIsNotUsed) {
  FakeRegistry fake;
  SettingValues values = DefaultSettings(MakeRegistry(fake));
  const SettingValues defaults = values;
  const std::pair<int32_t, bool> cases[] = {
      {-1, false}, {0, true}, {1000000, true}, {1000001, false}};
  for (const auto& [stored_m, good] : cases) {
    RecordingShell recorder;
    const Shell shell = MakeShell(recorder);
    values.loop_flight_gap_m = stored_m;
    const RunDefaults settings = MakeRunDefaults(values, defaults, {}, {.shell = &shell});
    EXPECT_EQ(settings.loop_gap_m, good ? stored_m : 800);
    EXPECT_EQ(
        Has(recorder.statuses, "LoopFlightGap must be 0 to 1000000; its default is used, 800"),
        !good);
  }
}

}  // namespace
}  // namespace skyhaul
