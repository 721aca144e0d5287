#pragma once

#include "platform/platform.h"

namespace skyhaul {

// A client is a window class; each text is one copy-data message (WM_COPYDATA) to the first
// top-level or message-only window of that class. Its data is the text in UTF-8 with a zero at the
// end, which counts; its number is 0. A client that failed once gets little time until it takes a
// text again.
NotifierFunctions Win32Notifier();

}  // namespace skyhaul
