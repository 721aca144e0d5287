#include "fuzz/frame.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  skyhaul::Fuzz({reinterpret_cast<const char*>(data), size});
  return 0;
}
