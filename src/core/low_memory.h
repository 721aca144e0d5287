#pragma once

namespace skyhaul {

// From now on, an allocation that fails ends the program with status 1 and one line on standard
// error. To be called first in main(): nothing in the program expects to go on without memory.
void EndWhenMemoryIsShort();

}  // namespace skyhaul
