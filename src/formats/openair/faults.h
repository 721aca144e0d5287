#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/airspace.h"
#include "formats/openair/read_openair.h"

namespace skyhaul::openair {

// What a line that is skipped takes away.
enum class Cost {
  kNothing,    // no more than itself
  kOutline,    // the outline of its airspace, which is damaged
  kCentre,     // likewise if an arc or a circle needs the centre that it was to set
  kDirection,  // likewise if an arc needs its direction
};

struct Fault {
  std::string note;
  bool damages = false;  // the outline of an airspace
};

// The faults of a file in the order of its lines.
struct Faults {
  std::vector<Fault> found;
  std::optional<size_t> centre;     // the broken V X= that holds now, as an index
  std::optional<size_t> direction;  // likewise V D=
};

// Adds the fault of a line. airspace is the one that the line stands in; null outside of any.
void AddFault(Faults& faults, std::string note, Cost cost, CtrRecord* airspace);

// Damages the airspace with a fault that was found before and is now seen to matter. Does nothing
// without one.
void Blame(Faults& faults, std::optional<size_t> fault, CtrRecord& airspace);

// Hands the notes over: those that damage airspaces apart from the others.
void TakeNotes(Faults& faults, AirspaceFile& file);

}  // namespace skyhaul::openair
