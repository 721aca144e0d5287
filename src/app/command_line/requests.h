#pragma once

#include "app/command_line/command_line_block.h"
#include "commands/convert_file.h"
#include "commands/download_flights.h"
#include "commands/places.h"

namespace skyhaul {

// What a command line asks for, as requests to the commands.

InstrumentRequest MakeInstrumentRequest(const CommandLineBlock& block);

// /KML_LOG, /OZI_LOG, /RD_LOG and /IGC_LOG. Without /TRACK the newest flight is fetched. A file
// whose extension means nothing is an OziExplorer track for /OZI_LOG and /RD_LOG.
DownloadFlightsRequest MakeDownloadFlightsRequest(const CommandLineBlock& block);

// /RD_WPT and /RD_GEO_WPT, which has a form of its own; the other takes the one of the extension,
// OziExplorer's where that means nothing.
DownloadWaypointsRequest MakeDownloadWaypointsRequest(const CommandLineBlock& block);

// /WR_WPT, /WR_WPT2 and /WR_CTR.
UploadRequest MakeUploadRequest(const CommandLineBlock& block);

// /WPTSRC with /WPTDEST, and /IGC2KML, whose file gets the extension .kml.
ConvertFileRequest MakeConvertWaypointsRequest(const CommandLineBlock& block);
ConvertFileRequest MakeIgcToKmlRequest(const CommandLineBlock& block);

}  // namespace skyhaul
