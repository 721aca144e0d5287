// Any bytes as a settings file: nothing that a person wrote is lost, a value that is put into it is
// the one that is found, and what is written is read back the same.

#include "platform/posix/settings_text.h"
#include "fuzz/frame.h"

namespace skyhaul {

namespace {

void RequireTextsKept(const SettingsText& before, const SettingsText& after) {
  const auto same = [](const SettingsLine& one, const SettingsLine& other) {
    return one.name == other.name && one.value == other.value;
  };
  Require(before.notes == after.notes && std::ranges::equal(before.lines, after.lines, same));
}

void RequireKindsRead(const std::string& value) {
  for (const ValueKind kind : {ValueKind::kText, ValueKind::kBinary, ValueKind::kNumber}) {
    constexpr size_t kCapacity = 40;
    std::string bytes;
    if (!BytesFromValue(value, kind, kCapacity, bytes)) continue;
    Require(bytes.size() <= kCapacity);
    std::string again;
    const std::string written = ValueFromBytes(bytes, kind);
    Require(BytesFromValue(written, kind, kCapacity, again) && again == bytes);
  }
}

}  // namespace

void Fuzz(std::string_view text) {
  SettingsText settings = ParseSettingsText(text);
  RequireTextsKept(settings, ParseSettingsText(FormatSettingsText(settings)));
  for (const SettingsLine& line : settings.lines) {
    Require(line.text.find('\n') == std::string::npos);
    RequireKindsRead(line.value);
  }

  const size_t lines = settings.lines.size();
  const std::string value(text.substr(0, 200));
  PutSetting(settings, "IgcSite", value, true);
  Require(settings.lines.size() <= lines + 1);
  settings = ParseSettingsText(FormatSettingsText(settings));
  const auto place = static_cast<size_t>(FindSetting(settings, "IgcSite"));
  Require(place < settings.lines.size() && settings.lines[place].value == value);
}

}  // namespace skyhaul
