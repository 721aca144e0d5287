#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/instrument.h"

namespace skyhaul {

// One flight in the instrument's memory.
struct FlytecFlight {
  std::string igc_text = {};  // goes over the wire byte for byte
  uint32_t start_time = 0;    // of the first fix; see core/time_scale.h
  uint32_t duration_s = 0;
};

// What a device of the family calls itself.
inline constexpr const char* kFlytecDeviceNames[] = {
    "5020", "5030", "6020", "6030", "COMPEO", "COMPEO+", "COMPETINO", "COMPETINO+", "GALILEO",
};

inline constexpr size_t kFlytecPilotWidth = 17;
inline constexpr size_t kFlytecSerialWidth = 5;
inline constexpr size_t kFlytecSoftwareWidth = 4;
inline constexpr size_t kFlytecMaxFlights = 99;  // the list counts them in two digits

// An instrument of the Flytec/Brauniger family in its main menu. It answers requests for its
// product data ($PBRSNP), its flight list ($PBRTL) and its flights ($PBRTR, $PBRIGC). Around each
// answer it sends XOFF and XON; to anything it does not understand it says nothing.
struct FlytecSimulator {
  std::string device_name = "6030";
  std::string pilot_name = "Simulated Pilot";  // up to kFlytecPilotWidth characters, no comma
  std::string serial = "01001";
  std::string software = "3.30";
  std::vector<FlytecFlight> flights = {};  // the newest first, at most kFlytecMaxFlights
  size_t selected_flight = 0;              // on the instrument's screen, for $PBRIGC

  // Manners.
  uint64_t xoff_delay_ns = 750'000;   // from the end of a request to XOFF
  uint64_t thinking_ns = 10'000'000;  // from XOFF to the answer
  uint64_t line_gap_ns = 0;           // before each further line of the flight list

  // Told what became of each sentence; may be null. The text is one line.
  void (*log)(void* context, std::string_view text, uint64_t now_ns) = nullptr;
  void* log_context = nullptr;

  // The sentence being received, from '$' on; empty between sentences.
  std::string sentence = {};
};

// The instrument on a wire of that speed (0: no pacing). The simulator must outlive it and stay
// where it is.
SimulatedInstrument MakeFlytecInstrument(FlytecSimulator& simulator, uint32_t baud);

// A flight for the memory: the text as it is, start and duration from its fixes. A text that does
// not pass as an IGC file is taken nevertheless, its times from whatever looks like a date and like
// fixes; they are 0 where nothing does.
FlytecFlight FlightFromIgc(const std::string& igc_text);

// Puts the flights in the order in which the instrument lists them, the newest first.
void SortNewestFirst(std::vector<FlytecFlight>& flights);

}  // namespace skyhaul
