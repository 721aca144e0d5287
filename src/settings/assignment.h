#pragma once

#include <string>

#include "settings/table.h"

namespace skyhaul {

// A setting and the value that it is to get.
struct Assignment {
  const SettingDescriptor* setting = nullptr;
  std::string bytes;       // as SetSettingBytes() takes them; of a password the password itself
  bool has_value = false;  // false for a name alone
};

// Takes "Name=value" apart and checks the value against the setting's kind and size: a whole number
// of 32 bits; a text without control characters that leaves room for a terminating zero; a password
// of at most 40 bytes without control characters. A password's name may stand alone: its value
// comes from elsewhere. Returns 0, or -1 with one sentence that says what is wrong.
int ParseAssignment(const std::string& text, Assignment& assignment, std::string& message);

// Checks a value and puts it into the assignment. Returns 0, or -1 as above.
int TakeAssignedValue(const std::string& value, Assignment& assignment, std::string& message);

}  // namespace skyhaul
