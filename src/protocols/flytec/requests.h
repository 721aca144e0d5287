#pragma once

#include <cstdint>
#include <string>

#include "platform/platform.h"

namespace skyhaul::flytec {

inline constexpr SerialSettings kPortSettings = {.baud = 57600, .xon_xoff = true};

// Requests, each with an XON ahead that frees an instrument which still waits for one.
inline constexpr const char* kRequestProductData = "\x11$PBRSNP,*21\r\n";
inline constexpr const char* kRequestTrackList = "\x11$PBRTL,*74\r\n";
inline constexpr const char* kRequestCurrentIgc = "\x11$PBRIGC,*21\r\n";
inline constexpr const char* kRequestWaypoints = "\x11$PBRWPS,*38\r\n";
inline constexpr const char* kRequestCtrList = "\x11$PBRCTR,*29\r\n";

// A track's index has two digits on the wire.
inline constexpr uint32_t kRequestableTracks = 100;

// The request for one track; index below kRequestableTracks.
std::string TrackRequest(uint32_t index);

}  // namespace skyhaul::flytec
