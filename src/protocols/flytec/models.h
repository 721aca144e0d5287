#pragma once

#include <string>

namespace skyhaul::flytec {

// One model of the family.
struct Model {
  const char* device_name = nullptr;  // as the instrument tells it
  const char* model_name = nullptr;   // as a person knows it
  const char* track_list_above =
      nullptr;  // the last software version without a track list, or null
};

// The model whose name is part of a device name, the first in the table's order; null for none.
const Model* FindModel(const std::string& device_name);

// Whether an instrument with this exact device name and software version has a track list. Versions
// are compared as text, and the named one itself has none yet.
enum class TrackListGate { kOpen, kOldSoftware, kUnknownModel };
TrackListGate GateOf(const std::string& device_name, const std::string& software);

}  // namespace skyhaul::flytec
