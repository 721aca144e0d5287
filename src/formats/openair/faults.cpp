#include "formats/openair/faults.h"

#include <utility>

namespace skyhaul::openair {

void AddFault(Faults& faults, std::string note, Cost cost, CtrRecord* airspace) {
  const size_t index = faults.found.size();
  faults.found.push_back({.note = std::move(note)});
  // Outside of an airspace there is no outline to be damaged.
  if (airspace == nullptr) return;
  switch (cost) {
    case Cost::kNothing:
      break;
    case Cost::kOutline:
      Blame(faults, index, *airspace);
      break;
    case Cost::kCentre:
      faults.centre = index;
      break;
    case Cost::kDirection:
      faults.direction = index;
      break;
  }
}

void Blame(Faults& faults, std::optional<size_t> fault, CtrRecord& airspace) {
  if (!fault.has_value()) return;
  Fault& blamed = faults.found[*fault];
  blamed.damages = true;
  // The first one is where a person should begin to look.
  if (airspace.damage.empty()) airspace.damage = blamed.note;
}

void TakeNotes(Faults& faults, AirspaceFile& file) {
  for (Fault& fault : faults.found) {
    (fault.damages ? file.damage : file.notes).push_back(std::move(fault.note));
  }
  faults = {};
}

}  // namespace skyhaul::openair
