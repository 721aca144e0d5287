#pragma once

#include "device/job.h"
#include "protocols/flytec/product_data.h"

namespace skyhaul::flytec {

// Asks an identified instrument for its track list into job.data.track_list, in the order of its
// index: twice when the first answer is not whole. Returns the number of tracks, kNoTrackList,
// kUnknownModel, or another negative number after a message (or "Transfer aborted"). A list that
// still has fewer flights than it announces is delivered after a message, with list_is_whole false.
int ReadTrackList(Job& job, const ProductData& product);

// Job procedure: the flight list. A list that is not whole is a failure that leaves what arrived in
// job.data.track_list.
int FlightListJob(Job& job);

}  // namespace skyhaul::flytec
