#pragma once

#include "instruments/choices.h"
#include "instruments/instrument.h"
#include "transport/conversation_log.h"

namespace skyhaul {

// Puts the instrument behind a pseudo-terminal, prints the terminal's path and lets it answer until
// the program is interrupted. log may be null. Returns the exit status, not 0 after a message.
int RunBehindTerminal(SimulatedInstrument& instrument, const Choices& choices,
                      ConversationLog* log);

}  // namespace skyhaul
