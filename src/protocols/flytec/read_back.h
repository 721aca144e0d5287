#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/airspace.h"
#include "device/job.h"

namespace skyhaul::flytec {

// The instrument's list, held against what was sent.
struct ReadBack {
  std::vector<size_t> wrong;  // the records that are missing or different, by their number
  size_t held = 0;            // records in the list
  std::string problem;  // why there is no list, for a message; or why an empty one says little
};

// What the reading back needs to know of one kind of record.
struct ReadBackTerms {
  const char* records = "";  // "waypoints"
  const char* title = "";    // of messages
  size_t sent = 0;           // records, numbered from 0
  size_t room = 0;           // how many the instrument holds
  // Reads and compares. Returns 0, kTimedOut when asking again may help, or another negative
  // number; without a problem the reason has been shown.
  std::function<int(ReadBack&)> read;
  // Sends some of the records again. Returns 0 or a negative number after its message or status.
  std::function<int(const std::vector<size_t>&)> send_again;
  std::function<std::string(size_t)> name;
};

// Reads the instrument's list until it shows what was sent: a list that does not come is asked for
// once more, and what is missing or different is sent once more. Sets job.data.verified. Returns 0
// after "% of % verified"; a negative number after one message that names the first of what still
// differs, or says that nothing could be read. After an abort the last status is "% ... sent, not
// verified".
int VerifyUpload(Job& job, const ReadBackTerms& terms);

// True for two numbers of the wire that are the same but for a rounding on the instrument's side:
// at most 1 apart.
bool SameOnWire(double a, double b);

// True for places at most a thousandth of a minute apart in both directions.
bool SamePlace(const AirspacePosition& a, const AirspacePosition& b);

// True when an instrument's airspace is what CtrAsSent() says, positions and radii compared as
// above.
bool SameCtr(const CtrRecord& sent, const CtrRecord& read);

}  // namespace skyhaul::flytec
