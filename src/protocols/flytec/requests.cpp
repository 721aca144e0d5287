#include "protocols/flytec/requests.h"

#include "protocols/sentence/checksum.h"

namespace skyhaul::flytec {

std::string TrackRequest(uint32_t index) {
  std::string request = "$PBRTR,";
  request += static_cast<char>('0' + index / 10 % 10);
  request += static_cast<char>('0' + index % 10);
  AppendNmeaChecksum(request);
  return "\x11" + request;
}

}  // namespace skyhaul::flytec
