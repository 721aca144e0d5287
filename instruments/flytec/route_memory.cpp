#include "instruments/flytec/route_memory.h"

#include <algorithm>
#include <cstdio>

#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

constexpr size_t kNameWidth = 17;

const StoredWaypoint* FindWaypoint(const std::vector<StoredWaypoint>& waypoints,
                                   std::string_view long_name) {
  const auto found =
      std::find_if(waypoints.begin(), waypoints.end(),
                   [&](const StoredWaypoint& known) { return known.long_name == long_name; });
  return found == waypoints.end() ? nullptr : &*found;
}

std::string Line(size_t route, size_t total, size_t line, const std::string& text) {
  char start[80];
  (void)std::snprintf(start, sizeof start, "PBRRTS,%02zu,%02zu,%02zu,", route, total, line);
  return start + text;
}

}  // namespace

bool TakeRouteLine(RouteUpload& upload, std::string_view fields,
                   const std::vector<StoredWaypoint>& waypoints) {
  // 01,03,00,Route 123        and then   01,03,01,,Urthaler Hof
  const std::vector<std::string_view> cut = CutFields(fields);
  if (cut.size() < 4 || cut.back().size() != kNameWidth) return false;
  const int number = WholeNumber(cut[0], 2);
  const int total = WholeNumber(cut[1], 2);
  const int line = WholeNumber(cut[2], 2);
  const bool first = line == 0;
  if (number < 0 || total < 1 || line < 0 || cut.size() != (first ? 4 : 5)) return false;
  if (first) upload = {.total = total, .sound = true};
  if (total != upload.total || line != upload.next || line >= total) upload.sound = false;
  if (first) {
    upload.route = {.name = std::string(cut[3]), .competition = number == 0};
  } else {
    upload.route.points.emplace_back(cut[4]);
    if (FindWaypoint(waypoints, cut[4]) == nullptr) upload.sound = false;
  }
  if (upload.route.points.size() > kMaxRoutePoints) upload.sound = false;
  upload.next = line + 1;
  upload.complete = upload.sound && upload.next == total;
  return true;
}

bool StoreRoute(std::vector<StoredRoute>& memory, const StoredRoute& route) {
  const auto known = std::find_if(memory.begin(), memory.end(), [&](const StoredRoute& candidate) {
    return candidate.name == route.name || (candidate.competition && route.competition);
  });
  if (known != memory.end()) {
    *known = route;
    return true;
  }
  if (memory.size() >= kMaxRoutes) return false;
  memory.push_back(route);
  return true;
}

bool IsInRoute(const std::vector<StoredRoute>& memory, std::string_view long_name) {
  return std::any_of(memory.begin(), memory.end(), [&](const StoredRoute& route) {
    return std::find(route.points.begin(), route.points.end(), long_name) != route.points.end();
  });
}

std::vector<std::string> RouteListBodies(const std::vector<StoredRoute>& memory,
                                         const std::vector<StoredWaypoint>& waypoints) {
  std::vector<std::string> bodies;
  size_t next_number = 1;
  for (const StoredRoute& route : memory) {
    const size_t number = route.competition ? 0 : next_number++;
    const size_t total = 1 + route.points.size();
    bodies.push_back(Line(number, total, 0, route.name));
    for (size_t i = 0; i < route.points.size(); ++i) {
      const StoredWaypoint* waypoint = FindWaypoint(waypoints, route.points[i]);
      const std::string short_name = waypoint == nullptr ? "" : waypoint->short_name;
      bodies.push_back(Line(number, total, i + 1, short_name + "," + route.points[i]));
    }
  }
  return bodies;
}

}  // namespace skyhaul::flytec_simulator
