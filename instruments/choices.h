#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/flytec/flytec_simulator.h"

namespace skyhaul {

inline constexpr uint32_t kNotChosen = UINT32_MAX;

// What the command line of skyhaul-instrument asks for.
struct Choices {
  std::string family;
  std::string model = "6030";
  std::string pilot = "Simulated Pilot";
  std::string serial = "01001";
  std::string software = "3.30";
  std::vector<std::string> flight_files;
  uint32_t generated_flights = kNotChosen;  // kNotChosen: what suits the flight files
  uint32_t generated_waypoints = 0;
  flytec_simulator::Refusal refusal = flytec_simulator::Refusal::kNone;
  flytec_simulator::Manners manners;
  std::string link_path;
  std::string log_path;
  uint32_t baud = 57600;
  bool help = false;
};

// An option of the command line.
struct Option {
  std::string_view name;
  const char* expected;  // what its value must be, for a person; null: it has none
  bool (*set)(Choices& choices, const std::string& value);  // false when the value will not do
};

// Reads a text of digits alone. Returns false when it is none, or above the maximum.
bool IsNumber(const std::string& text, uint32_t maximum, uint32_t& number);

// What --help prints: how the program is called, the families and the options.
std::string InstrumentUsage();

// Prints a refusal and returns the exit status that goes with it.
int Refuse(const std::string& message);

// Returns 0, or the exit status after a message.
int ParseCommandLine(const std::vector<std::string>& arguments, Choices& choices);

}  // namespace skyhaul
