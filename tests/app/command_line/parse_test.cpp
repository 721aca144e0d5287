#include "app/command_line/parse.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace skyhaul {
namespace {

struct Parsed {
  int result;
  std::string message;
  CommandLineBlock block;
};

Parsed Parse(const std::string& text) {
  Parsed parsed = {};
  parsed.block.pilot = "left over";
  parsed.message = "left over";
  parsed.result = ParseCommandLine(text, {}, parsed.block, parsed.message);
  return parsed;
}

TEST(Parse, TextWithoutASlashIsOneFile) {
  const std::pair<std::string, std::string> cases[] = {
      {"", ""},  // no batch run
      {"my flight /EXIT.igc", "my flight /EXIT.igc"},
      {"\"my flight.igc\" dropped", "my flight.igc"},
      {std::string(261, 'x'), std::string(260, 'x')},
  };
  for (const auto& [text, file] : cases) {
    const Parsed parsed = Parse(text);
    EXPECT_EQ(parsed.result, 0) << text;
    EXPECT_EQ(parsed.message + parsed.block.pilot, "");
    EXPECT_EQ(parsed.block.present, !text.empty());
    EXPECT_EQ(parsed.block.command, text.empty() ? Command::kNone : Command::kOpenFile) << text;
    EXPECT_EQ(parsed.block.file, file);
  }
}

TEST(Parse, FillsTheBlockFromSwitchesAlsoWhenAllAreQuoted) {
  const Parsed parsed = Parse("\"/gps=iqcompeo /Com=12 /PILOT=Ann /igc_log=a /exit\" dropped");
  EXPECT_EQ(parsed.message, "");
  EXPECT_TRUE(parsed.block.present);
  EXPECT_EQ(parsed.block.command, Command::kTrackLogToIgc);
  EXPECT_EQ(parsed.block.gps_type, GpsType::kIqCompeo);
  EXPECT_EQ(parsed.block.keywords.size(), 5U);
}

TEST(Parse, FailureLeavesAMessageAndNoBlock) {
  const std::pair<const char*, const char*> cases[] = {
      {"\"/EXIT", "Bad double apostrophe (\") balance"},
      {"/EXIT x", "Error at position 7"},
      {"/EXIT /GPS=FLYMASTER /FLIGHTLIST", "Missing notify window for flightlist download"},
      {"/GPS=FLYMASTER /FLIGHTLIST /NOTIFY=client", ""},
      {"/EXIT /WPTSRC=a", "Missing file name(s) for waypoint file conversion"},
      {"/EXIT /WPTDEST=b", "Missing file name(s) for waypoint file conversion"},
      {"/WPTSRC=a /WPTDEST=b", ""},
  };
  for (const auto& [text, message] : cases) {
    const Parsed parsed = Parse(text);
    EXPECT_EQ(parsed.result, *message == 0 ? 0 : -1) << text;
    EXPECT_EQ(parsed.message, message) << text;
    EXPECT_EQ(parsed.block.present, *message == 0) << text;
    EXPECT_FALSE(parsed.block.exit) << text;
  }
}

TEST(Checks, CommandsAcceptInstrumentsWithTheirService) {
  const std::string no_track_log = "Unsupported GPS for track log download";
  const std::string no_waypoint_read = "Unsupported GPS for waypoint download";
  const std::string no_waypoint_write = "Unsupported GPS for waypoint upload";
  // Each refused instrument is one that the service of another row would let pass.
  const struct {
    const char* command;
    const char* accepted;
    const char* refused;
    std::string message;
    bool checks_usb = true;
  } cases[] = {
      {"KML_LOG=a", "TOPNAV", "MLRC", no_track_log},
      {"OZI_LOG=a", "TOPNAV", "MLRC", no_track_log},
      {"MPS_LOG=a", "TOPNAV", "MLRC", no_track_log},
      {"COMP_LOG=KML", "TOPNAV", "MLRC", no_track_log},
      {"IGC_LOG=a", "XCT_MXP", "TOPNAV", "Unsupported GPS for IGC track log download"},
      {"RD_WPT=a", "MLRC", "TOPNAV", no_waypoint_read},
      {"RD_GEO_WPT=a", "MLRC", "TOPNAV", no_waypoint_read},
      {"WR_WPT=a", "TOPNAV", "MLRC", no_waypoint_write},
      {"WR_WPT2=a", "TOPNAV", "MLRC", no_waypoint_write},
      {"WR_CTR=a", "IQCOMPEO", "FLYMASTER", "Unsupported GPS for CTR upload"},
      {"USERNAME=a", "FLYMASTER", "IQCOMPEO", "Unsupported GPS for username upload", false},
      {"FLIGHTLIST", "ASCENT", "GARMIN", "Unsupported GPS for flightlist download", false},
      {"IGC2KML=a", "MLRC", "MLRC", "", false},
  };
  for (const auto& c : cases) {
    const std::string rest = std::string(" /NOTIFY=client /") + c.command;
    const auto message = [&](const std::string& gps) {
      return Parse(std::string("/GPS=").append(gps).append(rest)).message;
    };
    EXPECT_EQ(message(c.accepted), "") << c.command;
    EXPECT_EQ(message(c.refused), c.message) << c.command;
    const std::string usb = c.checks_usb ? "USB is not supported" : c.message;
    EXPECT_EQ(message(std::string(c.refused) + " /USB"), usb) << c.command;
    EXPECT_NE(message("GARMIN /USB"), "USB is not supported") << c.command;
  }
}

TEST(ParseArguments, OneFileToOpenAndNoCommandBesideItAndNothingIsCut) {
  std::string longest;
  for (int i = 0; i < 260; ++i) longest += "\u00fc";
  const char* too_long = "The value of LOGFILE is longer than 260 characters";
  const struct {
    ArgumentText arguments;
    const char* message;
    const char* file;
  } cases[] = {
      {{{"/a/b.igc"}, "/EXIT"}, "", "/a/b.igc"},
      {{{"a.igc", "b.igc"}, ""}, "Only one file can be opened", ""},
      {{{"a.igc"}, "missing.igc"}, "Only one file can be opened", ""},
      {{{}, "/LOGFILE=" + longest}, "", ""},
      {{{}, "/LOGFILE=" + longest + "x /EXIT"}, too_long, ""},
      {{{}, "/LOGFILE=\"" + longest + "x\" x"}, too_long, ""},
      {{{}, "/LOGFILE=" + std::string(1041, '\x80')}, too_long, ""},
      {{{}, longest}, "", longest.c_str()},
      {{{}, longest + "x"}, "The name of the file to open is longer than 260 characters", ""},
      {{{}, "/WR_CTR=a /GPS=IQCOMPEO", "9999"}, "", "a"},
      {{{}, "/WR_CTR=a", "10000"}, "\"--warning\" needs a number of metres from 0 to 9999", ""},
      {{{}, "/WR_CTR=a", ""}, "\"--warning\" needs a number of metres from 0 to 9999", ""},
      {{{}, "/WR_WPT=a", "5"}, "\"--warning\" goes with /WR_CTR only", ""},
      {{{"a.txt"}, "", "5"}, "\"--warning\" goes with /WR_CTR only", ""},
      {{{"a.igc"}, "/IGC_LOG=x /GPS=IQCOMPEO"}, "A file to open does not go with a command", ""},
  };
  for (const auto& c : cases) {
    CommandLineBlock block;
    std::string message;
    EXPECT_EQ(ParseArguments(c.arguments, {}, block, message), *c.message == 0 ? 0 : -1);
    EXPECT_EQ(message, c.message);
    EXPECT_EQ(block.file, c.file);
    EXPECT_EQ(block.present, *c.message == 0);
  }
}

}  // namespace
}  // namespace skyhaul
