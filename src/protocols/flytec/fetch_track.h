#pragma once

#include <cstdint>
#include <string>

#include "device/job.h"

namespace skyhaul::flytec {

// One flight to be fetched from an identified instrument.
struct Wanted {
  std::string request;
  uint32_t index = 0;
  const TrackListEntry* listed = nullptr;  // null: the one that is selected on the instrument
};

// A flight, or the list of flights, is not whole; the message has been shown.
inline constexpr int kIncomplete = -20;

// Fetches one flight into job.data.flights; one that does not arrive whole is requested once more,
// and the better of the two is kept. Returns 0 when it is whole, kIncomplete when it is not (what
// arrived of it is there, with Flight::missing), or another negative number after a message (or
// "Transfer aborted") when the job cannot go on.
int FetchTrack(Job& job, const Wanted& wanted);

}  // namespace skyhaul::flytec
