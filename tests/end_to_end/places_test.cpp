// Waypoints and airspace through the real program and back over a real terminal.

#include <gtest/gtest.h>

#include <cstdio>

#include "core/units.h"
#include "formats/cup/read_cup.h"
#include "formats/gpx/read_gpx.h"
#include "tests/end_to_end/program.h"

namespace skyhaul {
namespace {

// More than a terminal holds at once (4096 bytes).
constexpr int kWaypoints = 75;

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

TEST(Places, GoUpAndComeDownEqual) {
  ScratchFolder folder;
  WriteText(folder.File("a.cup"), ManyWaypoints());
  WriteText(folder.File("a.txt"),
            "AC D\r\nAN A\r\nAL GND\r\nAH FL 95\r\nV X=47:10:00 N 011:00:00 E\r\nDC 5\r\n");
  Instrument instrument;
  StartInstrument(instrument, {"--baud", "0"});
  Program program;
  for (const char* command : {"/WR_WPT=a.cup", "/RD_WPT=b.gpx", "/WR_CTR=a.txt"}) {
    const std::string path = std::string(command).insert(8, folder.File(""));
    ASSERT_EQ(RunToEnd(program, {SKYHAUL_PROGRAM, "/GPS=IQCOMPEO", "/COM=" + instrument.port, path,
                                 "/EXIT"}),
              0)
        << command << ": " << program.Err();
  }
  EXPECT_NE(program.Out().find("1 of 1 airspaces sent"), std::string::npos);

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

// A name with two ways to begin an escape sequence, wherever it is echoed.
TEST(Terminal, IsSteeredByNoName) {
  Program program;
  const std::string name = program.folder.File("\x1b[31m\xc2\x9b\x7f.cup");
  WriteText(name, ManyWaypoints());
  const std::vector<std::string> cases[] = {
      {SKYHAUL_PROGRAM, "--info", name},
      {SKYHAUL_PROGRAM, "--check", name},
      {SKYHAUL_PROGRAM, "--convert", name, name + ".gpx"},
      {SKYHAUL_PROGRAM, "--convert", name, name},
      {SKYHAUL_PROGRAM, "--help" + name},
      {SKYHAUL_PROGRAM, "--set", name},
      {SKYHAUL_PROGRAM, name},
      {SKYHAUL_PROGRAM, "/WPTSRC=" + name, "/WPTDEST=" + name, "/NOTIFY=" + name},
      {SKYHAUL_INSTRUMENT, name},
      {SKYHAUL_INSTRUMENT, "flytec", "--link", name},
  };
  for (const auto& arguments : cases) {
    RunToEnd(program, arguments);
    const std::string shown = program.Out() + program.Err();
    EXPECT_NE(shown.find("?[31m??.cup"), std::string::npos) << arguments[1] << '\n' << shown;
    EXPECT_EQ(shown.find_first_of("\x1b\x9b\x7f"), std::string::npos) << arguments[1];
  }
}

}  // namespace
}  // namespace skyhaul
