#pragma once

#include <string_view>

#include "transport/serial_link.h"

namespace skyhaul {

// Writes one sentence as it stands to the link's port and to the trace. Returns 0, or -1 when the
// port did not take it; the caller says its own message.
int WriteSentence(SerialLink& link, std::string_view sentence);

// The same for one of several sentences of an upload, which the instrument may hold up with an XOFF
// while it stores the one before: the sentence is written again and again for 3 s, then a last time
// after freeing the output. Returns 0 or -1; also -1 when the job was aborted meanwhile.
int WriteWhenTaken(SerialLink& link, std::string_view sentence);

}  // namespace skyhaul
