#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/flytec/airspace_memory.h"
#include "instruments/flytec/eeprom.h"
#include "instruments/flytec/flight_memory.h"
#include "instruments/flytec/manners.h"
#include "instruments/flytec/route_memory.h"
#include "instruments/flytec/waypoint_memory.h"
#include "instruments/instrument.h"

namespace skyhaul::flytec_simulator {

// What a device of the family calls itself.
inline constexpr const char* kDeviceNames[] = {
    "5020", "5030", "6020", "6030", "COMPEO", "COMPEO+", "COMPETINO", "COMPETINO+", "GALILEO",
};

inline constexpr size_t kPilotWidth = 17;
inline constexpr size_t kSerialWidth = 5;
inline constexpr size_t kSoftwareWidth = 4;

// What an instrument does with every upload that is otherwise in order.
enum class Refusal {
  kNone,
  kPlausibility,  // finds every airspace implausible
  kMemory,        // has no room left
  kProtected,     // may not be written to
  kSyntax,        // cannot read any airspace
  kSilent,        // does not answer
};

// An instrument of the Flytec/Brauniger family in its main menu, with the family's whole set of
// sentences; requests.cpp has the table. Around each answer, the empty one of an upload's line too,
// it sends XOFF and XON; to anything it does not understand it says nothing.
struct Simulator {
  std::string device_name = "6030";
  std::string pilot_name = "Simulated Pilot";  // up to kPilotWidth characters, no comma
  std::string serial = "01001";
  std::string software = "3.30";
  Settings settings = {};
  std::vector<StoredFlight> flights = {};  // the newest first, at most kMaxFlights
  size_t selected_flight = 0;              // on the instrument's screen, for $PBRIGC

  std::vector<StoredWaypoint> waypoints = {};
  std::vector<StoredAirspace> airspaces = {};
  std::vector<StoredRoute> routes = {};
  size_t waypoint_room = kMaxWaypoints;
  size_t airspace_room = kMaxAirspaces;
  size_t airspace_element_room = kMaxAirspaces * (kMaxElements + kAirspaceHead);  // of all together
  Refusal refusal = Refusal::kNone;

  Manners manners = {};

  // Times of every answer.
  uint64_t xoff_delay_ns = 750'000;   // from the end of a request to XOFF
  uint64_t thinking_ns = 10'000'000;  // from XOFF to the answer
  uint64_t line_gap_ns = 0;           // before each further line of the flight list

  // Told what became of each sentence; may be null. The text is one line.
  void (*log)(void* context, std::string_view text, uint64_t now_ns) = nullptr;
  void* log_context = nullptr;

  AirspaceUpload upload = {};
  RouteUpload route_upload = {};
  Eeprom eeprom = {};  // empty until it is asked for, then made from pilot_name and settings

  // The sentence being received, from '$' on; empty between sentences.
  std::string sentence = {};
  uint64_t busy_from_ns = 0;  // the XOFF of the answer on the wire, or of the first of several
  uint32_t concerned = 0;     // requests so far that begin as manners.request says
};

// The instrument on a wire of that speed (0: no pacing). The simulator must outlive it and stay
// where it is.
SimulatedInstrument MakeInstrument(Simulator& simulator, uint32_t baud);

}  // namespace skyhaul::flytec_simulator
