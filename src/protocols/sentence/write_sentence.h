#pragma once

#include <string_view>

#include "transport/serial_link.h"

namespace skyhaul {

// Writes one sentence as it stands to the link's port and to the trace, after freeing output that
// an XOFF has stopped. Returns 0, or -1 when the
// port did not take it; the caller says its own message.
int WriteSentence(SerialLink& link, std::string_view sentence);

}  // namespace skyhaul
