#pragma once

// What the tests of the formats share.

#include <gtest/gtest.h>

#include <tuple>

#include "core/text/numbers.h"
#include "core/units.h"
#include "formats/waypoints/waypoint_list.h"

namespace skyhaul {

inline constexpr uint32_t kMay2024 = 1083501296;  // 2024-05-01 12:34:56 UTC

// Waypoints that every format must carry: each half of the globe, its edges, heights below the sea,
// accents, and a time.
inline std::vector<FileWaypoint> SampleWaypoints() {
  return {
      {.lat = 550274193,  // 46.12345 N
       .lon = 84986069,   // 7.12345 E
       .altitude_m = 2345,
       .name = "FIESCH",
       .description = "Take-off above the lift",
       .time = kMay2024,
       .type = kWaypointAirfield},
      {.lat = -389468371, .lon = -835271917, .altitude_m = 0, .name = "ACONCA", .time = 1},
      {.lat = 376543211,
       .lon = 423456789,
       .altitude_m = -430,
       .name = "Gruyères",
       .description = "Größe & <Höhe>"},
      {.lat = 1 << 30, .lon = INT32_MAX, .altitude_m = 12345, .name = "POLE"},
      {.lat = -(1 << 30), .lon = INT32_MIN, .altitude_m = 1, .name = "POLE2"},
  };
}

inline auto Texts(const FileWaypoint& waypoint) {
  return std::tie(waypoint.name, waypoint.description, waypoint.comment, waypoint.time,
                  waypoint.type);
}

// How far what comes back may be from what was written.
struct Tolerance {
  double altitude_m = 0;
  double semicircles = 0;
};

inline void ExpectSameWaypoints(const std::vector<FileWaypoint>& read,
                                const std::vector<FileWaypoint>& written, Tolerance tolerance) {
  ASSERT_EQ(read.size(), written.size());
  for (size_t i = 0; i < read.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_NEAR(read[i].lat, written[i].lat, tolerance.semicircles);
    EXPECT_NEAR(read[i].lon, written[i].lon, tolerance.semicircles);
    EXPECT_NEAR(read[i].altitude_m, written[i].altitude_m, tolerance.altitude_m);
    EXPECT_EQ(Texts(read[i]), Texts(written[i]));
  }
}

// A number without the zeros that end it.
inline std::string ShortText(double value, int decimals) {
  std::string text = FixedText(value, decimals);
  text.erase(text.find_last_not_of('0') + 1);
  return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
}

// A line for each waypoint, "45.5 -7.5 1000 name|description|comment @time type 1" without what is
// empty or 0 at its end, and one for each note.
inline std::string Shown(const WaypointFile& file, int position_decimals = 7) {
  std::string lines;
  for (const FileWaypoint& waypoint : file.waypoints) {
    lines += ShortText(SemicirclesToDegrees(waypoint.lat), position_decimals) + ' ' +
             ShortText(SemicirclesToDegrees(waypoint.lon), position_decimals) + ' ' +
             ShortText(waypoint.altitude_m, 4) + ' ' + waypoint.name + '|' + waypoint.description +
             '|' + waypoint.comment;
    lines.erase(lines.find_last_not_of('|') + 1);
    if (waypoint.time != 0) lines += " @" + std::to_string(waypoint.time);
    if (waypoint.type != 0) lines += " type " + std::to_string(waypoint.type);
    lines += '\n';
  }
  for (const std::string& note : file.notes) lines += note + '\n';
  return lines;
}

// Reads a text that must not be refused.
inline WaypointFile ReadGood(int (&read)(std::string_view, WaypointFile&, std::string&),
                             std::string_view text) {
  WaypointFile file;
  std::string message = "left over";
  read(text, file, message);
  EXPECT_EQ(message, "") << text;
  return file;
}

// One note about each of these lines.
inline std::string Notes(std::initializer_list<int> lines, const std::string& what) {
  std::string notes;
  for (const int line : lines) notes += "Line " + std::to_string(line) + ": " + what + '\n';
  return notes;
}

struct WaypointReader {
  bool (&looks_like)(std::string_view text);
  int (&read)(std::string_view text, WaypointFile& file, std::string& message);
  int position_decimals = 7;
};

// Reads texts, each of which must give what is shown or be refused with that message. The quick
// look takes all but those of another format, whose message says so.
inline void ExpectShown(const WaypointReader& reader,
                        const std::vector<std::pair<std::string, std::string>>& cases) {
  for (const auto& [text, shown] : cases) {
    WaypointFile file = {.waypoints = {{}}, .notes = {"left over"}};
    std::string message = "left over";
    const int count = reader.read(text, file, message);
    EXPECT_EQ(count, message.empty() ? static_cast<int>(file.waypoints.size()) : -1) << text;
    EXPECT_EQ(message + Shown(file, reader.position_decimals), shown) << text;
    EXPECT_EQ(reader.looks_like(text), message.find(" not ") == message.npos) << text;
  }
}

// Writes waypoints and reads them again.
inline void ExpectComeBack(const WaypointReader& reader,
                           std::string (&write)(std::span<const FileWaypoint>),
                           const std::vector<FileWaypoint>& waypoints, Tolerance tolerance) {
  const std::string text = write(waypoints);
  EXPECT_TRUE(reader.looks_like(text));
  const WaypointFile file = ReadGood(reader.read, text);
  EXPECT_EQ(file.notes, std::vector<std::string>());
  ExpectSameWaypoints(file.waypoints, waypoints, tolerance);
}

}  // namespace skyhaul
