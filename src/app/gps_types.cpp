#include "app/gps_types.h"

#include <cstddef>

#include "device/job.h"

namespace skyhaul {

namespace {

constexpr uint32_t kProtocols[] = {
    kGarminSerial,          // GARMIN
    kMlrLogit,              // MLR
    kTopNavigator,          // TOPNAV
    kMlrLogit,              // LOGIT
    kFlytec,                // IQCOMPEO
    kGraviter,              // GRAVITER
    kMagellan,              // MAGELLAN
    kXcTrainer,             // XCTRAINER
    kAircotecSecondReader,  // XCT_MXP
    kFlymaster,             // FLYMASTER
    kDsx,                   // DSX
    kMlrLogit,              // MLRC
    kFlytec6015,            // IQBASIC
    kMtkLogger,             // MTK
    kNmeaLogger,            // LEONARDO
    kAscent,                // ASCENT
    kDigiflyAir,            // DIGIFLYAIR
    kSyride,                // SYRIDE
    kFlymaster,             // FLYMASTEROLD
};
static_assert(std::size(kProtocols) == kGpsTypeNames.size());

}  // namespace

uint32_t ProtocolOf(GpsType type, bool usb) {
  if (usb && type == GpsType::kGarmin) return kGarminUsb;
  return kProtocols[static_cast<size_t>(type)];
}

}  // namespace skyhaul
