#include "protocols/flytec/requests.h"

#include "protocols/sentence/checksum.h"

namespace skyhaul::flytec {

std::string TrackRequest(uint32_t index) {
  // $PBRTR,07*6D, the number being the index in the list
  std::string request = "$PBRTR,";
  request += static_cast<char>('0' + index / 10 % 10);
  request += static_cast<char>('0' + index % 10);
  AppendNmeaChecksum(request);
  // The XON is not part of the sentence, so the checksum leaves it out.
  return "\x11" + request;
}

}  // namespace skyhaul::flytec
