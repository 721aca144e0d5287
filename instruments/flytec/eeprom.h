#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::flytec_simulator {

inline constexpr uint8_t kFlytec = 0x24;  // values of Settings::company
inline constexpr uint8_t kBrauniger = 0;

// What a pilot sets up in the instrument, beside the pilot's name.
struct Settings {
  std::string glider_type = "Simulated glider";  // up to 16 characters
  std::string glider_id = "SIM-1";               // likewise
  int8_t utc_offset_h = 0;
  uint8_t interval_s = 1;
  uint8_t company = kFlytec;
};

// The memory that keeps the settings, byte by byte; see kFields in eeprom.cpp for the addresses.
using Eeprom = std::vector<uint8_t>;

inline constexpr size_t kEepromSize = 256;
inline constexpr size_t kEepromLine = 8;  // bytes that one sentence reads or writes

Eeprom MakeEeprom(const std::string& pilot_name, const Settings& settings);

// What the instrument does when it starts: takes its settings from the memory. A name ends before
// its first character that cannot be printed.
void LoadEeprom(const Eeprom& eeprom, std::string& pilot_name, Settings& settings);

// The body of the line with the eight bytes from an address of four hexadecimal digits on, those
// behind the memory's end as FF. Empty when the address is none of the memory.
std::string EepromBody(const Eeprom& eeprom, std::string_view address);

// Takes the fields of a write: address, number of bytes, and eight places for bytes, of which those
// behind the number are empty. Returns false, and writes nothing, when they are not so or do not
// fit into the memory.
bool WriteEeprom(Eeprom& eeprom, std::string_view fields);

}  // namespace skyhaul::flytec_simulator
