#pragma once

#include <span>
#include <string_view>

#include "instruments/choices.h"
#include "transport/conversation_log.h"

namespace skyhaul {

// One family that skyhaul-instrument can simulate.
struct SimulatedFamily {
  std::string_view name;   // the program's first argument, the name of the family's folder
  std::string_view maker;  // for a person
  // Runs such an instrument until it is interrupted; log may be null. Returns the exit status.
  int (*run)(const Choices& choices, ConversationLog* log) = nullptr;
};

std::span<const SimulatedFamily> SimulatedFamilies();

}  // namespace skyhaul
