#include "app/command_line/requests.h"

#include "files/formats.h"
#include "protocols/families.h"

namespace skyhaul {

InstrumentRequest MakeInstrumentRequest(const CommandLineBlock& block) {
  return {.protocol_type = ProtocolOf(block.gps_type, block.usb),
          .port = block.port_text,
          .port_number = block.port_number,
          // A time-out of 0 would never connect: it counts as not given.
          .attempts = block.timeout_s.value_or(0),
          .client = block.notify_client,
          .report_interval_s = block.send_log_s};
}

DownloadFlightsRequest MakeDownloadFlightsRequest(const CommandLineBlock& block) {
  DownloadFlightsRequest request;
  request.instrument = MakeInstrumentRequest(block);
  // No /TRACK: the newest flight, which is the one that a pilot has just landed from.
  request.flights = {
      .how = block.tracks.empty() ? FlightChoice::How::kNewest : FlightChoice::How::kNumbers,
      .numbers = block.tracks};
  request.join = block.no_split;
  request.pilot = block.pilot;
  request.target = {.kind = block.command == Command::kTrackLogToIgc
                                ? FlightTarget::Kind::kIgcFolder
                                : FlightTarget::Kind::kFile,
                    .path = block.file,
                    .overwrite = block.overwrite,
                    .filter = {.start_s = block.filter_start_s, .stop_s = block.filter_stop_s}};
  // /KML_LOG means KML whatever the file is called; the other command goes by the extension as far
  // as it is known.
  if (block.command == Command::kTrackLogToKml) {
    request.target.keyword = "kml";
  } else if (HasUnknownExtension(block.file)) {
    request.target.keyword = "plt";
  }
  return request;
}

DownloadWaypointsRequest MakeDownloadWaypointsRequest(const CommandLineBlock& block) {
  const bool geographic = block.command == Command::kDownloadGeographicWaypoints;
  return {.instrument = MakeInstrumentRequest(block),
          .path = block.file,
          .keyword = geographic                        ? "geo"
                     : HasUnknownExtension(block.file) ? "ozi"
                                                       : "",
          .overwrite = block.overwrite};
}

UploadRequest MakeUploadRequest(const CommandLineBlock& block) {
  return {.instrument = MakeInstrumentRequest(block),
          .path = block.file,
          .verify = !block.no_check,
          .warning_m = block.warning_m};
}

ConvertFileRequest MakeConvertWaypointsRequest(const CommandLineBlock& block) {
  return {.from = block.waypoint_source,
          .to = block.waypoint_destination,
          .overwrite = block.overwrite,
          .only = FileKind::kWaypoints};
}

ConvertFileRequest MakeIgcToKmlRequest(const CommandLineBlock& block) {
  // "2026-05-24.igc" becomes "2026-05-24.kml" in the same folder.
  const size_t end = block.file.size() - Extension(block.file).size();
  return {.from = block.file,
          .to = block.file.substr(0, end) + ".kml",
          .keyword = "kml",
          .overwrite = block.overwrite};
}

}  // namespace skyhaul
