// Any bytes as a settings file: nothing that a person wrote is lost, a value that is put into it is
// the one that is found, and what is written is read back the same.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/posix/settings_text.h"

namespace {

using skyhaul::FindSetting;
using skyhaul::FormatSettingsText;
using skyhaul::ParseSettingsText;
using skyhaul::SettingsLine;
using skyhaul::SettingsText;
using skyhaul::ValueKind;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

std::string ValueOf(const SettingsText& settings, std::string_view name) {
  const ptrdiff_t place = FindSetting(settings, name);
  Require(place >= 0);
  return settings.lines[static_cast<size_t>(place)].value;
}

void RequireTextsKept(const SettingsText& before, const SettingsText& after) {
  Require(before.lines.size() == after.lines.size());
  Require(before.notes == after.notes);
  for (size_t i = 0; i < before.lines.size(); ++i) {
    Require(before.lines[i].name == after.lines[i].name);
    Require(before.lines[i].value == after.lines[i].value);
  }
}

void RequireKindsRead(const std::string& value) {
  for (const ValueKind kind : {ValueKind::kText, ValueKind::kBinary, ValueKind::kNumber}) {
    constexpr size_t kCapacity = 40;
    std::string bytes;
    if (!skyhaul::BytesFromValue(value, kind, kCapacity, bytes)) continue;
    Require(bytes.size() <= kCapacity);
    std::string again;
    const std::string written = skyhaul::ValueFromBytes(bytes, kind);
    Require(skyhaul::BytesFromValue(written, kind, kCapacity, again) && again == bytes);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  SettingsText settings = ParseSettingsText(text);
  RequireTextsKept(settings, ParseSettingsText(FormatSettingsText(settings)));
  for (const SettingsLine& line : settings.lines) {
    Require(line.text.find('\n') == std::string::npos);
    RequireKindsRead(line.value);
  }

  const size_t lines = settings.lines.size();
  const std::string value(text.substr(0, 200));
  skyhaul::PutSetting(settings, "IgcSite", value, true);
  Require(settings.lines.size() <= lines + 1);
  settings = ParseSettingsText(FormatSettingsText(settings));
  Require(ValueOf(settings, "IgcSite") == value);
  return 0;
}
