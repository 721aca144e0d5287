#include "settings/assignment.h"

#include <algorithm>
#include <optional>

#include "core/text/numbers.h"
#include "settings/password.h"

namespace skyhaul {

namespace {

constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7f;

// Bytes from 0x80 on pass: they are the letters of UTF-8 or of the system's own character set. A
// line end in a value would be read back as the end of its line in the settings file.
bool HasControlCharacters(const std::string& text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < kFirstPrintable || byte == kDelete;
  });
}

// "-12", as the four bytes in which the registry keeps numbers, in the machine's own order.
bool NumberBytes(const std::string& value, std::string& bytes) {
  const std::optional<int32_t> number = ReadInteger<int32_t>(value);
  if (!number) return false;
  bytes.assign(reinterpret_cast<const char*>(&*number), sizeof *number);
  return true;
}

int Refuse(const SettingDescriptor& setting, const std::string& rule, std::string& message) {
  message = std::string(setting.name) + " must be " + rule;
  return -1;
}

}  // namespace

int TakeAssignedValue(const std::string& value, Assignment& assignment, std::string& message) {
  const SettingDescriptor& setting = *assignment.setting;
  assignment.has_value = true;
  if (setting.kind == ValueKind::kNumber) {
    if (NumberBytes(value, assignment.bytes)) return 0;
    return Refuse(setting, "a whole number from -2147483648 to 2147483647", message);
  }
  // A text needs room for its terminating zero. A password does not: only its marker goes into the
  // setting, so the marker's size says nothing about it.
  const size_t most = setting.kind == ValueKind::kText ? setting.size - 1 : kLongestPassword;
  if (value.size() > most || HasControlCharacters(value)) {
    return Refuse(setting,
                  "a text of at most " + std::to_string(most) + " bytes without control characters",
                  message);
  }
  assignment.bytes = value;
  return 0;
}

// "IgcSite=Fiesch", "igcsite=" for an empty text, "SkylogPassword" alone to be asked for it.
int ParseAssignment(const std::string& text, Assignment& assignment, std::string& message) {
  assignment = {};
  // The first equals sign divides, so that a value may hold further ones. Without any the whole
  // text is the name, since substr() takes npos for "to the end".
  const size_t equals = text.find('=');
  const std::string name = text.substr(0, equals);
  assignment.setting = FindSettingByName(name);
  if (assignment.setting == nullptr) {
    message = "There is no setting \"" + name + "\" (\"--settings\" shows them all)";
    return -1;
  }
  if (equals != std::string::npos) {
    return TakeAssignedValue(text.substr(equals + 1), assignment, message);
  }
  // Only a password may come from elsewhere: on a command line other users could see it.
  if (assignment.setting->kind == ValueKind::kBinary) return 0;
  message = "Missing value: write " + std::string(assignment.setting->name) + "=VALUE";
  return -1;
}

}  // namespace skyhaul
