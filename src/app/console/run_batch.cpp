#include "app/console/run_batch.h"

#include <string>
#include <vector>

#include "app/command_line/keywords.h"
#include "app/command_line/requests.h"
#include "app/console/client.h"
#include "app/console/exit_status.h"
#include "app/console/run_to_end.h"
#include "commands/open_file.h"
#include "core/text/printable.h"
#include "report/flight_table.h"

namespace skyhaul {

namespace {

// One batch run.
struct Batch {
  Session* session = nullptr;
  Console* console = nullptr;
  const CommandLineBlock* block = nullptr;
};

void Print(const Batch& batch, const std::string& text) {
  PrintResult(*batch.console, text);
}

// Two lines that say which instrument answered; empty when none did.
std::string IdentityText(const InstrumentIdentity& identity) {
  if (identity.description.empty()) return "";
  return "Instrument " + identity.description + "\nOwner " + identity.owner + "\n";
}

int Finish(const Batch& batch, bool done, const std::vector<std::string>& written = {}) {
  NotifyEnd(*batch.session, batch.block->notify_client, done, written);
  return done ? kExitDone : kExitFailed;
}

int RunDownloadFlights(const Batch& batch) {
  const auto result = RunToEnd<DownloadFlightsResult>(*batch.console, [&](auto end) {
    DownloadFlights(*batch.session, MakeDownloadFlightsRequest(*batch.block), end);
  });
  std::string text = IdentityText(result.identity);
  // Printed after a failure too: some of the flights may have been saved.
  for (const std::string& path : result.written) text += "Saved " + PrintableText(path) + '\n';
  Print(batch, text);
  return Finish(batch, result.done, result.written);
}

int RunFlightList(const Batch& batch) {
  const auto result = RunToEnd<FlightListResult>(*batch.console, [&](auto end) {
    ReadFlightList(*batch.session, MakeInstrumentRequest(*batch.block), end);
  });
  // The reason has been shown by the job. A list that is not whole is shown nevertheless.
  if (!result.done && result.list.empty()) return Finish(batch, false);
  // No mark in the table: nothing is about to be fetched.
  Print(batch, IdentityText(result.identity) + FlightTable(result.list, {}));
  for (const TrackListEntry& entry : result.list) {
    NotifyClient(*batch.session, batch.block->notify_client, FlightNotice(entry));
  }
  return Finish(batch, result.done);
}

int RunDownloadWaypoints(const Batch& batch) {
  const auto result = RunToEnd<DownloadWaypointsResult>(*batch.console, [&](auto end) {
    DownloadWaypoints(*batch.session, MakeDownloadWaypointsRequest(*batch.block), end);
  });
  Print(batch, IdentityText(result.identity));
  if (result.done) {
    Print(batch, std::to_string(result.saved) + " waypoints saved in " +
                     PrintableText(batch.block->file) + '\n');
  }
  return Finish(batch, result.done, result.written);
}

// What is known of those that were sent.
std::string VerifiedText(const UploadResult& result) {
  if (result.sent == 0) return "";
  return result.verified ? ", " + std::to_string(*result.verified) + " verified" : ", not verified";
}

// Both kinds of upload; the run is only done when all records have gone.
int FinishUpload(const Batch& batch, const UploadResult& result, const char* what) {
  // With nothing to send no job was started, and the reason has been shown.
  if (result.total > 0) {
    Print(batch, IdentityText(result.identity) + std::to_string(result.sent) + " of " +
                     std::to_string(result.total) + ' ' + what + " sent" + VerifiedText(result) +
                     '\n');
  }
  return Finish(batch, result.done);
}

int RunUploadWaypoints(const Batch& batch) {
  const auto result = RunToEnd<UploadResult>(*batch.console, [&](auto end) {
    UploadWaypoints(*batch.session, MakeUploadRequest(*batch.block), end);
  });
  return FinishUpload(batch, result, "waypoints");
}

int RunUploadAirspaces(const Batch& batch) {
  const auto result = RunToEnd<UploadResult>(*batch.console, [&](auto end) {
    UploadAirspaces(*batch.session, MakeUploadRequest(*batch.block), end);
  });
  return FinishUpload(batch, result, "airspaces");
}

int RunConvertWaypoints(const Batch& batch) {
  const ConvertFileRequest request = MakeConvertWaypointsRequest(*batch.block);
  const bool done = ConvertFile(*batch.session, request).done;
  const char* text = done ? "Waypoint file converted" : "Waypoint file conversion failed";
  Print(batch, std::string(text) + '\n');
  if (done) return Finish(batch, true, {request.to});
  ShowMessage(Operation{.shell = batch.session->shell}, text, "Converting waypoint file");
  return Finish(batch, false);
}

int RunIgcToKml(const Batch& batch) {
  const ConvertFileRequest request = MakeIgcToKmlRequest(*batch.block);
  if (!ConvertFile(*batch.session, request).done) return Finish(batch, false);
  Print(batch, "Saved " + PrintableText(request.to) + '\n');
  return Finish(batch, true, {request.to});
}

int RunOpenFile(const Batch& batch) {
  const OpenFileResult result = OpenFile(*batch.session, {.path = batch.block->file});
  if (!result.done) return kExitFailed;
  Print(batch, SummaryText(result.summary));
  return HasDamage(result.summary) ? kExitFailed : kExitDone;
}

// The commands that this version carries out.
struct BatchCommand {
  Command command;
  int (*run)(const Batch& batch);
};

constexpr BatchCommand kBatchCommands[] = {
    {.command = Command::kTrackLogToKml, .run = RunDownloadFlights},
    {.command = Command::kTrackLogToOzi, .run = RunDownloadFlights},
    {.command = Command::kTrackLogToIgc, .run = RunDownloadFlights},
    {.command = Command::kDownloadWaypoints, .run = RunDownloadWaypoints},
    {.command = Command::kUploadWaypoints, .run = RunUploadWaypoints},
    {.command = Command::kUploadWaypointsSecondForm, .run = RunUploadWaypoints},
    {.command = Command::kIgcToKml, .run = RunIgcToKml},
    {.command = Command::kOpenFile, .run = RunOpenFile},
    {.command = Command::kUploadAirspace, .run = RunUploadAirspaces},
    {.command = Command::kDownloadGeographicWaypoints, .run = RunDownloadWaypoints},
    {.command = Command::kFlightList, .run = RunFlightList},
    {.command = Command::kConvertWaypoints, .run = RunConvertWaypoints},
};

}  // namespace

int RunBatch(Session& session, Console& console, const CommandLineBlock& block) {
  const Batch batch = {.session = &session, .console = &console, .block = &block};
  const Operation operation = {.shell = session.shell};
  // Before the run, since a person may want to stop a long one for it.
  for (const std::string& name : SwitchesWithoutEffect(block)) {
    ShowStatus(operation, name + " has no effect with this command");
  }
  for (const BatchCommand& command : kBatchCommands) {
    if (command.command == block.command) return command.run(batch);
  }
  const bool none = block.command == Command::kNone;
  ShowMessage(operation,
              none ? "The command line names nothing to do; see --help"
                   : "This version cannot carry out this command yet; see --help",
              "Command line");
  // A client is told only when there was a command for it to wait for.
  return none ? kExitBadCommandLine : Finish(batch, false);
}

}  // namespace skyhaul
