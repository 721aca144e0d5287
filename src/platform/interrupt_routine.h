#pragma once

namespace skyhaul {

// Calls the routine that OnInterrupt() was given, and forgets it. For the part of each system that
// hears of an interrupt, after it has counted it; not from a signal handler.
void CallInterruptRoutine();

}  // namespace skyhaul
