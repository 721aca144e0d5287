#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/airspace.h"
#include "core/time_scale.h"
#include "core/track_point.h"
#include "formats/igc/header.h"
#include "formats/igc/read_track.h"
#include "formats/waypoints/waypoint_list.h"

namespace skyhaul {

enum class FileKind { kWaypoints, kAirspace, kTrack };

// What a file holds: which list counts depends on the kind.
struct FileContents {
  FileKind kind = FileKind::kWaypoints;
  igc::ReadOptions options;  // how tracks are to be read
  igc::Reading reading;      // how a track was read
  std::vector<FileWaypoint> waypoints;
  std::vector<CtrRecord> airspaces;
  std::vector<TrackPoint> points;
  igc::Header header;               // of a track
  std::string text;                 // of a track that was read: the whole file
  CalendarTime taken_over = {};     // when the program got the track, for formats that say so
  std::vector<std::string> damage;  // lines whose loss makes a record unfit for use; all are shown
  std::vector<std::string> notes;   // what else was skipped, with its line
};

// One file format that the program reads, writes or both.
struct FileFormat {
  std::string_view keyword;    // what --format calls it
  std::string_view name;       // "OziExplorer waypoint file"
  std::string_view extension;  // ".wpt", in lower case
  FileKind kind = FileKind::kWaypoints;
  bool (*looks_like)(std::string_view text) = nullptr;  // null: cannot be read
  // Returns the number of records, or -1 with a message.
  int (*read)(std::string_view text, FileContents& contents, std::string& message) = nullptr;
  std::string (*write)(const FileContents& contents) = nullptr;  // null: cannot be written
};

// Reads the track of an IGC file for every use of it but downloads and checks. Returns the number
// of fixes, or -1 with a message.
int ReadIgcTrack(std::string_view text, FileContents& contents, std::string& message);

// The extension of a path with its dot, as it stands there; empty when it has none.
std::string Extension(const std::string& path);

// The path with a text added to the file's name, before its extension.
std::string WithNameEnd(const std::string& path, const std::string& name_end);

// The path for one of several flights: "a.igc" for number 1, then "a-2.igc".
std::string NumberedPath(const std::string& path, size_t number);

// True when a path's extension belongs to no format, so that a default may be taken.
bool HasUnknownExtension(const std::string& path);

// The format of a file that is to be read, chosen by its extension and confirmed by its content; an
// unknown extension leaves it to the content. Null with a message that says what the file looks
// like.
const FileFormat* FormatToRead(const std::string& path, std::string_view text,
                               std::string& message);

// The format that a file of this kind is written in: the one of that keyword, or, when it is empty,
// the one of the path's extension (where several share it, the first of the table). Null with a
// message that lists what can be written.
const FileFormat* FormatToWrite(const std::string& path, std::string_view keyword, FileKind kind,
                                std::string& message);

const char* KindText(FileKind kind);

}  // namespace skyhaul
