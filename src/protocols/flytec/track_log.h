#pragma once

#include "device/job.h"

namespace skyhaul::flytec {

// Job procedure: the track log. With the parameter kCurrentTrack the flight selected on the
// instrument is downloaded; otherwise the person chooses from the track list, and several tracks
// become one log when the job asks for that. Returns the number of positions in job.data.flights,
// or a negative number (kNoTrackList among them) after a message (or "Transfer aborted").
int TrackLogJob(Job& job);

// Job procedure: every track log of the list that can be requested, each a track of its own in
// job.data.flights, the newest first. Returns as TrackLogJob; what arrived before a failure
// stays.
int AllTracksJob(Job& job);

}  // namespace skyhaul::flytec
