#include "device/job.h"

namespace skyhaul {

bool UsesXonXoff(uint32_t protocol_type) {
  switch (protocol_type) {
    case kFlytec:
    case kXcTrainer:
    case kAircotecSecondReaderXonXoff:
    case kFlytecAllTracks:
      return true;
    default:
      return false;
  }
}

}  // namespace skyhaul
