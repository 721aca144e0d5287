#pragma once

#include <functional>
#include <string>
#include <vector>

#include "commands/instrument_job.h"
#include "commands/time_filter.h"

namespace skyhaul {

// Where downloaded flights go and how they are written.
struct FlightTarget {
  // A folder that gets IGC files under their standard names (it may hold $date and $time), or one
  // file, which gets "-2", "-3" ... before its extension for further flights.
  enum class Kind { kIgcFolder, kFile };
  Kind kind = Kind::kIgcFolder;
  std::string path;
  std::string keyword;  // the format of kFile; empty: the one of its extension
  bool overwrite = false;
  TimeFilter filter;  // an instrument's own IGC text is never filtered
};

struct DownloadFlightsRequest {
  InstrumentRequest instrument;
  FlightChoice flights;
  bool join = false;  // the flights become one; those that overlap or lie far apart are refused
  FlightTarget target;
  std::string pilot;  // empty: as the instrument says, else as the settings say
};

struct DownloadFlightsResult {
  bool done = false;  // every flight asked for was fetched and saved
  InstrumentIdentity identity;
  std::vector<std::string> written;  // paths, the oldest flight first
};

// Downloads flights and saves them. The newest becomes the document's flight when all were fetched;
// after a failure those that arrived are saved, each in a file of its own, and the document keeps
// what it had. What arrived of a flight that is not whole is saved with "-incomplete" before the
// extension. `end` is called once, as RunInstrumentJob() says.
void DownloadFlights(Session& session, DownloadFlightsRequest request,
                     std::function<void(DownloadFlightsResult)> end);

struct FlightListResult {
  bool done = false;  // the list is there, and whole
  InstrumentIdentity identity;
  std::vector<TrackListEntry> list;
};

// Reads the list of the flights in the instrument's memory. `end` is called once, as
// RunInstrumentJob() says.
void ReadFlightList(Session& session, const InstrumentRequest& instrument,
                    std::function<void(FlightListResult)> end);

}  // namespace skyhaul
