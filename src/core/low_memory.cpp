#include "core/low_memory.h"

#include <cstdio>
#include <cstdlib>
#include <new>

namespace skyhaul {

void EndWhenMemoryIsShort() {
  std::set_new_handler([] {
    // Standard error has no buffer, so that this takes no memory; and no destructor may ask for
    // any.
    (void)std::fputs("Skyhaul: not enough memory; close other programs and try again\n", stderr);
    std::_Exit(1);
  });
}

}  // namespace skyhaul
