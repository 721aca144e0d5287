#include "commands/download_flights.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "commands/save_flights.h"
#include "files/formats.h"

namespace skyhaul {

namespace {

constexpr const char* kTitle = "Read GPS track log";

// One download from its start to its end, over one or two jobs.
struct Download {
  Session* session = nullptr;
  DownloadFlightsRequest request;
  std::function<void(DownloadFlightsResult)> end;
  bool selected_asked_for = false;  // the flight that is selected on the instrument
  Operation operation;
};
using SharedDownload = std::shared_ptr<Download>;

// The newest flight becomes the document's. A failed download replaces nothing.
void Install(Download& download, JobEnd& job, bool saved) {
  // SaveFlights() has sorted the flights by their start, so the newest is the last.
  if (job.result < 0 || job.data.flights.empty()) return;
  Flight& newest = job.data.flights.back();
  // A file with a part of the flight does not hold the flight.
  const bool cut = IsGiven(download.request.target.filter) && !newest.instrument_igc.expected;
  ReplaceFlight(*download.session->document, std::move(newest),
                {.origin = Source::Origin::kInstrument, .name = job.identity.description},
                !saved || cut, "Download of a flight");
}

void Finish(Download& download, JobEnd job) {
  DownloadFlightsResult result;
  // Flights that could not be joined are kept one by one. In a folder each has its own name; under
  // a name that was given the first one would pass for all of them.
  FlightTarget& target = download.request.target;
  if (job.result < 0 && download.request.join && target.kind == FlightTarget::Kind::kFile) {
    target.path = WithNameEnd(target.path, "-part");
  }
  // Saving comes before installing, because installing moves the newest flight away. Flights that
  // arrived before a failure are saved too: another download takes minutes.
  const bool saved = SaveFlights(*download.session, download.request, job.identity,
                                 job.data.flights, result.written) == 0;
  // A flight that could not be saved still becomes the document's, marked as modified, so that it
  // is not lost.
  result.done = job.result >= 0 && saved;
  Install(download, job, saved);
  result.identity = std::move(job.identity);
  download.end(std::move(result));
}

void Run(const SharedDownload& download);

// A name that nobody knows may be a known one with a byte changed on the way. What the instrument
// has selected on its screen would then be saved as if it were the newest flight.
void RefuseUnknownModel(const Download& download, const JobEnd& job) {
  ShowMessage(download.operation,
              "Nothing was downloaded: the instrument calls itself " + job.identity.description +
                  ", a model that this program does not know\nIf the name looks damaged, check "
                  "the cable and try again",
              kTitle);
}

// An instrument without a track list can still give the one flight that is selected on it.
void TakeJobEnd(const SharedDownload& download, JobEnd job) {
  if (job.result == kUnknownModel) RefuseUnknownModel(*download, job);
  // Tried once only: an instrument that says again that it has no list has failed.
  if (job.result != kNoTrackList || download->selected_asked_for) {
    return Finish(*download, std::move(job));
  }
  // Numbers mean places in the list. Fetching whatever is selected would give a flight that was not
  // asked for.
  if (download->request.flights.how == FlightChoice::How::kNumbers) {
    ShowMessage(download->operation,
                "This instrument has no track list: leave TRACK out to download the flight that is "
                "selected on it",
                kTitle);
    return Finish(*download, std::move(job));
  }
  ShowStatus(download->operation,
             "This instrument has no track list, downloading the flight that is selected on it");
  download->selected_asked_for = true;
  Run(download);
}

void Run(const SharedDownload& download) {
  JobRequest job = MakeJobRequest(*download->session, download->request.instrument, kReadTrackLog);
  job.join_tracks = download->request.join;
  job.choice = download->request.flights;
  // A job cannot change its request, so the other way to ask takes a second one.
  if (download->selected_asked_for) job.parameter = kCurrentTrack;
  RunInstrumentJob(*download->session, std::move(job),
                   // The routine shares the download and keeps it alive between the two jobs.
                   [download](JobEnd end) { TakeJobEnd(download, std::move(end)); });
}

}  // namespace

void DownloadFlights(Session& session, DownloadFlightsRequest request,
                     std::function<void(DownloadFlightsResult)> end) {
  auto download = std::make_shared<Download>();
  download->session = &session;
  download->request = std::move(request);
  download->end = std::move(end);
  download->operation.shell = session.shell;
  // Before the port is opened: an unwritable folder should not cost the whole transfer.
  const size_t named = download->request.join ? 1 : download->request.flights.numbers.size();
  if (CheckFlightTarget(download->operation, download->request.target,
                        std::max<size_t>(named, 1)) != 0) {
    return download->end({});
  }
  Run(download);
}

void ReadFlightList(Session& session, const InstrumentRequest& instrument,
                    std::function<void(FlightListResult)> end) {
  // The session outlives its jobs, so a reference to it is enough.
  const auto take_end = [&session, end = std::move(end)](JobEnd job) {
    if (job.result == kNoTrackList || job.result == kUnknownModel) {
      ShowMessage(Operation{.shell = session.shell}, "This instrument has no track list",
                  "Read GPS track list");
    }
    end({.done = job.result >= 0,
         .identity = std::move(job.identity),
         .list = std::move(job.data.track_list)});
  };
  RunInstrumentJob(session, MakeJobRequest(session, instrument, kReadFlightList), take_end);
}

}  // namespace skyhaul
