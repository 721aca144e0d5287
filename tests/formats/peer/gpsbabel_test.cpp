// gpsbabel reads the files that we write and must find the same points in them.

#include <gtest/gtest.h>

#include <cstdlib>

#include "formats/gpx/read_gpx.h"
#include "formats/gpx/write_gpx.h"
#include "formats/ozi/write_ozi.h"
#include "platform/file.h"
#include "tests/formats/waypoint_files.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

bool Runs(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

// Has gpsbabel turn the sample's waypoints into GPX, whose own text is compared elsewhere, and
// compares what both sides know of them. Skips the test without gpsbabel.
void ExpectFound(const std::string& format, const std::string& text) {
  if (!Runs("gpsbabel -^1 2>/dev/null | grep -q '\t" + format + "\t'")) {
    GTEST_SKIP() << "gpsbabel, if installed, does not know " << format;
  }
  const ScratchFolder folder;
  const std::string in = folder.File("in");
  const std::string out = folder.File("out.gpx");
  EXPECT_EQ(WriteWholeFile(in, text, IfExists::kRefuse).problem, FileProblem::kNone);
  EXPECT_TRUE(Runs("gpsbabel -i '" + format + "' -f '" + in + "' -o gpx -F '" + out + "'"));
  std::vector<FileWaypoint> found = ReadGood(gpx::Read, ReadText(out)).waypoints;
  std::vector<FileWaypoint> expected = SampleWaypoints();
  for (std::vector<FileWaypoint>* places : {&found, &expected}) {
    for (FileWaypoint& place : *places) {
      place.description = place.comment = "";
      place.type = 0;
    }
  }
  ExpectSameWaypoints(found, expected, {.altitude_m = 1, .semicircles = 119});  // 1e-5 degrees
}

TEST(Gpsbabel, FindsTheWaypointsOfGpx) {
  ExpectFound("gpx", gpx::Write(SampleWaypoints()));
}

TEST(Gpsbabel, FindsTheWaypointsOfOziExplorer) {
  ExpectFound("ozi", ozi::WriteWaypoints(SampleWaypoints()));
}

}  // namespace
}  // namespace skyhaul
