#include "protocols/flytec/models.h"

namespace skyhaul::flytec {

namespace {

constexpr Model kModels[] = {
    // In the order of the search: "COMPEO+" must be found before "COMPEO", which is a part of it.
    {.device_name = "5020", .model_name = "5020", .track_list_above = "1.13"},
    {.device_name = "5030", .model_name = "5030", .track_list_above = "2.19"},
    {.device_name = "6020", .model_name = "6020"},
    {.device_name = "6030", .model_name = "6030"},
    {.device_name = "COMPEO+", .model_name = "Compeo+"},
    {.device_name = "COMPEO", .model_name = "Compeo", .track_list_above = "2.19"},
    {.device_name = "COMPETINO+", .model_name = "Competino+"},
    {.device_name = "COMPETINO", .model_name = "Competino", .track_list_above = "1.13"},
    {.device_name = "GALILEO", .model_name = "Galileo"},
};

}  // namespace

const Model* FindModel(const std::string& device_name) {
  for (const Model& model : kModels) {
    if (device_name.find(model.device_name) != std::string::npos) return &model;
  }
  return nullptr;
}

TrackListGate GateOf(const std::string& device_name, const std::string& software) {
  for (const Model& model : kModels) {
    // The whole name here: a name that only contains a model's is of an instrument nobody has
    // tried.
    if (device_name != model.device_name) continue;
    // As text, so that "1.9" is above "1.13".
    const bool has = model.track_list_above == nullptr || software > model.track_list_above;
    return has ? TrackListGate::kOpen : TrackListGate::kOldSoftware;
  }
  return TrackListGate::kUnknownModel;
}

}  // namespace skyhaul::flytec
