#include "formats/gpx/write_gpx.h"

#include "core/text/date_time.h"
#include "core/text/numbers.h"
#include "core/text/printable.h"
#include "core/units.h"
#include "formats/common/position.h"
#include "formats/common/xml_text.h"
#include "formats/gpx/read_gpx.h"

namespace skyhaul::gpx {

namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<gpx version=\"1.1\" creator=\"Skyhaul\" xmlns=\"http://www.topografix.com/GPX/1/1\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xsi:schemaLocation=\"http://www.topografix.com/GPX/1/1"
    " http://www.topografix.com/GPX/1/1/gpx.xsd\">\n";
constexpr std::string_view kTail = "</gpx>\n";

// A semicircle is 8.4e-8 degrees. The schema wants longitudes below 180, and the easternmost one,
// 179.99999992, is still that with 8 decimals.
constexpr int kPositionDecimals = 8;
constexpr int kAltitudeDecimals = 3;

void AppendText(std::string& xml, std::string_view name, std::string_view text) {
  if (!text.empty()) AppendXmlElement(xml, name, OneLine(text));
}

// <wpt lat="46.12345000" lon="7.12345000">
// Children in the order of the schema, which validating readers insist on: ele, time, name, cmt,
// desc, sym, type.
void AppendWaypoint(std::string& xml, const FileWaypoint& waypoint) {
  xml += "<wpt lat=\"";
  AppendFixed(xml, SemicirclesToDegrees(waypoint.lat), kPositionDecimals);
  xml += "\" lon=\"";
  AppendFixed(xml, SemicirclesToDegrees(waypoint.lon), kPositionDecimals);
  xml += "\">\n<ele>";
  AppendFixed(xml, waypoint.altitude_m, kAltitudeDecimals);
  xml += "</ele>\n";
  // A time that is not known is left out, as 1989 would look like a real one.
  if (waypoint.time != 0) {
    xml += "<time>";
    AppendIsoTime(xml, waypoint.time, 0);
    xml += "</time>\n";
  }
  AppendText(xml, "name", waypoint.name);
  AppendText(xml, "cmt", waypoint.comment.empty() ? waypoint.description : waypoint.comment);
  AppendText(xml, "desc", FurtherText(waypoint));
  if (waypoint.type == kWaypointAirfield) {
    // Both, because readers look at the one or the other.
    AppendText(xml, "sym", kAirfield);
    AppendText(xml, "type", kAirfield);
  }
  xml += "</wpt>\n";
}

}  // namespace

std::string Write(std::span<const FileWaypoint> waypoints) {
  std::string xml(kHead);
  for (const FileWaypoint& waypoint : waypoints) AppendWaypoint(xml, waypoint);
  xml += kTail;
  return xml;
}

}  // namespace skyhaul::gpx
