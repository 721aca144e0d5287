#include "report/settings_list.h"

#include <nlohmann/json.hpp>

#include "core/text/printable.h"
#include "settings/password.h"
#include "settings/table.h"

namespace skyhaul {

namespace {

// A value for a person; what would steer a terminal becomes '?'.
std::string ValueText(const SettingDescriptor& setting, const SettingValues& values) {
  if (setting.number != nullptr) return std::to_string(values.*setting.number);
  if (setting.marker != nullptr) {
    // A marker's bytes mean nothing to a person and would tell under which id the secret is kept.
    return PasswordIsSet(values.*setting.marker) ? "(set)" : "(not set)";
  }
  return PrintableText(values.*setting.text);
}

// No '?' here: JSON escapes control characters itself, and a program wants the value as it is.
nlohmann::ordered_json JsonValue(const SettingDescriptor& setting, const SettingValues& values) {
  if (setting.number != nullptr) return values.*setting.number;
  if (setting.marker != nullptr) return PasswordIsSet(values.*setting.marker);
  return values.*setting.text;
}

}  // namespace

std::string SettingsText(const std::string& place, const SettingValues& values,
                         const SettingValues& defaults) {
  constexpr size_t kNameWidth = 24;
  std::string text = "Settings in " + PrintableText(place) + '\n';
  size_t changed = 0;
  for (const SettingDescriptor& setting : SettingTable()) {
    // "* IgcSite                  Fiesch  (default: None)"
    const bool differs = SettingDiffers(setting, values, defaults);
    changed += differs ? 1 : 0;
    std::string name(setting.name);
    name.resize(std::max(kNameWidth, name.size()), ' ');
    text += (differs ? "* " : "  ") + name + ' ' + ValueText(setting, values);
    if (differs) text += "  (default: " + ValueText(setting, defaults) + ")";
    text += '\n';
  }
  return text + std::to_string(changed) + " of " + std::to_string(SettingTable().size()) +
         " differ from their default (*)\n";
}

std::string SettingsJson(const std::string& place, const SettingValues& values,
                         const SettingValues& defaults) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const SettingDescriptor& setting : SettingTable()) {
    list.push_back({{"name", setting.name},
                    {"value", JsonValue(setting, values)},
                    {"default", JsonValue(setting, defaults)},
                    {"changed", SettingDiffers(setting, values, defaults)}});
  }
  const nlohmann::ordered_json all = {{"place", place}, {"settings", list}};
  // A text from the registry need not be UTF-8; dump() would throw on such bytes.
  return all.dump(2, ' ', true, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace skyhaul
