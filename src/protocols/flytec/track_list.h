#pragma once

#include "device/job.h"
#include "protocols/flytec/product_data.h"

namespace skyhaul::flytec {

// Asks an identified instrument for its track list into job.data.track_list, in the order of its
// index. Returns the number of tracks, kNoTrackList, or another negative number after a message (or
// "Transfer aborted").
int ReadTrackList(Job& job, const ProductData& product);

// Job procedure: the flight list.
int FlightListJob(Job& job);

}  // namespace skyhaul::flytec
