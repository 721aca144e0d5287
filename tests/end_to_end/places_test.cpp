// Waypoints and airspace through the real program and back over a real terminal.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "analysis/airspace_outline.h"
#include "core/geodesy/geodesic.h"
#include "core/units.h"
#include "device/job_runner.h"
#include "formats/cup/read_cup.h"
#include "formats/gpx/read_gpx.h"
#include "formats/openair/read_openair.h"
#include "protocols/families.h"
#include "tests/end_to_end/program.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

constexpr int kWaypoints = 200;

std::string ManyWaypoints() {
  std::string text = "name,code,country,lat,lon,elev,style,rwdir,rwlen,freq,desc\r\n";
  for (int i = 0; i < kWaypoints; ++i) {
    char line[120];
    std::snprintf(line, sizeof line,
                  "\"Place number %03d\",P%03d,CH,46%02d.%03dN,007%02d.%03d%c,%d.0m,1,,,,\r\n", i,
                  i, i % 60, i * 5 % 1000, i * 7 % 60, i * 3 % 1000, i % 2 == 0 ? 'E' : 'W',
                  i * 17);
    text += line;
  }
  return text;
}

TEST(Places, TwoHundredWaypointsGoUpAndComeDownEqual) {
  ScratchFolder folder;
  WriteText(folder.File("a.cup"), ManyWaypoints());
  Instrument instrument;
  StartInstrument(instrument, {"--baud", "0"});
  Program program;
  const std::string port = "/COM=" + instrument.port;
  ASSERT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", port,
                               "/WR_WPT=" + folder.File("a.cup"), "/EXIT"}),
            0)
      << program.Err();
  ASSERT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", port,
                               "/RD_WPT=" + folder.File("b.gpx"), "/EXIT"}),
            0)
      << program.Err();

  WaypointFile up;
  WaypointFile down;
  std::string message;
  ASSERT_EQ(cup::Read(ManyWaypoints(), up, message), kWaypoints) << message;
  ASSERT_EQ(gpx::Read(ReadText(folder.File("b.gpx")), down, message), kWaypoints) << message;
  for (size_t i = 0; i < kWaypoints; ++i) {
    const FileWaypoint& sent = up.waypoints[i];
    const FileWaypoint& back = down.waypoints[i];
    ASSERT_EQ(back.description, sent.description);
    ASSERT_EQ(SemicirclesToMilliminutes(back.lat), SemicirclesToMilliminutes(sent.lat));
    ASSERT_EQ(SemicirclesToMilliminutes(back.lon), SemicirclesToMilliminutes(sent.lon));
    ASSERT_NEAR(back.altitude_m, sent.altitude_m, 0.5);
  }
}

// Whole thousandths of a minute and metres, so that the wire's resolution bends nothing; but the
// ends of an arc by bearings lie where they lie.
const char* const kAirspaces =
    "AC D\r\nAN Outline\r\nAL GND\r\nAH FL 125\r\n"
    "DP 47:10:00 N 011:00:00 E\r\nV X=47:20:00 N 011:00:00 E\r\nV D=+\r\n"
    "DB 47:25:00 N 011:00:00 E, 47:20:00 N 011:07:22.56 E\r\nDP 47:10:00 N 011:10:00 E\r\n\r\n"
    "AC C\r\nAN Circle\r\nAL 4500 MSL\r\nAH FL 195\r\nV X=60:00:00 S 030:00:00 W\r\nDC 25\r\n\r\n"
    "AC R\r\nAN Bearings\r\nAL GND\r\nAH UNL\r\nV X=60:00:00 N 030:00:00 E\r\nV D=-\r\n"
    "DA 27,330,45\r\nDP 60:00:00 N 030:00:00 E\r\n";

double Distance_m(const AirspacePosition& from, const AirspacePosition& to) {
  return GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                            SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
}

// The instrument's airspaces, read by the driver itself: no command line command asks for them.
std::vector<CtrRecord> ListAirspaces(const std::string& port) {
  RecordingShell recorder;
  const Shell shell = MakeShell(recorder);
  std::vector<CtrRecord> airspaces;
  JobRequest request;
  request.platform = &NativePlatform();
  request.shell = &shell;
  request.access_type = kReadCtrList;
  request.protocol_type = kFlytec;
  request.port = {.automatic = false, .configured = port};
  request.completion = [](void* context, Job& job) {
    *static_cast<std::vector<CtrRecord>*>(context) = std::move(job.data.airspaces);
  };
  request.completion_context = &airspaces;
  EXPECT_EQ(StartJob(AllJobs(), std::move(request)), 0);
  WaitForJobEnd();
  EXPECT_TRUE(recorder.messages.empty());
  return airspaces;
}

TEST(Places, AirspaceGoesUpAndComesDownWithTheSameOutline) {
  ScratchFolder folder;
  WriteText(folder.File("a.txt"), kAirspaces);
  Instrument instrument;
  StartInstrument(instrument, {"--baud", "0"});
  Program program;
  ASSERT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", "/COM=" + instrument.port,
                               "/WR_CTR=" + folder.File("a.txt"), "/EXIT"}),
            0)
      << program.Err();
  openair::AirspaceFile sent;
  std::string message;
  ASSERT_EQ(openair::Read(kAirspaces, sent, message), 3) << message;
  const std::vector<CtrRecord> back = ListAirspaces(instrument.port);
  ASSERT_EQ(back.size(), 3U);
  const double tolerances_m[] = {1, 1, 1.2};  // half a thousandth of a minute both ways
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(back[i].name, sent.airspaces[i].name);
    const std::vector<AirspacePosition> wanted = OutlinePoints(sent.airspaces[i], 5);
    const std::vector<AirspacePosition> found = OutlinePoints(back[i], 5);
    ASSERT_EQ(found.size(), wanted.size()) << back[i].name;
    for (size_t n = 0; n < wanted.size(); ++n) {
      EXPECT_LE(Distance_m(wanted[n], found[n]), tolerances_m[i]) << back[i].name << " " << n;
    }
  }
}

}  // namespace
}  // namespace skyhaul
