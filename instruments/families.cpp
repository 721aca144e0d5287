#include "instruments/families.h"

#include "instruments/flytec/host.h"

namespace skyhaul {

namespace {

constexpr SimulatedFamily kFamilies[] = {
    {.name = "flytec", .maker = "Flytec and Brauniger", .run = flytec_simulator::Run},
};

}  // namespace

std::span<const SimulatedFamily> SimulatedFamilies() {
  return kFamilies;
}

}  // namespace skyhaul
