#pragma once

#include "instruments/choices.h"
#include "transport/conversation_log.h"

namespace skyhaul::flytec_simulator {

// Runs an instrument of the family with the flights and waypoints that were chosen until it is
// interrupted; log may be null. Returns the program's exit status.
int Run(const Choices& choices, ConversationLog* log);

}  // namespace skyhaul::flytec_simulator
