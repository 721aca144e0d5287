#include "formats/gpx/read_gpx.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <pugixml.hpp>
#include <utility>

#include "core/text/charset.h"
#include "core/text/date_time.h"
#include "core/text/letter_case.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/text/scan.h"
#include "formats/common/messages.h"
#include "formats/common/position.h"

namespace skyhaul::gpx {

namespace {

// Names of symbols and types in the files of other programs.
constexpr std::string_view kAirfields[] = {kAirfield,          "Airfield",        "Aerodrome",
                                           "Gliding airfield", "Glider airfield", "Airstrip"};

struct Reader {
  std::string_view text;  // as it was parsed, for counting lines
  size_t bytes_per_unit;  // of the text; the parser counts in units
  WaypointFile& file;
  bool has_other = false;  // routes or tracks
};

bool IsUtf16(std::string_view text) {
  // Without a mark at the start a NUL tells it: "<" and "?" take two bytes each, one of them zero.
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
         text.substr(0, 4).find('\0') != std::string_view::npos;
}

int LineAt(const Reader& reader, ptrdiff_t offset) {
  // The parser does not know the offset of every node; -1 then stands for the first line.
  const size_t length =
      std::min(static_cast<size_t>(std::max<ptrdiff_t>(offset, 0)) * reader.bytes_per_unit,
               reader.text.size());
  const std::string_view before = reader.text.substr(0, length);
  return 1 + static_cast<int>(std::count(before.begin(), before.end(), '\n'));
}

// An element's name without its namespace prefix.
std::string_view LocalName(const pugi::xml_node& node) {
  // "gpx:wpt" as well as "wpt": a file may choose any prefix.
  const std::string_view name = node.name();
  return name.substr(name.find(':') + 1);
}

// All text of the first child of that name: a comment or an element in it does not end it.
std::string ChildText(const pugi::xml_node& node, std::string_view name) {
  std::string text;
  for (const pugi::xml_node& child : node.children()) {
    if (LocalName(child) != name) continue;
    for (const pugi::xml_node& piece : child.children()) text += piece.value();
    break;
  }
  return std::string(TrimBlanks(text));
}

// A text as it goes to a record: on one line, and UTF-8 whatever character numbers it was made of.
std::string RecordText(std::string_view text) {
  return OneLine(ToUtf8(text));
}

bool IsAirfield(std::string_view kind) {
  return std::any_of(std::begin(kAirfields), std::end(kAirfields),
                     [kind](std::string_view name) { return EqualIgnoringCase(kind, name); });
}

// <wpt lat="46.12"
// lon="7.12"><ele>2345</ele><time>2024-05-01T12:34:56Z</time><name>FIESCH</name></wpt>
void ReadWaypoint(Reader& reader, const pugi::xml_node& node) {
  const auto note = [&reader, &node](std::string_view what) {
    reader.file.notes.push_back(LineNote(LineAt(reader, node.offset_debug()), what));
  };
  FileWaypoint waypoint;
  // Blanks inside the quotes are against the schema and harmless.
  const auto lat_deg = ReadDecimal(TrimBlanks(node.attribute("lat").value()));
  const auto lon_deg = ReadDecimal(TrimBlanks(node.attribute("lon").value()));
  if (!lat_deg || !lon_deg) {
    // One bad place should not cost the others.
    note("waypoint without a position that can be read, skipped");
    return;
  }
  const auto position = PositionFromDegrees(*lat_deg, *lon_deg);
  if (!position) {
    note("waypoint with a position that is not on the globe, skipped");
    return;
  }
  waypoint.lat = position->lat;
  waypoint.lon = position->lon;
  // "2345.0", metres above the sea; a waypoint need not have it.
  const std::string altitude = ChildText(node, "ele");
  const std::optional<double> altitude_m = altitude.empty() ? 0 : ReadDecimal(altitude);
  if (!altitude_m) note("the waypoint's altitude cannot be read");
  waypoint.altitude_m = altitude_m.value_or(0);
  const std::string time = ChildText(node, "time");
  // "2024-05-01T12:34:56Z", also with a fraction or a zone such as "+02:00"
  waypoint.time = ReadIsoTime(time);
  if (!time.empty() && waypoint.time == 0) note("the waypoint's time cannot be read");
  waypoint.name = RecordText(ChildText(node, "name"));
  waypoint.description = RecordText(ChildText(node, "desc"));
  waypoint.comment = RecordText(ChildText(node, "cmt"));
  if (waypoint.description.empty()) waypoint.description = waypoint.comment;
  // Said once is enough: a writer with a single text puts it in both.
  if (waypoint.comment == waypoint.description) waypoint.comment.clear();
  // Programs differ in which of the two says what a place is.
  const bool is_airfield =
      IsAirfield(ChildText(node, "sym")) || IsAirfield(ChildText(node, "type"));
  waypoint.type = is_airfield ? kWaypointAirfield : 0;
  reader.file.waypoints.push_back(std::move(waypoint));
}

// Returns why the file cannot be used; empty: it can.
std::string ReadRoot(Reader& reader, const pugi::xml_node& root) {
  if (LocalName(root) != "gpx") {
    return LineError(LineAt(reader, root.offset_debug()),
                     "the file is <" + OneLine(root.name()) + ">, not <gpx>");
  }
  for (const pugi::xml_node& node : root.children()) {
    const std::string_view name = LocalName(node);
    if (name == "wpt") ReadWaypoint(reader, node);
    reader.has_other = reader.has_other || name == "rte" || name == "trk";
  }
  if (!reader.file.waypoints.empty()) return {};
  const int line = LineAt(reader, root.offset_debug());
  if (!reader.file.notes.empty()) return LineError(line, "none of the waypoints can be read");
  if (reader.has_other) return LineError(line, "only routes or tracks, no waypoints");
  return {};
}

std::string ReadDocument(Reader& reader) {
  const bool is_utf16 = reader.bytes_per_unit == 2;
  pugi::xml_document document;
  // Eight-bit texts are UTF-8 by now, whatever their declaration says.
  const pugi::xml_parse_result result =
      document.load_buffer(reader.text.data(), reader.text.size(), pugi::parse_default,
                           is_utf16 ? pugi::encoding_auto : pugi::encoding_utf8);
  if (result.status == pugi::status_no_document_element) return LineError(1, "not a GPX file");
  if (!result) return LineError(LineAt(reader, result.offset), result.description());
  return ReadRoot(reader, document.document_element());
}

}  // namespace

bool LooksLike(std::string_view text) {
  constexpr size_t kLongestPrologue = 4096;
  std::string start(text.substr(0, kLongestPrologue));
  // UTF-16 becomes readable as ASCII, which is all that the names here need.
  std::erase(start, '\0');
  // The first element begins with '<' and a letter; declarations and comments do not.
  for (size_t i = start.find('<'); i != std::string::npos; i = start.find('<', i)) {
    if (start.compare(i, 4, "<!--") == 0) {
      i = start.find("-->", i);
      continue;
    }
    ++i;
    if (i == start.size() || start[i] == '?' || start[i] == '!') continue;
    const std::string_view name =
        std::string_view(start).substr(i, start.find_first_of(" \t\r\n/>", i) - i);
    return name.substr(name.find(':') + 1) == "gpx";
  }
  return false;
}

int Read(std::string_view text, WaypointFile& file, std::string& message) {
  file = {};
  const bool is_utf16 = IsUtf16(text);
  const std::string utf8 = is_utf16 ? std::string() : ToUtf8(text);
  Reader reader = {
      .text = is_utf16 ? text : utf8, .bytes_per_unit = is_utf16 ? size_t{2} : 1, .file = file};
  message = ReadDocument(reader);
  if (message.empty()) return static_cast<int>(file.waypoints.size());
  file = {};
  return -1;
}

}  // namespace skyhaul::gpx
