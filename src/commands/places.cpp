#include "commands/places.h"

#include <utility>

#include "commands/open_file.h"
#include "commands/sound_airspaces.h"
#include "commands/target.h"
#include "files/file_io.h"
#include "formats/waypoints/waypoint_list.h"

namespace skyhaul {

namespace {

// Installs and saves the waypoints of a job that has succeeded.
void TakeWaypoints(Session& session, const DownloadWaypointsRequest& request, JobEnd& job,
                   DownloadWaypointsResult& result) {
  const Operation operation = {.shell = session.shell};
  // An empty file would look like a list to the next program, and replace a good one.
  if (job.data.waypoints.empty()) {
    ShowMessage(operation,
                "The instrument sent no waypoints: its memory is empty, or it did not answer",
                "Read GPS waypoints");
    return;
  }
  FileContents contents;
  // From the fixed fields of an instrument's record to texts as files hold them.
  contents.waypoints = UnfitWaypoints(job.data.waypoints);
  const int saved = SaveFile(operation, request.path, request.keyword, contents, request.overwrite);
  result.done = saved >= 0;
  if (result.done) {
    result.saved = static_cast<size_t>(saved);
    result.written.push_back(request.path);
  }
  // Installed even when the file was not written: the list came over the wire and is not thrown
  // away.
  ReplaceWaypoints(*session.document, std::move(contents.waypoints),
                   {.origin = Source::Origin::kInstrument, .name = job.identity.description},
                   !result.done, "Download of waypoints");
}

// Opens the request's file, if it names one, as the list to be sent. Returns 0, or -1 after a
// message.
// A list of the wrong kind is refused before it takes the place of the document's.
int PrepareUpload(Session& session, const UploadRequest& request, FileKind kind) {
  if (request.path.empty()) return 0;
  return OpenFile(session, {.path = request.path, .only = kind}).done ? 0 : -1;
}

void Upload(Session& session, const UploadRequest& request, uint32_t access_type, JobData data,
            size_t total, std::function<void(UploadResult)> end) {
  JobRequest job = MakeJobRequest(session, request.instrument, access_type);
  job.data = std::move(data);
  job.verify = request.verify;
  RunInstrumentJob(session, std::move(job), [total, end = std::move(end)](JobEnd ended) {
    // An instrument may refuse single records in a job that succeeds. Part of a list is not done.
    end({.done = ended.result >= 0 && ended.data.sent == total,
         .identity = std::move(ended.identity),
         .sent = ended.data.sent,
         .total = total,
         .verified = ended.data.verified});
  });
}

void RefuseUpload(const Session& session, const char* what, const char* title) {
  ShowMessage(Operation{.shell = session.shell},
              std::string("There are no ") + what + " to send: open or download some first", title);
}

}  // namespace

void DownloadWaypoints(Session& session, DownloadWaypointsRequest request,
                       std::function<void(DownloadWaypointsResult)> end) {
  if (CheckTarget(Operation{.shell = session.shell}, request.path, request.keyword,
                  FileKind::kWaypoints, request.overwrite) != 0) {
    return end({});
  }
  JobRequest job = MakeJobRequest(session, request.instrument, kReadWaypoints);
  // The request moves into the routine, because the caller's may be gone when the job ends.
  const auto take_end = [&session, request = std::move(request),
                         end = std::move(end)](JobEnd ended) {
    DownloadWaypointsResult result;
    if (ended.result >= 0) TakeWaypoints(session, request, ended, result);
    result.identity = std::move(ended.identity);
    end(std::move(result));
  };
  RunInstrumentJob(session, std::move(job), take_end);
}

// The document keeps its list, so the job gets a copy: some thousand records at most.
void UploadWaypoints(Session& session, const UploadRequest& request,
                     std::function<void(UploadResult)> end) {
  if (PrepareUpload(session, request, FileKind::kWaypoints) != 0) return end({});
  const auto& waypoints = session.document->lists.waypoints;
  if (waypoints == nullptr || waypoints->empty()) {
    RefuseUpload(session, "waypoints", "Write GPS waypoints");
    return end({});
  }
  Upload(session, request, kWriteWaypoints, {.waypoints_to_send = *waypoints}, waypoints->size(),
         std::move(end));
}

void UploadAirspaces(Session& session, const UploadRequest& request,
                     std::function<void(UploadResult)> end) {
  if (PrepareUpload(session, request, FileKind::kAirspace) != 0) return end({});
  const auto& airspaces = session.document->lists.airspaces;
  if (airspaces == nullptr || airspaces->empty()) {
    RefuseUpload(session, "airspaces", "Write CTR");
    return end({});
  }
  JobData data = {.airspaces =
                      SoundAirspaces(Operation{.shell = session.shell}, *airspaces, "Write CTR")};
  // Each one has been named, and the port need not be opened for nothing.
  if (data.airspaces.empty()) return end({});
  if (request.warning_m) {
    for (CtrRecord& airspace : data.airspaces) airspace.warning_m = request.warning_m;
  }
  // Damaged ones count in the total, so an upload without them is not done.
  Upload(session, request, kUploadCtr, std::move(data), airspaces->size(), std::move(end));
}

}  // namespace skyhaul
