#include "files/formats.h"

#include <algorithm>
#include <utility>

#include "analysis/flight_times.h"
#include "core/text/date_time.h"
#include "core/text/letter_case.h"
#include "core/time_scale.h"
#include "formats/compegps/read_compegps.h"
#include "formats/compegps/write_compegps.h"
#include "formats/cup/read_cup.h"
#include "formats/cup/write_cup.h"
#include "formats/formatgeo/read_formatgeo.h"
#include "formats/formatgeo/write_formatgeo.h"
#include "formats/gpx/read_gpx.h"
#include "formats/gpx/write_gpx.h"
#include "formats/igc/read_lenient.h"
#include "formats/igc/write_igc.h"
#include "formats/kml/kml_track.h"
#include "formats/openair/read_openair.h"
#include "formats/openair/write_openair.h"
#include "formats/ozi/ozi_track.h"
#include "formats/ozi/read_ozi.h"
#include "formats/ozi/write_ozi.h"
#include "platform/path.h"

namespace skyhaul {

namespace {

// The table has one kind of function for all formats; these bring the readers and writers into it.
template <int (*kRead)(std::string_view, WaypointFile&, std::string&)>
int ReadWaypoints(std::string_view text, FileContents& contents, std::string& message) {
  WaypointFile file;
  const int count = kRead(text, file, message);
  contents.waypoints = std::move(file.waypoints);
  contents.notes = std::move(file.notes);
  return count;
}

template <std::string (*kWrite)(std::span<const FileWaypoint>)>
std::string WriteWaypoints(const FileContents& contents) {
  return kWrite(contents.waypoints);
}

int ReadAirspaces(std::string_view text, FileContents& contents, std::string& message) {
  openair::AirspaceFile file;
  const int count = openair::Read(text, file, message);
  contents.airspaces = std::move(file.airspaces);
  contents.damage = std::move(file.damage);
  contents.notes = std::move(file.notes);
  return count;
}

std::string WriteAirspaces(const FileContents& contents) {
  return openair::Write(contents.airspaces);
}

// A converted track is not what a recorder signed, so it gets no security record, and the recorder
// it came from is named in the A record's text.
std::string WriteIgcTrack(const FileContents& contents) {
  const igc::Header& from = contents.header;
  const igc::HeaderTexts header = {.pilot = from.pilot,
                                   .glider_type = from.glider_type,
                                   .glider_id = from.glider_id,
                                   .competition_class = from.competition_class,
                                   .site = from.site,
                                   .competition_id = from.competition_id};
  igc::WriteOptions options;
  // The serial of a program, which has none.
  options.serial = "000";
  options.download_time = contents.taken_over;
  if (!from.manufacturer.empty()) {
    options.free_text = "converted from " + from.manufacturer + from.serial;
  }
  std::string text;
  (void)igc::Write(contents.points, header, options,
                   text);  // fails for a track without points only
  return text;
}

std::string TrackName(const FileContents& contents) {
  const std::string& pilot = contents.header.pilot;
  if (contents.points.empty()) return pilot;
  // "2026-05-14 Name of the pilot": sorted by name, the tracks are in the order of days.
  const std::string date = DateText(CalendarFromTime(contents.points.front().time));
  return pilot.empty() ? date : date + ' ' + pilot;
}

std::string WriteKml(const FileContents& contents) {
  kml::TrackInfo info;
  info.name = TrackName(contents);
  if (!contents.points.empty()) {
    const FlightTimes times = FindFlightTimes(contents.points);
    info.take_off = times.take_off;
    info.landing = times.landing;
  }
  return kml::WriteTrack(contents.points, info);
}

std::string WriteOzi(const FileContents& contents) {
  return ozi::WriteTrack(contents.points, TrackName(contents));
}

// The order counts: of the formats that share an extension the first is the one that is written.
constexpr FileFormat kFormats[] = {
    {.keyword = "cup",
     .name = "SeeYou CUP file",
     .extension = ".cup",
     .kind = FileKind::kWaypoints,
     .looks_like = cup::LooksLike,
     .read = ReadWaypoints<cup::Read>,
     .write = WriteWaypoints<cup::Write>},
    {.keyword = "ozi",
     .name = "OziExplorer waypoint file",
     .extension = ".wpt",
     .kind = FileKind::kWaypoints,
     .looks_like = ozi::LooksLikeWaypoints,
     .read = ReadWaypoints<ozi::ReadWaypoints>,
     .write = WriteWaypoints<ozi::WriteWaypoints>},
    {.keyword = "compegps",
     .name = "CompeGPS waypoint file",
     .extension = ".wpt",
     .kind = FileKind::kWaypoints,
     .looks_like = compegps::LooksLike,
     .read = ReadWaypoints<compegps::Read>,
     .write = WriteWaypoints<compegps::Write>},
    {.keyword = "geo",
     .name = "$FormatGEO waypoint list",
     .extension = ".wpt",
     .kind = FileKind::kWaypoints,
     .looks_like = formatgeo::LooksLikeGeo,
     .read = ReadWaypoints<formatgeo::ReadGeo>,
     .write = WriteWaypoints<formatgeo::WriteGeo>},
    {.keyword = "utm",
     .name = "$FormatUTM waypoint list",
     .extension = ".wpt",
     .kind = FileKind::kWaypoints,
     .looks_like = formatgeo::LooksLikeUtm,
     .read = ReadWaypoints<formatgeo::ReadUtm>,
     .write = WriteWaypoints<formatgeo::WriteUtm>},
    {.keyword = "gpx",
     .name = "GPX file",
     .extension = ".gpx",
     .kind = FileKind::kWaypoints,
     .looks_like = gpx::LooksLike,
     .read = ReadWaypoints<gpx::Read>,
     .write = WriteWaypoints<gpx::Write>},
    {.keyword = "openair",
     .name = "OpenAir airspace file",
     .extension = ".txt",
     .kind = FileKind::kAirspace,
     .looks_like = openair::LooksLike,
     .read = ReadAirspaces,
     .write = WriteAirspaces},
    {.keyword = "igc",
     .name = "IGC file",
     .extension = ".igc",
     .kind = FileKind::kTrack,
     .looks_like = igc::LooksLike,
     .read = ReadIgcTrack,
     .write = WriteIgcTrack},
    {.keyword = "kml",
     .name = "KML track",
     .extension = ".kml",
     .kind = FileKind::kTrack,
     .write = WriteKml},
    {.keyword = "plt",
     .name = "OziExplorer track",
     .extension = ".plt",
     .kind = FileKind::kTrack,
     .write = WriteOzi},
};

// As the table spells it.
std::string TableExtension(const std::string& path) {
  const std::string extension = LowerCase(Extension(path));
  // Airspace files go by either extension.
  return extension == ".air" ? ".txt" : extension;
}

// Texts have no extension of their own: what is in them says what they are.
bool IsTextExtension(std::string_view extension) {
  return extension.empty() || extension == ".txt";
}

const FileFormat* FormatByContent(std::string_view text, std::string_view extension) {
  for (const FileFormat& format : kFormats) {
    // Without an extension every format comes into question.
    if (!extension.empty() && format.extension != extension) continue;
    if (format.looks_like != nullptr && format.looks_like(text)) return &format;
  }
  return nullptr;
}

bool IsKnown(std::string_view extension) {
  return std::any_of(std::begin(kFormats), std::end(kFormats),
                     [&](const FileFormat& format) { return format.extension == extension; });
}

// The formats that can be read, or written for one kind, a line each.
std::string ListFormats(bool (*wanted)(const FileFormat& format, FileKind kind), FileKind kind) {
  std::string list;
  for (const FileFormat& format : kFormats) {
    if (!wanted(format, kind)) continue;
    list += "\n  " + std::string(format.keyword) + " (" + std::string(format.extension) +
            "): " + std::string(format.name);
  }
  return list;
}

bool CanRead(const FileFormat& format, FileKind /*kind*/) {
  return format.read != nullptr;
}

bool CanWrite(const FileFormat& format, FileKind kind) {
  return format.kind == kind && format.write != nullptr;
}

std::string Readable() {
  return "\nWhat can be read:" + ListFormats(CanRead, FileKind::kTrack);
}

// Why a file whose extension is known cannot be read. A reader knows best what is wrong with a file
// that has its extension to itself.
std::string Refusal(const std::string& path, std::string_view extension, std::string_view text,
                    const FileFormat* by_content) {
  std::string message = path + " does not hold what its name says";
  if (by_content != nullptr) return message + ": it looks like: " + std::string(by_content->name);
  const auto* format =
      std::find_if(std::begin(kFormats), std::end(kFormats),
                   [&](const FileFormat& candidate) { return candidate.extension == extension; });
  if (format->read == nullptr) {
    return path + ": " + std::string(format->name) + "s can only be written" + Readable();
  }
  // Read once more for the reason only.
  FileContents ignored;
  std::string reason;
  if (format->read(text, ignored, reason) < 0) return reason + "\n" + path;
  return message + Readable();
}

}  // namespace

int ReadIgcTrack(std::string_view text, FileContents& contents, std::string& message) {
  igc::Track track;
  const int count = igc::ReadTrack(text, contents.options, track, message);
  contents.points = std::move(track.points);
  contents.header = std::move(track.header);
  contents.reading = std::move(track.reading);
  contents.notes = igc::ReadingNotes(contents.reading);
  return count;
}

std::string Extension(const std::string& path) {
  const size_t name = NameStart(path);
  const size_t dot = path.rfind('.');
  // A name that begins with its only dot, as hidden files do, has no extension.
  return dot == path.npos || dot <= name ? "" : path.substr(dot);
}

std::string WithNameEnd(const std::string& path, const std::string& name_end) {
  // The extension includes its point: "flight.kml" is cut into "flight" and ".kml".
  const size_t end = path.size() - Extension(path).size();
  return path.substr(0, end) + name_end + path.substr(end);
}

std::string NumberedPath(const std::string& path, size_t number) {
  return number == 1 ? path : WithNameEnd(path, "-" + std::to_string(number));
}

bool HasUnknownExtension(const std::string& path) {
  return !IsKnown(TableExtension(path));
}

const FileFormat* FormatToRead(const std::string& path, std::string_view text,
                               std::string& message) {
  const std::string extension = TableExtension(path);
  // Asked in any case: when the extension is wrong, the message says what the file looks like.
  const FileFormat* by_content = FormatByContent(text, "");
  if (IsTextExtension(extension) || !IsKnown(extension)) {
    if (by_content == nullptr) message = path + " is no file that can be read" + Readable();
    return by_content;
  }
  const FileFormat* format = FormatByContent(text, extension);
  if (format == nullptr) message = Refusal(path, extension, text, by_content);
  return format;
}

const FileFormat* FormatToWrite(const std::string& path, std::string_view keyword, FileKind kind,
                                std::string& message) {
  const std::string extension = TableExtension(path);
  for (const FileFormat& format : kFormats) {
    if (!CanWrite(format, kind)) continue;
    // A keyword beats the extension, which people choose as they like.
    if (keyword.empty() ? format.extension == extension : format.keyword == keyword) {
      return &format;
    }
  }
  message = std::string(KindText(kind)) + " cannot be written as \"" +
            (keyword.empty() ? path : std::string(keyword)) + "\", but as" +
            ListFormats(CanWrite, kind);
  return nullptr;
}

const char* KindText(FileKind kind) {
  switch (kind) {
    case FileKind::kWaypoints:
      return "Waypoints";
    case FileKind::kAirspace:
      return "Airspace";
    case FileKind::kTrack:
      break;
  }
  return "Tracks";
}

}  // namespace skyhaul
