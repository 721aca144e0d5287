#include "settings/run_defaults.h"

#include <string>
#include <string_view>

#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "settings/store.h"
#include "settings/table.h"

namespace skyhaul {

namespace {

constexpr std::string_view kDevicePrefix = "\\\\.\\";
constexpr std::string_view kComPrefix = "COM";
constexpr uint32_t kMostPortNumber = 9999;  // more than any system gives

// The number of a port that is named by its number, 1 to kMostPortNumber, else 0.
uint32_t NumberOfPort(const std::string& text) {
  const std::string upper = UpperCase(text);
  std::string_view name = upper;
  if (name.starts_with(kDevicePrefix)) name.remove_prefix(kDevicePrefix.size());
  if (!name.starts_with(kComPrefix)) return 0;
  name.remove_prefix(kComPrefix.size());
  const uint32_t number = ReadInteger<uint32_t>(name).value_or(0);
  return number <= kMostPortNumber ? number : 0;
}

PortChoice ChoosePort(const SettingValues& values, const SettingValues& defaults,
                      const SerialFunctions& serial) {
  if (values.port_name.empty() || UpperCase(values.port_name) == UpperCase(defaults.port_name)) {
    return {.automatic = true, .configured = {}};
  }
  const uint32_t number = NumberOfPort(values.port_name);
  return {.automatic = values.auto_set_port != 0,
          .configured = number == 0 ? values.port_name : serial.name_of(serial.context, number)};
}

int32_t ChooseGap_m(int32_t value, int32_t standard, const Operation& operation) {
  if (value >= 0 && value <= kMostGap_m) return value;
  ShowStatus(operation, "LoopFlightGap must be 0 to " + std::to_string(kMostGap_m) +
                            "; its default is used, " + std::to_string(standard));
  return standard;
}

}  // namespace

RunDefaults MakeRunDefaults(const SettingValues& values, const SettingValues& defaults,
                            const SerialFunctions& serial, const Operation& operation) {
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
  settings.fai_rule = values.use_fai_max_distance_rules != 0;
  settings.loop_gap_m =
      ChooseGap_m(values.loop_flight_gap_m, defaults.loop_flight_gap_m, operation);
  return settings;
}

RunDefaults LoadRunDefaults(const Platform& platform, const Operation& operation) {
  SettingsStore store;
  LoadSettings(platform.registry, operation, SettingsAccess::kReadOnly, store);
  return MakeRunDefaults(store.live, DefaultSettings(platform.registry), platform.serial,
                         operation);
}

}  // namespace skyhaul
