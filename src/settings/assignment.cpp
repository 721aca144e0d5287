#include "settings/assignment.h"

#include <algorithm>
#include <optional>

#include "core/text/numbers.h"
#include "settings/password.h"

namespace skyhaul {

namespace {

constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7f;

bool HasControlCharacters(const std::string& text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < kFirstPrintable || byte == kDelete;
  });
}

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
  const size_t most = setting.kind == ValueKind::kText ? setting.size - 1 : kLongestPassword;
  if (value.size() > most || HasControlCharacters(value)) {
    return Refuse(setting,
                  "a text of at most " + std::to_string(most) + " bytes without control characters",
                  message);
  }
  assignment.bytes = value;
  return 0;
}

int ParseAssignment(const std::string& text, Assignment& assignment, std::string& message) {
  assignment = {};
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
  if (assignment.setting->kind == ValueKind::kBinary) return 0;
  message = "Missing value: write " + std::string(assignment.setting->name) + "=VALUE";
  return -1;
}

}  // namespace skyhaul
