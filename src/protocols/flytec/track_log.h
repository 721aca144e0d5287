#pragma once

#include "device/job.h"

namespace skyhaul::flytec {

// Job procedure: the track log. With the parameter kCurrentTrack the flight selected on the
// instrument is downloaded; otherwise the person chooses from the track list, and several tracks
// become one log when the job asks for that. A flight that does not arrive whole is requested once
// more; what is then still missing of it is named in a message and in Flight::missing, and the
// others are fetched all the same. Returns the number of positions in job.data.flights, or a
// negative number (kNoTrackList and kUnknownModel among them) after a message (or "Transfer
// aborted") when not all flights of a whole list are there and whole; those that are there stay.
int TrackLogJob(Job& job);

// Job procedure: every track log of the list that can be requested, each a track of its own in
// job.data.flights, the newest first. Returns as TrackLogJob.
int AllTracksJob(Job& job);

}  // namespace skyhaul::flytec
