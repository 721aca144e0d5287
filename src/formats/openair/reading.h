#pragma once

#include <string_view>

#include "core/airspace.h"
#include "formats/openair/faults.h"
#include "formats/openair/read_openair.h"

namespace skyhaul::openair {

// Where the reader stands.
struct Reading {
  AirspaceFile& file;
  int line = 0;
  int first_airspace_line = 0;  // 0: none yet
  int airspace_line = 0;        // 0: not inside an airspace
  bool has_centre = false;
  AirspacePosition centre;
  char direction = kClockwise;
  Faults faults;
  Cost cost = Cost::kNothing;  // of a fault in the line that is being read
};

// Reads the argument of one kind of line. Returns what is wrong with it, or null.
using ReadArgument = const char* (*)(Reading&, std::string_view argument);

// The airspace that the reader is in; there must be one.
CtrRecord& Airspace(Reading& reading);

// The lines of an outline, inside an airspace: V, DP, DA, DB, DC and DY.
const char* ReadVariable(Reading& reading, std::string_view argument);
const char* ReadPoint(Reading& reading, std::string_view argument);
const char* ReadArcByBearings(Reading& reading, std::string_view argument);
const char* ReadArcByPoints(Reading& reading, std::string_view argument);
const char* ReadCircle(Reading& reading, std::string_view argument);
const char* ReadAirway(Reading& reading, std::string_view argument);

}  // namespace skyhaul::openair
