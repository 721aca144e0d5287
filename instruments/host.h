#pragma once

#include <functional>
#include <string>

#include "instruments/choices.h"
#include "instruments/instrument.h"
#include "transport/conversation_log.h"

namespace skyhaul {

// Puts the instrument behind a pseudo-terminal, prints the terminal's path and lets it answer until
// the program is interrupted. log may be null. Returns the exit status, not 0 after a message.
int RunBehindTerminal(SimulatedInstrument& instrument, const Choices& choices,
                      ConversationLog* log);

// Calls run with the log of --log, which is appended to the file of that path, or with null when
// the path is empty. Returns what run does, or the exit status after a message when the file cannot
// be written. What did not reach the file is told at the end.
int RunLogged(const std::string& path, const std::function<int(ConversationLog*)>& run);

}  // namespace skyhaul
