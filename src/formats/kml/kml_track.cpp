#include "formats/kml/kml_track.h"

#include <algorithm>

#include "core/text/date_time.h"
#include "core/text/numbers.h"
#include "core/units.h"
#include "formats/common/track_altitude.h"
#include "formats/common/xml_text.h"

namespace skyhaul::kml {

namespace {

using Points = std::span<const TrackPoint>;

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<kml xmlns=\"http://www.opengis.net/kml/2.2\""
    " xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n"
    "<Document>\n";
// Colours are written alpha, blue, green, red: ff0000ff is opaque red.
constexpr std::string_view kStyle =
    "<Style id=\"track\"><LineStyle><color>ff0000ff</color><width>2</width></LineStyle></Style>\n";
constexpr std::string_view kTail = "</Document>\n</kml>\n";
// About a centimetre on the ground.
constexpr int kPositionDecimals = 7;
constexpr int kAltitudeDecimals = 1;
constexpr size_t kRoughPointLength = 110;

// "7.1234500 46.1234500 2345.0": longitude first, blanks in gx:coord, commas without blanks in
// coordinates.
void AppendPosition(std::string& xml, const TrackPoint& point, AltitudeSource source,
                    char separator) {
  AppendFixed(xml, SemicirclesToDegrees(point.lon), kPositionDecimals);
  xml += separator;
  AppendFixed(xml, SemicirclesToDegrees(point.lat), kPositionDecimals);
  xml += separator;
  AppendFixed(xml, Altitude_m(point, source), kAltitudeDecimals);
}

// <when>2024-05-01T12:34:56Z</when>
void AppendWhen(std::string& xml, const TrackPoint& point) {
  xml += "<when>";
  AppendIsoTime(xml, point.time, point.milliseconds);
  xml += "</when>\n";
}

void AppendSegment(std::string& xml, Points points, AltitudeSource source) {
  // Without a mode the altitudes would be ignored and the flight drawn on the ground.
  xml += "<gx:Track>\n<altitudeMode>absolute</altitudeMode>\n";
  // The schema wants all times before all places; readers pair them by their order.
  for (const TrackPoint& point : points) AppendWhen(xml, point);
  for (const TrackPoint& point : points) {
    xml += "<gx:coord>";
    AppendPosition(xml, point, source, ' ');
    xml += "</gx:coord>\n";
  }
  xml += "</gx:Track>\n";
}

// The fixes up to the next segment's first.
size_t SegmentLength(Points points) {
  const auto next = std::find_if(points.begin() + 1, points.end(),
                                 [](const TrackPoint& point) { return point.segment_start != 0; });
  return static_cast<size_t>(next - points.begin());
}

void AppendTrack(std::string& xml, Points points, AltitudeSource source) {
  // gx:MultiTrack holds the segments of one flight together; a single one needs no holder.
  const bool has_gaps = SegmentLength(points) < points.size();
  xml += "<Placemark>\n<name>Track</name>\n<styleUrl>#track</styleUrl>\n";
  if (has_gaps) {
    // Not interpolated, so that a gap stays a gap.
    xml +=
        "<gx:MultiTrack>\n<altitudeMode>absolute</altitudeMode>\n"
        "<gx:interpolate>0</gx:interpolate>\n";
  }
  while (!points.empty()) {
    const size_t length = SegmentLength(points);
    AppendSegment(xml, points.first(length), source);
    points = points.subspan(length);
  }
  if (has_gaps) xml += "</gx:MultiTrack>\n";
  xml += "</Placemark>\n";
}

void AppendPlacemark(std::string& xml, std::string_view name, const TrackPoint& point,
                     AltitudeSource source) {
  xml += "<Placemark>\n";
  AppendXmlElement(xml, "name", name);
  xml += "<TimeStamp>";
  AppendWhen(xml, point);
  xml += "</TimeStamp>\n<Point><altitudeMode>absolute</altitudeMode><coordinates>";
  AppendPosition(xml, point, source, ',');
  xml += "</coordinates></Point>\n</Placemark>\n";
}

}  // namespace

std::string WriteTrack(std::span<const TrackPoint> points, const TrackInfo& info) {
  std::string xml(kHead);
  // Room for the ten lines or so around the fixes as well.
  xml.reserve(xml.size() + (points.size() + 10) * kRoughPointLength);
  AppendXmlElement(xml, "name", info.name);
  if (!info.description.empty()) AppendXmlElement(xml, "description", info.description);
  xml += kStyle;
  const AltitudeSource source = ChooseAltitude(points);
  if (!points.empty()) AppendTrack(xml, points, source);
  // An index past the end says that no take-off was found.
  if (info.take_off < points.size()) {
    AppendPlacemark(xml, "Take-off", points[info.take_off], source);
  }
  if (info.landing < points.size()) AppendPlacemark(xml, "Landing", points[info.landing], source);
  xml += kTail;
  return xml;
}

}  // namespace skyhaul::kml
