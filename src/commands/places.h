#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commands/instrument_job.h"

namespace skyhaul {

struct DownloadWaypointsRequest {
  InstrumentRequest instrument;
  std::string path;
  std::string keyword;  // the file's format; empty: the one of its extension
  bool overwrite = false;
};

struct DownloadWaypointsResult {
  bool done = false;
  InstrumentIdentity identity;
  size_t saved = 0;
  std::vector<std::string> written;  // the path, when the file was written
};

// Downloads all waypoints, which become the document's list, and saves them in a file. `end` is
// called once, as RunInstrumentJob() says.
void DownloadWaypoints(Session& session, DownloadWaypointsRequest request,
                       std::function<void(DownloadWaypointsResult)> end);

struct UploadRequest {
  InstrumentRequest instrument;
  std::string path;    // opened first; empty: the document's list as it is
  bool verify = true;  // the instrument's list is read back
  // For every airspace sent, 0..9999; empty: each has its own, or the instrument family's default.
  std::optional<uint32_t> warning_m;
};

struct UploadResult {
  bool done = false;  // all records were sent, and verified where that was asked for
  InstrumentIdentity identity;
  size_t sent = 0;
  size_t total = 0;
  std::optional<size_t> verified;  // of those sent; empty: the list was not read back
};

// Send the document's waypoints or airspaces to an instrument. `end` is called once, as
// RunInstrumentJob() says; at once when there is nothing to send, which has been said.
void UploadWaypoints(Session& session, const UploadRequest& request,
                     std::function<void(UploadResult)> end);
void UploadAirspaces(Session& session, const UploadRequest& request,
                     std::function<void(UploadResult)> end);

}  // namespace skyhaul
