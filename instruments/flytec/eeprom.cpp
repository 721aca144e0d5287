#include "instruments/flytec/eeprom.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

//   address  length  content
//         0      16  pilot's name, blanks at the end
//        92       1  difference to UTC, signed
//        97       1  recording interval in seconds
//       186       1  24h: Flytec, 0: Brauniger
//       192      16  glider's type
//       224      16  glider's registration
constexpr size_t kPilotAt = 0;
constexpr size_t kUtcOffsetAt = 92;
constexpr size_t kIntervalAt = 97;
constexpr size_t kCompanyAt = 186;
constexpr size_t kGliderTypeAt = 192;
constexpr size_t kGliderIdAt = 224;
constexpr size_t kTextLength = 16;

constexpr uint8_t kErased = 0xFF;

void PutText(Eeprom& eeprom, size_t at, std::string text) {
  text.resize(kTextLength, ' ');
  std::copy(text.begin(), text.end(), eeprom.begin() + static_cast<std::ptrdiff_t>(at));
}

std::string TextAt(const Eeprom& eeprom, size_t at) {
  std::string text;
  for (size_t i = at; i < at + kTextLength && eeprom[i] >= ' ' && eeprom[i] <= '~'; ++i) {
    text += static_cast<char>(eeprom[i]);
  }
  text.resize(text.find_last_not_of(' ') + 1);
  return text;
}

// The number that a text of exactly so many hexadecimal digits is, or -1.
int HexNumber(std::string_view text, size_t digits) {
  unsigned number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
  const bool sound = text.size() == digits && error == std::errc() && stop == end;
  return sound ? static_cast<int>(number) : -1;
}

int Address(std::string_view text) {
  const int address = HexNumber(text, 4);
  return address < static_cast<int>(kEepromSize) ? address : -1;
}

}  // namespace

Eeprom MakeEeprom(const std::string& pilot_name, const Settings& settings) {
  Eeprom eeprom(kEepromSize, kErased);
  PutText(eeprom, kPilotAt, pilot_name);
  PutText(eeprom, kGliderTypeAt, settings.glider_type);
  PutText(eeprom, kGliderIdAt, settings.glider_id);
  eeprom[kUtcOffsetAt] = static_cast<uint8_t>(settings.utc_offset_h);
  eeprom[kIntervalAt] = settings.interval_s;
  eeprom[kCompanyAt] = settings.company;
  return eeprom;
}

void LoadEeprom(const Eeprom& eeprom, std::string& pilot_name, Settings& settings) {
  pilot_name = TextAt(eeprom, kPilotAt);
  settings = {.glider_type = TextAt(eeprom, kGliderTypeAt),
              .glider_id = TextAt(eeprom, kGliderIdAt),
              .utc_offset_h = static_cast<int8_t>(eeprom[kUtcOffsetAt]),
              .interval_s = eeprom[kIntervalAt],
              .company = eeprom[kCompanyAt]};
}

std::string EepromBody(const Eeprom& eeprom, std::string_view address) {
  // PBRMEMR,0000,53,69,6D,75,6C,61,74,65
  const int start = Address(address);
  if (start < 0) return "";
  char text[24];
  (void)std::snprintf(text, sizeof text, "PBRMEMR,%04X", static_cast<unsigned>(start));
  std::string body = text;
  for (size_t i = 0; i < kEepromLine; ++i) {
    const size_t at = static_cast<size_t>(start) + i;
    (void)std::snprintf(text, sizeof text, ",%02X", at < eeprom.size() ? eeprom[at] : kErased);
    body += text;
  }
  return body;
}

bool WriteEeprom(Eeprom& eeprom, std::string_view fields) {
  // 0000,3,41,4E,4E,,,,,
  const std::vector<std::string_view> cut = CutFields(fields);
  if (cut.size() != 2 + kEepromLine) return false;
  const int address = Address(cut[0]);
  const int number = WholeNumber(cut[1], 1);
  if (address < 0 || number < 1 || number > static_cast<int>(kEepromLine)) return false;
  const auto start = static_cast<size_t>(address);
  const auto count = static_cast<size_t>(number);
  if (start + count > eeprom.size()) return false;
  Eeprom changed = eeprom;
  for (size_t i = 0; i < kEepromLine; ++i) {
    const std::string_view slot = cut[2 + i];
    const int value = HexNumber(slot, 2);
    const bool used = i < count;
    if (used ? value < 0 : !slot.empty()) return false;
    if (used) changed[start + i] = static_cast<uint8_t>(value);
  }
  eeprom = changed;
  return true;
}

}  // namespace skyhaul::flytec_simulator
