#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/flytec/airspace_memory.h"
#include "instruments/flytec/flight_memory.h"
#include "instruments/flytec/waypoint_memory.h"
#include "instruments/instrument.h"

namespace skyhaul {

// What a device of the family calls itself.
inline constexpr const char* kFlytecDeviceNames[] = {
    "5020", "5030", "6020", "6030", "COMPEO", "COMPEO+", "COMPETINO", "COMPETINO+", "GALILEO",
};

inline constexpr size_t kFlytecPilotWidth = 17;
inline constexpr size_t kFlytecSerialWidth = 5;
inline constexpr size_t kFlytecSoftwareWidth = 4;

// What an instrument does with every upload that is otherwise in order.
enum class FlytecRefusal {
  kNone,
  kPlausibility,  // finds every airspace implausible
  kMemory,        // has no room left
  kProtected,     // may not be written to
  kSyntax,        // cannot read any airspace
  kSilent,        // does not answer
};

// An instrument of the Flytec/Brauniger family in its main menu. It answers requests for its
// product data ($PBRSNP), its flight list ($PBRTL), its flights ($PBRTR, $PBRIGC), its waypoints
// ($PBRWPS) and its airspaces ($PBRCTR), and takes uploads of waypoints ($PBRWPR), which have no
// answer, and of airspaces ($PBRCTRW), whose last line has one ($PBRANS). Around each answer, the
// empty one of an upload's line too, it sends XOFF and XON; to anything it does not understand it
// says nothing.
struct FlytecSimulator {
  std::string device_name = "6030";
  std::string pilot_name = "Simulated Pilot";  // up to kFlytecPilotWidth characters, no comma
  std::string serial = "01001";
  std::string software = "3.30";
  std::vector<FlytecFlight> flights = {};  // the newest first, at most kFlytecMaxFlights
  size_t selected_flight = 0;              // on the instrument's screen, for $PBRIGC

  std::vector<FlytecWaypoint> waypoints = {};
  std::vector<FlytecAirspace> airspaces = {};
  size_t waypoint_room = kFlytecMaxWaypoints;
  size_t airspace_room = kFlytecMaxAirspaces;
  FlytecRefusal refusal = FlytecRefusal::kNone;

  // Manners.
  uint64_t xoff_delay_ns = 750'000;   // from the end of a request to XOFF
  uint64_t thinking_ns = 10'000'000;  // from XOFF to the answer
  uint64_t line_gap_ns = 0;           // before each further line of the flight list

  // Told what became of each sentence; may be null. The text is one line.
  void (*log)(void* context, std::string_view text, uint64_t now_ns) = nullptr;
  void* log_context = nullptr;

  FlytecAirspaceUpload upload = {};

  // The sentence being received, from '$' on; empty between sentences.
  std::string sentence = {};
};

// The instrument on a wire of that speed (0: no pacing). The simulator must outlive it and stay
// where it is.
SimulatedInstrument MakeFlytecInstrument(FlytecSimulator& simulator, uint32_t baud);

}  // namespace skyhaul
