#include "settings/run_defaults.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "platform/user_folders.h"
#include "settings/store.h"
#include "settings/table.h"

namespace skyhaul {

namespace {

constexpr std::string_view kDevicePrefix = "\\\\.\\";
constexpr std::string_view kComPrefix = "COM";
constexpr uint32_t kMostPortNumber = 9999;  // more than any system gives

// The number of a port that is named by its number, 1 to kMostPortNumber, else 0.
uint32_t NumberOfPort(const std::string& text) {
  // "COM7", "com7" and "\\.\COM17" are numbers; "/dev/ttyUSB0" and "COMX" are not.
  const std::string upper = UpperCase(text);
  std::string_view name = upper;
  if (name.starts_with(kDevicePrefix)) name.remove_prefix(kDevicePrefix.size());
  if (!name.starts_with(kComPrefix)) return 0;
  name.remove_prefix(kComPrefix.size());
  // "COM" without digits and numbers that do not fit give 0, which no port has.
  const uint32_t number = ReadInteger<uint32_t>(name).value_or(0);
  return number <= kMostPortNumber ? number : 0;
}

PortChoice ChoosePort(const SettingValues& values, const SettingValues& defaults,
                      const SerialFunctions& serial) {
  // A new user's settings hold all 92 values, so the default says nothing about what a person
  // wants. Anyone who does want the first port writes "\\.\COM1".
  if (values.port_name.empty() || UpperCase(values.port_name) == UpperCase(defaults.port_name)) {
    return {.automatic = true, .configured = {}};
  }
  // On Linux a number means the port that --ports shows under it; no device is called COM7 there.
  const uint32_t number = NumberOfPort(values.port_name);
  return {.automatic = values.auto_set_port != 0,
          .configured = number == 0 ? values.port_name : serial.name_of(serial.context, number)};
}

int32_t ChooseGap_m(int32_t value, int32_t standard, const Operation& operation) {
  if (value >= 0 && value <= kMostGap_m) return value;
  // Not a failure: a wrong number in the settings must not keep a flight from being downloaded.
  ShowStatus(operation, "LoopFlightGap must be 0 to " + std::to_string(kMostGap_m) +
                            "; its default is used, " + std::to_string(standard));
  return standard;
}

}  // namespace

RunDefaults MakeRunDefaults(const SettingValues& values, const SettingValues& defaults,
                            const SerialFunctions& serial, const Operation& operation) {
  // A header field "None" in a file would be taken for a pilot of that name.
  const auto given = [&](std::string SettingValues::*field) {
    return values.*field == defaults.*field ? std::string() : values.*field;
  };
  RunDefaults settings;
  settings.port = ChoosePort(values, defaults, serial);
  settings.igc_header = {.pilot = given(&SettingValues::igc_pilot_name),
                         .glider_type = given(&SettingValues::igc_glider_type),
                         .glider_id = given(&SettingValues::igc_glider_id),
                         .competition_class = given(&SettingValues::igc_class),
                         .site = given(&SettingValues::igc_site),
                         .competition_id = given(&SettingValues::igc_contest_id)};
  settings.igc_enl = values.igc_add_enl != 0;
  settings.log_filter = values.log_filter != 0;
  settings.fai_rule = values.use_fai_max_distance_rules != 0;
  settings.loop_gap_m =
      ChooseGap_m(values.loop_flight_gap_m, defaults.loop_flight_gap_m, operation);
  for (const std::string& folder : {values.igc_dir, HomeFolder(), TemporaryFolder()}) {
    // The folder of flights is often the home folder itself; a place that failed is not tried
    // again.
    const bool known =
        std::ranges::find(settings.rescue_folders, folder) != settings.rescue_folders.end();
    if (!folder.empty() && !known) settings.rescue_folders.push_back(folder);
  }
  return settings;
}

RunDefaults LoadRunDefaults(const Platform& platform, const Operation& operation) {
  // What LoadSettings() returns is passed over: after its message the store holds the defaults, and
  // the run goes on with them.
  SettingsStore store;
  LoadSettings(platform.registry, operation, SettingsAccess::kReadOnly, store);
  return MakeRunDefaults(store.live, DefaultSettings(platform.registry), platform.serial,
                         operation);
}

}  // namespace skyhaul
