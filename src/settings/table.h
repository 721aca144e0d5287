#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/platform.h"
#include "settings/values.h"

namespace skyhaul {

// One setting. Exactly one of the three fields is set, that of its kind.
struct SettingDescriptor {
  std::string_view name;
  ValueKind kind = ValueKind::kNumber;
  size_t size = 0;  // bytes: 4 for numbers, else the largest value that can be kept
  std::string SettingValues::*text = nullptr;
  int32_t SettingValues::*number = nullptr;
  SecretMarker SettingValues::*marker = nullptr;
  std::string_view default_text = {};
  int32_t default_number = 0;
  bool is_folder = false;  // its default is the folder that a new user's files go to
};

inline constexpr size_t kSettingCount = 92;

// All settings, in the order in which they are loaded and saved.
std::span<const SettingDescriptor, kSettingCount> SettingTable();

// The setting of that name in upper or lower case, or null.
const SettingDescriptor* FindSettingByName(std::string_view name);

// Every setting at its default. That of a folder is the documents folder, or empty where its path
// is too long to be kept with a terminating zero: a cut one would be another folder.
SettingValues DefaultSettings(const RegistryFunctions& registry);

// One setting's value as bytes, as the registry keeps it.
std::string BytesOfSetting(const SettingDescriptor& setting, const SettingValues& values);

// Gives a setting the value of these bytes: a text ends before the first zero, numbers and markers
// that are too short are filled up with zeros, what is more than the setting's size is dropped.
void SetSettingBytes(const SettingDescriptor& setting, std::string_view bytes,
                     SettingValues& values);

// True when a setting has another value in the two records.
bool SettingDiffers(const SettingDescriptor& setting, const SettingValues& a,
                    const SettingValues& b);

}  // namespace skyhaul
